// camera_table.cpp
// What is known of the attached cameras without a module: the long list.
#include "device/camera_table.h"

#include <iostream>

#include "base/text_table.h"
#include "library/vimba_session.h"

namespace Kelcam {
namespace {

std::string AccessOf(const CameraRecord& camera, VmbError_t opening) {
  if (opening == VmbErrorInvalidAccess || camera.permitted_access == VmbAccessModeNone) return "in use";
  return camera.permitted_access & VmbAccessModeFull ? "full" : "read";
}

std::vector<std::string> CellsOf(const CameraRow& row) {
  return {std::to_string(row.number),
          CellOf(row.id),
          CellOf(row.model),
          CellOf(row.serial),
          CellOf(row.address.value_or("")),
          row.access,
          row.is_simulated ? "simulated" : "real"};
}

}  // namespace

std::vector<CameraRow> CameraTable(const Module& module) {
  if (!module.Vimba()) throw Failure("--long: this module has no VimbaC library that could be asked");
  const VimbaSession session(*module.Vimba());
  std::vector<CameraRow> rows;
  for (const CameraRecord& camera : session.Cameras()) {
    const OpenedCamera opened(session, camera.id, VmbAccessModeRead);
    CameraRow row{rows.size() + 1, camera.id, camera.model, camera.serial, {}, AccessOf(camera, opened.Code()), false};
    if (opened.IsOpen()) row.address = opened.Address();
    row.is_simulated = session.Library().IsSimulated();
    rows.push_back(row);
  }
  return rows;
}

void Print(const std::vector<CameraRow>& rows) {
  if (rows.empty()) return;
  std::vector<std::vector<std::string>> lines{{"NO", "ID", "MODEL", "SERIAL", "ADDRESS", "ACCESS", "CAMERA"}};
  for (const CameraRow& row : rows) lines.push_back(CellsOf(row));
  std::cout << TextTable(lines);
}

Json ToJson(const std::vector<CameraRow>& rows) {
  Json cameras = Json::array();
  for (const CameraRow& row : rows) {
    Json address;
    if (row.address) address = *row.address;
    cameras.push_back({{"number", row.number},
                       {"id", row.id},
                       {"model", row.model},
                       {"serial", row.serial},
                       {"address", address},
                       {"access", row.access},
                       {"simulated", row.is_simulated}});
  }
  return cameras;
}

}  // namespace Kelcam

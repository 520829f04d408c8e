// camera_table.cpp
// What is known of the attached cameras without a module: the long list.
#include "camera_table.h"

#include <algorithm>
#include <array>
#include <iostream>

#include "vimba_session.h"

namespace Kelcam {
namespace {

constexpr const char* kNothing = "-";
using Cells = std::array<std::string, 7>;

std::string AccessOf(const CameraRecord& camera, VmbError_t opening) {
  if (opening == VmbErrorInvalidAccess || camera.permitted_access == VmbAccessModeNone) return "in use";
  return camera.permitted_access & VmbAccessModeFull ? "full" : "read";
}

std::string Shown(const std::string& text) {
  if (text.empty()) return kNothing;
  std::string shown = text;
  const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; };
  std::replace_if(shown.begin(), shown.end(), is_control, '?');
  return shown;
}

Cells CellsOf(const CameraRow& row) {
  return {std::to_string(row.number),
          Shown(row.id),
          Shown(row.model),
          Shown(row.serial),
          Shown(row.address.value_or("")),
          row.access,
          row.is_simulated ? "simulated" : "real"};
}

// The letters, of which some have several bytes.
std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0u) != 0x80u; }));
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
  std::vector<Cells> lines{{"NO", "ID", "MODEL", "SERIAL", "ADDRESS", "ACCESS", "CAMERA"}};
  for (const CameraRow& row : rows) lines.push_back(CellsOf(row));
  std::array<std::size_t, std::tuple_size_v<Cells>> widths{};
  for (const Cells& cells : lines) {
    for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], WidthOf(cells[i]));
  }
  for (const Cells& cells : lines) {
    for (std::size_t i = 0; i + 1 < cells.size(); ++i) {
      std::cout << cells[i] << std::string(widths[i] - WidthOf(cells[i]) + 2, ' ');
    }
    std::cout << cells.back() << "\n";
  }
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

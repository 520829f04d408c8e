// camera_table.h
// What is known of the attached cameras without a module: the long list.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/report.h"
#include "library/module.h"

namespace Kelcam {

struct CameraRow {
  std::size_t number = 0;  // in the list, from 1
  std::string id, model, serial;
  std::optional<std::string> address;  // none: the camera does not report one, or not now
  std::string access;                  // "full", "read", "in use"
  bool is_simulated = false;
};

// Of every attached camera; each is opened for reading, to ask for its address. Throws Failure for a module without a
// VimbaC library.
std::vector<CameraRow> CameraTable(const Module& module);

// With a head line, in columns. What a camera's texts have of control characters is shown as a question mark.
void Print(const std::vector<CameraRow>& rows);
Json ToJson(const std::vector<CameraRow>& rows);

}  // namespace Kelcam

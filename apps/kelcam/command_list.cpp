// command_list.cpp
// kelcam list: the attached cameras.
#include <chrono>
#include <iostream>
#include <thread>

#include "camera_table.h"
#include "commands.h"
#include "interrupt.h"
#include "report.h"
#include "utf8.h"

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPauseBetweenLists{250};

std::vector<std::string> Identifiers(const Module& module, const MessageLog& log) {
  // A module that cannot start its camera system leaves the list as it was, and this is the only sign of it.
  const WString untouched = L"the module has not been asked";
  DList<WString> identifiers;
  identifiers.Append(untouched);
  module.ListIdentifiers(identifiers);
  if (identifiers.Count() == 1 && identifiers.Head()->value == untouched) {
    throw Failure(log.WithLastNotices("the camera system cannot be started"));
  }
  std::vector<std::string> texts;
  for (const WString& identifier : identifiers) texts.push_back(Utf8(identifier));
  return texts;
}

// Those of the last list before the time is over.
std::vector<std::string> WaitForIdentifiers(const Options& options, const Module& module, const MessageLog& log) {
  const Clock::time_point start = Clock::now();
  for (;;) {
    std::vector<std::string> identifiers = Identifiers(module, log);
    if (!identifiers.empty() || !options.wait || Clock::now() - start >= *options.wait) return identifiers;
    std::this_thread::sleep_for(kPauseBetweenLists);
  }
}

}  // namespace

ExitCode RunList(const Options& options, const Module& module, const MessageLog& log) {
  std::vector<std::string> identifiers;
  std::vector<CameraRow> rows;
  {
    const NothingToClose listing;
    identifiers = WaitForIdentifiers(options, module, log);
    if (options.long_list) rows = CameraTable(module);
  }
  if (options.wait && identifiers.empty()) {
    throw Failure("no camera was found within " + Fixed(options.wait->count(), 1) + " s");
  }
  if (options.json) {
    Json document = {{"cameras", identifiers}};
    if (options.long_list) document["details"] = ToJson(rows);
    PrintDocument(document);
  } else if (options.long_list) {
    Print(rows);
  } else {
    for (const std::string& identifier : identifiers) std::cout << identifier << "\n";
  }
  if (identifiers.empty() && !options.json) std::cerr << "notice: no camera found\n";
  return kDone;
}

}  // namespace Kelcam

// command_check.cpp
// kelcam check: a self-test with a verdict.
#include <chrono>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <thread>

#include "base/interrupt.h"
#include "base/platform.h"
#include "base/report.h"
#include "base/system_facts.h"
#include "base/utf8.h"
#include "check/camera_probe.h"
#include "check/check_report.h"
#include "check/known_facts.h"
#include "check/masking.h"
#include "check/system_probe.h"
#include "commands/commands.h"
#include "device/distinct_cameras.h"
#include "device/opening_explained.h"
#include "regularfile.h"

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::duration<double> kUsualRun{5.0};
// A call of the driver that is silent for so long does not return any more.
constexpr std::chrono::seconds kPatience{15};
constexpr std::chrono::milliseconds kLookInterval{100};

// Those that are asked for, else all that are attached.
std::vector<CameraChoice> ChoicesOf(const Options& options, const CheckFacts& facts) {
  if (!options.cameras.empty()) return options.cameras;
  std::vector<CameraChoice> choices;
  for (const CameraRow& row : facts.system.cameras.value_or(std::vector<CameraRow>())) {
    choices.push_back({.profile_file = {}, .word = row.id});
  }
  for (CameraChoice& choice : choices) choice.is_one_of_several = choices.size() > 1;
  return choices;
}

void AddCameras(const std::vector<CameraChoice>& choices, KnownFacts& known) {
  known.Update([&](CheckFacts& facts) {
    for (const CameraChoice& choice : choices) {
      CameraFacts camera;
      camera.title = choice.Text();
      camera.name = choice.Name();
      camera.has_profile = !choice.profile_file.empty();
      facts.cameras.push_back(camera);
    }
  });
}

// Everything that needs the driver. One camera after the other: none disturbs another one.
void Measure(const Options& options, const Module& module, MessageLog& log, KnownFacts& known) {
  if (options.cameras.size() > 1) CheckDistinct(options.cameras, module);
  ListCameras(module, log, known);
  const std::vector<CameraChoice> choices = ChoicesOf(options, known.Snapshot());
  AddCameras(choices, known);
  for (std::size_t i = 0; i < choices.size() && !Interrupted(); ++i) {
    known.Update([&](CheckFacts& facts) { facts.measured = i; });
    if (choices.size() > 1 && !options.quiet) std::cerr << "checking " + Printable(choices[i].Name()) + "\n";
    CameraProbe(choices[i], i, options.duration.value_or(kUsualRun), module, log, known).Measure();
  }
}

// Whether the thread that measures has ended; if not, the driver does not return to it.
bool WaitWhileDriverAnswers(const KnownFacts& known, const MessageMemory& messages) {
  std::uint64_t count = messages.Count();
  Clock::time_point last_sign = Clock::now();
  while (!known.WaitUntilFinished(kLookInterval)) {
    const auto step = known.LastStep();
    const std::uint64_t count_now = messages.Count();
    if (count_now != count) last_sign = Clock::now();
    count = count_now;
    if (!step) continue;
    if (Clock::now() - std::max(last_sign, step->call.start + step->call.may_wait) > kPatience) return false;
  }
  return true;
}

void NoteStuckCall(KnownFacts& known, const MessageMemory& messages) {
  const auto step = known.LastStep();
  if (!step) return;
  const Awaited awaited = WhatIsAwaited(step->call, messages.MessagesSince(step->first_message));
  const std::string text = awaited.what + (awaited.remark.empty() ? "" : " (" + awaited.remark + ")");
  known.Update(
      [&](CheckFacts& facts) { (facts.measured ? facts.cameras[*facts.measured].stuck : facts.system.stuck) = text; });
}

Masking MaskingFor(const Options& options, const CheckFacts& facts) {
  Masking masking(HomeFolder());
  if (!options.anonymous) return masking;
  masking.MaskCameras(facts, UserName());
  for (const CameraChoice& choice : options.cameras) {
    if (choice.profile_file.empty()) continue;
    try {
      masking.MaskSerial(FactsOf(BCamProfile(Wide(choice.profile_file))).serial);
    } catch (...) {
      // A profile that cannot be read has none.
    }
  }
  return masking;
}

void WriteReport(const std::string& file, const std::string& text) {
  const std::string sentence = "the report " + file + " cannot be written";
  if (const std::error_code error = ErrorIfNotRegular(Wide(file))) throw Failure(sentence + ": " + error.message());
  std::ofstream stream(Path(file), std::ios::binary | std::ios::trunc);
  stream << text;
  stream.close();
  if (!stream) throw Failure(sentence);
}

// A check takes long: what keeps its report from being written is said before it.
void CheckReportFile(const Options& options) {
  if (options.report_file.empty()) return;
  for (const CameraChoice& choice : options.cameras) {
    if (choice.profile_file.empty() || !IsSameFile(options.report_file, choice.profile_file)) continue;
    throw UsageError("-o " + options.report_file + ": this file is the profile");
  }
  std::error_code error;
  const bool was_there = std::filesystem::exists(Path(options.report_file), error);
  if (was_there) return;
  WriteReport(options.report_file, {});
}

ExitCode PrintReport(const Options& options, const CheckFacts& facts) {
  const CheckReport report(facts, MaskingFor(options, facts));
  const std::string text = report.Text();
  if (!options.report_file.empty()) WriteReport(options.report_file, text);
  if (options.json) {
    PrintDocument(report.Document());
  } else if (options.report_file.empty()) {
    std::cout << text;
  } else {
    std::cout << options.report_file << ": " << report.Sum() << "\n";
  }
  return report.Worst() == Verdict::kBroken ? kFailed : kDone;
}

// Nothing can make the driver return, so nothing can close the camera: it gives up the computer when it misses its
// heartbeat.
[[noreturn]] void EndWithStuckDriver(const Options& options, const CheckFacts& facts) {
  ExitCode code = kFailed;
  try {
    code = PrintReport(options, facts);
  } catch (const std::exception& error) {
    std::cerr << "error: " << error.what() << "\n";
  }
  std::cout << std::flush;
  std::cerr << std::flush;
  std::_Exit(Interrupted() ? InterruptedExitCode() : code);
}

CheckFacts Measured(const Options& options, const Module& module, MessageLog& log, const SystemFacts& system) {
  KnownFacts known;
  known.Update([&](CheckFacts& facts) { facts.system = system; });
  std::exception_ptr failure;
  std::thread measuring([&] {
    try {
      Measure(options, module, log, known);
    } catch (...) {
      failure = std::current_exception();
    }
    known.Finish();
  });
  if (!WaitWhileDriverAnswers(known, log.Messages())) {
    NoteStuckCall(known, log.Messages());
    known.Update([](CheckFacts& facts) { facts.was_interrupted = Interrupted(); });
    EndWithStuckDriver(options, known.Snapshot());
  }
  measuring.join();
  if (failure) std::rethrow_exception(failure);
  known.Update([](CheckFacts& facts) { facts.was_interrupted = Interrupted(); });
  return known.Snapshot();
}

}  // namespace

ExitCode RunCheck(const Options& options, const std::function<std::unique_ptr<const Module>()>& load, MessageLog& log) {
  CheckReportFile(options);
  CheckFacts facts;
  facts.system = SystemFactsNow();
  facts.system.module = options.module_file.empty() ? Utf8(ProgramFolder() / kModuleFileName) : options.module_file;
  // An interrupt ends the check, not the program: what is known by then is still to be written.
  const SomethingToClose report_to_write;
  std::unique_ptr<const Module> module;
  try {
    module = load();
  } catch (const Failure& failure) {
    facts.system.module_fault = failure.What();
  }
  if (!module) return PrintReport(options, facts);
  facts.system.library = LibraryFactsOf(*module);
  return PrintReport(options, Measured(options, *module, log, facts.system));
}

}  // namespace Kelcam

// api/api_call.h
// The steps of every API call: record, start-up check, faults, argument check, result.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "VimbaC.h"
#include "api/out_parameter.h"
#include "control/call_record.h"
#include "control/faults.h"
#include "library/argument_checks.h"
#include "system/vimba_system.h"

namespace Simulator {

// Arguments are named in their order; then Answer or Run is called once.
class ApiCall {
 public:
  explicit ApiCall(const char* function);

  ApiCall& On(VmbHandle_t handle);
  ApiCall& Camera(const char* name);
  ApiCall& Feature(const char* name);
  ApiCall& Value(const char* value);
  ApiCall& Value(std::int64_t value);
  ApiCall& Value(double value);
  ApiCall& Frame(const VmbFrame_t* frame);
  // A frame that gets its number in the record of calls, and keeps it if the call succeeds.
  ApiCall& NewFrame(const VmbFrame_t* frame);
  // If the call succeeds, the camera's frames have no numbers any more.
  ApiCall& NoMoreFrames();
  // Arguments that are checked but not recorded.
  ApiCall& Needs(const void* pointer);
  ApiCall& Needs(VmbInvalidationCallback callback);
  // Results by pointer, which are not recorded either. Null is refused for a single one.
  template <class Value>
  ApiCall& Out(Value* result) {
    if (result && m_texts) m_results.emplace_back(result);
    return Needs(result);
  }
  template <class Value>
  ApiCall& OutArray(Value* results, std::size_t count) {
    if (results && m_texts) m_results.emplace_back(std::span(results, count));
    return *this;
  }
  ApiCall& Size(std::uint32_t given, std::size_t needed);
  ApiCall& WithoutStartup();

  template <class Body>
  VmbError_t Answer(Body body) {
    const CallRecord::Line line = Begin();
    VmbError_t result = Check();
    if (!result) {
      result = VimbaLibrary::ExceptionsAsErrors([&] { return body(m_system); });
      if (!result) result = Falsify();
    }
    m_system.Record().End(line, result);
    CountFrames(result);
    return result;
  }
  // For the call that returns nothing and cannot fail.
  template <class Body>
  void Run(Body body) {
    const CallRecord::Line line = Begin();
    body(m_system);
    m_system.Record().End(line, std::nullopt);
  }

 private:
  CallRecord::Line Begin();
  // Faults that keep the call from its effect, and what must be known before it for those that do not.
  VmbError_t Check();
  // Faults of a call that has worked.
  VmbError_t Falsify();
  void Add(const std::string& argument);
  void CountFrames(VmbError_t result);

  VimbaSystem& m_system;
  // An unrecorded call without faults saves the time that texts cost.
  const bool m_texts;
  std::string m_text;
  CallPattern m_pattern;
  CallEffect m_effect;
  std::vector<OutParameter> m_results;
  // The bytes of each result before the call, where a fault leaves them untouched.
  std::vector<std::vector<std::byte>> m_before;
  VmbHandle_t m_handle = nullptr;
  bool m_first_argument = true;
  bool m_needs_startup = true;
  VimbaLibrary::ArgumentChecks m_arguments;
  const VmbFrame_t* m_new_frame = nullptr;
  bool m_no_more_frames = false;
};

}  // namespace Simulator

// What the calls of every VimbaC library are written with.
namespace VimbaLibrary {
using Simulator::ApiCall;
using Simulator::VimbaSystem;
}  // namespace VimbaLibrary

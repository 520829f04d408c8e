// api/api_call.h
// The steps of every API call: record, start-up check, faults, argument check, result.
#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <optional>
#include <string>

#include "VimbaC.h"
#include "control/call_record.h"
#include "control/faults.h"
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
  // Arguments that are checked but not recorded.
  ApiCall& Needs(const void* pointer);
  ApiCall& Needs(VmbInvalidationCallback callback);
  ApiCall& Size(std::uint32_t given, std::size_t needed);
  ApiCall& WithoutStartup();

  template <class Body>
  VmbError_t Answer(Body body) {
    const CallRecord::Line line = Begin();
    VmbError_t result = Check();
    if (!result) result = Guarded(body);
    m_system.Record().End(line, result);
    return result;
  }
  // For the call that returns nothing and cannot fail.
  template <class Body>
  void Run(Body body) {
    const CallRecord::Line line = Begin();
    body(m_system);
    m_system.Record().End(line, std::nullopt);
  }
  // For the body: what a fault reports in place of a command's state.
  const std::optional<bool>& FaultyDone() const { return m_effect.done; }

 private:
  CallRecord::Line Begin();
  VmbError_t Check();
  void Add(const std::string& argument);
  template <class Body>
  VmbError_t Guarded(Body& body) noexcept {
    try {
      return body(m_system);
    } catch (const std::bad_alloc&) {
      return VmbErrorResources;
    } catch (const std::exception&) {
      return VmbErrorInternalFault;
    }
  }

  VimbaSystem& m_system;
  // An unrecorded call without faults saves the time that texts cost.
  const bool m_texts;
  std::string m_text;
  CallPattern m_pattern;
  CallEffect m_effect;
  VmbHandle_t m_handle = nullptr;
  bool m_first_argument = true;
  bool m_needs_startup = true;
  VmbError_t m_argument_error = VmbErrorSuccess;
};

}  // namespace Simulator

// api/api_call.h
// The steps of every API call: start-up check, argument check, the call itself, result.
#pragma once

#include <cstddef>
#include <cstdint>

#include "VimbaC.h"
#include "library/argument_checks.h"
#include "system/vimba_system.h"

namespace Bridge {

// Arguments are named in their order; then Answer or Run is called once. What a call is about is named, too, where
// nothing is checked: the simulated library records it.
class ApiCall {
 public:
  explicit ApiCall(const char* /*function*/) {}

  ApiCall& On(VmbHandle_t /*handle*/) { return *this; }
  ApiCall& Camera(const char* name) { return Needs(name); }
  ApiCall& Feature(const char* name) { return Needs(name); }
  ApiCall& Value(const char* value) { return Needs(value); }
  ApiCall& Value(std::int64_t /*value*/) { return *this; }
  ApiCall& Value(double /*value*/) { return *this; }
  ApiCall& Frame(const VmbFrame_t* frame) { return Needs(frame); }
  ApiCall& NewFrame(const VmbFrame_t* frame) { return Needs(frame); }
  ApiCall& NoMoreFrames() { return *this; }
  template <class Pointer>
  ApiCall& Needs(Pointer pointer) {
    m_arguments.Needs(pointer);
    return *this;
  }
  template <class Value>
  ApiCall& Out(Value* result) {
    return Needs(result);
  }
  template <class Value>
  ApiCall& OutArray(Value* /*results*/, std::size_t /*count*/) {
    return *this;
  }
  ApiCall& Size(std::uint32_t given, std::size_t needed) {
    m_arguments.Size(given, needed);
    return *this;
  }
  ApiCall& WithoutStartup() {
    m_needs_startup = false;
    return *this;
  }

  template <class Body>
  VmbError_t Answer(Body body) {
    if (const VmbError_t refused = Check()) return refused;
    return VimbaLibrary::ExceptionsAsErrors([&] { return VmbError_t{body(m_system)}; });
  }
  template <class Body>
  void Run(Body body) {
    body(m_system);
  }

 private:
  VmbError_t Check() const;

  VimbaSystem& m_system = VimbaSystem::Instance();
  bool m_needs_startup = true;
  VimbaLibrary::ArgumentChecks m_arguments;
};

}  // namespace Bridge

// What the calls of every VimbaC library are written with.
namespace VimbaLibrary {
using Bridge::ApiCall;
using Bridge::VimbaSystem;
}  // namespace VimbaLibrary

// library/argument_checks.h
// What every call of VimbaC refuses before it does anything, and what becomes of exceptions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <new>

#include "VimbaC.h"

namespace VimbaLibrary {

// The first wrong argument decides.
class ArgumentChecks {
 public:
  void Needs(const void* pointer) { Refuse(!pointer, VmbErrorBadParameter); }
  void Needs(VmbInvalidationCallback callback) { Refuse(!callback, VmbErrorBadParameter); }
  void Size(std::uint32_t given, std::size_t needed) { Refuse(given != needed, VmbErrorStructSize); }
  VmbError_t Error() const { return m_error; }

 private:
  void Refuse(bool wrong, VmbError_t error) {
    if (wrong && !m_error) m_error = error;
  }

  VmbError_t m_error = VmbErrorSuccess;
};

// No exception leaves the library.
template <class Body>
VmbError_t ExceptionsAsErrors(Body&& body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return VmbErrorResources;
  } catch (const std::exception&) {
    return VmbErrorInternalFault;
  }
}

}  // namespace VimbaLibrary

// aravis/errors.h
// What an error of Aravis is to a caller of VimbaC.
#pragma once

#include <arv.h>

#include "VimbaC.h"

namespace Bridge {

// Null: success. An error of a kind that the table does not know is an internal fault.
VmbError_t ErrorOf(const GError* error);

// Takes the error that a call of Aravis reports: `if (ErrorSlot error; ...)`.
class ErrorSlot {
 public:
  ErrorSlot() = default;
  ~ErrorSlot() { g_clear_error(&m_error); }
  ErrorSlot(const ErrorSlot&) = delete;
  ErrorSlot& operator=(const ErrorSlot&) = delete;

  // For the call; what was there before is forgotten.
  GError** Take() {
    g_clear_error(&m_error);
    return &m_error;
  }
  VmbError_t Code() const { return ErrorOf(m_error); }
  // Whether the error is this one.
  bool Is(GQuark domain, int code) const { return m_error && g_error_matches(m_error, domain, code); }
  // Empty without an error.
  const char* Text() const { return m_error ? m_error->message : ""; }

 private:
  GError* m_error = nullptr;
};

}  // namespace Bridge

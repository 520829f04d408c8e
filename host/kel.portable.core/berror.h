// berror.h
// The host's error: a code and up to four texts. Also what is thrown across the module boundary.
#pragma once

#include <array>
#include <cstddef>

#include "kel_portable_core_api.h"
#include "wstring.h"

// A value: what happened (the code) and what it was about (the texts, in the order that the code's comment names). The
// destructor is compiled in this library only, so that host and modules share one type information and an error that a
// module throws is caught by the host as what it is.
class KEL_PORTABLE_CORE_API BError {
 public:
  static constexpr std::size_t kMaxTexts = 4;

  // Codes that the host SDK and the camera drivers use. Other numbers are a driver's own and are carried as they are.
  enum Code : int {
    eSuccess = 0,
    eProfileNotReadable = 8400,  // texts: file, reason
    eProfileMalformed = 8401,    // texts: file, line number, reason
    eBadRotation = 8420,         // texts: profile, key, value
    eAcquisitionFailed = 12103,  // text: what failed
    eTimeout = 12106,
    eFrameTooSmall = 12108,
    eAborted = 12109,
    eFrameInvalid = 12110,
  };

  explicit BError(int code = eSuccess, WString text1 = {}, WString text2 = {}, WString text3 = {}, WString text4 = {});
  BError(const BError&);
  BError(BError&&) noexcept;
  BError& operator=(const BError&);
  BError& operator=(BError&&) noexcept;
  virtual ~BError();

  int ErrorCode() const { return m_code; }
  bool IsError() const { return m_code != eSuccess; }
  // Index 0 to 3; a text that was not given is empty. Throws std::out_of_range beyond.
  const WString& Text(std::size_t index) const { return m_texts.at(index); }

  // The host's sentence for the code with the texts put in, without a full stop; for a code that it does not know, the
  // number and the texts. Empty for success.
  WString Message() const;

  friend bool operator==(const BError& a, const BError& b) { return a.m_code == b.m_code && a.m_texts == b.m_texts; }
  friend bool operator!=(const BError& a, const BError& b) { return !(a == b); }

 private:
  int m_code;
  std::array<WString, kMaxTexts> m_texts;
};

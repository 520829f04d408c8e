// berror.cpp
// The host's sentences for error codes.
#include "berror.h"

#include <algorithm>
#include <utility>

namespace {

struct Sentence {
  int code;
  const wchar_t* format;  // takes the four texts
};

constexpr Sentence kSentences[] = {
    {BError::eProfileNotReadable, L"the profile %s cannot be read: %s"},
    {BError::eProfileMalformed, L"the profile %s is malformed, line %s: %s"},
    {BError::eBadRotation, L"the profile %s asks for a rotation that the driver does not have: %s = %s"},
    {BError::eAcquisitionFailed, L"acquisition failed: %s"},
    {BError::eTimeout, L"no image arrived in time"},
    {BError::eFrameTooSmall, L"the frame buffer is too small for the image"},
    {BError::eAborted, L"the acquisition was aborted"},
    {BError::eFrameInvalid, L"the received frame is invalid"},
};

WString UnknownCodeMessage(const BError& error) {
  WString message = WString::Format(L"error %d", error.ErrorCode());
  const wchar_t* separator = L": ";
  for (std::size_t i = 0; i < BError::kMaxTexts; ++i) {
    if (error.Text(i).IsEmpty()) continue;
    message += separator;
    message += error.Text(i);
    separator = L", ";
  }
  return message;
}

}  // namespace

BError::BError(int code, WString text1, WString text2, WString text3, WString text4)
    : m_code(code), m_texts{std::move(text1), std::move(text2), std::move(text3), std::move(text4)} {}
BError::BError(const BError&) = default;
BError::BError(BError&&) noexcept = default;
BError& BError::operator=(const BError&) = default;
BError& BError::operator=(BError&&) noexcept = default;
BError::~BError() = default;

WString BError::Message() const {
  if (!IsError()) return {};
  const auto* sentence = std::find_if(std::begin(kSentences), std::end(kSentences),
                                      [this](const Sentence& candidate) { return candidate.code == m_code; });
  if (sentence == std::end(kSentences)) return UnknownCodeMessage(*this);
  WString message = WString::Format(sentence->format, m_texts[0], m_texts[1], m_texts[2], m_texts[3]);
  if (m_texts[0].IsEmpty()) message.EraseTrailingChars(L": ");
  return message;
}

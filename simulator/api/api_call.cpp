// api/api_call.cpp
// The steps of every API call: record, start-up check, faults, argument check, result.
#include "api/api_call.h"

#include <algorithm>
#include <span>
#include <thread>
#include <utility>

#include "library/value_text.h"

namespace Simulator {

using VimbaLibrary::QuotedText;
using VimbaLibrary::ValueText;

ApiCall::ApiCall(const char* function)
    : m_system(VimbaSystem::Instance()), m_texts(m_system.Record().Recording() || m_system.FaultSet().Any()) {
  if (!m_texts) return;
  m_pattern.call = function;
  m_text = m_pattern.call + '(';
}

void ApiCall::Add(const std::string& argument) {
  if (!std::exchange(m_first_argument, false)) m_text += ", ";
  m_text += argument;
}

ApiCall& ApiCall::On(VmbHandle_t handle) {
  m_handle = handle;
  if (m_texts) Add(m_pattern.camera = m_system.Record().HandleText(handle));
  return *this;
}

ApiCall& ApiCall::Camera(const char* name) {
  if (m_texts) {
    m_pattern.camera = name ? name : "";
    Add(QuotedText(name));
  }
  return Needs(name);
}

ApiCall& ApiCall::Feature(const char* name) {
  if (m_texts) {
    m_pattern.feature = name ? name : "";
    Add(QuotedText(name));
  }
  return Needs(name);
}

ApiCall& ApiCall::Value(const char* value) {
  if (m_texts) {
    m_pattern.value = value ? value : "";
    Add(QuotedText(value));
  }
  return Needs(value);
}

ApiCall& ApiCall::Value(std::int64_t value) {
  if (m_texts) Add(m_pattern.value = ValueText(value));
  return *this;
}

ApiCall& ApiCall::Value(double value) {
  if (m_texts) Add(m_pattern.value = ValueText(value));
  return *this;
}

ApiCall& ApiCall::Frame(const VmbFrame_t* frame) {
  if (m_texts) Add(m_pattern.value = m_system.Record().FrameText(m_handle, frame));
  return Needs(frame);
}

// Numbered before the call's own line is made, as it names the frame.
ApiCall& ApiCall::NewFrame(const VmbFrame_t* frame) {
  if (m_system.Record().NumberFrame(m_handle, frame)) m_new_frame = frame;
  return Frame(frame);
}

ApiCall& ApiCall::NoMoreFrames() {
  m_no_more_frames = true;
  return *this;
}

void ApiCall::CountFrames(VmbError_t result) {
  if (result && m_new_frame) m_system.Record().ForgetFrame(m_handle, m_new_frame);
  if (!result && m_no_more_frames) m_system.Record().ForgetFrames(m_handle);
}

ApiCall& ApiCall::Needs(const void* pointer) {
  m_arguments.Needs(pointer);
  return *this;
}

ApiCall& ApiCall::Needs(VmbInvalidationCallback callback) {
  m_arguments.Needs(callback);
  return *this;
}

ApiCall& ApiCall::Size(std::uint32_t given, std::size_t needed) {
  m_arguments.Size(given, needed);
  return *this;
}

ApiCall& ApiCall::WithoutStartup() {
  m_needs_startup = false;
  return *this;
}

CallRecord::Line ApiCall::Begin() {
  m_system.Record().Count();
  return m_texts ? m_system.Record().Begin(std::move(m_text) + ')') : 0;
}

VmbError_t ApiCall::Check() {
  if (m_needs_startup && !m_system.Started()) return VmbErrorApiNotStarted;
  if (m_texts) m_effect = m_system.FaultSet().ForCall(m_pattern);
  if (m_effect.delay.count() > 0) std::this_thread::sleep_for(m_effect.delay);
  if (m_effect.error && !m_effect.effective) return m_effect.error;
  if (m_effect.answer && m_effect.answer->untouched) {
    for (const OutParameter& result : m_results) {
      const std::span<const std::byte> bytes = BytesOf(result);
      m_before.emplace_back(bytes.begin(), bytes.end());
    }
  }
  return m_arguments.Error();
}

VmbError_t ApiCall::Falsify() {
  if (m_effect.done && m_pattern.call == "VmbFeatureCommandIsDone") {
    Write(m_results.front(), std::int64_t{*m_effect.done ? 1 : 0});
  }
  for (std::size_t i = 0; i < m_before.size(); ++i) std::ranges::copy(m_before[i], BytesOf(m_results[i]).begin());
  if (m_effect.answer) {
    const std::size_t known = std::min(m_results.size(), m_effect.answer->values.size());
    for (std::size_t i = 0; i < known; ++i) Write(m_results[i], m_effect.answer->values[i]);
  }
  return m_effect.error;
}

}  // namespace Simulator

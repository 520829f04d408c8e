// control/call_record.cpp
// The record of API calls, a line a call in the order in which they began.
#include "control/call_record.h"

#include <utility>

namespace Simulator {

CallRecord::Line CallRecord::Begin(std::string call) {
  const BMutexLock lock(m_mutex);
  if (!m_recording) return 0;
  m_entries.push_back({std::move(call), false, std::nullopt});
  if (m_entries.size() > kMostLines) {
    m_entries.pop_front();
    ++m_first;
  }
  return m_first + m_entries.size() - 1;
}

void CallRecord::End(Line line, std::optional<VmbError_t> result) {
  const BMutexLock lock(m_mutex);
  // Dropped while the call ran.
  if (line < m_first || line - m_first >= m_entries.size()) return;
  Entry& entry = m_entries[line - m_first];
  entry.ended = true;
  entry.result = result;
}

void CallRecord::Count() {
  const BMutexLock lock(m_mutex);
  ++m_total;
}

std::uint64_t CallRecord::Total() const {
  const BMutexLock lock(m_mutex);
  return m_total;
}

void CallRecord::SetRecording(bool on) {
  const BMutexLock lock(m_mutex);
  m_recording = on;
}

bool CallRecord::Recording() const {
  const BMutexLock lock(m_mutex);
  return m_recording;
}

void CallRecord::Clear() {
  const BMutexLock lock(m_mutex);
  m_first += m_entries.size();
  m_entries.clear();
  m_total = 0;
}

std::string CallRecord::Text() const {
  const BMutexLock lock(m_mutex);
  std::string text;
  for (const Entry& entry : m_entries) {
    text += entry.call;
    if (!entry.ended) text += " = ...";
    if (entry.result) text += " = " + std::to_string(*entry.result);
    text += '\n';
  }
  return text;
}

void CallRecord::NameHandle(VmbHandle_t handle, std::string name) {
  const BMutexLock lock(m_mutex);
  m_handles[handle].name = std::move(name);
}

void CallRecord::ForgetHandle(VmbHandle_t handle) {
  const BMutexLock lock(m_mutex);
  m_handles.erase(handle);
}

std::string CallRecord::HandleText(VmbHandle_t handle) const {
  if (!handle) return "null";
  if (handle == gVimbaHandle) return "system";
  const BMutexLock lock(m_mutex);
  const auto found = m_handles.find(handle);
  return found == m_handles.end() ? "unknown" : found->second.name;
}

bool CallRecord::NumberFrame(VmbHandle_t camera, const VmbFrame_t* frame) {
  const BMutexLock lock(m_mutex);
  const auto found = m_handles.find(camera);
  if (found == m_handles.end() || !frame) return false;
  Handle& handle = found->second;
  const bool added = handle.frames.emplace(frame, handle.next_frame).second;
  if (added) ++handle.next_frame;
  return added;
}

void CallRecord::ForgetFrame(VmbHandle_t camera, const VmbFrame_t* frame) {
  const BMutexLock lock(m_mutex);
  const auto found = m_handles.find(camera);
  if (found == m_handles.end() || found->second.frames.erase(frame) == 0) return;
  --found->second.next_frame;
}

void CallRecord::ForgetFrames(VmbHandle_t camera) {
  const BMutexLock lock(m_mutex);
  const auto found = m_handles.find(camera);
  if (found == m_handles.end()) return;
  found->second.frames.clear();
  found->second.next_frame = 0;
}

std::string CallRecord::FrameText(VmbHandle_t camera, const VmbFrame_t* frame) const {
  if (!frame) return "frame null";
  const BMutexLock lock(m_mutex);
  const auto handle = m_handles.find(camera);
  if (handle == m_handles.end()) return "frame unknown";
  const auto found = handle->second.frames.find(frame);
  return found == handle->second.frames.end() ? "frame unknown" : "frame " + std::to_string(found->second);
}

}  // namespace Simulator

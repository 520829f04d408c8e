// scripted_library.cpp
// A VimbaC library inside the test program: no camera, no thread, every answer as the test wants it.
#include "unit/scripted/scripted_library.h"

#include <algorithm>

VmbHandle_t ScriptedLibrary::Handle(std::uintptr_t number) { return reinterpret_cast<VmbHandle_t>(number); }

void ScriptedLibrary::Reset() {
  const BMutexLock lock(m_mutex);
  m_integers.clear();
  m_ranges.clear();
  m_floats.clear();
  m_text = {};
  m_entry = nullptr;
  m_claims.clear();
  m_camera_records.clear();
  m_failures.clear();
  m_calls.clear();
  m_announced.clear();
  m_queued.clear();
  m_on_integer = nullptr;
  m_on_queueing = nullptr;
  m_on_queued = nullptr;
}

void ScriptedLibrary::SetInteger(VmbHandle_t camera, const std::string& feature, VmbInt64_t value) {
  const BMutexLock lock(m_mutex);
  m_integers[{camera, feature}] = value;
}

VmbInt64_t ScriptedLibrary::Integer(VmbHandle_t camera, const std::string& feature) const {
  const BMutexLock lock(m_mutex);
  return m_integers.at({camera, feature});
}

void ScriptedLibrary::SetRange(const std::string& feature, VmbInt64_t min, VmbInt64_t max) {
  const BMutexLock lock(m_mutex);
  m_ranges[feature] = {min, max};
}

void ScriptedLibrary::SetFloat(const std::string& feature, double value) {
  const BMutexLock lock(m_mutex);
  m_floats[feature] = value;
}

void ScriptedLibrary::SetText(const Text& text) {
  const BMutexLock lock(m_mutex);
  m_text = text;
}

void ScriptedLibrary::SetEntry(const char* entry) {
  const BMutexLock lock(m_mutex);
  m_entry = entry;
}

void ScriptedLibrary::Fail(const std::string& function, VmbError_t code, const std::string& feature) {
  const BMutexLock lock(m_mutex);
  m_failures[{function, feature}] = code;
}

void ScriptedLibrary::OnQueueing(std::function<void()> act) {
  const BMutexLock lock(m_mutex);
  m_on_queueing = std::move(act);
}

void ScriptedLibrary::OnQueued(std::function<void(const VmbFrame_t*)> act) {
  const BMutexLock lock(m_mutex);
  m_on_queued = std::move(act);
}

void ScriptedLibrary::OnInteger(std::function<void(VmbHandle_t camera)> act) {
  const BMutexLock lock(m_mutex);
  m_on_integer = std::move(act);
}

void ScriptedLibrary::Mend() {
  const BMutexLock lock(m_mutex);
  m_failures.clear();
}

std::vector<std::string> ScriptedLibrary::Calls() const {
  const BMutexLock lock(m_mutex);
  return m_calls;
}

void ScriptedLibrary::ClearCalls() {
  const BMutexLock lock(m_mutex);
  m_calls.clear();
}

std::vector<const VmbFrame_t*> ScriptedLibrary::Announced() const {
  const BMutexLock lock(m_mutex);
  return m_announced;
}

std::vector<const VmbFrame_t*> ScriptedLibrary::Queued() const {
  const BMutexLock lock(m_mutex);
  return m_queued;
}

VmbError_t ScriptedLibrary::Record(const std::string& function, const std::string& feature,
                                   const std::string& argument) {
  const BMutexLock lock(m_mutex);
  const std::string separator = !feature.empty() && !argument.empty() ? ", " : "";
  m_calls.push_back(function + "(" + feature + separator + argument + ")");
  for (const std::string& named : {feature, std::string()}) {
    if (const auto failure = m_failures.find({function, named}); failure != m_failures.end()) return failure->second;
  }
  return VmbErrorSuccess;
}

bool ScriptedLibrary::Find(VmbHandle_t camera, const std::string& feature, VmbInt64_t& value) const {
  const BMutexLock lock(m_mutex);
  const auto found = m_integers.find({camera, feature});
  if (found == m_integers.end()) return false;
  value = found->second;
  return true;
}

bool ScriptedLibrary::FindRange(const std::string& feature, VmbInt64_t& min, VmbInt64_t& max) const {
  const BMutexLock lock(m_mutex);
  const auto found = m_ranges.find(feature);
  if (found == m_ranges.end()) return false;
  std::tie(min, max) = found->second;
  return true;
}

bool ScriptedLibrary::FindFloat(const std::string& feature, double& value) const {
  const BMutexLock lock(m_mutex);
  const auto found = m_floats.find(feature);
  if (found == m_floats.end()) return false;
  value = found->second;
  return true;
}

ScriptedLibrary::Text ScriptedLibrary::TheText() const {
  const BMutexLock lock(m_mutex);
  return m_text;
}

const char* ScriptedLibrary::TheEntry() const {
  const BMutexLock lock(m_mutex);
  return m_entry;
}

void ScriptedLibrary::SetClaimedCameras(const std::vector<VmbUint32_t>& claims) {
  const BMutexLock lock(m_mutex);
  m_claims = claims;
}

void ScriptedLibrary::SetCameraRecords(const std::vector<VmbCameraInfo_t>& records) {
  const BMutexLock lock(m_mutex);
  m_camera_records = records;
}

std::vector<VmbCameraInfo_t> ScriptedLibrary::CameraRecords() const {
  const BMutexLock lock(m_mutex);
  return m_camera_records;
}

VmbUint32_t ScriptedLibrary::NextClaim() {
  const BMutexLock lock(m_mutex);
  if (m_claims.empty()) return 0;
  const VmbUint32_t claim = m_claims.front();
  if (m_claims.size() > 1) m_claims.erase(m_claims.begin());
  return claim;
}

void ScriptedLibrary::Announce(const VmbFrame_t* frame) {
  const BMutexLock lock(m_mutex);
  m_announced.push_back(frame);
}

// What is called may call the library, here and below.
void ScriptedLibrary::BeginInteger(VmbHandle_t camera) {
  std::function<void(VmbHandle_t)> on_integer;
  {
    const BMutexLock lock(m_mutex);
    on_integer = m_on_integer;
  }
  if (on_integer) on_integer(camera);
}

void ScriptedLibrary::BeginQueueing() {
  std::function<void()> on_queueing;
  {
    const BMutexLock lock(m_mutex);
    on_queueing = m_on_queueing;
  }
  if (on_queueing) on_queueing();
}

void ScriptedLibrary::Queue(const VmbFrame_t* frame) {
  std::function<void(const VmbFrame_t*)> on_queued;
  {
    const BMutexLock lock(m_mutex);
    m_queued.push_back(frame);
    on_queued = m_on_queued;
  }
  if (on_queued) on_queued(frame);
}

void ScriptedLibrary::Flush() {
  const BMutexLock lock(m_mutex);
  m_queued.clear();
}

ScriptedLibrary& Library() {
  static ScriptedLibrary library;
  return library;
}

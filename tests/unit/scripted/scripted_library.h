// scripted_library.h
// A VimbaC library inside the test program: no camera, no thread, every answer as the test wants it.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "VimbaC.h"
#include "bmutex.h"

// One for the program; a test resets it. Every call is recorded and succeeds unless it is made to fail. Handles are
// whatever a test takes for one. [any thread]
class ScriptedLibrary {
 public:
  // The text of the string features. It is copied as it is, as far as the buffer goes; no zero is added.
  struct Text {
    VmbUint32_t max_length = 0;
    std::string content;
  };

  static VmbHandle_t Handle(std::uintptr_t number);

  void Reset();
  // Integer features are there once they have a value, and ranges once they have one. The other features are all there;
  // a flag is set where an integer of its name is not 0.
  void SetInteger(VmbHandle_t camera, const std::string& feature, VmbInt64_t value);
  VmbInt64_t Integer(VmbHandle_t camera, const std::string& feature) const;
  void SetRange(const std::string& feature, VmbInt64_t min, VmbInt64_t max);
  // A floating-point feature without a value leaves the caller's as it is.
  void SetFloat(const std::string& feature, double value);
  void SetText(const Text& text);
  // The entry of every enumeration; the text stays the test's. At first none, as a null pointer.
  void SetEntry(const char* entry);
  // Every call of this function, of this feature where one is named, answers with this code and does nothing.
  void Fail(const std::string& function, VmbError_t code, const std::string& feature = "");
  // Called at the beginning of every call that queues a frame, whatever it answers.
  void OnQueueing(std::function<void()> act);
  // Called for every frame that is queued, as a library may call back before its answer has been seen.
  void OnQueued(std::function<void(const VmbFrame_t*)> act);
  // Called at the beginning of every call that reads or writes an integer feature, whatever it answers.
  void OnInteger(std::function<void(VmbHandle_t camera)> act);
  // From now on nothing fails.
  void Mend();

  // `VmbFeatureIntSet(Width, 32)`, in their order.
  std::vector<std::string> Calls() const;
  void ClearCalls();
  // How many cameras each listing claims to have found, one after the other; then the last. Their records are empty
  // beyond those that are set. A listing without a claim succeeds and writes nothing.
  static constexpr VmbUint32_t kNoClaim = ~VmbUint32_t{0};
  void SetClaimedCameras(const std::vector<VmbUint32_t>& claims);
  void SetCameraRecords(const std::vector<VmbCameraInfo_t>& records);
  // The frames that were announced, and those that are queued.
  std::vector<const VmbFrame_t*> Announced() const;
  std::vector<const VmbFrame_t*> Queued() const;

  // What the calls do. Each records the call and gives the code that the function is to answer with.
  VmbError_t Record(const std::string& function, const std::string& feature = "", const std::string& argument = "");
  bool Find(VmbHandle_t camera, const std::string& feature, VmbInt64_t& value) const;
  bool FindRange(const std::string& feature, VmbInt64_t& min, VmbInt64_t& max) const;
  bool FindFloat(const std::string& feature, double& value) const;
  void BeginInteger(VmbHandle_t camera);
  Text TheText() const;
  const char* TheEntry() const;
  VmbUint32_t NextClaim();
  std::vector<VmbCameraInfo_t> CameraRecords() const;
  void Announce(const VmbFrame_t* frame);
  void BeginQueueing();
  void Queue(const VmbFrame_t* frame);
  void Flush();

 private:
  using FeatureOfCamera = std::pair<VmbHandle_t, std::string>;

  mutable BMutex m_mutex;
  std::map<FeatureOfCamera, VmbInt64_t> m_integers KEL_GUARDED_BY(m_mutex);
  std::map<std::string, std::pair<VmbInt64_t, VmbInt64_t>> m_ranges KEL_GUARDED_BY(m_mutex);
  std::map<std::string, double> m_floats KEL_GUARDED_BY(m_mutex);
  Text m_text KEL_GUARDED_BY(m_mutex);
  const char* m_entry KEL_GUARDED_BY(m_mutex) = nullptr;
  std::vector<VmbUint32_t> m_claims KEL_GUARDED_BY(m_mutex);
  std::vector<VmbCameraInfo_t> m_camera_records KEL_GUARDED_BY(m_mutex);
  std::map<std::pair<std::string, std::string>, VmbError_t> m_failures KEL_GUARDED_BY(m_mutex);
  std::vector<std::string> m_calls KEL_GUARDED_BY(m_mutex);
  std::vector<const VmbFrame_t*> m_announced KEL_GUARDED_BY(m_mutex);
  std::vector<const VmbFrame_t*> m_queued KEL_GUARDED_BY(m_mutex);
  std::function<void(VmbHandle_t)> m_on_integer KEL_GUARDED_BY(m_mutex);
  std::function<void()> m_on_queueing KEL_GUARDED_BY(m_mutex);
  std::function<void(const VmbFrame_t*)> m_on_queued KEL_GUARDED_BY(m_mutex);
};

ScriptedLibrary& Library();

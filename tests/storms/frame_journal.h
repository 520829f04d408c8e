// frame_journal.h
// What the messages say of every frame of a device: which arrived, which a snap got, which a stop listed.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "bmutex.h"
#include "imagingdevice.h"
#include "storms/findings.h"

// Installed as the host's sink for as long as it lives. Every message must be whole; a snap must report frames in the
// order of their ids and each only once; a stop must list what the snaps since the start reported. [any thread]
class FrameJournal final : public ImagingDevice::BSink {
 public:
  // Room for `most_frames` ids of each device, so that the journal itself does not grow meanwhile.
  FrameJournal(Findings& findings, std::size_t most_frames);
  ~FrameJournal() override;
  FrameJournal(const FrameJournal&) = delete;
  FrameJournal& operator=(const FrameJournal&) = delete;

  void OnShowInfo(const wchar_t* text, const wchar_t* caption) override;
  void OnLogMessage(const WString& text, bool important) override;

  // Every frame that a snap has reported must have arrived. To be called when no callback runs: a snap may have its
  // frame before the callback has shown its message.
  void CheckArrivals() const;

  std::uint64_t Messages() const;
  // Frames that a snap reported, and those of them that came before an earlier one.
  struct Counts {
    std::uint64_t reported = 0;
    std::uint64_t overtaken = 0;
  };
  Counts CountsOf(const std::wstring& camera) const;
  // Frames may overtake each other from now on: they are counted, not reported.
  void AllowOvertaking();

 private:
  struct Device {
    std::vector<bool> arrived;
    std::vector<bool> reported;
    std::uint64_t last_reported = 0;
    std::vector<std::uint64_t> since_start;
    Counts counts;
  };

  void OnArrival(Device& device, const std::wstring& message) KEL_REQUIRES(m_mutex);
  void OnSnap(Device& device, const std::wstring& message) KEL_REQUIRES(m_mutex);
  void OnStop(const Device& device, const std::wstring& message) KEL_REQUIRES(m_mutex);
  void Defect(const std::wstring& message, const std::string& what) const;

  Findings& m_findings;
  const std::size_t m_most_frames;
  ImagingDevice::BSink* m_before;
  mutable BMutex m_mutex;
  bool m_overtaking_allowed KEL_GUARDED_BY(m_mutex) = false;
  std::uint64_t m_messages KEL_GUARDED_BY(m_mutex) = 0;
  std::map<std::wstring, Device> m_devices KEL_GUARDED_BY(m_mutex);
};

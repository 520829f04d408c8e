// silent_sink.h
// The host's sink of the sweeps: nothing may be reported once every device is released.
#pragma once

#include <atomic>

#include "imagingdevice.h"

// Installed as long as it lives. [any thread]
class SilentSink final : public ImagingDevice::BSink {
 public:
  SilentSink() : m_before(ImagingDevice::InstallSink(this)) {}
  ~SilentSink() override { ImagingDevice::InstallSink(m_before); }

  void OnShowInfo(const wchar_t* /*text*/, const wchar_t* /*caption*/) override { Count(); }
  void OnLogMessage(const WString& /*text*/, bool /*important*/) override { Count(); }

  void Expect(bool silence) { m_silence = silence; }
  // Messages in times of silence since the last call.
  int Disturbances() { return m_disturbances.exchange(0); }

 private:
  void Count() {
    if (m_silence) ++m_disturbances;
  }

  std::atomic<bool> m_silence{false};
  std::atomic<int> m_disturbances{0};
  ImagingDevice::BSink* const m_before;
};

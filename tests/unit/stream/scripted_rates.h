// scripted_rates.h
// Cameras of the scripted library that have nothing but a stream rate.
#pragma once

#include <string>

#include "bmutex.h"
#include "stream/bandwidth_partners.h"
#include "stream/stream_rate.h"
#include "unit/scripted/scripted_library.h"
#include "vimba/vimba_camera.h"

inline constexpr char kRateFeature[] = "StreamBytesPerSecond";

// One camera and what adapts its rate. The library is reset before the first is made.
struct ScriptedRate final : BandwidthPartners::Listener {
  VimbaCamera camera;
  BRecursiveMutex snap_mutex;
  StreamRate rate{camera, snap_mutex};
  BandwidthPartners partners{rate, *this};
  int lost_frames_of_partners = 0;

  ScriptedRate(int number, VmbInt64_t bytes_per_s) {
    const VmbHandle_t handle = ScriptedLibrary::Handle(static_cast<std::uintptr_t>(number));
    camera.Adopt(handle);
    camera.SetNames(L"DEV", WString::Format(L"Vimba_Scripted_%d", number));
    SetOnCamera(bytes_per_s);
  }
  void SetOnCamera(VmbInt64_t bytes_per_s) { Library().SetInteger(camera.Handle(), kRateFeature, bytes_per_s); }
  VmbInt64_t OnCamera() const { return Library().Integer(camera.Handle(), kRateFeature); }

 private:
  void OnPartnerLostFrame() override { ++lost_frames_of_partners; }
};

// frame_rate.cpp
// How fast the camera can deliver, and whether it may run in its fast mode.
#include "stream/frame_rate.h"

#include "bimagingdevicecontrol.h"
#include "diagnostics/log_collector.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_camera.h"
#include "vimba/vimba_features.h"

bool FrameRate::FramesPerSecond(BImagingDeviceControl* shutter, double& frames_per_second) const {
  BLogCollector log(m_camera.Prefix() + L"FramesPerSecond()");
  const VmbError_t code = Vimba::GetFloat(m_camera.Handle(), Feature::kAcquisitionFrameRateLimit, frames_per_second);
  if (code != VmbErrorSuccess) {
    log << L"AcquisitionFrameRateLimit failure : " << code << L'\n';
    return false;
  }
  log << L"AcquisitionFrameRateLimit = " << frames_per_second << L'\n';
  if (m_camera_frequency > 0.0 && frames_per_second > m_camera_frequency) {
    frames_per_second = m_camera_frequency;
    log << L"AcquisitionFrameRateLimit (defined camera INI file) = " << m_camera_frequency << L'\n';
  }
  if (shutter && shutter->Value() <= m_max_shutter_for_fast) return true;
  log << L"current shutter > max_shutter_for_fast. FramesPerSecond() returns false" << L'\n';
  return false;
}

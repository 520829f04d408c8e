// bimagingdevice.h
// The device that a driver hands to the host.
#pragma once

#include <atomic>
#include <cstdint>

#include "berror.h"
#include "bimagingdevicecontrol.h"
#include "bimagingdevicetrigger.h"
#include "bsize.h"
#include "kel_imagingdevice_api.h"

class BBaseAoi;

// One open camera. The operations are in the host's table order (1 to 36): hosts and drivers call them by place, so
// none may be added, moved or taken away. Controls and trigger that the device gives out are its own and live as long
// as it does. Where memory runs out an operation may throw std::bad_alloc; the device can then be used on and released.
// A device is driven from one thread at a time. [host thread, all operations]
class KEL_IMAGINGDEVICE_API BImagingDevice {
 public:
  BImagingDevice() = default;
  BImagingDevice(const BImagingDevice&) = delete;
  BImagingDevice& operator=(const BImagingDevice&) = delete;

  virtual ~BImagingDevice();                                    // 1: closes the camera
  virtual bool IsOpen() const = 0;                              // 2
  virtual const wchar_t* TypeName() const = 0;                  // 3: the driver's name; a constant
  virtual const wchar_t* Name() const = 0;                      // 4: the camera's identifier; the device's own
  virtual BSize ImageSize(bool& rotated) const = 0;             // 5: as the camera delivers, before a quarter turn
  virtual int MaxShutterForFast() const = 0;                    // 6: in the shutter control's unit; -1 when not known
  virtual bool FramesPerSecond(double& frames_per_second) = 0;  // 7: the highest rate now; false when not known
  // 8: colour images from now on, or mono ones. False when the camera refuses; it then stays as it was.
  virtual bool SetColorMode(bool on) = 0;
  virtual bool HasWhiteBalance() const = 0;                     // 9: 10 to 14 mean something
  virtual bool SetWhiteBalanceBlue(int value, bool color) = 0;  // 10: color: kept as the value of colour mode too
  virtual bool SetWhiteBalanceRed(int value, bool color) = 0;   // 11
  virtual int ColorBlueBalance() const = 0;                     // 12: the value of colour mode, whichever mode is on
  virtual int ColorRedBalance() const = 0;                      // 13
  virtual bool WhiteBalanceRange(int& min, int& max) = 0;       // 14: untouched on false
  virtual bool WhiteBalanceOnce() = 0;                          // 15: false when the camera cannot
  virtual double LastSnapTime() const;                          // 16: milliseconds, as the driver noted them; else 0
  // 17: makes ready for one image, or starts a continuous run. Throws BError; nothing runs then.
  virtual void StartSnap(bool one_shot) = 0;
  // 18: the next image, into the area. Success or what went wrong; the area's pixels are unspecified after a failure.
  // Throws NBoard::Exception when the area is of a kind that the image does not fit.
  virtual BError Snap(BBaseAoi* aoi, std::uint32_t timeout_ms) = 0;
  virtual void StopSnap() = 0;  // 19: ends what 17 began; throws BError
  virtual void Refresh() = 0;   // 20
  // 21 to 30: null when the camera has none.
  virtual BImagingDeviceControl* GainControl() = 0;                    // 21
  virtual BImagingDeviceControl* OffsetControl() = 0;                  // 22
  virtual BImagingDeviceControl* GammaControl() = 0;                   // 23
  virtual BImagingDeviceControl* SharpnessControl() = 0;               // 24
  virtual BImagingDeviceControl* ShutterControl() = 0;                 // 25
  virtual BImagingDeviceControl* BrightnessControl() = 0;              // 26
  virtual BImagingDeviceControl* HueControl() = 0;                     // 27
  virtual BImagingDeviceControl* SaturationControl() = 0;              // 28
  virtual BImagingDeviceControl* TemperatureControl(bool sensor) = 0;  // 29: of the sensor, else of the main board
  virtual BImagingDeviceTrigger* Trigger() = 0;                        // 30
  virtual bool IsColor() const = 0;                                    // 31
  virtual bool AutoFocusOnce();                                        // 32: false when the camera cannot, as here
  virtual std::int64_t GetBandwidth() = 0;                             // 33: bytes per second
  virtual bool SetBandwidth(std::int32_t bytes_per_s) = 0;             // 34
  // 35, 36: cameras that share a link. False when the other device is none of this driver's; 36 also when it was none.
  virtual bool AddBandwidthPartner(BImagingDevice* partner) = 0;     // 35
  virtual bool RemoveBandwidthPartner(BImagingDevice* partner) = 0;  // 36

 protected:
  // [any thread]
  void SetLastSnapTime(double time_ms) { m_last_snap_time_ms = time_ms; }

 private:
  std::atomic<double> m_last_snap_time_ms = 0.0;
};

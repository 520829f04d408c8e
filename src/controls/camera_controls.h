// camera_controls.h
// What a profile says of a camera's controls, and the white balance of both modes.
#pragma once

class BCamProfile;
class BImagingDeviceControl;
class BImagingDeviceImpl;
class IProfile;

// Works on the controls in a device's table, which the device makes before and deletes after. [host thread]
class CameraControls {
 public:
  // The device, whose part this object is, must outlive it.
  explicit CameraControls(const BImagingDeviceImpl& device) : m_device(device) {}
  CameraControls(const CameraControls&) = delete;
  CameraControls& operator=(const CameraControls&) = delete;

  // The profile's limits of gain and exposure, its start values of all controls and its white balance.
  void ApplyProfileLimits(const IProfile& profile);
  // The longest exposure of the fast mode: the profile's, or else the exposure control's own maximum.
  int MaxShutterForFast(const BCamProfile& profile) const;

  // Whether both balance ratios are there and available.
  bool HasWhiteBalance() const;
  // True when the camera holds the value afterwards. `color`: it is also the value of colour mode.
  bool SetWhiteBalanceBlue(int value, bool color);
  bool SetWhiteBalanceRed(int value, bool color);
  int ColorBlueBalance() const { return m_color_balance.blue; }
  int ColorRedBalance() const { return m_color_balance.red; }
  // Brings the camera to the values of colour mode, or of mono mode, where it has others.
  void RestoreWhiteBalance(bool color);
  // Writes the values of colour mode into the profile where it holds others.
  void SaveWhiteBalance(BCamProfile& profile) const;

 private:
  // Hundredths.
  struct Balance {
    int blue = 100;
    int red = 100;
  };

  void ApplyStartValues(const IProfile& profile);
  void ReadWhiteBalance(const IProfile& profile);
  bool SetBalance(BImagingDeviceControl* control, int Balance::*part, int value, bool color);

  const BImagingDeviceImpl& m_device;
  // What the camera has been given last, and what it gets with each mode.
  Balance m_current_balance;
  Balance m_color_balance;
  Balance m_mono_balance;
};

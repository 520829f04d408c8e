// bimagingdeviceimpl.h
// What a driver's implementation of one camera shares with those of other drivers: the profile and the controls.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "bcamprofile.h"
#include "bimagingdevicecontrol.h"
#include "bimagingdevicetrigger.h"
#include "bsize.h"
#include "bsmartref.h"
#include "kel_imagingdevice_api.h"
#include "nboard.h"

// The virtual operations are in the host's table order, before which a driver puts none of its own. [host thread]
class KEL_IMAGINGDEVICE_API BImagingDeviceImpl {
 public:
  BImagingDeviceImpl();
  BImagingDeviceImpl(const BImagingDeviceImpl&) = delete;
  BImagingDeviceImpl& operator=(const BImagingDeviceImpl&) = delete;

  // Deletes the controls that are left and drops the profile.
  virtual ~BImagingDeviceImpl();
  virtual const wchar_t* ApiName() const = 0;
  virtual const wchar_t* Identifier() const = 0;
  virtual BSize ImageSize(bool& rotated) const = 0;
  virtual bool FramesPerSecond(double& frames_per_second) = 0;
  // The control of this type; null when the camera has none, and for numbers that are no type.
  virtual BImagingDeviceControl* Control(NBoard::CONTROLTYPE type) const;
  virtual bool Initialize(BSmartRef<BCamProfile> profile) = 0;
  virtual bool IsColor() const = 0;
  virtual bool SetWhiteBalanceBlue(int value, bool color) = 0;
  virtual bool SetWhiteBalanceRed(int value, bool color) = 0;
  virtual int ColorBlueBalance() const = 0;
  virtual int ColorRedBalance() const = 0;
  // Zeroed memory, kept in physical memory where the system allows it to this process, ordinary memory elsewhere. Null
  // when the system has none, and for no bytes. It is freed with the size that was asked for; null is skipped.
  // [any thread]
  virtual void* AllocateLockedMemory(std::size_t bytes);
  virtual void FreeLockedMemory(void* memory, std::size_t bytes);
  virtual bool IsOpen() const = 0;
  virtual BImagingDeviceTrigger* Trigger() const = 0;

 protected:
  // Null until a profile is set; setting one drops the one before.
  const BSmartRef<BCamProfile>& Profile() const { return m_profile; }
  void SetProfile(BSmartRef<BCamProfile> profile) { m_profile = std::move(profile); }
  // Takes the control under its type and deletes the one before. Null, and a type that is none, are dropped.
  void SetControl(std::unique_ptr<BImagingDeviceControl> control);
  // Deletes all controls; the host must hold none of them any more.
  void DeleteControls();

 private:
  BSmartRef<BCamProfile> m_profile;
  std::vector<std::unique_ptr<BImagingDeviceControl>> m_controls;  // by NBoard::CONTROLTYPE
};

// driver_module.h
// The built module as a host gets it: loaded by name, known by its exports alone.
#pragma once

#include <string>

#include "driver/kel_camera_vimba.h"

class DriverModule {
 public:
  // Loads the module next to the test program; throws std::runtime_error that names what is missing.
  DriverModule();
  explicit DriverModule(const std::string& file);
  ~DriverModule();
  DriverModule(const DriverModule&) = delete;
  DriverModule& operator=(const DriverModule&) = delete;

  CreateImagingDeviceFunction* create = nullptr;
  CreateImagingDeviceFunction* vimba_create = nullptr;
  ReleaseImagingDeviceFunction* release = nullptr;
  ReleaseImagingDeviceFunction* vimba_release = nullptr;
  ObjectIdentifierListFunction* list = nullptr;
  ObjectIdentifierListFunction* vimba_list = nullptr;

 private:
  void* Resolve(const char* name) const;

  void* m_library = nullptr;
};

// Loaded once for a test program.
DriverModule& TheModule();

// A device that is released with the object; null when the creation failed.
class OpenDevice {
 public:
  explicit OpenDevice(const BSmartRef<BCamProfile>& profile) : m_device(TheModule().create(profile)) {}
  ~OpenDevice() { Release(); }
  OpenDevice(const OpenDevice&) = delete;
  OpenDevice& operator=(const OpenDevice&) = delete;

  bool Release() { return TheModule().release(&m_device); }
  BImagingDevice* Get() const { return m_device; }
  BImagingDevice* operator->() const { return m_device; }
  explicit operator bool() const { return m_device != nullptr; }

 private:
  BImagingDevice* m_device;
};

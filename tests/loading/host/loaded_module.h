// loaded_module.h
// A module between its loading and its unloading, by the means of the operating system alone.
#pragma once

#include <string>

#include "driver/kel_camera_vimba.h"

class LoadedModule {
 public:
  // Throws std::runtime_error that names what is missing.
  explicit LoadedModule(const std::string& file);
  // Unloads it.
  ~LoadedModule();
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  // Whether a library of this file is in the process now.
  static bool IsLoaded(const std::string& file);

  CreateImagingDeviceFunction* create = nullptr;
  ReleaseImagingDeviceFunction* release = nullptr;
  ObjectIdentifierListFunction* list = nullptr;

 private:
  void* Find(const char* name) const;

  void* m_library;
};

// module.h
// A camera driver module: the library and its six exports.
#pragma once

#include <filesystem>

#include "driver/kel_camera_vimba.h"
#include "platform.h"

namespace Kelcam {

class Module {
 public:
  // Throws Failure that names the file or the export that it lacks.
  explicit Module(const std::filesystem::path& file);

  BImagingDevice* Create(const BSmartRef<BCamProfile>& profile) const { return m_create(profile); }
  void Release(BImagingDevice* device) const { m_release(&device); }
  void ListIdentifiers(DList<WString>& list) const { m_list(list); }

 private:
  SharedLibrary m_library;
  CreateImagingDeviceFunction* m_create;
  ReleaseImagingDeviceFunction* m_release;
  ObjectIdentifierListFunction* m_list;
};

}  // namespace Kelcam

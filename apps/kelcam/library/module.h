// module.h
// A camera driver module: the library and its six exports.
#pragma once

#include <filesystem>
#include <optional>

#include "base/platform.h"
#include "bmutex.h"
#include "driver/kel_camera_vimba.h"
#include "library/vimba_library.h"

namespace Kelcam {

class Module {
 public:
  // Throws Failure that names the file, the export that it lacks, or the VimbaC library that it needs and that there is
  // not.
  explicit Module(const std::filesystem::path& file);

  // [any thread] One at a time: who calls while another call runs waits for it.
  BImagingDevice* Create(const BSmartRef<BCamProfile>& profile) const {
    const BMutexLock lock(m_exports);
    return m_create(profile);
  }
  void Release(BImagingDevice* device) const {
    const BMutexLock lock(m_exports);
    m_release(&device);
  }
  void ListIdentifiers(DList<WString>& list) const {
    const BMutexLock lock(m_exports);
    m_list(list);
  }
  // While it is held, none of these calls runs: for whoever starts the library, which they start and end, too.
  BMutex& Exports() const { return m_exports; }

  // The library by which it reaches cameras; none for a module that needs none.
  const std::optional<VimbaLibrary>& Vimba() const { return m_vimba; }

 private:
  SharedLibrary m_library;
  std::optional<VimbaLibrary> m_vimba;
  CreateImagingDeviceFunction* m_create;
  ReleaseImagingDeviceFunction* m_release;
  ObjectIdentifierListFunction* m_list;
  mutable BMutex m_exports;
};

}  // namespace Kelcam

// module.cpp
// A camera driver module: the library and its six exports.
#include "library/module.h"

#include "base/failure.h"
#include "base/utf8.h"

namespace Kelcam {
namespace {

SharedLibrary Load(const std::filesystem::path& file) {
  try {
    return SharedLibrary(file);
  } catch (const LoadFailure& failure) {
    if (failure.Missing() != kVimbaFileName) throw;
    throw Failure(
        std::string("No VimbaC library was found: ") + kVimbaFileName +
        " is missing\n  real cameras: install the vendor's Vimba, or name the library's folder (kelcam --vimbac "
        "FOLDER)\n  without a camera: kelcam --simulated");
  }
}

template <class Function>
Function* Export(const SharedLibrary& library, const std::filesystem::path& file, const char* name) {
  void* address = library.Symbol(name);
  if (!address) throw Failure("the module " + Utf8(file) + " does not export " + name);
  return reinterpret_cast<Function*>(address);
}

// Each function has two names. Both must be there: a library with only one of them is no such module.
template <class Function>
Function* ExportWithAlias(const SharedLibrary& library, const std::filesystem::path& file, const char* name) {
  Export<Function>(library, file, ("Vimba_" + std::string(name)).c_str());
  return Export<Function>(library, file, name);
}

}  // namespace

Module::Module(const std::filesystem::path& file)
    : m_library(Load(file)),
      m_vimba(VimbaLibrary::Of(m_library)),
      m_create(ExportWithAlias<CreateImagingDeviceFunction>(m_library, file, "CreateImagingDevice")),
      m_release(ExportWithAlias<ReleaseImagingDeviceFunction>(m_library, file, "ReleaseImagingDevice")),
      m_list(ExportWithAlias<ObjectIdentifierListFunction>(m_library, file, "ObjectIdentifierList")) {}

}  // namespace Kelcam

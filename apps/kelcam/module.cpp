// module.cpp
// A camera driver module: the library and its six exports.
#include "module.h"

#include "failure.h"
#include "utf8.h"

namespace Kelcam {
namespace {

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
    : m_library(file),
      m_create(ExportWithAlias<CreateImagingDeviceFunction>(m_library, file, "CreateImagingDevice")),
      m_release(ExportWithAlias<ReleaseImagingDeviceFunction>(m_library, file, "ReleaseImagingDevice")),
      m_list(ExportWithAlias<ObjectIdentifierListFunction>(m_library, file, "ObjectIdentifierList")) {}

}  // namespace Kelcam

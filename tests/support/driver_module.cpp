// driver_module.cpp
// The built module as a host gets it: loaded by name, known by its exports alone.
#include "support/driver_module.h"

#include <filesystem>
#include <stdexcept>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

#if defined(_WIN32)
// Windows looks next to the program first.
std::string FileNextToTheProgram() { return "kelCameraVimba.dll"; }

void* LoadLibraryFile(const char* file) { return LoadLibraryA(file); }
void UnloadLibrary(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }
void* FindName(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}
#else
// By its whole path: a sanitizer's dlopen does not know the program's run path.
std::string FileNextToTheProgram() {
  return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "libkelCameraVimba.so").string();
}

void* LoadLibraryFile(const char* file) { return dlopen(file, RTLD_NOW | RTLD_LOCAL); }
void UnloadLibrary(void* library) { dlclose(library); }
void* FindName(void* library, const char* name) { return dlsym(library, name); }
#endif

}  // namespace

DriverModule::DriverModule() : DriverModule(FileNextToTheProgram()) {}

DriverModule::DriverModule(const std::string& file) : m_library(LoadLibraryFile(file.c_str())) {
  if (!m_library) throw std::runtime_error("cannot load " + file);
  create = reinterpret_cast<CreateImagingDeviceFunction*>(Resolve("CreateImagingDevice"));
  vimba_create = reinterpret_cast<CreateImagingDeviceFunction*>(Resolve("Vimba_CreateImagingDevice"));
  release = reinterpret_cast<ReleaseImagingDeviceFunction*>(Resolve("ReleaseImagingDevice"));
  vimba_release = reinterpret_cast<ReleaseImagingDeviceFunction*>(Resolve("Vimba_ReleaseImagingDevice"));
  list = reinterpret_cast<ObjectIdentifierListFunction*>(Resolve("ObjectIdentifierList"));
  vimba_list = reinterpret_cast<ObjectIdentifierListFunction*>(Resolve("Vimba_ObjectIdentifierList"));
}

DriverModule::~DriverModule() { UnloadLibrary(m_library); }

void* DriverModule::Resolve(const char* name) const {
  void* function = FindName(m_library, name);
  if (!function) throw std::runtime_error(std::string("the module does not export ") + name);
  return function;
}

// Loaded to the end: a leak checker knows what the module leaves behind on purpose by names, which go with the module.
DriverModule& TheModule() {
  static DriverModule& module = *new DriverModule;
  return module;
}

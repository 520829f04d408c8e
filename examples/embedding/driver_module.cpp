// driver_module.cpp
// Loading a module, the one thing here that differs between operating systems.
#include "driver_module.h"

#include <filesystem>
#include <stdexcept>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

#if defined(_WIN32)

void* Load(const std::filesystem::path& file) {
  // With this flag the loader looks next to the module for what the module needs.
  return LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

void* Find(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

#else

void* Load(const std::filesystem::path& file) { return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL); }

void* Find(void* library, const char* name) { return dlsym(library, name); }

#endif

template <class Function>
Function* Export(void* library, const char* name) {
  void* address = Find(library, name);
  if (!address) throw std::runtime_error(std::string("the module lacks ") + name);
  return reinterpret_cast<Function*>(address);
}

}  // namespace

DriverModule::DriverModule(const std::string& file) {
  void* library = Load(std::filesystem::absolute(file).make_preferred());
  if (!library) throw std::runtime_error("cannot load " + file);
  create = Export<CreateImagingDeviceFunction>(library, "CreateImagingDevice");
  release = Export<ReleaseImagingDeviceFunction>(library, "ReleaseImagingDevice");
  list = Export<ObjectIdentifierListFunction>(library, "ObjectIdentifierList");
}

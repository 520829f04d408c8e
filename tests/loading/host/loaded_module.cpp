// loaded_module.cpp
// A module between its loading and its unloading, by the means of the operating system alone.
#include "loaded_module.h"

#include <stdexcept>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

#if defined(_WIN32)

void* Load(const char* file) { return LoadLibraryA(file); }
void* Address(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}
void Unload(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }
bool IsThere(const char* file) { return GetModuleHandleA(file) != nullptr; }

#else

void* Load(const char* file) { return dlopen(file, RTLD_NOW | RTLD_LOCAL); }
void* Address(void* library, const char* name) { return dlsym(library, name); }
void Unload(void* library) { dlclose(library); }
bool IsThere(const char* file) {
  void* const library = dlopen(file, RTLD_NOW | RTLD_NOLOAD);
  if (library) dlclose(library);
  return library != nullptr;
}

#endif

}  // namespace

LoadedModule::LoadedModule(const std::string& file) : m_library(Load(file.c_str())) {
  if (!m_library) throw std::runtime_error("cannot load " + file);
  create = reinterpret_cast<CreateImagingDeviceFunction*>(Find("CreateImagingDevice"));
  release = reinterpret_cast<ReleaseImagingDeviceFunction*>(Find("ReleaseImagingDevice"));
  list = reinterpret_cast<ObjectIdentifierListFunction*>(Find("ObjectIdentifierList"));
  // The second names lead to the same.
  for (const char* name : {"Vimba_CreateImagingDevice", "Vimba_ReleaseImagingDevice", "Vimba_ObjectIdentifierList"}) {
    Find(name);
  }
}

LoadedModule::~LoadedModule() { Unload(m_library); }

bool LoadedModule::IsLoaded(const std::string& file) { return IsThere(file.c_str()); }

void* LoadedModule::Find(const char* name) const {
  void* const address = Address(m_library, name);
  if (!address) throw std::runtime_error(std::string("the module lacks ") + name);
  return address;
}

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

// The system does not name what a module needs and lacks. It can only be VimbaC: this program has loaded all the rest.
std::string WhyNotLoaded(const std::filesystem::path& file) {
  const DWORD error = GetLastError();
  char text[256] = "";
  FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
                 error, 0, text, sizeof text, nullptr);
  const bool lacks_library = error == ERROR_MOD_NOT_FOUND && std::filesystem::exists(file);
  return (lacks_library ? "VimbaC.dll or a library that it needs is missing; system error " : "system error ") +
         std::to_string(error) + ": " + text;
}

void* Find(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

#else

void* Load(const std::filesystem::path& file) { return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL); }

// "libVimbaC.so: cannot open shared object file: ..."
std::string WhyNotLoaded(const std::filesystem::path& /*file*/) { return dlerror(); }

void* Find(void* library, const char* name) { return dlsym(library, name); }

#endif

template <class Function>
Function* Export(void* library, const std::string& file, const char* name) {
  void* address = Find(library, name);
  if (!address) throw std::runtime_error(file + " does not export " + name);
  return reinterpret_cast<Function*>(address);
}

}  // namespace

DriverModule::DriverModule(const std::string& file) {
  const std::filesystem::path path = std::filesystem::absolute(file).make_preferred();
  void* library = Load(path);
  if (!library) {
    const std::string reason = WhyNotLoaded(path);
    throw std::runtime_error("cannot load " + file + ": " + reason);
  }
  create = Export<CreateImagingDeviceFunction>(library, file, "CreateImagingDevice");
  release = Export<ReleaseImagingDeviceFunction>(library, file, "ReleaseImagingDevice");
  list = Export<ObjectIdentifierListFunction>(library, file, "ObjectIdentifierList");
}

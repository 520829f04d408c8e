// foreign_names_test.cpp
// The module in a process whose global names are another driver's.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/driver_module.h"

namespace {

std::string FileBesideTheProgram(const char* name) {
  return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / name).string();
}

TEST(ForeignNames, AnAliasCallsItsOwnModule) {
  void* foreign = dlopen(FileBesideTheProgram("libforeign-driver.so").c_str(), RTLD_NOW | RTLD_GLOBAL);
  ASSERT_NE(foreign, nullptr) << dlerror();
  auto* global = reinterpret_cast<ReleaseImagingDeviceFunction*>(dlsym(RTLD_DEFAULT, "ReleaseImagingDevice"));
  ASSERT_NE(global, nullptr);
  ASSERT_TRUE(global(nullptr)) << "the plain name is the other driver's";

  EXPECT_FALSE(TheModule().vimba_release(nullptr));
}

}  // namespace

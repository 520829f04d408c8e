// loading_test.cpp
// The library as a program that loads it by hand sees it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <thread>

#include "VimbaC.h"

namespace {

constexpr const char* kBuiltInCamera = "DEV_000F31034C65";

// A sanitizer has a thread of its own from the program's first thread on.
std::ptrdiff_t Threads() {
  std::thread([] {}).join();
  return std::distance(std::filesystem::directory_iterator("/proc/self/task"), std::filesystem::directory_iterator());
}

// Next to this program. By its whole path: a sanitizer's dlopen does not know the program's run path.
void* Open(int mode) {
  const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  return dlopen((folder / KEL_VIMBAC_FILE).c_str(), RTLD_NOW | mode);
}

struct Loaded : testing::Test {
  void* library = Open(RTLD_LOCAL);

  template <class Function>
  Function* Symbol(const char* name) {
    return reinterpret_cast<Function*>(dlsym(library, name));
  }
  void SetUp() override { ASSERT_NE(library, nullptr) << dlerror(); }
  ~Loaded() override {
    if (library) dlclose(library);
  }
};

TEST_F(Loaded, HasThreadsOnlyWhileItIsStarted) {
  const auto before = Threads();
  VmbVersionInfo_t version{};
  ASSERT_EQ(Symbol<decltype(VmbVersionQuery)>("VmbVersionQuery")(&version, sizeof version), VmbErrorSuccess);
  EXPECT_EQ(Threads(), before);
  ASSERT_EQ(Symbol<decltype(VmbStartup)>("VmbStartup")(), VmbErrorSuccess);
  VmbHandle_t camera = nullptr;
  ASSERT_EQ(Symbol<decltype(VmbCameraOpen)>("VmbCameraOpen")(kBuiltInCamera, VmbAccessModeFull, &camera),
            VmbErrorSuccess);
  EXPECT_GT(Threads(), before);

  Symbol<decltype(VmbShutdown)>("VmbShutdown")();

  EXPECT_EQ(Threads(), before);
}

TEST_F(Loaded, LeavesNothingBehindWhenItIsUnloaded) {
  ASSERT_EQ(Symbol<decltype(VmbStartup)>("VmbStartup")(), VmbErrorSuccess);
  Symbol<decltype(VmbShutdown)>("VmbShutdown")();

  dlclose(library);
  library = Open(RTLD_NOLOAD);

  EXPECT_EQ(library, nullptr) << "the library is still in memory";
}

TEST_F(Loaded, CanBeLoadedAgain) {
  ASSERT_EQ(Symbol<decltype(VmbStartup)>("VmbStartup")(), VmbErrorSuccess);
  Symbol<decltype(VmbShutdown)>("VmbShutdown")();
  dlclose(library);

  library = Open(RTLD_LOCAL);

  ASSERT_NE(library, nullptr);
  EXPECT_EQ(Symbol<decltype(VmbStartup)>("VmbStartup")(), VmbErrorSuccess);
  Symbol<decltype(VmbShutdown)>("VmbShutdown")();
}

}  // namespace

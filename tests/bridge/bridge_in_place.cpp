// bridge_in_place.cpp
// Before the first test: the program and the module have the library with real cameras, and not the simulated one, with
// which they are linked.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "VimbaC.h"

namespace {

class BridgeInPlace final : public testing::Environment {
  void SetUp() override {
    Dl_info library{};
    ASSERT_NE(dladdr(reinterpret_cast<void*>(&VmbStartup), &library), 0);
    ASSERT_EQ(std::filesystem::path(library.dli_fname).parent_path().filename(), "aravis")
        << "LD_LIBRARY_PATH has to name the folder of the library under test first; ctest sets it";
    ASSERT_EQ(dlsym(RTLD_DEFAULT, "VimbaSimConfigure"), nullptr);
  }
};

[[maybe_unused]] const testing::Environment* const kInPlace = testing::AddGlobalTestEnvironment(new BridgeInPlace);

}  // namespace

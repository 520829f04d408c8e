// memory_test.cpp
// Threads that the library or the module runs, when there is no memory for what they make: nothing may leave them.
#include <atomic>
#include <chrono>
#include <cstddef>
#include <new>
#include <thread>

#include "unit/acquisition/opened_implementation.h"

namespace {

// Arrays of this many bytes cannot be had.
std::atomic<std::size_t> refused_size{0};
// Nor can single objects, by the module's own code on other threads than this one.
std::atomic<std::thread::id> privileged_thread{};

bool IsRefused() {
  const std::thread::id privileged = privileged_thread;
  return privileged != std::thread::id() && privileged != std::this_thread::get_id();
}

}  // namespace

// What `new` of an array and of an object call, and what the linker makes them call instead.
extern "C" void* NEW_ARRAY(std::size_t size);
extern "C" void* REPLACED_NEW_ARRAY(std::size_t size) {
  if (size != 0 && size == refused_size) throw std::bad_alloc();
  return NEW_ARRAY(size);
}
extern "C" void* NEW_OBJECT(std::size_t size);
extern "C" void* REPLACED_NEW_OBJECT(std::size_t size) {
  if (IsRefused()) throw std::bad_alloc();
  return NEW_OBJECT(size);
}

namespace {

struct OutOfMemory : OpenedImplementation {
  ~OutOfMemory() override {
    refused_size = 0;
    privileged_thread = std::thread::id();
  }

  bool AllFramesComeBack() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (QueuedFrames() != 10 && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
    return QueuedFrames() == 10;
  }
};

TEST_F(OutOfMemory, AWorkerReportsAFailedAcquisitionAndHandsTheFrameBack) {
  refused_size = std::size_t{SimulatedCamera::kWidth} * SimulatedCamera::kHeight;
  cameras.Deliver();
  EXPECT_EQ(BError(12103, L"out of memory"), Snap());
  EXPECT_TRUE(AllFramesComeBack());
  refused_size = 0;
  cameras.Deliver();
  EXPECT_EQ(BError(), Snap());
}

TEST_F(OutOfMemory, AFrameForWhichNoWorkerCanBeMadeIsHandedBack) {
  privileged_thread = std::this_thread::get_id();
  cameras.Deliver();
  EXPECT_TRUE(AllFramesComeBack());
  privileged_thread = std::thread::id();
  cameras.Deliver();
  EXPECT_EQ(BError(), Snap());
}

TEST_F(OutOfMemory, ADiscoveryIsNotReportedAndNothingElseHappens) {
  VmbUint32_t longest = 0;
  ASSERT_EQ(0, VmbFeatureStringMaxlengthQuery(gVimbaHandle, "DiscoveryCameraIdent", &longest));
  refused_size = longest;
  EXPECT_NO_THROW(CameraDiscoveryCallback(gVimbaHandle, "DiscoveryCameraEvent", nullptr));
  EXPECT_EQ(std::vector<std::wstring>{L"End"}, Lines(L"CameraDiscoveryCallback"));
}

}  // namespace

// memory_test.cpp
// What happens when there is no memory for what the module makes: nothing leaves a thread, nothing stays started.
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <future>
#include <new>
#include <thread>
#include <utility>
#include <vector>

#include "acquisition/frame_blocks.h"
#include "acquisition/frame_ring.h"
#include "camera/camera_opening.h"
#include "support/open_camera_handle.h"
#include "unit/acquisition/opened_implementation.h"
#include "vimba/vimba_camera.h"

namespace {

constexpr auto kNone = static_cast<std::size_t>(-1);
// Arrays of this many bytes cannot be had, nor single objects of that many.
std::atomic<std::size_t> refused_array{kNone};
std::atomic<std::size_t> refused_object{kNone};
// Nor can single objects of any size, by the module's own code on threads without the privilege.
std::atomic<bool> objects_are_refused{false};
thread_local bool is_privileged = false;
// Nor can the text by which the host knows a camera.
bool identifiers_are_refused = false;
// Whoever asks for an array of this many bytes waits until they are no longer held.
std::atomic<std::size_t> held_array{kNone};
std::atomic<bool> is_somebody_held{false};
// The arrays and single objects of this many bytes that are not deleted yet.
std::atomic<std::size_t> watched_bytes{kNone};
std::array<std::atomic<void*>, 64> watched;

void Exchange(void* from, void* to) {
  for (std::atomic<void*>& one : watched) {
    void* expected = from;
    if (one.compare_exchange_strong(expected, to)) return;
  }
}

void* Made(void* memory, std::size_t size) {
  if (size == watched_bytes) Exchange(nullptr, memory);
  return memory;
}

void* Deleted(void* memory) {
  if (watched_bytes != kNone && memory) Exchange(memory, nullptr);
  return memory;
}

std::ptrdiff_t WatchedAndNotDeleted() {
  return std::count_if(watched.begin(), watched.end(), [](void* memory) { return memory != nullptr; });
}

}  // namespace

// What `new` of an array and of an object call, and what the linker makes them call instead.
extern "C" void* NEW_ARRAY(std::size_t size);
extern "C" void* REPLACED_NEW_ARRAY(std::size_t size) {
  if (size == refused_array) throw std::bad_alloc();
  while (size == held_array) {
    is_somebody_held = true;
    std::this_thread::yield();
  }
  return Made(NEW_ARRAY(size), size);
}
extern "C" void* NEW_OBJECT(std::size_t size);
extern "C" void* REPLACED_NEW_OBJECT(std::size_t size) {
  if (size == refused_object || (objects_are_refused && !is_privileged)) throw std::bad_alloc();
  return Made(NEW_OBJECT(size), size);
}
// `delete` likewise, of an object with the size that a compiler may pass on or not.
extern "C" void DELETE_ARRAY(void* array);
extern "C" void REPLACED_DELETE_ARRAY(void* array) { DELETE_ARRAY(Deleted(array)); }
extern "C" void DELETE_OBJECT(void* object);
extern "C" void REPLACED_DELETE_OBJECT(void* object) { DELETE_OBJECT(Deleted(object)); }
extern "C" void REPLACED_DELETE_SIZED_OBJECT(void* object, std::size_t /*size*/) { REPLACED_DELETE_OBJECT(object); }

// What the search for a camera calls, and what the linker makes it call instead.
WString Identifier(const VmbCameraInfo_t& camera) asm(IDENTIFIER_OF);
WString ReplacedIdentifier(const VmbCameraInfo_t& camera) asm(REPLACED_IDENTIFIER_OF);
WString ReplacedIdentifier(const VmbCameraInfo_t& camera) {
  if (identifiers_are_refused) throw std::bad_alloc();
  return Identifier(camera);
}

namespace {

struct OutOfMemory : OpenedImplementation {
  ~OutOfMemory() override {
    refused_array = kNone;
    refused_object = kNone;
    objects_are_refused = false;
    is_privileged = false;
    held_array = kNone;
    is_somebody_held = false;
  }
};

TEST_F(OutOfMemory, AWorkerReportsAFailedAcquisitionAndHandsTheFrameBack) {
  refused_array = std::size_t{SimulatedCamera::kWidth} * SimulatedCamera::kHeight;
  cameras.Deliver();
  EXPECT_EQ(Snap(), BError(BError::eAcquisitionFailed, L"out of memory"));
  EXPECT_TRUE(AllFramesComeBack());
  refused_array = kNone;
  cameras.Deliver();
  EXPECT_EQ(Snap(), BError());
}

TEST_F(OutOfMemory, AFrameForWhichNoWorkerCanBeMadeIsHandedBack) {
  is_privileged = true;
  objects_are_refused = true;
  cameras.Deliver();
  EXPECT_TRUE(AllFramesComeBack());
  objects_are_refused = false;
  cameras.Deliver();
  EXPECT_EQ(Snap(), BError());
}

TEST_F(OutOfMemory, AnEntryThatCouldNotBeMadeIsNotInTheQueue) {
  BFrameQueue queue;
  BError error(BError::eAcquisitionFailed);
  objects_are_refused = true;
  EXPECT_THROW(queue.Push(nullptr, error), std::bad_alloc);
  objects_are_refused = false;
  BSmartRef<BFrameQueue::BFrame> frame;
  EXPECT_EQ(queue.Pop(frame, 0), BError(BError::eTimeout));
}

TEST_F(OutOfMemory, ABlockThatCouldNotBeHadDoesNotCountAsInUse) {
  constexpr std::size_t kSize = FrameBlocks::kUsedBytes / FrameBlocks::kLeastUsedBlocks + 1;
  FrameBlocks blocks;
  refused_array = kSize;
  for (std::size_t i = 0; i < FrameBlocks::kLeastUsedBlocks; ++i) EXPECT_THROW(blocks.Take(kSize), std::bad_alloc);
  refused_array = kNone;
  std::future<FrameBlocks::Block> taker = std::async(std::launch::async, [&] { return blocks.Take(kSize); });
  while (taker.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
    if (blocks.Waiting() == 0) continue;
    ADD_FAILURE() << "it waits for a block that nobody has";
    blocks.Return(nullptr, kSize);
  }
}

TEST_F(OutOfMemory, AsManyBlocksAsAreKeptAreReturnedWithoutAny) {
  constexpr std::size_t kSize = 100;
  FrameBlocks blocks;
  std::array<FrameBlocks::Block, FrameBlocks::kRunningBlocks> taken;
  for (FrameBlocks::Block& block : taken) block = blocks.Take(kSize);
  objects_are_refused = true;
  for (FrameBlocks::Block& block : taken) blocks.Return(std::move(block), kSize);
  objects_are_refused = false;
  EXPECT_EQ(blocks.IdleBytes(), taken.size() * kSize);
}

TEST_F(OutOfMemory, NothingIsStartedThatCouldNotBeShutDown) {
  refused_object = sizeof(VimbaInitialization);
  EXPECT_THROW(VimbaInitialization::Open(nullptr), std::bad_alloc);
  refused_object = kNone;
  EXPECT_EQ(cameras.CallsOf("VmbStartup"), std::vector<std::string>{});
}

TEST_F(OutOfMemory, ADiscoveryIsNotReportedAndNothingElseHappens) {
  VmbUint32_t longest = 0;
  ASSERT_EQ(VmbFeatureStringMaxlengthQuery(gVimbaHandle, "DiscoveryCameraIdent", &longest), 0);
  refused_array = longest;
  EXPECT_NO_THROW(CameraDiscoveryCallback(gVimbaHandle, "DiscoveryCameraEvent", nullptr));
  EXPECT_EQ(Lines(L"CameraDiscoveryCallback"), std::vector<std::wstring>{L"End"});
}

TEST(ACameraThatCannotBeNamed, IsClosedAgain) {
  for (const char* method : {"Serial", "Uid", "IP"}) {
    SimulatedCameras cameras{SimulatedCamera()};
    ProfileFile profile;
    profile.Key("Init.Method", method).Key("Serial.Number", SimulatedCamera::kSerial);
    profile.Key("Camera_Identifier", SimulatedCamera::kId).Key("IP", SimulatedCamera::kIp);
    const BSmartRef<VimbaInitialization> system = VimbaInitialization::Open(nullptr);
    {
      BVimbaImagingDeviceImpl implementation;
      identifiers_are_refused = true;
      EXPECT_THROW(implementation.Initialize(profile.Open()), std::bad_alloc);
      identifiers_are_refused = false;
    }
    EXPECT_EQ(cameras.State()["openHandles"], 0) << method;
  }
}

// A worker that is late with its copy, because memory for it is long in coming.
TEST_F(OutOfMemory, WhatALateWorkerCopiesIsNoneOfTheNextAcquisition) {
  held_array = std::size_t{SimulatedCamera::kWidth} * SimulatedCamera::kHeight;
  cameras.Deliver();
  while (!is_somebody_held) std::this_thread::yield();
  implementation.StopSnap();
  implementation.StartSnap(false);
  held_array = kNone;
  EXPECT_TRUE(AllFramesComeBack());
  EXPECT_EQ(Snap(0), BError(BError::eTimeout));
}

// Cameras of which none is the one that is looked for, and no address to fall back to.
struct Search : testing::Test {
  static constexpr int kCameras = 7;
  static std::vector<SimulatedCamera> Several() {
    std::vector<SimulatedCamera> several;
    for (int number = 1; number <= kCameras; ++number) several.emplace_back(number);
    return several;
  }
  HostOutput output;
  SimulatedCameras cameras{Several()};
  BSmartRef<VimbaInitialization> system = VimbaInitialization::Open(nullptr);
  ProfileFile profile;
  VimbaCamera camera;

  ~Search() override { watched_bytes = kNone; }
};

TEST_F(Search, LeavesTheRecordsOfEveryPassButTheLast) {
  constexpr std::ptrdiff_t kPasses = 10;
  profile.Key("Init.Method", "Serial").Key("Serial.Number", "none of them");
  const BSmartRef<BCamProfile> opened = profile.Open();
  watched_bytes = kCameras * sizeof(VmbCameraInfo_t);
  EXPECT_FALSE(OpenCamera(*opened, L"", camera));
  EXPECT_EQ(WatchedAndNotDeleted(), kPasses - 1);
}

// Frames that a library has refused to give back, of two devices one after the other.
struct UnreturnedFrames : testing::Test {
  // Of this many bytes there is nothing else.
  static constexpr int kWidth = 251;
  static constexpr int kHeight = 241;
  OpenCameraHandle open{SimulatedCamera().Sensor(kWidth, kHeight)};
  VimbaCamera camera;

  UnreturnedFrames() {
    std::fill(watched.begin(), watched.end(), nullptr);
    watched_bytes = std::size_t{kWidth} * kHeight;
    camera.Adopt(open.Handle());
    camera.SetNames(L"DEV", L"Vimba_Camera_1");
  }
  ~UnreturnedFrames() override { watched_bytes = kNone; }
  void AnnounceAndFree(bool returned) {
    FrameRing ring(camera, this, nullptr);
    ASSERT_TRUE(ring.AnnounceFrames());
    ring.FreeFrames(returned);
  }
};

TEST_F(UnreturnedFrames, OfEveryDeviceStayUntilTheSystemIsDown) {
  constexpr auto kFrames = static_cast<std::ptrdiff_t>(kRingFrames);
  AnnounceAndFree(true);
  EXPECT_EQ(WatchedAndNotDeleted(), 0);
  AnnounceAndFree(false);
  EXPECT_EQ(WatchedAndNotDeleted(), kFrames);
  AnnounceAndFree(false);
  EXPECT_EQ(WatchedAndNotDeleted(), 2 * kFrames);
  FrameRing::FreeUnreturnedFrames();
  EXPECT_EQ(WatchedAndNotDeleted(), 0);
}

}  // namespace

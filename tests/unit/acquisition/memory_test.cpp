// memory_test.cpp
// What happens when there is no memory for what the module makes: nothing leaves a thread, nothing stays started.
#include <atomic>
#include <cstddef>
#include <new>

#include "unit/acquisition/opened_implementation.h"

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

}  // namespace

// What `new` of an array and of an object call, and what the linker makes them call instead.
extern "C" void* NEW_ARRAY(std::size_t size);
extern "C" void* REPLACED_NEW_ARRAY(std::size_t size) {
  if (size == refused_array) throw std::bad_alloc();
  return NEW_ARRAY(size);
}
extern "C" void* NEW_OBJECT(std::size_t size);
extern "C" void* REPLACED_NEW_OBJECT(std::size_t size) {
  if (size == refused_object || (objects_are_refused && !is_privileged)) throw std::bad_alloc();
  return NEW_OBJECT(size);
}

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

}  // namespace

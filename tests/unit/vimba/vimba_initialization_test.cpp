// vimba_initialization_test.cpp
// Starting the Vimba system as an object, every way in which that fails, and the discovery callback.
#include "vimba/vimba_initialization.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VimbaC.h"
#include "support/host_output.h"
#include "support/simulated_cameras.h"
#include "vimba/vimba_features.h"
#include "vimba_simulator.h"

namespace {

using Calls = std::vector<std::string>;
using Lines = std::vector<std::wstring>;
using nlohmann::json;

const std::string kStartup = "VmbStartup()";
const std::string kShutdown = "VmbShutdown()";
const std::string kIsPresent = R"(VmbFeatureBoolGet(system, "GeVTLIsPresent"))";
const std::string kDiscoverOnce = R"(VmbFeatureCommandRun(system, "GeVDiscoveryAllOnce"))";
const std::string kGetStatus = R"(VmbFeatureEnumGet(system, "GeVDiscoveryStatus"))";
const std::string kOffAsInt = R"(VmbFeatureEnumAsInt(system, "GeVDiscoveryStatus", "Off"))";
const std::string kAutomaticAsInt = R"(VmbFeatureEnumAsInt(system, "GeVDiscoveryStatus", "Automatic"))";
const std::string kDiscoverAuto = R"(VmbFeatureCommandRun(system, "GeVDiscoveryAllAuto"))";
const std::string kRegister = R"(VmbFeatureInvalidationRegister(system, "DiscoveryCameraEvent"))";

const std::wstring kRegistered = L"Succesfully registering a callback for feature invalidation signaling";

// One opening of the system, what was called for it and the message that it wrote.
struct Opening {
  explicit Opening(SimulatedCameras& cameras) {
    const HostOutput output;
    cameras.ClearCalls();
    system = VimbaInitialization::Open(nullptr);
    calls = cameras.Calls();
    for (const std::wstring& message : output.WithCaption(L"")) {
      if (message.rfind(L"Vimba Initialization\n", 0) == 0) messages.push_back(LinesOf(message));
    }
    EXPECT_EQ(messages.size(), 1U);
    messages.resize(1);
  }
  const Lines& Message() const { return messages.front(); }

  BSmartRef<VimbaInitialization> system;
  Calls calls;
  std::vector<Lines> messages;
};

// One camera on a link whose system is like this.
SimulatedCameras LinkWith(const json& system) { return SimulatedCameras(std::vector{SimulatedCamera()}, system); }

SimulatedCameras LinkWithDiscovery(const char* status) { return LinkWith({{"discoveryStatus", status}}); }

bool IsStarted() {
  bool present = false;
  return Vimba::GetBool(gVimbaHandle, "GeVTLIsPresent", present) != VmbErrorApiNotStarted;
}

TEST(VimbaSystem, StartsDiscoversAndRegisters) {
  SimulatedCameras cameras = LinkWithDiscovery("Off");
  const Opening opening(cameras);

  ASSERT_TRUE(opening.system);
  EXPECT_EQ(opening.system->References(), 1);
  EXPECT_EQ(opening.Message(), (Lines{L"Vimba Initialization", L"Vimba Startup ok", L"GeVTLIsPresent = true",
                                      L"Vimba GigE discovery status = Automatic", kRegistered, L"End"}));
  EXPECT_EQ(opening.calls,
            (Calls{kStartup, kIsPresent, kDiscoverOnce, kGetStatus, kOffAsInt, kDiscoverAuto, kGetStatus, kRegister}));
}

TEST(VimbaSystem, ThatDiscoversByItselfIsNotToldTo) {
  SimulatedCameras cameras = LinkWithDiscovery("Automatic");
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ(opening.calls,
            (Calls{kStartup, kIsPresent, kDiscoverOnce, kGetStatus, kAutomaticAsInt, kGetStatus, kRegister}));
}

TEST(VimbaSystem, IsShutDownWithTheLastReference) {
  SimulatedCameras cameras{SimulatedCamera()};
  BSmartRef<VimbaInitialization> system = Opening(cameras).system;
  BSmartRef<VimbaInitialization> second = system;
  cameras.ClearCalls();

  system = nullptr;
  EXPECT_EQ(cameras.Calls(), Calls{});
  second = nullptr;

  EXPECT_EQ(cameras.Calls(), Calls{kShutdown});
  EXPECT_FALSE(IsStarted());
}

TEST(VimbaSystem, ThatIsOpenIsHandedOutWithoutACall) {
  SimulatedCameras cameras{SimulatedCamera()};
  const BSmartRef<VimbaInitialization> open = Opening(cameras).system;
  cameras.ClearCalls();
  const HostOutput output;

  const BSmartRef<VimbaInitialization> again = VimbaInitialization::Open(open.Get());

  EXPECT_EQ(again.Get(), open.Get());
  EXPECT_EQ(open->References(), 2);
  EXPECT_EQ(cameras.Calls(), Calls{});
  EXPECT_EQ(LinesOf(output.WithCaption(L"").at(0)), (Lines{L"Vimba Initialization", L"End"}));
}

TEST(VimbaSystem, ThatDoesNotStartIsNotShutDown) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbStartup", "", VmbErrorInternalFault);
  const Opening opening(cameras);

  EXPECT_FALSE(opening.system);
  EXPECT_EQ(opening.Message(), (Lines{L"Vimba Initialization", L"Vimba Startup fails : -1", L"End"}));
  EXPECT_EQ(opening.calls, Calls{kStartup});
}

TEST(VimbaSystem, WithoutTheTransportLayerIsShutDownAgain) {
  SimulatedCameras cameras = LinkWith({{"geVTLIsPresent", false}});
  const Opening opening(cameras);

  EXPECT_FALSE(opening.system);
  EXPECT_EQ(opening.Message(),
            (Lines{L"Vimba Initialization", L"Vimba Startup ok", L"GeVTLIsPresent = false", L"End"}));
  EXPECT_EQ(opening.calls, (Calls{kStartup, kIsPresent, kShutdown}));
}

TEST(VimbaSystem, ThatDoesNotTellOfTheTransportLayerIsShutDownAgain) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbFeatureBoolGet", "GeVTLIsPresent", VmbErrorNotFound);
  const Opening opening(cameras);

  EXPECT_FALSE(opening.system);
  EXPECT_EQ(opening.Message(), (Lines{L"Vimba Initialization", L"Vimba Startup ok",
                                      L"VmbFeatureBoolGet( GeVTLIsPresent ) returns error : -3", L"End"}));
  EXPECT_EQ(opening.calls, (Calls{kStartup, kIsPresent, kShutdown}));
}

TEST(VimbaSystem, ThatCannotDiscoverIsShutDownAgain) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbFeatureCommandRun", "GeVDiscoveryAllOnce", VmbErrorInvalidAccess);
  const Opening opening(cameras);

  EXPECT_FALSE(opening.system);
  EXPECT_EQ(opening.Message(), (Lines{L"Vimba Initialization", L"Vimba Startup ok", L"GeVTLIsPresent = true",
                                      L"VmbFeatureCommandRun( GeVDiscoveryAllOnce ) returns error : -6", L"End"}));
  EXPECT_EQ(opening.calls, (Calls{kStartup, kIsPresent, kDiscoverOnce, kShutdown}));
}

TEST(VimbaSystem, AStatusThatCannotBeReadIsUnknownAndChangesNothing) {
  SimulatedCameras cameras = LinkWithDiscovery("Off");
  cameras.FailCall("VmbFeatureEnumGet", "GeVDiscoveryStatus", VmbErrorIO);
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ(opening.Message(), (Lines{L"Vimba Initialization", L"Vimba Startup ok", L"GeVTLIsPresent = true",
                                      L"Vimba GigE discovery status = Unknwon", kRegistered, L"End"}));
  EXPECT_EQ(opening.calls, (Calls{kStartup, kIsPresent, kDiscoverOnce, kGetStatus, kGetStatus, kRegister}));
}

TEST(VimbaSystem, AStatusThatCannotBeReadASecondTimeIsUnknown) {
  SimulatedCameras cameras = LinkWithDiscovery("Off");
  cameras.FailCall("VmbFeatureEnumGet", "GeVDiscoveryStatus", VmbErrorIO, 2);
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ(opening.Message().at(3), L"Vimba GigE discovery status = Unknwon");
  EXPECT_EQ(opening.calls,
            (Calls{kStartup, kIsPresent, kDiscoverOnce, kGetStatus, kOffAsInt, kDiscoverAuto, kGetStatus, kRegister}));
}

TEST(VimbaSystem, AStatusWithoutANumberChangesNothing) {
  SimulatedCameras cameras = LinkWithDiscovery("Off");
  cameras.FailCall("VmbFeatureEnumAsInt", "GeVDiscoveryStatus", VmbErrorNotSupported);
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ(opening.Message().at(3), L"Vimba GigE discovery status = Off");
  EXPECT_EQ(opening.calls, (Calls{kStartup, kIsPresent, kDiscoverOnce, kGetStatus, kOffAsInt, kGetStatus, kRegister}));
}

TEST(VimbaSystem, ADiscoveryThatCannotBeMadeAutomaticStopsNothing) {
  SimulatedCameras cameras = LinkWithDiscovery("Off");
  cameras.FailCall("VmbFeatureCommandRun", "GeVDiscoveryAllAuto", VmbErrorInvalidAccess);
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ(opening.Message(), (Lines{L"Vimba Initialization", L"Vimba Startup ok", L"GeVTLIsPresent = true",
                                      L"Vimba GigE discovery status = Off", kRegistered, L"End"}));
}

TEST(VimbaSystem, WithoutACallbackIsStillASystem) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbFeatureInvalidationRegister", "DiscoveryCameraEvent", VmbErrorNotImplemented);
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ(opening.Message().at(4),
            L"Failure while registering a callback for feature invalidation signaling. Return value = -17");
  EXPECT_TRUE(IsStarted());
}

TEST(VimbaSystem, EverythingButItsDestructorIsTheHosts) {
  SimulatedCameras cameras{SimulatedCamera()};
  const BSmartRef<VimbaInitialization> system = Opening(cameras).system;
  const BSmartObj plain;

  EXPECT_EQ(system->ArchiveName().Str(), plain.ArchiveName().Str());
  EXPECT_EQ(system->AllocatedMemory(), plain.AllocatedMemory());
  EXPECT_EQ(system->Properties().Str(), plain.Properties().Str());
}

// The messages of the callback, the first of which comes once a camera has gone or come.
std::vector<std::wstring> DiscoveryMessages(const HostOutput& output, std::size_t count) {
  EXPECT_TRUE(output.WaitForDiagnostic(L"CameraDiscoveryCallback", count, std::chrono::seconds(30)));
  return output.Diagnostics(L"CameraDiscoveryCallback");
}

TEST(CameraDiscovery, ReportsWhichCameraWentAndCameAndWhy) {
  SimulatedCameras cameras = LinkWithDiscovery("Off");
  const BSmartRef<VimbaInitialization> system = Opening(cameras).system;
  const HostOutput output;

  ASSERT_EQ(VimbaSimUnplug(SimulatedCamera::kId), 0);
  EXPECT_EQ(DiscoveryMessages(output, 1).back(),
            L"CameraDiscoveryCallback\n   1 : # (#) : Camera ident (DiscoveryCameraIdent): DEV_000F31000001\n"
            L"   2 : # (#) : Reason (DiscoveryCameraEvent): Missing\n   3 : # (#) : End\n");
  ASSERT_EQ(VimbaSimPlug(SimulatedCamera::kId), 0);

  EXPECT_EQ(DiscoveryMessages(output, 2).at(1),
            L"CameraDiscoveryCallback\n   1 : # (#) : Camera ident (DiscoveryCameraIdent): DEV_000F31000001\n"
            L"   2 : # (#) : Reason (DiscoveryCameraEvent): Detected\n   3 : # (#) : End\n");
}

TEST(CameraDiscovery, ACameraThatCannotBeNamedIsAFailure) {
  for (const char* call : {"VmbFeatureStringMaxlengthQuery", "VmbFeatureStringGet"}) {
    SimulatedCameras cameras{SimulatedCamera()};
    const BSmartRef<VimbaInitialization> system = Opening(cameras).system;
    cameras.FailCall(call, "DiscoveryCameraIdent", VmbErrorIO);
    const HostOutput output;

    CameraDiscoveryCallback(gVimbaHandle, "DiscoveryCameraEvent", nullptr);

    EXPECT_EQ(LinesOf(DiscoveryMessages(output, 1).at(0)).at(1), L"Camera ident (DiscoveryCameraIdent): failure");
  }
}

TEST(CameraDiscovery, AReasonThatCannotBeReadIsLeftOut) {
  SimulatedCameras cameras{SimulatedCamera()};
  const BSmartRef<VimbaInitialization> system = Opening(cameras).system;
  cameras.FailCall("VmbFeatureEnumGet", "DiscoveryCameraEvent", VmbErrorNotFound);
  const HostOutput output;

  CameraDiscoveryCallback(gVimbaHandle, "DiscoveryCameraEvent", nullptr);

  EXPECT_EQ(LinesOf(DiscoveryMessages(output, 1).at(0)),
            (Lines{L"CameraDiscoveryCallback", L"Camera ident (DiscoveryCameraIdent): ", L"End"}));
}

TEST(CameraDiscovery, AsksThroughTheHandleThatItWasGiven) {
  SimulatedCameras cameras{SimulatedCamera()};
  const BSmartRef<VimbaInitialization> system = Opening(cameras).system;
  cameras.ClearCalls();
  int object = 0;

  CameraDiscoveryCallback(&object, "DiscoveryCameraEvent", nullptr);

  EXPECT_EQ(cameras.Calls(), (Calls{R"(VmbFeatureStringMaxlengthQuery(unknown, "DiscoveryCameraIdent"))",
                                    R"(VmbFeatureEnumGet(unknown, "DiscoveryCameraEvent"))"}));
}

}  // namespace

// vimba_initialization_test.cpp
// Starting the Vimba system as an object, every way in which that fails, and the discovery callback.
#include "vimba/vimba_initialization.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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
    EXPECT_EQ(1U, messages.size());
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
  EXPECT_EQ(1, opening.system->References());
  EXPECT_EQ((Lines{L"Vimba Initialization", L"Vimba Startup ok", L"GeVTLIsPresent = true",
                   L"Vimba GigE discovery status = Automatic", kRegistered, L"End"}),
            opening.Message());
  EXPECT_EQ((Calls{kStartup, kIsPresent, kDiscoverOnce, kGetStatus, kOffAsInt, kDiscoverAuto, kGetStatus, kRegister}),
            opening.calls);
}

TEST(VimbaSystem, ThatDiscoversByItselfIsNotToldTo) {
  SimulatedCameras cameras = LinkWithDiscovery("Automatic");
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ((Calls{kStartup, kIsPresent, kDiscoverOnce, kGetStatus, kAutomaticAsInt, kGetStatus, kRegister}),
            opening.calls);
}

TEST(VimbaSystem, IsShutDownWithTheLastReference) {
  SimulatedCameras cameras{SimulatedCamera()};
  BSmartRef<VimbaInitialization> system = Opening(cameras).system;
  BSmartRef<VimbaInitialization> second = system;
  cameras.ClearCalls();

  system = nullptr;
  EXPECT_EQ(Calls{}, cameras.Calls());
  second = nullptr;

  EXPECT_EQ(Calls{kShutdown}, cameras.Calls());
  EXPECT_FALSE(IsStarted());
}

TEST(VimbaSystem, ThatIsOpenIsHandedOutWithoutACall) {
  SimulatedCameras cameras{SimulatedCamera()};
  const BSmartRef<VimbaInitialization> open = Opening(cameras).system;
  cameras.ClearCalls();
  const HostOutput output;

  const BSmartRef<VimbaInitialization> again = VimbaInitialization::Open(open.Get());

  EXPECT_EQ(open.Get(), again.Get());
  EXPECT_EQ(2, open->References());
  EXPECT_EQ(Calls{}, cameras.Calls());
  EXPECT_EQ((Lines{L"Vimba Initialization", L"End"}), LinesOf(output.WithCaption(L"").at(0)));
}

TEST(VimbaSystem, ThatDoesNotStartIsNotShutDown) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbStartup", "", VmbErrorInternalFault);
  const Opening opening(cameras);

  EXPECT_FALSE(opening.system);
  EXPECT_EQ((Lines{L"Vimba Initialization", L"Vimba Startup fails : -1", L"End"}), opening.Message());
  EXPECT_EQ(Calls{kStartup}, opening.calls);
}

TEST(VimbaSystem, WithoutTheTransportLayerIsShutDownAgain) {
  SimulatedCameras cameras = LinkWith({{"geVTLIsPresent", false}});
  const Opening opening(cameras);

  EXPECT_FALSE(opening.system);
  EXPECT_EQ((Lines{L"Vimba Initialization", L"Vimba Startup ok", L"GeVTLIsPresent = false", L"End"}),
            opening.Message());
  EXPECT_EQ((Calls{kStartup, kIsPresent, kShutdown}), opening.calls);
}

TEST(VimbaSystem, ThatDoesNotTellOfTheTransportLayerIsShutDownAgain) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbFeatureBoolGet", "GeVTLIsPresent", VmbErrorNotFound);
  const Opening opening(cameras);

  EXPECT_FALSE(opening.system);
  EXPECT_EQ((Lines{L"Vimba Initialization", L"Vimba Startup ok",
                   L"VmbFeatureBoolGet( GeVTLIsPresent ) returns error : -3", L"End"}),
            opening.Message());
  EXPECT_EQ((Calls{kStartup, kIsPresent, kShutdown}), opening.calls);
}

TEST(VimbaSystem, ThatCannotDiscoverIsShutDownAgain) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbFeatureCommandRun", "GeVDiscoveryAllOnce", VmbErrorInvalidAccess);
  const Opening opening(cameras);

  EXPECT_FALSE(opening.system);
  EXPECT_EQ((Lines{L"Vimba Initialization", L"Vimba Startup ok", L"GeVTLIsPresent = true",
                   L"VmbFeatureCommandRun( GeVDiscoveryAllOnce ) returns error : -6", L"End"}),
            opening.Message());
  EXPECT_EQ((Calls{kStartup, kIsPresent, kDiscoverOnce, kShutdown}), opening.calls);
}

TEST(VimbaSystem, AStatusThatCannotBeReadIsUnknownAndChangesNothing) {
  SimulatedCameras cameras = LinkWithDiscovery("Off");
  cameras.FailCall("VmbFeatureEnumGet", "GeVDiscoveryStatus", VmbErrorIO);
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ((Lines{L"Vimba Initialization", L"Vimba Startup ok", L"GeVTLIsPresent = true",
                   L"Vimba GigE discovery status = Unknwon", kRegistered, L"End"}),
            opening.Message());
  EXPECT_EQ((Calls{kStartup, kIsPresent, kDiscoverOnce, kGetStatus, kGetStatus, kRegister}), opening.calls);
}

TEST(VimbaSystem, AStatusThatCannotBeReadASecondTimeIsUnknown) {
  SimulatedCameras cameras = LinkWithDiscovery("Off");
  cameras.FailCall("VmbFeatureEnumGet", "GeVDiscoveryStatus", VmbErrorIO, 2);
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ(L"Vimba GigE discovery status = Unknwon", opening.Message().at(3));
  EXPECT_EQ((Calls{kStartup, kIsPresent, kDiscoverOnce, kGetStatus, kOffAsInt, kDiscoverAuto, kGetStatus, kRegister}),
            opening.calls);
}

TEST(VimbaSystem, AStatusWithoutANumberChangesNothing) {
  SimulatedCameras cameras = LinkWithDiscovery("Off");
  cameras.FailCall("VmbFeatureEnumAsInt", "GeVDiscoveryStatus", VmbErrorNotSupported);
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ(L"Vimba GigE discovery status = Off", opening.Message().at(3));
  EXPECT_EQ((Calls{kStartup, kIsPresent, kDiscoverOnce, kGetStatus, kOffAsInt, kGetStatus, kRegister}), opening.calls);
}

TEST(VimbaSystem, ADiscoveryThatCannotBeMadeAutomaticStopsNothing) {
  SimulatedCameras cameras = LinkWithDiscovery("Off");
  cameras.FailCall("VmbFeatureCommandRun", "GeVDiscoveryAllAuto", VmbErrorInvalidAccess);
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ((Lines{L"Vimba Initialization", L"Vimba Startup ok", L"GeVTLIsPresent = true",
                   L"Vimba GigE discovery status = Off", kRegistered, L"End"}),
            opening.Message());
}

TEST(VimbaSystem, WithoutACallbackIsStillASystem) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbFeatureInvalidationRegister", "DiscoveryCameraEvent", VmbErrorNotImplemented);
  const Opening opening(cameras);

  EXPECT_TRUE(opening.system);
  EXPECT_EQ(L"Failure while registering a callback for feature invalidation signaling. Return value = -17",
            opening.Message().at(4));
  EXPECT_TRUE(IsStarted());
}

TEST(VimbaSystem, EverythingButItsDestructorIsTheHosts) {
  SimulatedCameras cameras{SimulatedCamera()};
  const BSmartRef<VimbaInitialization> system = Opening(cameras).system;
  const BSmartObj plain;

  EXPECT_EQ(plain.ArchiveName().Str(), system->ArchiveName().Str());
  EXPECT_EQ(plain.AllocatedMemory(), system->AllocatedMemory());
  EXPECT_EQ(plain.Properties().Str(), system->Properties().Str());
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

  ASSERT_EQ(0, VimbaSimUnplug(SimulatedCamera::kId));
  EXPECT_EQ(
      L"CameraDiscoveryCallback\n   1 : # (#) : Camera ident (DiscoveryCameraIdent): DEV_000F31000001\n"
      L"   2 : # (#) : Reason (DiscoveryCameraEvent): Missing\n   3 : # (#) : End\n",
      DiscoveryMessages(output, 1).back());
  ASSERT_EQ(0, VimbaSimPlug(SimulatedCamera::kId));

  EXPECT_EQ(
      L"CameraDiscoveryCallback\n   1 : # (#) : Camera ident (DiscoveryCameraIdent): DEV_000F31000001\n"
      L"   2 : # (#) : Reason (DiscoveryCameraEvent): Detected\n   3 : # (#) : End\n",
      DiscoveryMessages(output, 2).at(1));
}

TEST(CameraDiscovery, ACameraThatCannotBeNamedIsAFailure) {
  for (const char* call : {"VmbFeatureStringMaxlengthQuery", "VmbFeatureStringGet"}) {
    SimulatedCameras cameras{SimulatedCamera()};
    const BSmartRef<VimbaInitialization> system = Opening(cameras).system;
    cameras.FailCall(call, "DiscoveryCameraIdent", VmbErrorIO);
    const HostOutput output;

    CameraDiscoveryCallback(gVimbaHandle, "DiscoveryCameraEvent", nullptr);

    EXPECT_EQ(L"Camera ident (DiscoveryCameraIdent): failure", LinesOf(DiscoveryMessages(output, 1).at(0)).at(1));
  }
}

TEST(CameraDiscovery, AReasonThatCannotBeReadIsLeftOut) {
  SimulatedCameras cameras{SimulatedCamera()};
  const BSmartRef<VimbaInitialization> system = Opening(cameras).system;
  cameras.FailCall("VmbFeatureEnumGet", "DiscoveryCameraEvent", VmbErrorNotFound);
  const HostOutput output;

  CameraDiscoveryCallback(gVimbaHandle, "DiscoveryCameraEvent", nullptr);

  EXPECT_EQ((Lines{L"CameraDiscoveryCallback", L"Camera ident (DiscoveryCameraIdent): ", L"End"}),
            LinesOf(DiscoveryMessages(output, 1).at(0)));
}

TEST(CameraDiscovery, AsksThroughTheHandleThatItWasGiven) {
  SimulatedCameras cameras{SimulatedCamera()};
  const BSmartRef<VimbaInitialization> system = Opening(cameras).system;
  cameras.ClearCalls();
  int object = 0;

  CameraDiscoveryCallback(&object, "DiscoveryCameraEvent", nullptr);

  EXPECT_EQ((Calls{R"(VmbFeatureStringMaxlengthQuery(unknown, "DiscoveryCameraIdent"))",
                   R"(VmbFeatureEnumGet(unknown, "DiscoveryCameraEvent"))"}),
            cameras.Calls());
}

}  // namespace

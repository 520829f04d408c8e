// camera_opening_test.cpp
// Which camera a profile opens, how often it is tried, and what is shown meanwhile.
#include <gmock/gmock.h>

#include <chrono>
#include <string_view>

#include "VimbaC.h"
#include "support/driver_module.h"
#include "support/host_output.h"
#include "support/profile_file.h"
#include "support/simulated_cameras.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Texts = std::vector<std::wstring>;

// Notes when the last failure was shown, in front of the sink that is there.
class LastFailure final : public ImagingDevice::BSink {
 public:
  LastFailure() : m_behind(ImagingDevice::InstallSink(this)) {}
  ~LastFailure() override { ImagingDevice::InstallSink(m_behind); }
  LastFailure(const LastFailure&) = delete;
  LastFailure& operator=(const LastFailure&) = delete;

  void OnShowInfo(const wchar_t* text, const wchar_t* caption) override {
    if (std::wstring_view(text).ends_with(L" failed")) m_time = steady_clock::now();
    m_behind->OnShowInfo(text, caption);
  }
  void OnLogMessage(const WString& text, bool important) override { m_behind->OnLogMessage(text, important); }
  steady_clock::duration Age() const { return steady_clock::now() - m_time; }

 private:
  ImagingDevice::BSink* m_behind;
  steady_clock::time_point m_time;
};

struct CameraOpening : testing::Test {
  HostOutput output;
  LastFailure last_failure;
  ProfileFile profile;

  Texts Notices() const { return output.WithCaption(nullptr); }
};

TEST_F(CameraOpening, FindsACameraByItsSerialNumber) {
  SimulatedCameras cameras(std::vector{SimulatedCamera(1), SimulatedCamera(2)});
  profile.Key("Init.Method", "serial").Key("Serial.Number", "50-0503340002");
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_STREQ(device->Name(), L"Vimba_Manta-G-507B_50-0503340002");
  EXPECT_THAT(Notices(), ElementsAre(L"Initialize 50-0503340002", L"InitMethod: serial (50-0503340002)",
                                     L"Camera (Uid: DEV_000F31000002): InitBySerial success"));
  EXPECT_THAT(cameras.CallsOf("VmbCamerasList"), ElementsAre("VmbCamerasList(0)", "VmbCamerasList(2)"));
}

TEST_F(CameraOpening, ASerialNumberMatchesTheFirstCameraWhoseOwnItContains) {
  SimulatedCameras cameras(
      std::vector{SimulatedCamera(1).With("serial", "ab-12"), SimulatedCamera(2).With("serial", "12")});
  profile.Key("Init.Method", "Serial").Key("Serial.Number", "xAB-123");
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_STREQ(device->Name(), L"Vimba_Manta-G-507B_ab-12");
}

TEST_F(CameraOpening, OfSeveralMatchesTheFirstThatOpensWins) {
  SimulatedCameras cameras(
      std::vector{SimulatedCamera(1).With("serial", "12"), SimulatedCamera(2).With("serial", "123")});
  cameras.Fault(
      {{"call", "VmbCameraOpen"}, {"camera", "DEV_000F31000001"}, {"error", VmbErrorInvalidAccess}, {"count", 0}});
  profile.Key("Init.Method", "Serial").Key("Serial.Number", "1234");
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_THAT(Notices(), ElementsAre(L"Initialize 1234", L"InitMethod: Serial (1234)",
                                     L"Camera (UniqueId - DEV_000F31000001): - InitBySerial failed (1234)",
                                     L"Camera (Uid: DEV_000F31000002): InitBySerial success"));
}

TEST_F(CameraOpening, ACameraWithoutASerialNumberMatchesNone) {
  SimulatedCameras cameras{SimulatedCamera().With("serial", "")};
  profile.Key("Init.Method", "Serial").Key("Serial.Number", "1234");
  OpenDevice device(profile.Open());
  EXPECT_FALSE(device);
  EXPECT_THAT(cameras.CallsOf("VmbCameraOpen"), IsEmpty());
}

TEST_F(CameraOpening, WithoutCamerasTenSearchesPassInSilenceAndTheAddressFollows) {
  SimulatedCameras cameras(std::vector<SimulatedCamera>{});
  profile.Key("Init.Method", "Serial").Key("Serial.Number", "1").Key("IP", "169.254.10.9");
  const auto begin = steady_clock::now();
  OpenDevice device(profile.Open());
  EXPECT_FALSE(device);
  EXPECT_GE(steady_clock::now() - begin, milliseconds(400));
  EXPECT_GE(last_failure.Age(), milliseconds(200)) << "a failure is shown before its pause";
  EXPECT_THAT(cameras.CallsOf("VmbCamerasList"), SizeIs(20));
  EXPECT_THAT(Notices(),
              ElementsAre(L"Initialize 1", L"InitMethod: Serial (1)", L"Camera (IP: 169.254.10.9): - InitByAddr failed",
                          L"Camera (IP: 169.254.10.9): - InitByAddr failed"));
}

TEST_F(CameraOpening, AFailedSearchWithoutAnAddressEndsInSilence) {
  SimulatedCameras cameras(std::vector<SimulatedCamera>{});
  profile.Key("Init.Method", "Serial").Key("Serial.Number", "1");
  OpenDevice device(profile.Open());
  EXPECT_FALSE(device);
  EXPECT_THAT(Notices(), ElementsAre(L"Initialize 1", L"InitMethod: Serial (1)"));
}

TEST_F(CameraOpening, AFailedSearchFallsBackToTheAddress) {
  SimulatedCameras cameras{SimulatedCamera()};
  profile.Key("Init.Method", "Serial").Key("Serial.Number", "1").Key("IP", SimulatedCamera::kIp);
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_THAT(cameras.CallsOf("VmbCamerasList"), SizeIs(20));
  EXPECT_THAT(Notices(), ElementsAre(L"Initialize 1", L"InitMethod: Serial (1)",
                                     L"Camera (IP: 169.254.10.1): InitByAddr success"));
}

TEST_F(CameraOpening, TheMethodSerialWithoutANumberGoesStraightToTheAddress) {
  for (const bool empty : {true, false}) {
    output.Clear();
    SimulatedCameras cameras{SimulatedCamera()};
    profile.Key("Init.Method", "Serial").Key("IP", SimulatedCamera::kIp).Key("Camera_Identifier", "DEV_OTHER");
    if (empty) profile.Key("Serial.Number", "");
    OpenDevice device(profile.Open());
    ASSERT_TRUE(device);
    EXPECT_THAT(cameras.CallsOf("VmbCamerasList"), IsEmpty());
    EXPECT_THAT(Notices(), ElementsAre(L"Initialize ", L"InitMethod: Serial ()",
                                       L"Camera (IP: 169.254.10.1): InitByAddr success"));
    profile.Without("Serial.Number");
  }
}

TEST_F(CameraOpening, ASearchPausesAfterACameraThatDoesNotOpenAndSearchesAgain) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbCameraOpen", "", VmbErrorInvalidAccess, 1);
  profile.Key("Init.Method", "Serial").Key("Serial.Number", SimulatedCamera::kSerial);
  const auto begin = steady_clock::now();
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_GE(steady_clock::now() - begin, milliseconds(200));
  EXPECT_THAT(cameras.CallsOf("VmbCamerasList"),
              ElementsAre("VmbCamerasList(0)", "VmbCamerasList(1)", "VmbCamerasList(0)", "VmbCamerasList(1)"));
  EXPECT_THAT(Notices(), ElementsAre(L"Initialize 50-0503340001", L"InitMethod: Serial (50-0503340001)",
                                     L"Camera (UniqueId - DEV_000F31000001): - InitBySerial failed (50-0503340001)",
                                     L"Camera (Uid: DEV_000F31000001): InitBySerial success"));
}

TEST_F(CameraOpening, AUniqueIdIsTriedTenTimesWithPauses) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbCameraOpen", "", VmbErrorInvalidAccess);
  profile.Key("Camera_Identifier", SimulatedCamera::kId);
  const auto begin = steady_clock::now();
  OpenDevice device(profile.Open());
  EXPECT_FALSE(device);
  EXPECT_GE(steady_clock::now() - begin, milliseconds(10 * 200));
  EXPECT_GE(last_failure.Age(), milliseconds(200)) << "a failure is shown before its pause";
  const Texts notices = Notices();
  ASSERT_THAT(notices, SizeIs(12));
  EXPECT_EQ(notices[0], L"Initialize ");
  EXPECT_EQ(notices[1], L"InitMethod:  (DEV_000F31000001)");
  EXPECT_THAT(Texts(notices.begin() + 2, notices.end()),
              Each(L"Camera (UniqueId - DEV_000F31000001): - InitByUid failed"));
}

TEST_F(CameraOpening, ACameraThatCannotBeIdentifiedIsClosedBeforeTheNextTry) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbCameraInfoQuery", "", VmbErrorOther, 1);
  profile.Key("Camera_Identifier", SimulatedCamera::kId);
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_THAT(cameras.CallsOf("VmbCameraClose"), SizeIs(1));
  EXPECT_THAT(Notices(), ElementsAre(L"Initialize ", L"InitMethod:  (DEV_000F31000001)",
                                     L"Camera (UniqueId - DEV_000F31000001): - InitByUid failed",
                                     L"Camera (Uid: DEV_000F31000001): InitByUid success"));
}

TEST_F(CameraOpening, TheMethodIpGoesStraightToTheAddress) {
  SimulatedCameras cameras{SimulatedCamera()};
  profile.Key("Init.Method", "ip").Key("IP", SimulatedCamera::kIp).Key("Camera_Identifier", "DEV_OTHER");
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_THAT(cameras.CallsOf("VmbCamerasList"), IsEmpty());
  EXPECT_THAT(Notices(),
              ElementsAre(L"Initialize ", L"InitMethod: ip ()", L"Camera (IP: 169.254.10.1): InitByAddr success"));
  EXPECT_NE(profile.Text().find("Camera_Identifier=DEV_000F31000001"), std::string::npos);
}

TEST_F(CameraOpening, AnAddressWhoseCameraCannotBeIdentifiedIsOpenedAnew) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbCameraInfoQuery", "", VmbErrorOther, 1);
  profile.Key("Init.Method", "IP").Key("IP", SimulatedCamera::kIp);
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_THAT(cameras.CallsOf("VmbCameraClose"), SizeIs(1));
  EXPECT_THAT(Notices(),
              ElementsAre(L"Initialize ", L"InitMethod: IP ()", L"Camera (IP: 169.254.10.1): - InitByAddr failed",
                          L"Camera (IP: 169.254.10.1): InitByAddr success"));
}

TEST_F(CameraOpening, TheUniqueIdStaysAsTheProfileWroteIt) {
  SimulatedCameras cameras{SimulatedCamera()};
  profile.Key("Camera_Identifier", SimulatedCamera::kIp);
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_STREQ(device->Name(), L"Vimba_Manta-G-507B_50-0503340001");
  EXPECT_THAT(profile.Text(), testing::HasSubstr("Camera_Identifier=169.254.10.1\n"));
  EXPECT_THAT(profile.Text(), testing::HasSubstr("MIIdent=169.254.10.1\n"));
}

TEST_F(CameraOpening, AProfileWithoutAnyKeyOpensNothing) {
  SimulatedCameras cameras{SimulatedCamera()};
  OpenDevice device(profile.Open());
  EXPECT_FALSE(device);
  EXPECT_THAT(cameras.CallsOf("VmbCameraOpen"), IsEmpty());
  EXPECT_THAT(Notices(), ElementsAre(L"Initialize ", L"InitMethod:  ()"));
}

TEST_F(CameraOpening, AnUnknownMethodOpensByUniqueId) {
  SimulatedCameras cameras{SimulatedCamera()};
  profile.Key("Init.Method", "Whatever").Key("Camera_Identifier", SimulatedCamera::kId);
  OpenDevice device(profile.Open());
  EXPECT_TRUE(device);
  EXPECT_THAT(Notices(), ElementsAre(L"Initialize ", L"InitMethod: Whatever (DEV_000F31000001)",
                                     L"Camera (Uid: DEV_000F31000001): InitByUid success"));
}

TEST_F(CameraOpening, TheIdentifierTakesTheModelForTheMantaFamilyInAnyCapitals) {
  SimulatedCameras cameras{SimulatedCamera().Named("mAnTa", "Manta G-507B  (E0022705) (x)")};
  profile.Key("Camera_Identifier", SimulatedCamera::kId);
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_STREQ(device->Name(), L"Vimba_Manta-G-507B_50-0503340001");
}

TEST_F(CameraOpening, OtherFamiliesKeepTheirName) {
  SimulatedCameras cameras{SimulatedCamera().Named("GC 100%s (new)", "Model")};
  profile.Key("Camera_Identifier", SimulatedCamera::kId);
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_STREQ(device->Name(), L"Vimba_GC 100%s (new)_50-0503340001");
}

TEST_F(CameraOpening, TheHeartbeatIsSetAndItsRefusalForgiven) {
  SimulatedCameras cameras{SimulatedCamera().Missing("GevHeartbeatTimeout")};
  profile.Key("Camera_Identifier", SimulatedCamera::kId);
  OpenDevice device(profile.Open());
  EXPECT_TRUE(device);
  EXPECT_THAT(cameras.CallsOf("VmbFeatureIntSet"),
              testing::Contains("VmbFeatureIntSet(\"GevHeartbeatTimeout\", 5000)"));
}

TEST_F(CameraOpening, ACameraInUseStaysWithItsHolder) {
  SimulatedCameras cameras{SimulatedCamera()};
  profile.Key("Init.Method", "IP").Key("IP", SimulatedCamera::kIp);
  OpenDevice holder(profile.Open());
  ASSERT_TRUE(holder);
  OpenDevice late(profile.Open());
  EXPECT_FALSE(late);
  EXPECT_TRUE(holder->IsOpen());
}

}  // namespace

// check_points_test.cpp
// What a check makes of what it has measured, without a camera.
#include <algorithm>

#include "check/camera_points.h"
#include "check/check_report.h"
#include "check/system_points.h"
#include "gmock/gmock.h"

using namespace Kelcam;

namespace {

using testing::HasSubstr;
using testing::Not;

// A real camera on a gigabit link with jumbo frames, which has taken all its images.
CameraFacts GoodCamera() {
  CameraFacts camera;
  camera.name = "Vimba_Manta_1234";
  camera.title = "--camera 1234";
  camera.row = CameraRow{1, "DEV_1", "Manta", "1234", "192.168.7.2", "full", false};
  camera.opening = Milliseconds(400);
  camera.opening_lines = {"PixelFormat = Mono8", "GVSPPacketSize = 8228"};
  camera.device = DeviceFacts{1000, 1000, false, true, 10.0, 20.0, 50'000'000, {Milliseconds(0.5)}};
  camera.cold = camera.warm = Temperatures{40.0, 45.0};
  camera.snaps.emplace();
  camera.snaps->figures.AddSnap(std::nullopt, 0);
  camera.snaps->times = {Milliseconds(60)};
  camera.run.emplace();
  camera.run->figures.frames = 100;
  camera.run->figures.elapsed = LiveFigures::Seconds(5);
  camera.run->dropped_by_system = 0;
  camera.was_asked = true;
  camera.packets = PacketCounters{10'000, 0, 0, 0};
  camera.route = Route{"eth1", 9000, 1'000'000'000, true};
  return camera;
}

CheckFacts Facts(const CameraFacts& camera) {
  CheckFacts facts;
  facts.system.library = LibraryFacts{"1.9.0", "/opt/libVimbaC.so", false};
  facts.system.was_asked = true;
  facts.system.start_lines = {"GeVTLIsPresent = true"};
  facts.system.identifiers = {"Vimba_Manta_1234"};
  facts.system.receive_buffer_bytes = 16'777'216;
  facts.cameras = {camera};
  return facts;
}

template <class Points, class... More>
Judgement JudgementBy(const Points& points, const std::string& name, const More&... facts) {
  const auto point = std::find_if(points.begin(), points.end(), [&](const auto& one) { return one.name == name; });
  EXPECT_NE(point, points.end()) << name;
  return point->judge(facts...);
}

Judgement JudgementOf(const std::string& name, const CameraFacts& camera) {
  const CheckFacts facts = Facts(camera);
  const auto points = SetUpPoints();
  const bool is_set_up = std::any_of(points.begin(), points.end(), [&](const auto& one) { return one.name == name; });
  return JudgementBy(is_set_up ? points : ImagePoints(), name, facts, facts.cameras.front());
}

Judgement JudgementOf(const std::string& name, const CheckFacts& facts) {
  return JudgementBy(SystemPoints(), name, facts);
}

TEST(CheckPoints, NothingKnownIsNeverFine) {
  const CheckFacts facts;
  const CameraFacts camera;

  for (const SystemPoint& point : SystemPoints()) {
    EXPECT_EQ(point.judge(facts).verdict, Verdict::kNotLookedAt) << point.name;
    EXPECT_NE(point.judge(facts).found, "") << point.name;
  }
  for (const auto points : {SetUpPoints(), ImagePoints()}) {
    for (const CameraPoint& point : points) {
      EXPECT_EQ(point.judge(facts, camera).verdict, Verdict::kNotLookedAt) << point.name;
      EXPECT_NE(point.judge(facts, camera).found, "") << point.name;
    }
  }
}

TEST(CheckPoints, AGoodCameraIsFine) {
  const CheckReport report(Facts(GoodCamera()), Masking({}));

  EXPECT_EQ(report.Worst(), Verdict::kFine) << report.Text();
}

TEST(CheckPoints, PacketsThatTheAdapterDoesNotTakeAreBroken) {
  CameraFacts camera = GoodCamera();
  camera.route->mtu_bytes = 1500;

  const Judgement judgement = JudgementOf("packet size", camera);

  EXPECT_EQ(judgement.verdict, Verdict::kBroken);
  EXPECT_EQ(judgement.found, "packets of 8228 bytes, eth1 takes up to 1500 (MTU): none of them arrives whole");
}

TEST(CheckPoints, SmallPacketsAreOfTheAdapterOrOfTheWay) {
  CameraFacts camera = GoodCamera();
  camera.opening_lines = {"GVSPPacketSize = 1500"};
  EXPECT_THAT(JudgementOf("packet size", camera).to_do, HasSubstr("without one"));

  camera.route->mtu_bytes = 1500;
  EXPECT_THAT(JudgementOf("packet size", camera).to_do, HasSubstr("MTU of 9000"));
  EXPECT_EQ(JudgementOf("packet size", camera).verdict, Verdict::kLook);
}

TEST(CheckPoints, ASlowLinkAndAnotherSubnetAreToLookAt) {
  CameraFacts camera = GoodCamera();
  camera.route->link_bits_per_s = 100'000'000;
  EXPECT_EQ(JudgementOf("network", camera).found, "eth1, 100 Mbit/s: a GigE camera needs 1000");

  camera.route->is_in_subnet = false;
  EXPECT_THAT(JudgementOf("network", camera).found, HasSubstr("in no subnet of it"));
  EXPECT_EQ(JudgementOf("network", camera).verdict, Verdict::kLook);
}

TEST(CheckPoints, AStreamRateAboveTheLinkIsToLookAt) {
  CameraFacts camera = GoodCamera();
  camera.device->stream_bytes_per_s = 200'000'000;

  EXPECT_EQ(JudgementOf("network", camera).verdict, Verdict::kLook);
  EXPECT_THAT(JudgementOf("network", camera).to_do, HasSubstr("BYTEPERSECOND"));
}

TEST(CheckPoints, AnAdapterThatDoesNotReportItsSpeedIsSaidToBe) {
  CameraFacts camera = GoodCamera();
  camera.route->link_bits_per_s.reset();

  EXPECT_EQ(JudgementOf("network", camera).found, "eth1, speed not reported");
}

TEST(CheckPoints, ASmallReceiveBufferIsToLookAt) {
  CheckFacts facts = Facts(GoodCamera());
  facts.system.receive_buffer_bytes = 212'992;

  EXPECT_EQ(JudgementOf("receive buffer", facts).verdict, Verdict::kLook);
  EXPECT_THAT(JudgementOf("receive buffer", facts).found, HasSubstr("holds 1.7 ms of a full gigabit link"));

  facts.system.library->is_simulated = true;
  EXPECT_EQ(JudgementOf("receive buffer", facts).verdict, Verdict::kNotLookedAt);
}

TEST(CheckPoints, PacketsThatTheSystemThrewAwayAreToLookAt) {
  CameraFacts camera = GoodCamera();
  camera.run->dropped_by_system = 12;

  EXPECT_EQ(JudgementOf("packets", camera).verdict, Verdict::kLook);
  EXPECT_THAT(JudgementOf("packets", camera).found, HasSubstr("threw away 12 packets of all programs"));
}

TEST(CheckPoints, PacketsThatWereSentAgainAreCounted) {
  CameraFacts camera = GoodCamera();
  camera.packets = PacketCounters{9'990, 10, 10, std::nullopt};

  EXPECT_THAT(JudgementOf("packets", camera).found, HasSubstr("9990 received, 10 missed (0.100 %), 10 sent again"));
  EXPECT_EQ(JudgementOf("packets", camera).verdict, Verdict::kLook);
}

TEST(CheckPoints, CountersThatTheLibraryForgetsAreNoCounters) {
  CameraFacts camera = GoodCamera();
  camera.packets = PacketCounters{};
  camera.run->dropped_by_system.reset();

  EXPECT_EQ(JudgementOf("packets", camera).verdict, Verdict::kNotLookedAt);
}

TEST(CheckPoints, MoreThanATenthOfFailuresIsBroken) {
  CameraFacts camera = GoodCamera();
  camera.run->figures.failures = {{12103, 5}};
  EXPECT_EQ(JudgementOf("run", camera).verdict, Verdict::kLook);

  camera.run->figures.failures = {{12103, 50}};
  EXPECT_EQ(JudgementOf("run", camera).verdict, Verdict::kBroken);
}

TEST(CheckPoints, ARateBelowTheReportedOneIsToLookAt) {
  CameraFacts camera = GoodCamera();
  camera.device->rate_hz = 40.0;

  EXPECT_EQ(JudgementOf("frame rate", camera).verdict, Verdict::kLook);

  camera.device->rate_hz.reset();
  EXPECT_EQ(JudgementOf("frame rate", camera).verdict, Verdict::kNotLookedAt);
}

TEST(CheckPoints, OfACameraThatIsNotOpenNothingIsKnown) {
  CameraFacts camera;
  camera.opening_fault = Fault{Fault::kNoCode, "the camera 7 cannot be opened"};

  EXPECT_EQ(JudgementOf("opening", camera).verdict, Verdict::kBroken);
  EXPECT_EQ(JudgementOf("clock", camera).found, "the camera is not open");
}

TEST(CheckPoints, AFaultWithoutANextStepGetsOne) {
  const Fault fault{12345, "something"};

  const Judgement judgement = Of(Verdict::kBroken, fault, "try again");

  EXPECT_EQ(judgement.found, "error 12345: something");
  EXPECT_EQ(judgement.to_do, "try again");
}

TEST(CheckReport, SaysWhoCouldNotBeLookedAtAfterAnInterrupt) {
  CheckFacts facts = Facts(CameraFacts());
  facts.was_interrupted = true;

  EXPECT_THAT(CheckReport(facts, Masking({})).Text(), HasSubstr("the check was stopped before"));
}

TEST(CheckReport, HasNoLineOfMoreThanEightyCharacters) {
  CheckFacts facts = Facts(GoodCamera());
  facts.system.program = "kelcam 1.0.0";
  facts.system.module = "~/libkelCameraVimba.so";
  facts.system.system = "Debian GNU/Linux 12 (bookworm), Linux 6.1.0-18-amd64 x86_64";
  facts.system.time = "2026-11-22T16:54:57.088+00:00";
  facts.system.receive_buffer_bytes = 212'992;

  std::istringstream text(CheckReport(facts, Masking({})).Text());
  for (std::string line; std::getline(text, line);) {
    const auto letters = std::count_if(line.begin(), line.end(), [](char c) { return (c & 0xC0) != 0x80; });
    EXPECT_LE(letters, 80) << line;
    EXPECT_THAT(line, Not(testing::EndsWith(" "))) << line;
  }
}

}  // namespace

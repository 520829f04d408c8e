// link_test.cpp
// Frames on links that lose, queue, delay and resend, through VimbaC. tests/unit/link/ holds the arithmetic.
#include <algorithm>
#include <chrono>

#include "simulated_link.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr int kCapacity = 1'000'000;
constexpr int kPacketBytes = 500;
constexpr int kPacketHeaderBytes = 36;
// 100,000 bytes in 200 packets; at the whole capacity they take a tenth of a second.
constexpr int kWidth = 100;
constexpr int kHeight = 1000;
constexpr std::uint32_t kImageBytes = kWidth * kHeight;
constexpr milliseconds kStream{100};

SimulatedCamera Camera(int number = 1, int bytes_per_s = kCapacity) {
  return SimulatedCamera(number)
      .RealTiming()
      .Sensor(kWidth, kHeight)
      .With("lineTime_us", 0.0)
      .Range("StreamBytesPerSecond", 1000, kCapacity)
      .Feature("StreamBytesPerSecond", bytes_per_s)
      .Feature("GVSPPacketSize", kPacketBytes + kPacketHeaderBytes)
      .Feature("ExposureTimeAbs", 30.0)
      .Feature("AcquisitionMode", "SingleFrame");
}

// Cameras on links, with the API started.
struct LinkedCameras {
  LinkedCameras(const std::vector<SimulatedCamera>& cameras, const nlohmann::json& links) {
    nlohmann::json configuration{{"cameras", nlohmann::json::array()}, {"links", links}};
    for (const SimulatedCamera& camera : cameras) configuration["cameras"].push_back(camera.Configuration());
    EXPECT_EQ(VimbaSimConfigure(configuration.dump().c_str()), kAccepted) << VimbaSimLastError();
    EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  }
  LinkedCameras(const SimulatedCamera& camera, const nlohmann::json& link)
      : LinkedCameras(std::vector{camera}, nlohmann::json::array({link})) {}
  ~LinkedCameras() {
    VmbShutdown();
    EXPECT_EQ(VimbaSimConfigure(nullptr), kAccepted);
  }
  LinkedCameras(const LinkedCameras&) = delete;
  LinkedCameras& operator=(const LinkedCameras&) = delete;
};

// One frame of one camera.
struct OneFrame {
  explicit OneFrame(const std::string& id = SimulatedCamera::kId) : camera(id) {
    std::fill(ring.Buffer(0).begin(), ring.Buffer(0).end(), static_cast<unsigned char>(0));
    ring.Start();
  }
  void Begin() {
    begin = steady_clock::now();
    RunCommand(camera, "AcquisitionStart");
  }
  VmbFrame_t Take() {
    Begin();
    const VmbFrame_t frame = ring.WaitFor(1).front();
    time = steady_clock::now() - begin;
    return frame;
  }

  OpenedHandle camera;
  FrameRing ring{camera, 1};
  steady_clock::time_point begin;
  Seconds time{};
};

nlohmann::json Traffic(int rate_bytes_per_s) {
  return nlohmann::json::array({{{"rate_bytes_per_s", rate_bytes_per_s}}});
}

// 1.2 of the capacity are sent. A sixth of 200 packets is 33 and a third.
TEST(Link, LosesAsManyPacketsAsTheExcessComesTo) {
  const LinkedCameras world(Camera(1, 600'000), {{"capacity", kCapacity}, {"background", Traffic(600'000)}});

  const VmbFrame_t frame = OneFrame().Take();

  EXPECT_EQ(frame.receiveStatus, VmbFrameStatusIncomplete);
  EXPECT_EQ(frame.imageSize, kImageBytes - 34 * kPacketBytes);
}

// The sixth is 16,666 bytes. Without the last 6,666 of them, 20 packets are too much.
TEST(Link, LosesLessWithABuffer) {
  const LinkedCameras world(Camera(1, 600'000),
                            {{"capacity", kCapacity}, {"buffer_bytes", 13'333}, {"background", Traffic(600'000)}});

  EXPECT_EQ(OneFrame().Take().imageSize, kImageBytes - 20 * kPacketBytes);
}

TEST(Link, LosesNothingThatItsBufferHolds) {
  const LinkedCameras world(Camera(1, 600'000),
                            {{"capacity", kCapacity}, {"buffer_bytes", 40'000}, {"background", Traffic(600'000)}});

  EXPECT_EQ(OneFrame().Take().receiveStatus, VmbFrameStatusComplete);
}

TEST(Link, LosesWhatASlowReceiverDoesNotTake) {
  const LinkedCameras world(Camera(), {{"capacity", kCapacity}, {"receiver", {{"capacity", kCapacity * 3 / 4}}}});

  EXPECT_EQ(OneFrame().Take().imageSize, kImageBytes * 3 / 4);
}

TEST(Link, LosesTheSamePacketsForTheSameSeed) {
  std::vector<std::vector<unsigned char>> buffers;
  for (const int seed : {5, 5, 6}) {
    const LinkedCameras world(Camera(1, 600'000).With("seed", seed).With("scene", "numbers"),
                              {{"capacity", kCapacity}, {"background", Traffic(600'000)}});
    OneFrame frame;
    EXPECT_EQ(frame.Take().receiveStatus, VmbFrameStatusIncomplete);
    buffers.push_back(frame.ring.Buffer(0));
  }

  EXPECT_EQ(buffers[0], buffers[1]);
  EXPECT_NE(buffers[0], buffers[2]);
}

TEST(Link, LeavesTheCamerasOfOthersAlone) {
  const LinkedCameras world({Camera(1), Camera(2).With("link", "B")},
                            {{{"name", "A"}, {"capacity", kCapacity}, {"dead", {nlohmann::json::object()}}},
                             {{"name", "B"}, {"capacity", kCapacity}}});
  OneFrame dead;
  OneFrame alive("DEV_000F31000002");
  dead.Begin();
  alive.Begin();

  EXPECT_EQ(dead.ring.WaitFor(1).front().imageSize, 0u);
  EXPECT_EQ(alive.ring.WaitFor(1).front().receiveStatus, VmbFrameStatusComplete);
}

// Its frame would fill the link for ten seconds.
TEST(Link, IsFreeOfACameraThatIsUnplugged) {
  const LinkedCameras world({Camera(1), Camera(2).Sensor(1000, 10'000)}, {{{"capacity", kCapacity}}});
  OneFrame unplugged("DEV_000F31000002");
  OneFrame other;
  unplugged.Begin();
  EXPECT_TRUE(Eventually([&] { return VimbaSimExposed("DEV_000F31000002") > 0; }));

  EXPECT_EQ(VimbaSimUnplug("DEV_000F31000002"), kAccepted);

  EXPECT_EQ(other.Take().receiveStatus, VmbFrameStatusComplete);
}

struct FrameTimeout : testing::Test {
  static constexpr milliseconds kTimeout{400};
  // Dead, for the tests of frames with lost packets.
  static nlohmann::json Link(milliseconds timeout, const nlohmann::json& dead = nlohmann::json::object()) {
    return {{"capacity", kCapacity}, {"frameTimeout_ms", timeout.count()}, {"dead", {dead}}};
  }
};

TEST_F(FrameTimeout, PassesBeforeAFrameWithLostPacketsArrives) {
  const LinkedCameras world(Camera(), Link(kTimeout));
  OneFrame frame;

  EXPECT_EQ(frame.Take().receiveStatus, VmbFrameStatusIncomplete);

  EXPECT_GE(frame.time, kStream + kTimeout);
}

TEST_F(FrameTimeout, DoesNotHoldUpAFrameThatCameWhole) {
  const LinkedCameras world(Camera(), Link(seconds(60), {{"for_ms", 0}}));

  EXPECT_EQ(OneFrame().Take().receiveStatus, VmbFrameStatusComplete);
}

// The next frame begins when the first one has been sent, and comes after it all the same.
TEST_F(FrameTimeout, DoesNotHoldUpTheCamera) {
  constexpr seconds kLongTimeout{2};
  const LinkedCameras world(Camera().Feature("AcquisitionMode", "Continuous"), Link(kLongTimeout, {{"for_ms", 50}}));
  const OpenedHandle camera;
  FrameRing ring(camera, 2);
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  const auto frames = ring.WaitFor(2);

  EXPECT_EQ(frames[0].receiveStatus, VmbFrameStatusIncomplete);
  EXPECT_EQ(frames[1].receiveStatus, VmbFrameStatusComplete);
  const auto between = static_cast<double>(frames[1].timestamp - frames[0].timestamp) /
                       static_cast<double>(IntOf(camera, "GevTimestampTickFrequency"));
  EXPECT_LT(Seconds(between), kLongTimeout);
}

TEST_F(FrameTimeout, KeepsQueuedFramesInUse) {
  const LinkedCameras world(Camera().Feature("AcquisitionMode", "Continuous"), Link(seconds(600)));
  const OpenedHandle camera;
  FrameRing ring(camera, 2);
  ring.Start();

  RunCommand(camera, "AcquisitionStart");

  EXPECT_TRUE(Eventually([&] { return IntOf(camera, "StatFrameDropped") > 0; }));
  EXPECT_EQ(ring.Arrived(), 0u);
}

TEST_F(FrameTimeout, EndsWithAnAbort) {
  const LinkedCameras world(Camera(), Link(seconds(600)));
  OneFrame frame;
  frame.Begin();
  EXPECT_TRUE(Eventually([&] { return FloatOf(frame.camera, "StatFrameRate") > 0.0; }));

  RunCommand(frame.camera, "AcquisitionAbort");
  WaitIdle();

  EXPECT_EQ(frame.ring.Arrived(), 0u);
}

TEST_F(FrameTimeout, DoesNotHoldUpClosing) {
  const LinkedCameras world(Camera(), Link(seconds(600)));
  OneFrame frame;
  frame.Begin();

  EXPECT_EQ(VmbCameraClose(frame.camera), VmbErrorSuccess);

  EXPECT_LT(steady_clock::now() - frame.begin, seconds(60));
}

// In its first half the background takes half of the link, so that 25,000 bytes are lost. Sending them again takes
// 25 ms.
struct Resends : FrameTimeout {
  static nlohmann::json Link(milliseconds timeout) {
    return {{"capacity", kCapacity},
            {"frameTimeout_ms", timeout.count()},
            {"resends", true},
            {"background", {{{"rate_bytes_per_s", kCapacity}, {"for_ms", kStream.count() / 2}}}}};
  }
};

TEST_F(Resends, CureAFrameThatThenComesLater) {
  const LinkedCameras world(Camera(), Link(seconds(60)));
  OneFrame frame;

  const VmbFrame_t arrived = frame.Take();

  EXPECT_EQ(arrived.receiveStatus, VmbFrameStatusComplete);
  EXPECT_EQ(arrived.imageSize, kImageBytes);
  EXPECT_GE(frame.time, kStream + milliseconds(25));
  EXPECT_EQ(IntOf(frame.camera, "StatPacketMissed"), 0);
}

TEST_F(Resends, CureNothingAfterTheTimeOut) {
  const LinkedCameras world(Camera(), Link(milliseconds(24)));

  const VmbFrame_t frame = OneFrame().Take();

  EXPECT_EQ(frame.receiveStatus, VmbFrameStatusIncomplete);
  EXPECT_EQ(frame.imageSize, kImageBytes - 25'000);
}

TEST_F(Resends, CurePacketsLostAtRandom) {
  const LinkedCameras world(Camera().With("packetLoss", 0.1), Link(seconds(60)));

  EXPECT_EQ(OneFrame().Take().receiveStatus, VmbFrameStatusComplete);
}

struct Refused {
  const char* json;
  const char* why;
};

class RefusedLink : public testing::TestWithParam<Refused> {};

TEST_P(RefusedLink, NamesMemberAndValue) {
  EXPECT_EQ(VimbaSimConfigure(GetParam().json), kRefused);

  EXPECT_STREQ(VimbaSimLastError(), GetParam().why);
}

INSTANTIATE_TEST_SUITE_P(
    Link, RefusedLink,
    testing::Values(
        Refused{R"({"link":{"capacity":5},"links":[{}]})", "link: {\"capacity\":5} and links are both there"},
        Refused{R"({"links":[]})", "links: [] holds no link"},
        Refused{R"({"links":[{},{}]})", "links[1].name: \"link\" is taken already"},
        Refused{R"({"links":[{"name":1}]})", "links[0].name: 1 is no text"},
        Refused{R"({"links":[{"speed":1}]})", "links[0].speed: there is no such member"},
        Refused{R"({"links":[{"buffer_bytes":-1}]})", "links[0].buffer_bytes: -1 is no number from 0 to 1e+12"},
        Refused{R"({"links":[{"mtu":575}]})", "links[0].mtu: 575 is no whole number from 576 to 65535"},
        Refused{R"({"links":[{"receiver":{"capacity":0}}]})",
                "links[0].receiver.capacity: 0 is no number from 1 to 1e+12"},
        Refused{R"({"links":[{"background":[{"rate_bytes_per_s":-1}]}]})",
                "links[0].background[0].rate_bytes_per_s: -1 is no number from 0 to 1e+12"},
        Refused{R"({"links":[{"dead":[{},{"every_ms":0}]}]})",
                "links[0].dead[1].every_ms: 0 is no number from 1 to 1e+06"},
        Refused{R"({"links":[{"resends":1}]})", "links[0].resends: 1 is neither true nor false"},
        Refused{R"({"links":[{"frameTimeout_ms":-1}]})", "links[0].frameTimeout_ms: -1 is no number from 0 to 1e+06"},
        Refused{R"({"links":[{"name":"A"},{"name":"B"}],"cameras":[{"link":"C"}]})",
                "cameras[0].link: \"C\" is none of A, B"}));

struct Negotiated {
  int mtu;
  int largest_of_camera;
  int found;
};
void PrintTo(const Negotiated& expected, std::ostream* out) { *out << expected.mtu; }

class Mtu : public testing::TestWithParam<Negotiated> {};

TEST_P(Mtu, LimitsThePacketSizeThatIsNegotiated) {
  const LinkedCameras world(SimulatedCamera().With("packetSize", {{"negotiated", GetParam().largest_of_camera}}),
                            {{"mtu", GetParam().mtu}});
  const OpenedHandle camera;

  RunCommand(camera, "GVSPAdjustPacketSize");

  EXPECT_EQ(IntOf(camera, "GVSPPacketSize"), GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(Link, Mtu,
                         testing::Values(Negotiated{1500, 8228, 1500}, Negotiated{9000, 8228, 8228},
                                         Negotiated{9000, 9000, 9000}, Negotiated{1498, 9000, 1496}));

TEST(MtuOfALink, LosesLargerPackets) {
  const LinkedCameras world(Camera().Feature("GVSPPacketSize", 1504), {{"mtu", 1500}, {"resends", true}});
  OneFrame frame;

  EXPECT_EQ(frame.Take().imageSize, 0u);
  EXPECT_EQ(IntOf(frame.camera, "StatPacketReceived"), 0);
}

TEST(MtuOfALink, CarriesPacketsOfItsSize) {
  const LinkedCameras world(Camera().Feature("GVSPPacketSize", 1500), {{"mtu", 1500}});

  EXPECT_EQ(OneFrame().Take().receiveStatus, VmbFrameStatusComplete);
}

}  // namespace

// call_record_test.cpp
// The record of calls: one line each, in order, word for word.
#include <future>
#include <tuple>

#include "simulated_link.h"

namespace {

struct Record : testing::Test {
  StartedCameras world;
};

void OnFrame(VmbHandle_t, VmbFrame_t*) {}

// A call of VmbCaptureEnd that cannot return before it is released, because it waits for a callback. It is the first
// one of the record.
class HeldCall {
 public:
  HeldCall() {
    m_ring.on_frame = [this](VmbFrame_t&) {
      m_entered.set_value();
      std::ignore = m_release.get_future().wait_for(kDeadline);
    };
    m_ring.Start();
    RunCommand(m_camera, "AcquisitionStart");
    EXPECT_EQ(m_entered.get_future().wait_for(kDeadline), std::future_status::ready);
    VimbaSimClearCalls();
    m_answer = std::async(std::launch::async, [this] { return VmbCaptureEnd(m_camera); });
    EXPECT_TRUE(Eventually([] { return !RecordedCalls().empty(); }));
  }
  HeldCall(const HeldCall&) = delete;
  HeldCall& operator=(const HeldCall&) = delete;

  // Returns after the call.
  void Release() {
    m_release.set_value();
    EXPECT_EQ(m_answer.get(), VmbErrorSuccess);
  }

 private:
  std::promise<void> m_entered;
  std::promise<void> m_release;
  OpenedHandle m_camera;
  FrameRing m_ring{m_camera, 1};
  std::future<VmbError_t> m_answer;
};

TEST_F(Record, WritesCallsOfTheSystem) {
  VimbaSimClearCalls();
  VmbUint32_t found = 0;
  VmbCameraInfo_t info{};
  VmbVersionInfo_t version{};

  std::ignore = VmbVersionQuery(&version, sizeof version);
  std::ignore = VmbStartup();
  VmbShutdown();
  std::ignore = VmbCamerasList(nullptr, 0, &found, sizeof info);
  std::ignore = VmbCameraInfoQuery(SimulatedCamera::kId, &info, sizeof info);
  std::ignore = VmbFeatureCommandRun(gVimbaHandle, "GeVDiscoveryAllOnce");
  std::ignore = VmbFeatureCommandRun(nullptr, "AcquisitionStop");

  EXPECT_EQ(RecordedCalls(),
            "VmbVersionQuery() = 0\n"
            "VmbStartup() = 0\n"
            "VmbShutdown()\n"
            "VmbCamerasList(0) = 0\n"
            "VmbCameraInfoQuery(\"DEV_000F31000001\") = 0\n"
            "VmbFeatureCommandRun(system, \"GeVDiscoveryAllOnce\") = 0\n"
            "VmbFeatureCommandRun(null, \"AcquisitionStop\") = -4\n");
}

TEST_F(Record, WritesFeaturesWithTheirValues) {
  const OpenedHandle camera("169.254.10.1");
  VimbaSimClearCalls();
  char text[4];
  VmbInt64_t integer = 0;

  std::ignore = VmbFeatureIntSet(camera, "Width", 40);
  std::ignore = VmbFeatureFloatSet(camera, "ExposureTimeAbs", 0.1);
  std::ignore = VmbFeatureFloatSet(camera, "ExposureTimeAbs", 10000.0);
  std::ignore = VmbFeatureEnumSet(camera, "AcquisitionMode", "Con\"t\\");
  std::ignore = VmbFeatureEnumAsInt(camera, "PixelFormat", "Mono8", &integer);
  std::ignore = VmbFeatureStringGet(camera, "DeviceID", text, sizeof text, nullptr);
  std::ignore = VmbFeatureIntGet(camera, nullptr, &integer);

  EXPECT_EQ(RecordedCalls(),
            "VmbFeatureIntSet(DEV_000F31000001, \"Width\", 40) = 0\n"
            "VmbFeatureFloatSet(DEV_000F31000001, \"ExposureTimeAbs\", 0.1) = -11\n"
            "VmbFeatureFloatSet(DEV_000F31000001, \"ExposureTimeAbs\", 10000) = 0\n"
            "VmbFeatureEnumSet(DEV_000F31000001, \"AcquisitionMode\", \"Con\\\"t\\\\\") = -11\n"
            "VmbFeatureEnumAsInt(DEV_000F31000001, \"PixelFormat\", \"Mono8\") = 0\n"
            "VmbFeatureStringGet(DEV_000F31000001, \"DeviceID\", 4) = -9\n"
            "VmbFeatureIntGet(DEV_000F31000001, null) = -7\n");
}

TEST_F(Record, NumbersFramesInTheOrderOfAnnouncement) {
  const OpenedHandle camera;
  unsigned char buffer[4];
  VmbFrame_t frames[2]{};
  for (VmbFrame_t& frame : frames) {
    frame.buffer = buffer;
    frame.bufferSize = sizeof buffer;
  }
  VimbaSimClearCalls();

  std::ignore = VmbFrameAnnounce(camera, &frames[1], sizeof(VmbFrame_t));
  std::ignore = VmbFrameAnnounce(camera, &frames[0], sizeof(VmbFrame_t) - 1);
  std::ignore = VmbFrameAnnounce(camera, &frames[0], sizeof(VmbFrame_t));
  std::ignore = VmbFrameRevokeAll(camera);
  std::ignore = VmbFrameAnnounce(camera, &frames[0], sizeof(VmbFrame_t));

  EXPECT_EQ(RecordedCalls(),
            "VmbFrameAnnounce(DEV_000F31000001, frame 0) = 0\n"
            "VmbFrameAnnounce(DEV_000F31000001, frame 1) = -8\n"
            "VmbFrameAnnounce(DEV_000F31000001, frame 1) = 0\n"
            "VmbFrameRevokeAll(DEV_000F31000001) = 0\n"
            "VmbFrameAnnounce(DEV_000F31000001, frame 0) = 0\n");
}

TEST_F(Record, WritesFramesWithTheirNumbers) {
  const OpenedHandle camera;
  FrameRing ring(camera, 2);
  VmbFrame_t stranger{};
  VimbaSimClearCalls();

  std::ignore = VmbCaptureFrameQueue(camera, &ring.Frame(1), &OnFrame);
  std::ignore = VmbCaptureFrameQueue(camera, &stranger, &OnFrame);
  std::ignore = VmbCaptureFrameQueue(camera, nullptr, &OnFrame);

  EXPECT_EQ(RecordedCalls(),
            "VmbCaptureFrameQueue(DEV_000F31000001, frame 1) = -15\n"
            "VmbCaptureFrameQueue(DEV_000F31000001, frame unknown) = -7\n"
            "VmbCaptureFrameQueue(DEV_000F31000001, frame null) = -7\n");
}

TEST_F(Record, CallsAStaleHandleUnknown) {
  VmbHandle_t stale = nullptr;
  EXPECT_EQ(VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeFull, &stale), VmbErrorSuccess);
  VimbaSimClearCalls();

  std::ignore = VmbCameraClose(stale);
  std::ignore = VmbCameraClose(stale);

  EXPECT_EQ(RecordedCalls(), "VmbCameraClose(DEV_000F31000001) = 0\nVmbCameraClose(unknown) = -4\n");
}

TEST_F(Record, ShowsACallThatHasNotReturned) {
  HeldCall held;

  const std::string before = RecordedCalls();
  held.Release();
  const std::string after = RecordedCalls();

  EXPECT_EQ(before, "VmbCaptureEnd(DEV_000F31000001) = ...\n");
  EXPECT_EQ(after, "VmbCaptureEnd(DEV_000F31000001) = 0\n");
}

TEST_F(Record, KeepsTheNewestLinesWhenAnOldCallReturnsAfterThem) {
  constexpr int kKept = 100'000;
  HeldCall held;
  VmbVersionInfo_t version{};
  VmbUint32_t found = 0;

  for (int i = 1; i < kKept; ++i) std::ignore = VmbVersionQuery(&version, 0);
  std::ignore = VmbCamerasList(nullptr, 0, &found, sizeof(VmbCameraInfo_t));
  held.Release();

  std::string expected;
  for (int i = 1; i < kKept; ++i) expected += "VmbVersionQuery() = -8\n";
  expected += "VmbCamerasList(0) = 0\n";
  // Not EXPECT_EQ: nobody reads megabytes of difference.
  EXPECT_TRUE(RecordedCalls() == expected);
  EXPECT_EQ(VimbaSimCallCount(), kKept + 1u);
}

TEST_F(Record, CountsOnWhileItIsOff) {
  VimbaSimClearCalls();

  VimbaSimRecordCalls(0);
  std::ignore = VmbVersionQuery(nullptr, 0);
  VimbaSimRecordCalls(1);
  std::ignore = VmbVersionQuery(nullptr, 0);

  EXPECT_EQ(RecordedCalls(), "VmbVersionQuery() = -7\n");
  EXPECT_EQ(VimbaSimCallCount(), 2u);
}

TEST_F(Record, CopiesWhatFits) {
  const std::string line = "VmbVersionQuery() = -7\n";
  VimbaSimClearCalls();
  std::ignore = VmbVersionQuery(nullptr, 0);
  char text[8];

  EXPECT_EQ(VimbaSimCalls(text, sizeof text), line.size() + 1);

  EXPECT_STREQ(text, "VmbVers");
}

TEST(RecordOfCalls, BeginsAnewWithAConfiguration) {
  std::ignore = VmbVersionQuery(nullptr, 0);
  EXPECT_NE(RecordedCalls(), "");

  EXPECT_EQ(VimbaSimConfigure(nullptr), kAccepted);

  EXPECT_EQ(RecordedCalls(), "");
}

}  // namespace

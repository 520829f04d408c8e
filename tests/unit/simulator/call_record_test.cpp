// call_record_test.cpp
// The record of calls: one line each, in order, word for word.
#include <thread>

#include "frame_ring.h"

namespace {

struct Record : testing::Test {
  StartedCameras world;
};

void OnFrame(VmbHandle_t, VmbFrame_t*) {}

TEST_F(Record, WritesCallsOfTheSystem) {
  VimbaSimClearCalls();
  VmbUint32_t found = 0;
  VmbCameraInfo_t info{};
  VmbVersionInfo_t version{};
  VmbVersionQuery(&version, sizeof version);
  VmbStartup();
  VmbShutdown();
  VmbCamerasList(nullptr, 0, &found, sizeof info);
  VmbCameraInfoQuery(SimulatedCamera::kId, &info, sizeof info);
  VmbFeatureCommandRun(gVimbaHandle, "GeVDiscoveryAllOnce");
  VmbFeatureCommandRun(nullptr, "AcquisitionStop");

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
  VmbFeatureIntSet(camera, "Width", 40);
  VmbFeatureFloatSet(camera, "ExposureTimeAbs", 0.1);
  VmbFeatureFloatSet(camera, "ExposureTimeAbs", 10000.0);
  VmbFeatureEnumSet(camera, "AcquisitionMode", "Con\"t\\");
  VmbFeatureEnumAsInt(camera, "PixelFormat", "Mono8", &integer);
  VmbFeatureStringGet(camera, "DeviceID", text, 4, nullptr);
  VmbFeatureIntGet(camera, nullptr, &integer);

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
  VmbFrame_t frames[3]{};
  for (VmbFrame_t& frame : frames) {
    frame.buffer = buffer;
    frame.bufferSize = sizeof buffer;
  }
  VimbaSimClearCalls();
  VmbFrameAnnounce(camera, &frames[1], sizeof(VmbFrame_t));
  VmbFrameAnnounce(camera, &frames[0], sizeof(VmbFrame_t) - 1);
  VmbFrameAnnounce(camera, &frames[0], sizeof(VmbFrame_t));
  VmbCaptureFrameQueue(camera, &frames[0], &OnFrame);
  VmbCaptureFrameQueue(camera, &frames[2], &OnFrame);
  VmbCaptureFrameQueue(camera, nullptr, &OnFrame);
  VmbFrameRevokeAll(camera);
  VmbFrameAnnounce(camera, &frames[2], sizeof(VmbFrame_t));

  EXPECT_EQ(RecordedCalls(),
            "VmbFrameAnnounce(DEV_000F31000001, frame 0) = 0\n"
            "VmbFrameAnnounce(DEV_000F31000001, frame 1) = -8\n"
            "VmbFrameAnnounce(DEV_000F31000001, frame 1) = 0\n"
            "VmbCaptureFrameQueue(DEV_000F31000001, frame 1) = -15\n"
            "VmbCaptureFrameQueue(DEV_000F31000001, frame unknown) = -7\n"
            "VmbCaptureFrameQueue(DEV_000F31000001, frame null) = -7\n"
            "VmbFrameRevokeAll(DEV_000F31000001) = 0\n"
            "VmbFrameAnnounce(DEV_000F31000001, frame 0) = 0\n");
}

TEST_F(Record, CallsAStaleHandleUnknown) {
  VmbHandle_t stale = nullptr;
  VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeFull, &stale);
  VimbaSimClearCalls();

  VmbCameraClose(stale);
  VmbCameraClose(stale);

  EXPECT_EQ(RecordedCalls(), "VmbCameraClose(DEV_000F31000001) = 0\nVmbCameraClose(unknown) = -4\n");
}

TEST_F(Record, ShowsACallThatHasNotReturned) {
  VimbaSimAddFaults(R"({"call":"VmbVersionQuery","delay_ms":300})");
  VimbaSimClearCalls();
  VmbVersionInfo_t version{};
  std::thread caller([&] { VmbVersionQuery(&version, sizeof version); });
  const auto deadline = std::chrono::steady_clock::now() + kDeadline;
  std::string first;
  while (first.empty() && std::chrono::steady_clock::now() < deadline) first = RecordedCalls();
  caller.join();

  EXPECT_EQ(first, "VmbVersionQuery() = ...\n");
  EXPECT_EQ(RecordedCalls(), "VmbVersionQuery() = 0\n");
}

TEST_F(Record, KeepsTheNewestLines) {
  constexpr int kKept = 100'000;
  VimbaSimAddFaults(R"({"call":"VmbVersionQuery","delay_ms":300})");
  VimbaSimClearCalls();
  VmbVersionInfo_t version{};
  VmbUint32_t found = 0;
  // Its line is mostly gone by the time at which it returns.
  std::thread caller([&] { VmbVersionQuery(&version, sizeof version); });
  const auto deadline = std::chrono::steady_clock::now() + kDeadline;
  while (RecordedCalls().empty() && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  for (int i = 1; i < kKept; ++i) VmbVersionQuery(&version, 0);
  VmbCamerasList(nullptr, 0, &found, sizeof(VmbCameraInfo_t));
  caller.join();

  std::string expected;
  for (int i = 1; i < kKept; ++i) expected += "VmbVersionQuery() = -8\n";
  EXPECT_TRUE(RecordedCalls() == expected + "VmbCamerasList(0) = 0\n");
  EXPECT_EQ(VimbaSimCallCount(), kKept + 1u);
}

TEST_F(Record, CountsOnWhileItIsOff) {
  VimbaSimClearCalls();
  VimbaSimRecordCalls(0);
  VmbVersionQuery(nullptr, 0);
  VimbaSimRecordCalls(1);
  VmbVersionQuery(nullptr, 0);

  EXPECT_EQ(RecordedCalls(), "VmbVersionQuery() = -7\n");
  EXPECT_EQ(VimbaSimCallCount(), 2u);
}

TEST_F(Record, CopiesWhatFits) {
  VimbaSimClearCalls();
  VmbVersionQuery(nullptr, 0);
  char text[8];

  EXPECT_EQ(VimbaSimCalls(text, sizeof text), 24u);

  EXPECT_STREQ(text, "VmbVers");
}

TEST(RecordOfCalls, BeginsAnewWithAConfiguration) {
  { const StartedCameras world; }

  EXPECT_EQ(VimbaSimConfigure(nullptr), 0);

  EXPECT_EQ(RecordedCalls(), "");
}

}  // namespace

// packet_size_test.cpp
// The stream packet size: negotiated by the camera, capped by the driver, reported either way.
#include "stream/packet_size.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VimbaC.h"
#include "diagnostics/log_collector.h"
#include "support/host_output.h"
#include "support/open_camera_handle.h"

namespace {

using Calls = std::vector<std::string>;
using Lines = std::vector<std::wstring>;

const std::string kRun = R"(VmbFeatureCommandRun("GVSPAdjustPacketSize"))";
const std::string kIsDone = R"(VmbFeatureCommandIsDone("GVSPAdjustPacketSize"))";
const std::string kGet = R"(VmbFeatureIntGet("GVSPPacketSize"))";
const std::string kSet = R"(VmbFeatureIntSet("GVSPPacketSize", 8228))";

SimulatedCamera Negotiating(int packet_size) {
  return SimulatedCamera().With("packetSize", {{"negotiated", packet_size}});
}

// The message's lines between title and end.
Lines Adjust(const OpenCameraHandle& camera) {
  const HostOutput output;
  {
    BLogCollector log(L"Title");
    GVSPAdjustPacketSize(log, camera.Handle());
  }
  Lines lines = LinesOf(output.WithCaption(L"").at(0));
  EXPECT_EQ(lines.front(), L"Title");
  EXPECT_EQ(lines.back(), L"End");
  return Lines(lines.begin() + 1, lines.end() - 1);
}

TEST(PacketSize, ALargerOneIsLoggedAndLowered) {
  OpenCameraHandle camera(Negotiating(9000));

  EXPECT_EQ(Adjust(camera), (Lines{L"GVSPAdjustPacketSize --> 9000", L"GVSPPacketSize = 8228"}));

  EXPECT_EQ(camera->Calls(), (Calls{kRun, kIsDone, kGet, kSet, kGet}));
}

TEST(PacketSize, TheCapItselfAndWhatIsBelowIsLeftAlone) {
  for (const int size : {8228, 8224, 1500}) {
    OpenCameraHandle camera(Negotiating(size));
    EXPECT_EQ(Adjust(camera), Lines{L"GVSPPacketSize = " + std::to_wstring(size)});
    EXPECT_EQ(camera->Calls(), (Calls{kRun, kIsDone, kGet, kGet}));
  }
}

TEST(PacketSize, TheNextStepAboveTheCapIsLowered) {
  OpenCameraHandle camera(Negotiating(8232));
  EXPECT_EQ(Adjust(camera), (Lines{L"GVSPAdjustPacketSize --> 8232", L"GVSPPacketSize = 8228"}));
}

TEST(PacketSize, ACameraThatDoesNotNegotiateIsNotWaitedFor) {
  OpenCameraHandle camera(SimulatedCamera().Missing("GVSPAdjustPacketSize"));

  EXPECT_EQ(Adjust(camera), Lines{L"GVSPPacketSize = 1500"});

  EXPECT_EQ(camera->Calls(), (Calls{kRun, kGet, kGet}));
}

TEST(PacketSize, ACameraWithoutAPacketSizeIsOnlyReported) {
  OpenCameraHandle camera(SimulatedCamera().Missing("GVSPAdjustPacketSize").Missing("GVSPPacketSize"));

  EXPECT_EQ(Adjust(camera), Lines{L"VmbFeatureIntGet GVSPPacketSize failed"});

  EXPECT_EQ(camera->Calls(), (Calls{kRun, kGet, kGet}));
}

TEST(PacketSize, TheNegotiationIsAskedForUntilItIsDone) {
  OpenCameraHandle camera(Negotiating(8228));
  camera->Fault(
      {{"call", "VmbFeatureCommandIsDone"}, {"feature", "GVSPAdjustPacketSize"}, {"count", 2}, {"done", false}});

  Adjust(camera);

  EXPECT_EQ(camera->Calls(), (Calls{kRun, kIsDone, kIsDone, kIsDone, kGet, kGet}));
}

TEST(PacketSize, AFailingQueryEndsTheWait) {
  OpenCameraHandle camera(Negotiating(9000));
  camera->FailCall("VmbFeatureCommandIsDone", "GVSPAdjustPacketSize", VmbErrorIO);

  EXPECT_EQ(Adjust(camera), (Lines{L"GVSPAdjustPacketSize --> 9000", L"GVSPPacketSize = 8228"}));

  EXPECT_EQ(camera->Calls(), (Calls{kRun, kIsDone, kGet, kSet, kGet}));
}

TEST(PacketSize, ACameraThatRefusesTheCapKeepsItsOwn) {
  OpenCameraHandle camera(Negotiating(9000));
  camera->FailCall("VmbFeatureIntSet", "GVSPPacketSize", VmbErrorInvalidAccess);

  EXPECT_EQ(Adjust(camera), (Lines{L"GVSPAdjustPacketSize --> 9000", L"GVSPPacketSize = 9000"}));
}

TEST(PacketSize, AFirstReadThatFailsLeavesTheCapOut) {
  OpenCameraHandle camera(Negotiating(9000));
  camera->FailCall("VmbFeatureIntGet", "GVSPPacketSize", VmbErrorIO, 1);
  EXPECT_EQ(Adjust(camera), Lines{L"GVSPPacketSize = 9000"});
  EXPECT_EQ(camera->Calls(), (Calls{kRun, kIsDone, kGet, kGet}));
}

TEST(PacketSize, ASecondReadThatFailsIsReportedAfterTheCap) {
  OpenCameraHandle camera(Negotiating(9000));
  camera->FailCall("VmbFeatureIntGet", "GVSPPacketSize", VmbErrorIO, 2);

  EXPECT_EQ(Adjust(camera), (Lines{L"GVSPAdjustPacketSize --> 9000", L"VmbFeatureIntGet GVSPPacketSize failed"}));
}

}  // namespace

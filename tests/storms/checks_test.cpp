// checks_test.cpp
// What the storms check with finds what it is there to find.
#include <gmock/gmock.h>

#include "VimbaC.h"
#include "imagingdevice.h"
#include "storms/findings.h"
#include "storms/frame_journal.h"
#include "support/call_pairs.h"
#include "support/message_form.h"
#include "support/simulated_cameras.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr wchar_t kTitle[] = L"Camera 1 (Vimba_Manta_1) : Thread ID = 7 : ";
constexpr wchar_t kStart[] = L"   1 :       1.0000 (  0.0000) : Start\n";

std::string DefectOfLines(const std::wstring& lines) { return DefectOf(kTitle + (L"Snap\n" + lines)); }

TEST(MessageForm, AWholeMessageHasNoDefect) {
  EXPECT_EQ(DefectOfLines(kStart + std::wstring(L"   2 :      10.5000 (  9.5000) : Frame Id = 3\n") +
                          L"   3 :      10.5001 (  0.0001) : End\n"),
            "");
  EXPECT_EQ(DefectOf(L"\n   1 :       0.0000 (  0.0000) : End\n"), "");
}

TEST(MessageForm, WhatIsTornMixedOrCutIsFound) {
  const std::wstring end = L"   2 :       2.0000 (  1.0000) : End\n";
  EXPECT_EQ(DefectOf(kStart + end), "it has no title");
  EXPECT_EQ(DefectOf(L"Snap"), "it does not end with a line break");
  EXPECT_EQ(DefectOf(L"Snap\n"), "it has nothing but a title");
  EXPECT_EQ(DefectOfLines(kStart), "it has no end");
  EXPECT_EQ(DefectOfLines(end), "line 1 says    2 :       2.0000 (  1.0000) : End");
  EXPECT_EQ(DefectOfLines(kStart + std::wstring(kTitle) + L"Snap\n" + end),
            "line 2 has no number and times: Camera 1 (Vimba_Manta_1) : Thread ID = 7 : Snap");
  EXPECT_EQ(DefectOfLines(kStart + std::wstring(L"   2 :       2.0000 (  0.5000) : End\n")),
            "the step is wrong:    2 :       2.0000 (  0.5000) : End");
  EXPECT_EQ(DefectOfLines(kStart + std::wstring(L"   2 :       0.5000 ( -0.5000) : End\n")),
            "the time runs back:    2 :       0.5000 ( -0.5000) : End");
  EXPECT_EQ(DefectOfLines(kStart + end + L"   3 :       2.0000 (  0.0000) : End\n"), "lines follow its end");
}

TEST(MessageForm, ATitleNamesCameraThreadAndOperation) {
  const MessageTitle title = TitleOf(std::wstring(kTitle) + L"StartSnap( one_shot = True )\n");
  EXPECT_EQ(title.camera, L"Vimba_Manta_1");
  EXPECT_EQ(title.thread_id, 7U);
  EXPECT_EQ(title.label, L"StartSnap( one_shot = True )");
  EXPECT_EQ(TitleOf(L"Vimba Initialization\n").camera, L"");
}

// The library as a careless program leaves it.
struct CallPairs : testing::Test {
  SimulatedCameras cameras{SimulatedCamera()};
  VmbHandle_t camera = nullptr;

  CallPairs() { Open(); }
  void Open() {
    EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
    EXPECT_EQ(VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeFull, &camera), VmbErrorSuccess);
  }
  void Close() {
    VmbCameraClose(camera);
    VmbShutdown();
  }
};

TEST_F(CallPairs, WhatBelongsTogetherHasNoDefect) {
  Close();
  Open();
  Close();
  EXPECT_THAT(DefectsOfRecordedCalls(), IsEmpty());
}

TEST_F(CallPairs, WhatStaysOpenIsFound) {
  EXPECT_THAT(DefectsOfRecordedCalls(), ElementsAre("the library is not shut down", "DEV_000F31000001 stays open"));
  VmbShutdown();
  EXPECT_THAT(DefectsOfRecordedCalls(), ElementsAre("DEV_000F31000001 stays open"));
}

TEST_F(CallPairs, AClosedHandleIsFound) {
  VmbCameraClose(camera);
  VmbCaptureEnd(camera);
  VmbShutdown();
  EXPECT_THAT(DefectsOfRecordedCalls(), ElementsAre(HasSubstr("the handle is closed: VmbCaptureEnd(unknown)")));
}

TEST_F(CallPairs, AnAnnouncedFrameIsFound) {
  VmbFrame_t frame{};
  char byte = 0;
  frame.buffer = &byte;
  frame.bufferSize = 1;
  ASSERT_EQ(VmbFrameAnnounce(camera, &frame, sizeof frame), VmbErrorSuccess);
  Close();
  EXPECT_THAT(DefectsOfRecordedCalls(), ElementsAre(HasSubstr("frames are still announced: VmbCameraClose(")));
}

TEST_F(CallPairs, ARecordWithoutItsBeginningIsFound) {
  constexpr int kMoreThanAreKept = 100'001;
  for (int i = 0; i < kMoreThanAreKept; ++i) VmbCaptureEnd(nullptr);
  Close();
  EXPECT_THAT(DefectsOfRecordedCalls(), ElementsAre(HasSubstr("calls, of which 100000 are recorded")));
}

// What a device would report, as its messages say it.
struct Journal : testing::Test {
  Findings findings{"journal"};
  FrameJournal journal{findings, 100};

  Journal() { findings.BeginRun("invented messages", "never"); }
  void Message(const std::wstring& label, std::vector<std::wstring> lines) {
    std::wstring message = kTitle + label + L"\n" + kStart;
    lines.emplace_back(L"End");
    for (std::size_t i = 0; i < lines.size(); ++i) {
      message += L"   " + std::to_wstring(i + 2) + L" :       1.0000 (  0.0000) : " + lines[i] + L"\n";
    }
    journal.OnShowInfo(message.c_str(), L"");
  }
  void Arrive(int id) {
    Message(L"OnFrameExt()", {L"Frame context id = " + std::to_wstring(id), L"process_frame_lambda started"});
  }
  void Snap(int id) { Message(L"Snap", {L"Frame Id = " + std::to_wstring(id)}); }
  void Stop(const std::wstring& list) {
    Message(L"StopSnap", {L"VmbFeatureCommandRun AcquisitionStop returns 0", list});
  }
};

TEST_F(Journal, FramesThatComeInOrderAreNoFinding) {
  Arrive(0);
  Arrive(1);
  Snap(0);
  Snap(1);
  Stop(L"Received 2 Frames [0, 1]");
  journal.CheckArrivals();
  EXPECT_EQ(journal.CountsOf(L"Vimba_Manta_1").reported, 2U);
  EXPECT_EQ(findings.PrintEnd(), 0);
}

TEST_F(Journal, AFrameReportedTwiceIsFound) {
  Arrive(0);
  Snap(0);
  Snap(0);
  EXPECT_EQ(findings.PrintEnd(), 1);
}

TEST_F(Journal, AFrameThatNeverArrivedIsFound) {
  Snap(0);
  Arrive(0);
  journal.CheckArrivals();
  EXPECT_EQ(findings.PrintEnd(), 0);
  Snap(1);
  journal.CheckArrivals();
  EXPECT_EQ(findings.PrintEnd(), 1);
}

TEST_F(Journal, AFrameOutOfOrderIsFound) {
  Arrive(0);
  Arrive(1);
  Snap(1);
  Snap(0);
  EXPECT_EQ(findings.PrintEnd(), 1);
}

TEST_F(Journal, WhereFramesMayOvertakeTheyAreCounted) {
  journal.AllowOvertaking();
  Arrive(0);
  Arrive(1);
  Snap(1);
  Snap(0);
  EXPECT_EQ(journal.CountsOf(L"Vimba_Manta_1").overtaken, 1U);
  EXPECT_EQ(findings.PrintEnd(), 0);
}

TEST_F(Journal, AStopThatListsOtherFramesIsFound) {
  Arrive(0);
  Arrive(1);
  Snap(1);
  Stop(L"Received 2 Frames [0, 1]");
  EXPECT_EQ(findings.PrintEnd(), 1);
}

}  // namespace

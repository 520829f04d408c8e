// snap_series_test.cpp
// Series of images: what is tried again, when a run ends, when images begin, and how pictures are written meanwhile.
#include <algorithm>
#include <chrono>
#include <regex>

#include "berror.h"
#include "simulated_kelcam_test.h"

#ifndef _WIN32
#include <sys/stat.h>

#include <csignal>
#endif

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

const Lines kSingleImage = {"StartSnap(one shot)", "Snap(mono, '', 5000 ms)", "StopSnap"};

class SnapSeries : public ScriptedKelcamTest {
 protected:
  std::ptrdiff_t Snaps() const {
    const Lines operations = Operations();
    return std::count(operations.begin(), operations.end(), kSingleImage[1]);
  }
};

TEST_F(SnapSeries, AFailedImageIsTriedAgain) {
  Script(Codes("snap", {BError::eTimeout, BError::eSuccess}));

  const ProcessResult result = Snap({"-o", In("x.pgm"), "--retry", "2"});

  EXPECT_EQ(result.err, "notice: image 1 is tried again (1 of 2): error 12106: no image arrived in time\n");
  EXPECT_EQ(Operations(), (Lines{kSingleImage[0], kSingleImage[1], kSingleImage[2], kSingleImage[0], kSingleImage[1],
                                 kSingleImage[2]}));
  EXPECT_EQ(Decoded(Text("x.pgm")).width, 5);
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(SnapSeries, AnImageFailsWithItsLastTry) {
  Script(Codes("snap", {BError::eTimeout, BError::eFrameInvalid, BError::eTimeout, BError::eSuccess}));

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.pgm"), "--retry", "2"});

  EXPECT_EQ(result.err,
            "notice: image 1 is tried again (1 of 2): error 12106: no image arrived in time\n"
            "notice: image 1 is tried again (2 of 2): error 12110: the received frame is invalid\n"
            "error 12106: no image arrived in time (image 1)\n1 of 2 images taken\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapSeries, TheDocumentCountsTries) {
  Script(Codes("snap", {BError::eSuccess, BError::eTimeout, BError::eSuccess}));

  const auto document = Document(With("snap", {"-n", "2", "-o", In("%d.pgm"), "--retry", "1"}));

  EXPECT_FALSE(document["images"][0].contains("tries"));
  EXPECT_EQ(document["images"][1]["tries"], 2);
}

TEST_F(SnapSeries, KeepGoingStartsAContinuousRunAgain) {
  Script(Codes("start", {BError::eAcquisitionFailed, BError::eSuccess}));

  const ProcessResult result = Snap({"-n", "3", "-o", In("%d.pgm"), "--mode", "continuous", "--keep-going"});

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStart failed (image 1)\n2 of 3 images taken\n");
  EXPECT_EQ(Operations(), (Lines{"SetSource(free run)", "StartSnap(continuous)", "StopSnap", "StartSnap(continuous)",
                                 kSingleImage[1], kSingleImage[1], "StopSnap", "SetOff", "SetSource(software)"}));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapSeries, FailFastEndsTheRunWithTheFirstFailure) {
  Script(Codes("snap", {BError::eSuccess, BError::eTimeout, BError::eSuccess}));

  const ProcessResult result = Snap({"-n", "9", "-o", In("%d.pgm"), "--fail-fast"});

  EXPECT_EQ(result.err, "error 12106: no image arrived in time (image 2)\n1 of 9 images taken\n");
  EXPECT_EQ(Snaps(), 2);
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapSeries, FailFastEndsTheRunWithAFileThatCannotBeWritten) {
  std::filesystem::create_directory(PathOf("1.pgm"));

  const ProcessResult result = Snap({"-n", "100", "-o", In("%d.pgm"), "--fail-fast"});

  EXPECT_THAT(result.err, HasSubstr(" (image 1)\n"));
  // One is being written, four wait, and one more may have been taken by then.
  EXPECT_LE(Snaps(), 6);
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapSeries, FailFastDoesNotWaitForTheNextImagesTime) {
  std::filesystem::create_directory(PathOf("1.pgm"));

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.pgm"), "--fail-fast", "--interval", "3600"});

  EXPECT_THAT(result.err, HasSubstr("\n0 of 2 images taken\n"));
  EXPECT_EQ(Snaps(), 1);
}

TEST_F(SnapSeries, ImagesBeginAtTheirTimes) {
  const auto start = std::chrono::steady_clock::now();

  const ProcessResult result = Snap({"-n", "4", "-o", In("%d.pgm"), "--interval", "0.2"});

  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(600));
  EXPECT_EQ(Snaps(), 4);
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(SnapSeries, QuietPrintsOnlyWhatIsWrong) {
  Script(Codes("snap", {BError::eSuccess, BError::eTimeout}));

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.pgm"), "-q"});

  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "error 12106: no image arrived in time (image 2)\n");
}

class SimulatedSeries : public SimulatedKelcamTest {};

TEST_F(SimulatedSeries, AnImageThatIsLateTakesTheNextTurn) {
  Simulate();

  const ProcessResult result =
      Run("snap", Profile("mono"), {"-n", "2", "-o", In("%d.pgm"), "--interval", "0.1", "--set", "exposure=350ms"});

  const std::regex late("notice: image 2 is late: [0-9]+ turns? of --interval passed before it\n2 of 2 images taken\n");
  EXPECT_TRUE(std::regex_match(result.err, late)) << result.err;
}

#ifndef _WIN32

TEST_F(SnapSeries, LinesAndErrorsComeInTheOrderOfTheImages) {
  Script(Codes("snap", {BError::eSuccess, BError::eTimeout, BError::eSuccess}));

  const ProcessResult result = InShell(With("snap", {"-n", "3", "-o", In("%d.png")}), "2>&1");

  EXPECT_THAT(result.out, MatchesRegex(".*/1\\.png: .*\nerror 12106: .* \\(image 2\\)\n.*/3\\.png: .*\n2 of 3 .*\n"));
}

TEST_F(SnapSeries, AnInterruptEndsTheWaitForTheNextImage) {
  const Arguments snap = With("snap", {"-v", "-n", "2", "-o", In("%d.pgm"), "--interval", "3600"});

  const ProcessResult result = InterruptedAt("=== LogMessage\nStopSnap", snap);

  EXPECT_THAT(result.err, HasSubstr("1 of 2 images taken\n"));
  EXPECT_TRUE(IsReleased());
  EXPECT_EQ(result.exit_code, kInterrupted);
}

// The file that a picture is first written to is a pipe here: writing waits until somebody reads it.
TEST_F(SnapSeries, FurtherImagesAreTakenWhileAPictureIsWrittenButNotWithoutLimit) {
  constexpr std::ptrdiff_t kWrittenWaitingAndHeld = 1 + 4 + 1;
  ASSERT_EQ(mkfifo(PathOf("1.pgm.unfinished").c_str(), S_IRUSR | S_IWUSR), 0);
  Process snap = Start(With("snap", {"-n", "1000", "-o", In("%d.pgm")}));
  const auto deadline = std::chrono::steady_clock::now() + Process::kTimeout;
  while (Snaps() < kWrittenWaitingAndHeld && std::chrono::steady_clock::now() < deadline) {
  }
  ASSERT_TRUE(snap.Interrupt());

  const std::string first = Text("1.pgm.unfinished");
  const ProcessResult result = snap.Wait();

  EXPECT_EQ(Snaps(), kWrittenWaitingAndHeld);
  EXPECT_EQ(Decoded(first).width, 5);
  EXPECT_THAT(result.err, HasSubstr("6 of 1000 images taken\n"));
  EXPECT_TRUE(std::filesystem::exists(PathOf("6.pgm")));
  EXPECT_EQ(result.exit_code, kInterrupted);
}

#endif

}  // namespace

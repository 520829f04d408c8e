// kelcam_test.cpp
// What a user of an unknown camera sees: kelcam, told by name which library to take.
#include "kelcam_test.h"

#include <algorithm>
#include <optional>
#include <regex>
#include <thread>

#include "bridge/picture_check.h"
#include "bridge/wire_camera.h"
#include "picture_file.h"

namespace {

using testing::StartsWith;

struct WireKelcam : KelcamTest {
  // With the words of a command.
  ProcessResult Run(Arguments arguments) const {
    arguments.insert(arguments.begin(), {"--vimbac", "aravis"});
    return Kelcam(arguments);
  }
  // The profile of a camera that sends a part of its sensor.
  std::string SmallArea() const {
    return Write("camera.ini",
                 "API = Vimba\nInit.Method = Serial\nSerial.Number = 0001\n"
                 "AOIX = 640\nAOIY = 480\nAOIWIDTH = 320\nAOIHEIGHT = 200\n");
  }
  std::string Library() const { return ProgramFile("aravis/libVimbaC.so").string(); }
};

TEST_F(WireKelcam, WithoutCamerasTheListIsEmpty) {
  const ProcessResult list = Run({"list"});
  EXPECT_EQ(list.exit_code, kDone);
  EXPECT_EQ(list.out, "");
  EXPECT_EQ(list.err, "notice: no camera found\n");
}

TEST_F(WireKelcam, ListsACameraByTheNameThatTheModuleGivesIt) {
  const RunningCamera camera;
  const ProcessResult list = Run({"list"});
  EXPECT_EQ(list.exit_code, kDone) << list.err;
  EXPECT_EQ(list.out, "Vimba_Aravis Wire Camera_0001\n");
}

TEST_F(WireKelcam, ListsSeveralCamerasWithTheirAddresses) {
  KEL_NEEDS_OWN_NETWORK();
  const RunningCamera second(WireCamera(2));
  const RunningCamera first;
  const ProcessResult list = Run({"list", "--long"});
  EXPECT_EQ(list.exit_code, kDone) << list.err;
  EXPECT_EQ(list.out,
            "NO  ID                MODEL        SERIAL  ADDRESS    ACCESS  CAMERA\n"
            "1   DEV_000F31000001  Wire Camera  0001    127.0.0.1  full    real\n"
            "2   DEV_000F31000002  Wire Camera  0002    127.0.0.2  full    real\n");
}

TEST_F(WireKelcam, ReportsWhatACameraWithEverythingHas) {
  const RunningCamera camera(WireCamera().Colour());
  const ProcessResult info = Run({"info", "--camera", "1"});
  EXPECT_EQ(info.exit_code, kDone) << info.err;
  EXPECT_EQ(info.out,
            "name                  Vimba_Aravis Wire Camera_0001\n"
            "type                  Vimba\n"
            "library               VimbaC 1.8.3, " +
                Library() +
                "\n"
                "size                  2048 x 2048\n"
                "colour                yes\n"
                "gain                  0 dB = 1.0x (0 to 24 dB = 1.0x to 15.8x)\n"
                "exposure              100 = 10.0 ms (0 to 20000 = 0.0 to 2000.0 ms, steps of 0.1 ms)\n"
                "sensor temperature    47.5 °C\n"
                "board temperature     38.2 °C\n"
                "white balance         red 100, blue 100 (80 to 300)\n"
                "trigger               software\n"
                "stream rate           97700000 bytes/s\n"
                "frame rate            23.29 images/s\n"
                "max shutter for fast  20000 = 2000.0 ms\n");
}

TEST_F(WireKelcam, ReportsWhatTheStockCameraLacks) {
  const RunningCamera camera(WireCamera::Stock());
  const ProcessResult info = Run({"info", "--camera", "1"});
  EXPECT_EQ(info.exit_code, kDone) << info.err;
  EXPECT_EQ(info.out,
            "name                  Vimba_Aravis Fake_GV01\n"
            "type                  Vimba\n"
            "library               VimbaC 1.8.3, " +
                Library() +
                "\n"
                "size                  2048 x 2048\n"
                "colour                yes\n"
                "gain                  0 dB = 1.0x (0 to 10 dB = 1.0x to 3.2x)\n"
                "exposure              100 = 10.0 ms (0 to 20000 = 0.0 to 2000.0 ms, steps of 0.1 ms)\n"
                "white balance         none\n"
                "trigger               none\n"
                "stream rate           97700000 bytes/s\n"
                "frame rate            23.29 images/s\n"
                "max shutter for fast  20000 = 2000.0 ms\n");
}

TEST_F(WireKelcam, WritesAPictureOfTheRightColour) {
  const RunningCamera camera(WireCamera().Colour());
  const ProcessResult snap = Run({"snap", "--camera", "1", "-o", In("p.png")});
  EXPECT_EQ(snap.exit_code, kDone) << snap.err;
  EXPECT_THAT(snap.out, StartsWith(In("p.png") + ": 2048 x 2048, rgb, "));
  const DecodedPicture picture = Decoded(Text("p.png"));
  ASSERT_EQ(picture.pixels.size(), std::size_t{3} * WireCamera::kSensorWidth * WireCamera::kSensorHeight);
  EXPECT_TRUE(ShowsColour(picture.pixels));
}

TEST_F(WireKelcam, WritesAGreyPictureRightToThePixel) {
  const RunningCamera camera;
  const ProcessResult snap = Run({"snap", "--profile", SmallArea(), "-o", In("p.png")});
  EXPECT_EQ(snap.exit_code, kDone) << snap.err;
  const DecodedPicture picture = Decoded(Text("p.png"));
  ASSERT_EQ(picture.pixels.size(), std::size_t{320} * 200);
  BBaseAoi aoi(BBaseAoi::eMono8);
  aoi.Reset({320, 200});
  aoi.Mono()->CopyRows(picture.pixels.data(), 320, {320, 200});
  EXPECT_TRUE(ShowsGrey(aoi, {320, 200}, {640, 480}));
}

TEST_F(WireKelcam, TakesPicturesWithTheStockCamera) {
  const RunningCamera camera(WireCamera::Stock());
  const ProcessResult snap = Run({"snap", "--camera", "1", "-n", "2", "-o", In("p%d.png")});
  EXPECT_EQ(snap.exit_code, kDone) << snap.err;
  EXPECT_EQ(Files(), (Lines{"p1.png", "p2.png"}));
  EXPECT_NE(Text("p1.png"), Text("p2.png")) << "its picture moves";
}

TEST_F(WireKelcam, RunsTheCameraAndCountsItsFrames) {
  const RunningCamera camera;
  const ProcessResult live = Run({"live", "--profile", SmallArea(), "--seconds", "2"});
  EXPECT_EQ(live.exit_code, kDone) << live.err;
  const std::regex total("(\\d+) frames in 2\\.\\d s, (\\d+)\\.\\d frames/s, 0 failures, 0 missing frame ids, .*\n");
  std::smatch words;
  const std::string last = live.out.substr(live.out.rfind('\n', live.out.size() - 2) + 1);
  ASSERT_TRUE(std::regex_match(last, words, total)) << live.out;
  // It sends 25 a second. A busy machine may make it slower.
  EXPECT_GE(std::stoi(words[1]), 10);
  EXPECT_LE(std::stoi(words[1]), 55);
}

struct SwitchedWireKelcam : WireKelcam {
  static constexpr std::size_t kFrames = 3;
  static constexpr std::size_t kShownBytes = 6000;

  // How a program that does not do what was waited for ended, and what was reported last.
  std::string EndOf(Process& live) const {
    const ProcessResult result = live.Wait(std::chrono::seconds(1));
    const std::string log = Text("log.txt");
    return "exit code " + std::to_string(result.exit_code) + "\n" + result.err +
           log.substr(log.size() - std::min(log.size(), kShownBytes));
  }

  // Whether so many frames come after the last return, or after the beginning where there was none.
  bool AwaitFrames() const {
    const auto deadline = std::chrono::steady_clock::now() + Process::kTimeout;
    while (std::chrono::steady_clock::now() < deadline) {
      const std::string log = Text("log.txt");
      const std::size_t returned = log.rfind(": returned after ");
      std::size_t frames = 0;
      for (std::size_t at = returned == std::string::npos ? 0 : returned; frames < kFrames; ++frames) {
        at = log.find(" FrameStatusComplete ", at + 1);
        if (at == std::string::npos) break;
      }
      if (frames == kFrames) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
  }
};

// Each time it is a new process with the address and the serial number of the one before.
TEST_F(SwitchedWireKelcam, FindsACameraAgainThatIsSwitchedOffAndOnTenTimes) {
  constexpr std::size_t kTimes = 10;
  std::optional<RunningCamera> camera(std::in_place);
  Process live = Start({"--vimbac", "aravis", "--log", In("log.txt"), "-q", "--json", "live", "--profile", SmallArea(),
                        "--reconnect", "--reconnect-pause", "0.5", "--timeout", "1000"});
  ASSERT_TRUE(AwaitFrames()) << EndOf(live);
  for (std::size_t time = 1; time <= kTimes; ++time) {
    camera->Kill();
    ASSERT_TRUE(live.WaitForErrors(": camera lost: ", time)) << time << ": " << EndOf(live);
    camera.reset();
    camera.emplace();
    ASSERT_TRUE(live.WaitForErrors(": returned after ", time)) << time << ": " << EndOf(live);
    ASSERT_TRUE(AwaitFrames()) << time << ": " << EndOf(live);
  }

  live.Interrupt();
  const ProcessResult result = live.Wait();

  const nlohmann::json total = nlohmann::json::parse(result.out);
  EXPECT_EQ(total["losses"], kTimes);
  EXPECT_GE(total["frames"], kFrames * kTimes);
  EXPECT_FALSE(total.contains("error"));
  EXPECT_EQ(result.exit_code, kInterrupted);
}

}  // namespace

// info_test.cpp
// kelcam info.
#include "kelcam_test.h"

namespace {

class Info : public ScriptedKelcamTest {};

TEST_F(Info, PrintsWhatTheDeviceReports) {
  Script("color=1 rotated=1");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.out,
            "name                  Vimba_Scripted_1\n"
            "type                  Scripted\n"
            "size                  5 x 3, turned by a quarter\n"
            "colour                yes\n"
            "gain                  20 dB = 10.0x (0 to 30 dB = 1.0x to 31.6x)\n"
            "exposure              100 = 10.0 ms (1 to 20000 = 0.1 to 2000.0 ms, steps of 0.1 ms)\n"
            "sensor temperature    30.0 °C\n"
            "white balance         red 120, blue 130 (80 to 400)\n"
            "trigger               software\n"
            "stream rate           45000000 bytes/s\n"
            "frame rate            30.50 images/s\n"
            "max shutter for fast  20000 = 2000.0 ms\n");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(Info, PrintsWhatACameraDoesNotHave) {
  Script("trigger=0 exposure=0 fast=0");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.out,
            "name                  Vimba_Scripted_1\n"
            "type                  Scripted\n"
            "size                  5 x 3\n"
            "colour                no\n"
            "gain                  20 dB = 10.0x (0 to 30 dB = 1.0x to 31.6x)\n"
            "sensor temperature    30.0 °C\n"
            "white balance         none\n"
            "trigger               none\n"
            "stream rate           45000000 bytes/s\n"
            "frame rate            30.50 images/s, not at this exposure\n"
            "max shutter for fast  20000\n");
}

TEST_F(Info, PrintsOneDocument) {
  Script("color=1");

  const auto document = Document(With("info"));

  EXPECT_EQ(document, nlohmann::json::parse(R"({
    "name": "Vimba_Scripted_1", "type": "Scripted", "vimbac": null, "width": 5, "height": 3, "rotated": false, "color": true,
    "controls": [
      {"name": "gain", "value": 20, "min": 0, "max": 30, "unit": "x",
       "real": {"value": 10.0, "min": 1.0, "max": 31.622776601683793}},
      {"name": "exposure", "value": 100, "min": 1, "max": 20000, "unit": "ms",
       "real": {"value": 10.0, "min": 0.1, "max": 2000.0}},
      {"name": "sensor temperature", "value": 300, "min": 0, "max": 0, "unit": "",
       "real": {"value": 30.0, "min": 0.0, "max": 0.0}}],
    "whiteBalance": {"red": 120, "blue": 130, "min": 80, "max": 400},
    "trigger": {"external": false}, "streamBytesPerSecond": 45000000, "framesPerSecond": 30.5, "fast": true,
    "maxShutterForFast": 20000})"));
}

TEST_F(Info, LeavesTheDeviceAsItIs) {
  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(Operations(), Lines{});
  EXPECT_TRUE(IsReleased());
  EXPECT_EQ(result.exit_code, kDone);
}

}  // namespace

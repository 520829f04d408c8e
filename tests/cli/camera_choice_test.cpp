// camera_choice_test.cpp
// --camera: a camera without a profile.
#include "simulated_kelcam_test.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class CameraChoice : public SimulatedKelcamTest {
 protected:
  CameraChoice() { Simulate(); }

  std::string NameOf(const std::string& word) const { return Document({"info", "--camera", word})["name"]; }
};

TEST_F(CameraChoice, TakesSerialNumberIdAddressIdentifierAndNumber) {
  const std::string colour = "Vimba_Manta-G-507C_50-0536953958";

  for (const std::string& word : {std::string("50-0536953958"), std::string("DEV_000F31034C66"),
                                  std::string("169.254.76.102"), colour, std::string("2")}) {
    EXPECT_EQ(NameOf(word), colour) << word;
  }
}

TEST_F(CameraChoice, ASerialNumberComesBeforeANumberInTheList) {
  Simulate({{"cameras",
             {{{"id", "DEV_1"}, {"serial", "2"}, {"name", "First"}},
              {{"id", "DEV_2"}, {"serial", "1"}, {"name", "Second"}}}}});

  EXPECT_EQ(NameOf("1"), "Vimba_Second_1");
  EXPECT_EQ(NameOf("2"), "Vimba_First_2");
}

TEST_F(CameraChoice, FindsTheOrderOfTheColours) {
  const std::string orders[] = {"BGGR", "RGGB", "GBRG", "GRBG"};
  for (const std::string& order : orders) {
    Simulate({{"cameras",
               {{{"like", "DEV_000F31034C66"},
                 {"sensor", {{"width", 616}, {"height", 514}, {"type", order}}},
                 // Set to a format that does not show the order.
                 {"features", {{"PixelFormat", "Mono8"}}}}}}});

    const ProcessResult result = Kelcam({"snap", "--camera", "1", "-o", In("x.ppm"), "--timeout", "60000"});

    std::string notice = "notice: the order of the colours on the sensor is ";
    notice.append(order).append(", found by trying (in a profile: Bayertype = ").append(order).append(")\n");
    EXPECT_EQ(result.err, notice);
    EXPECT_EQ(result.exit_code, kDone) << order;
  }
}

TEST_F(CameraChoice, PicturesAreThoseOfAProfile) {
  Simulate({{"cameras",
             {{{"like", "DEV_000F31034C66"},
               {"sensor", {{"width", 616}, {"height", 514}}},
               {"timing", "instant"},
               {"noise", false},
               {"scene", "numbers"}}}}});
  const Arguments options{"--set", "exposure=100", "--timeout", "60000", "-o"};
  Arguments by_camera{"snap", "--camera", "1"};
  by_camera.insert(by_camera.end(), options.begin(), options.end());
  by_camera.push_back(In("camera.ppm"));
  Arguments by_profile = options;
  by_profile.push_back(In("profile.ppm"));

  EXPECT_EQ(Kelcam(by_camera).exit_code, kDone);
  EXPECT_EQ(Run("snap", Profile("colour"), by_profile).exit_code, kDone);

  EXPECT_FALSE(Text("camera.ppm").empty());
  EXPECT_TRUE(Text("camera.ppm") == Text("profile.ppm"));
}

TEST_F(CameraChoice, LeavesNoFileBehind) {
  std::filesystem::create_directory(PathOf("temporary"));
  for (const char* variable : {"TMPDIR", "TMP", "TEMP"}) Setting(variable, In("temporary"));

  EXPECT_EQ(Kelcam({"info", "--camera", "1"}).exit_code, kDone);

  EXPECT_TRUE(std::filesystem::is_empty(PathOf("temporary")));
}

TEST_F(CameraChoice, OneThatThereIsNotIsAnErrorAndTheNearestIsNamed) {
  const std::string end = " (3 cameras are attached: kelcam list --long)\n";

  EXPECT_EQ(Kelcam({"info", "--camera", "4"}).err, "error: there is no camera 4" + end);
  const ProcessResult result = Kelcam({"info", "--camera", "50-053695395"});
  EXPECT_EQ(result.err, "error: there is no camera 50-053695395; did you mean 50-0536953957?" + end);
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(CameraChoice, OneThatDoesNotOpenIsNamed) {
  const ProcessResult result = Kelcam({"info", "--camera", "192.0.2.77"});

  EXPECT_THAT(result.err, StartsWith("error: the camera 192.0.2.77 cannot be opened"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(CameraChoice, LiveTakesOneToo) {
  const auto live = DocumentLines({"live", "--camera", "1", "--seconds", "1.5"}).back();

  EXPECT_GE(live["frames"], 1);
  EXPECT_EQ(live["failures"], 0) << live;
}

class ScriptedCameraChoice : public ScriptedKelcamTest {};

TEST_F(ScriptedCameraChoice, NeedsALibraryToAsk) {
  m_profile = "1";
  Arguments arguments = With("info");
  arguments[arguments.size() - 2] = "--camera";

  EXPECT_EQ(Kelcam(arguments).err, "error: --camera 1: this module has no VimbaC library; use --profile\n");
}

}  // namespace

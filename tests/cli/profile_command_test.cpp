// profile_command_test.cpp
// kelcam profile new, kelcam profile check, and what snap and live say of a profile's keys.
#include <regex>
#include <set>

#include "berror.h"
#include "simulated_kelcam_test.h"
#include "support/documented_keys.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ProfileCheck : public ScriptedKelcamTest {
 protected:
  ProcessResult Check(const std::string& text) {
    m_profile = Write("camera.ini", text);
    return Kelcam({"profile", "check", m_profile});
  }
};

TEST_F(ProfileCheck, OfAGoodProfileFindsNothing) {
  const ProcessResult result = Check("API = Vimba\nSerial.Number = 1\nshutter = 100\n[Host]\nAnything = 1\n");

  EXPECT_EQ(result.out, m_profile + ": nothing is wrong\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(ProfileCheck, NamesUnknownKeysWithTheNearestOne) {
  const ProcessResult result = Check("API=Vimba\r\nSHUTER=100\r\n\r\nElephant=1\r\n");

  EXPECT_EQ(result.out, m_profile + ", line 2: SHUTER is a key that no driver reads; did you mean SHUTTER?\n" +
                            m_profile + ", line 4: Elephant is a key that no driver reads\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(ProfileCheck, NamesKeysBelowASection) {
  const ProcessResult result = Check("[Camera]\nAPI = Vimba\n");

  EXPECT_EQ(result.out, m_profile + ": API is missing before the first section; write API = Vimba\n" + m_profile +
                            ", line 2: API is below the section [Camera], where no driver reads it\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(ProfileCheck, NamesValuesThatCannotBeUsed) {
  const std::pair<std::string, std::string> wrong[] = {
      {"API = Vimbo", "is none of Vimba and PvAPI"},
      {"Bayertype = RGBG", "is none of RGGB, GBRG, BGGR and GRBG"},
      {"YUVSTRETCH = maybe", "is none of 1, true, yes, on, 0, false, no and off"},
      {"RotateBy90Degree = 2", "is none of -5, -4, -3, -1, 0 and 1"},
      {"AOIWIDTH = 16OO", "is not a whole number from -2147483645 to 2147483645"},
      {"SHUTTER = 1.5", "is not a whole number from 0 to 20000"},
      {"SHUTTER = 20001", "is not a whole number from 0 to 20000"},
      {"SHUTTER =", "is not a whole number from 0 to 20000"},
      {"CAMFREQ = 0", "is not a number from 0.001 to 2147483645"},
  };
  for (const auto& [line, why] : wrong) {
    const std::string api = line.starts_with("API") ? "" : "API = Vimba\n";
    EXPECT_THAT(Check(api + line + "\n").out, HasSubstr(" " + why + "\n")) << line;
  }
}

TEST_F(ProfileCheck, NamesALowerLimitAboveTheUpperOne) {
  const ProcessResult result = Check("API = Vimba\nMAXGAIN = 3\nMINGAIN = 4\n");

  EXPECT_EQ(result.out, m_profile + ", line 3: MINGAIN = 4 is above MAXGAIN = 3\n");
}

TEST_F(ProfileCheck, OfAFileThatIsNoneIsAnError) {
  EXPECT_THAT(Check("no key at all\n").err, StartsWith("error 8401: the profile " + m_profile));
  EXPECT_EQ(Document({"profile", "check", In("none.ini")})["error"]["code"], BError::eProfileNotReadable);
}

TEST_F(ProfileCheck, PrintsOneDocument) {
  m_profile = Write("camera.ini", "API = Vimba\nSHUTER = 1\n");

  EXPECT_EQ(Document({"profile", "check", m_profile})["findings"], nlohmann::json::parse(R"json([
    {"line": 2, "key": "SHUTER", "text": "is a key that no driver reads; did you mean SHUTTER?",
     "nearest": "SHUTTER"}])json"));
}

TEST_F(ProfileCheck, SnapAndLiveWarnOfKeysThatNobodyReads) {
  m_profile = Write("camera.ini", "API = Vimba\nSHUTER = 1\nGAIN = loud\n[Host]\nGAIN = 1\n");
  const std::string notices =
      "notice: " + m_profile + ", line 2: SHUTER is a key that no driver reads; did you mean SHUTTER?\n" +
      "notice: " + m_profile + ", line 5: GAIN is below the section [Host], where no driver reads it\n";

  EXPECT_EQ(Snap({"-o", In("x.pgm")}).err, notices);
  EXPECT_EQ(Kelcam(With("live", {"--seconds", "0.1"})).err, notices);
  EXPECT_EQ(Kelcam(With("info")).err, "");
}

class NewProfile : public SimulatedKelcamTest {
 protected:
  NewProfile() { Simulate(); }

  ProcessResult Make(const std::string& camera) const {
    return Kelcam({"profile", "new", "--camera", camera, "-o", In("new.ini")});
  }
};

TEST_F(NewProfile, HasEveryKeyOfTheDocumentAndNoOther) {
  EXPECT_EQ(Make("2").exit_code, kDone);

  const std::string text = Text("new.ini");
  const std::regex line("(^|\n);?([A-Za-z0-9_.]+) = ");
  std::set<std::string> keys;
  for (std::sregex_iterator it(text.begin(), text.end(), line), end; it != end; ++it) keys.insert((*it)[2]);
  EXPECT_EQ(keys, DocumentedKeys(KEL_PROFILE_DOCUMENT));
}

TEST_F(NewProfile, IsGoodAndOpensItsCameraAsItIs) {
  for (const std::string camera : {"1", "2", "169.254.153.184"}) {
    std::filesystem::remove(PathOf("new.ini"));
    ASSERT_EQ(Make(camera).err, "") << camera;

    const ProcessResult check = KelcamTest::Kelcam({"profile", "check", In("new.ini")});
    const ProcessResult snap = Run("snap", In("new.ini"), {"-o", In("x.png"), "--timeout", "60000"});
    EXPECT_EQ(check.exit_code, kDone) << check.out;
    EXPECT_EQ(snap.err, "") << camera;
    const auto by_profile = Info(In("new.ini"));
    const auto by_camera = Document({"info", "--camera", camera});
    for (const char* member : {"name", "width", "height", "color", "maxShutterForFast", "streamBytesPerSecond"}) {
      EXPECT_EQ(by_profile[member], by_camera[member]) << camera << " " << member;
    }
    EXPECT_EQ(by_profile["controls"][0], by_camera["controls"][0]) << camera;
    EXPECT_EQ(by_profile["controls"][1], by_camera["controls"][1]) << camera;
  }
}

TEST_F(NewProfile, HasWhatTheCameraIsSetTo) {
  // As text: the features are written in this order.
  Setting("VIMBA_SIM_CONFIG", Write("set.json", R"({"cameras": [{
    "like": "DEV_000F31034C66", "sensor": {"width": 640, "height": 480, "type": "GBRG"},
    "features": {"BinningHorizontal": 2, "BinningVertical": 2, "Width": 200, "OffsetX": 16, "ExposureTimeAbs": 25000.0,
                 "Gain": 7.0, "BalanceRatioSelector": "Blue", "BalanceRatioAbs": 1.7,
                 "TriggerActivation": "FallingEdge"}}]})"));

  EXPECT_EQ(Make("1").err, "");

  for (const char* line :
       {"\nBayertype = GBRG\n", "\nBINNING = 2\n", "\nAOIWIDTH = 200\n", "\nAOIX = 16\n", "\nSHUTTER = 250\n",
        "\nGAIN = 7\n", "\nWHITEBALANCEBLUE = 170\n", "\nWBMONORED = 100\n", "\nTRIGGERPOLARITY = LOW\n",
        "\n;TEMPERATURESENSOR = 415\n", "; one of LOW, HIGH\n", "; this camera: 0 to 120\nAOIX"}) {
    EXPECT_THAT(Text("new.ini"), HasSubstr(line));
  }
}

TEST_F(NewProfile, DoesNotReplaceAFile) {
  Write("new.ini", "mine");

  const ProcessResult result = Make("1");

  EXPECT_EQ(result.err, "error: the profile " + In("new.ini") + " is there already\n");
  EXPECT_EQ(Text("new.ini"), "mine");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(NewProfile, OfACameraThatDoesNotOpenIsNotWritten) {
  const ProcessResult result = Kelcam({"--simulated=in-use", "profile", "new", "--camera", "1", "-o", In("new.ini")});

  EXPECT_EQ(result.err, "error: the camera 1 cannot be opened: VmbCameraOpen returns -6\n");
  EXPECT_FALSE(std::filesystem::exists(PathOf("new.ini")));
}

}  // namespace

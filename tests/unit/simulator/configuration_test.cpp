// configuration_test.cpp
// Configurations by text and by file, the built-in cameras, and the messages about wrong configurations.
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>
#include <tuple>

#include "simulated_link.h"

namespace {

using testing::ElementsAre;

std::string TextOf(VmbHandle_t camera, const char* feature) {
  char text[64] = "";
  EXPECT_EQ(VmbFeatureStringGet(camera, feature, text, sizeof text, nullptr), VmbErrorSuccess) << feature;
  return text;
}

struct Expected {
  const char* id;
  const char* name;
  const char* model;
  const char* sensor;
  std::int64_t width;
  std::int64_t height;
  std::int64_t payload;
  std::vector<std::string> formats;
};

void PrintTo(const Expected& expected, std::ostream* out) { *out << expected.id; }

class BuiltIn : public testing::TestWithParam<Expected> {
 protected:
  BuiltIn() { EXPECT_EQ(VimbaSimConfigure(nullptr), kAccepted); }
};

TEST_P(BuiltIn, CameraIsAsDocumented) {
  const StartedApi api;
  VmbCameraInfo_t info{};
  EXPECT_EQ(VmbCameraInfoQuery(GetParam().id, &info, sizeof info), VmbErrorSuccess);
  const OpenedHandle camera(GetParam().id);

  EXPECT_THAT((std::vector<std::string>{info.cameraName, info.modelName, TextOf(camera, "DeviceModelName"),
                                        EnumOf(camera, "SensorType")}),
              ElementsAre(GetParam().name, GetParam().model, GetParam().model, GetParam().sensor));
  EXPECT_THAT((std::vector{IntOf(camera, "WidthMax"), IntOf(camera, "HeightMax"), IntOf(camera, "PayloadSize")}),
              ElementsAre(GetParam().width, GetParam().height, GetParam().payload));
  for (const char* format : {"Mono8", "BayerRG8", "BayerGR8", "BayerGB8", "BayerBG8", "YUV422Packed", "RGB8Packed"}) {
    const bool offered = testing::Value(GetParam().formats, testing::Contains(format));
    EXPECT_EQ(VmbFeatureEnumSet(camera, "PixelFormat", format) == VmbErrorSuccess, offered) << format;
  }
}

INSTANTIATE_TEST_SUITE_P(Configuration, BuiltIn,
                         testing::Values(Expected{"DEV_000F31034C65",
                                                  "Manta",
                                                  "Manta G-507B (E0022705)",
                                                  "Mono",
                                                  2464,
                                                  2056,
                                                  std::int64_t{2464} * 2056,
                                                  {"Mono8"}},
                                         Expected{"DEV_000F31034C66",
                                                  "Manta",
                                                  "Manta G-507C (E0022706)",
                                                  "Bayer",
                                                  2464,
                                                  2056,
                                                  std::int64_t{2464} * 2056,
                                                  {"BayerRG8", "Mono8", "YUV422Packed", "RGB8Packed"}},
                                         Expected{"DEV_000F310199B8",
                                                  "GC1290C",
                                                  "GC1290C",
                                                  "Bayer",
                                                  1292,
                                                  964,
                                                  std::int64_t{3} * 1292 * 964,
                                                  {"BayerRG8", "Mono8", "YUV422Packed", "RGB8Packed"}}));

TEST(Configuration, OfACameraShowsInItsFeatures) {
  const StartedCameras world{SimulatedCamera()
                                 .With("vendor", "V")
                                 .With("firmware", "F")
                                 .With("deviceId", "D")
                                 .With("interface", "I")
                                 .With("mac", "01:02:03:04:05:06")
                                 .With("tickFrequency", 1000)
                                 .With("binning", 4)};
  const OpenedHandle camera;
  VmbCameraInfo_t info{};
  EXPECT_EQ(VmbCameraInfoQuery("010203040506", &info, sizeof info), VmbErrorSuccess);

  EXPECT_THAT((std::vector{TextOf(camera, "DeviceVendorName"), TextOf(camera, "DeviceFirmwareVersion"),
                           TextOf(camera, "DeviceID"), TextOf(camera, "GevCurrentIPAddress"),
                           TextOf(camera, "GevDeviceMACAddress"), std::string(info.interfaceIdString)}),
              ElementsAre("V", "F", "D", "169.254.10.1", "01:02:03:04:05:06", "I"));
  EXPECT_EQ(IntOf(camera, "GevTimestampTickFrequency"), 1000);
  EXPECT_EQ(VmbFeatureIntSet(camera, "BinningVertical", 5), VmbErrorInvalidValue);
}

TEST(Configuration, ChangesRangesAndStartValues) {
  const StartedCameras world{SimulatedCamera()
                                 .With("ranges", {{"Width", {{"min", 16}, {"max", 48}, {"step", 16}}},
                                                  {"StreamBytesPerSecond", {{"max", 125'000'000}}},
                                                  {"Gain", {{"min", 1.5}}}})
                                 .Feature("StreamBytesPerSecond", 125'000'000)
                                 .Feature("TriggerMode", "On")
                                 .Feature("ExposureTimeAbs", 123.5)};
  const OpenedHandle camera;

  EXPECT_EQ(IntOf(camera, "Width"), 48);
  EXPECT_EQ(VmbFeatureIntSet(camera, "Width", 40), VmbErrorInvalidValue);
  EXPECT_EQ(FloatOf(camera, "Gain"), 1.5);
  EXPECT_EQ(IntOf(camera, "StreamBytesPerSecond"), 125'000'000);
  EXPECT_EQ(EnumOf(camera, "TriggerMode"), "On");
  EXPECT_EQ(FloatOf(camera, "ExposureTimeAbs"), 123.5);
}

TEST(Configuration, StartsFromABuiltInCamera) {
  EXPECT_EQ(VimbaSimConfigure(R"({"cameras":[{"like":"DEV_000F310199B8","serial":"S"}]})"), kAccepted)
      << VimbaSimLastError();
  const StartedApi api;
  const OpenedHandle camera("S");

  EXPECT_EQ(TextOf(camera, "DeviceModelName"), "GC1290C");
}

TEST(Configuration, MayBeALinkWithoutCameras) {
  EXPECT_EQ(VimbaSimConfigure(R"({"cameras":[]})"), kAccepted);
  const StartedApi api;
  VmbUint32_t found = 1;

  EXPECT_EQ(VmbCamerasList(nullptr, 0, &found, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);

  EXPECT_EQ(found, 0u);
}

TEST(Configuration, IsRefusedWhileTheApiIsStarted) {
  const StartedCameras world;

  EXPECT_EQ(VimbaSimConfigure(nullptr), kRefused);

  EXPECT_STREQ(VimbaSimLastError(), "the API is started; cameras can be configured after VmbShutdown only");
}

struct Refused {
  const char* json;
  const char* why;
};

class RefusedConfiguration : public testing::TestWithParam<Refused> {};

TEST_P(RefusedConfiguration, NamesMemberAndValueAndChangesNothing) {
  const SimulatedCameras cameras{SimulatedCamera()};

  EXPECT_EQ(VimbaSimConfigure(GetParam().json), kRefused);

  EXPECT_STREQ(VimbaSimLastError(), GetParam().why);
  EXPECT_EQ(cameras.State()["plugged"], true);
}

INSTANTIATE_TEST_SUITE_P(
    Configuration, RefusedConfiguration,
    testing::Values(
        Refused{"", "no JSON at byte 1"}, Refused{"[]", "the text: is no object"},
        Refused{R"({"camera":[]})", "camera: there is no such member"},
        Refused{R"({"cameras":{}})", "cameras: {} is no array"},
        Refused{R"({"cameras":[{},{}]})", "cameras[1].id: \"DEV_000F31034C65\" is taken already"},
        Refused{R"({"cameras":[{"id":""}]})", "cameras[0].id: \"\" is empty"},
        Refused{R"({"cameras":[{"name":5}]})", "cameras[0].name: 5 is no text"},
        Refused{R"({"cameras":[{"sensor":{"width":0}}]})",
                "cameras[0].sensor.width: 0 is no whole number from 8 to 32768"},
        Refused{R"({"cameras":[{"sensor":{"type":"RGBG"}}]})",
                "cameras[0].sensor.type: \"RGBG\" is none of BGGR, RGGB, GBRG, GRBG, mono"},
        Refused{R"({"cameras":[{"formats":["Mono12"]}]})",
                "cameras[0].formats: [\"Mono12\"] holds the unknown format Mono12"},
        Refused{R"({"cameras":[{"formats":["RGB8Packed"]}]})",
                "cameras[0].formats: [\"RGB8Packed\"] holds RGB8Packed, which needs a colour sensor"},
        Refused{R"({"cameras":[{"formats":[]}]})", "cameras[0].formats: [] holds no format"},
        Refused{R"({"cameras":[{"packetLoss":1.5}]})", "cameras[0].packetLoss: 1.5 is no number from 0 to 1"},
        Refused{R"({"cameras":[{"missing":["Wdth"]}]})", "cameras[0].missing: there is no feature Wdth"},
        Refused{R"({"cameras":[{"ranges":{"Gain":{"min":50}}}]})",
                "cameras[0].ranges.Gain: the minimum 50 is above the maximum 40"},
        Refused{R"({"cameras":[{"ranges":{"GevHeartbeatTimeout":{"min":20000}}}]})",
                "cameras[0].ranges.GevHeartbeatTimeout: the minimum 20000 is above the maximum 10000"},
        Refused{R"({"cameras":[{"ranges":{"AcquisitionFrameRateAbs":{"max":0.001}}}]})",
                "cameras[0].ranges.AcquisitionFrameRateAbs: the minimum 0.01 is above the maximum 0.001"},
        Refused{R"({"cameras":[{"ranges":{"PixelFormat":{"min":5}}}]})",
                "cameras[0].ranges.PixelFormat: the feature has no range"},
        Refused{R"({"cameras":[{"features":{"Gain":100}}]})",
                "cameras[0].features.Gain: the camera refuses 100 with error -11"},
        Refused{R"({"cameras":[{"features":{"Gain":40.5}}]})",
                "cameras[0].features.Gain: the camera refuses 40.5 with error -11"},
        Refused{R"({"cameras":[{"features":{"TriggerMode":"Onn"}}]})",
                "cameras[0].features.TriggerMode: the camera refuses \"Onn\" with error -11"},
        Refused{R"({"cameras":[{"features":{"Gain":true}}]})",
                "cameras[0].features.Gain: true is neither text nor number"},
        Refused{R"({"cameras":[{"scene":{}}]})", "cameras[0].scene.picture: is missing"},
        Refused{R"({"cameras":[{"scene":"moon"}]})", "cameras[0].scene: \"moon\" is none of chart, numbers, none"},
        Refused{R"({"timing":"slow"})", "timing: \"slow\" is none of real, instant"},
        Refused{R"({"link":{"capacity":0}})", "link.capacity: 0 is no number from 1 to 1e+12"},
        Refused{R"({"link":{"capacity":1e999}})", "the text: 1e999 is too large a number"},
        Refused{R"({"system":{"geVTLIsPresent":1}})", "system.geVTLIsPresent: 1 is neither true nor false"},
        Refused{R"({"system":{"discoveryStatus":"On"}})", "system.discoveryStatus: \"On\" is none of Off, Automatic"},
        Refused{R"({"faults":[{}]})", "faults[0].call: a fault needs one of call, frame and unplugAtFrame"}));

INSTANTIATE_TEST_SUITE_P(ThatIsNoNumber, RefusedConfiguration,
                         testing::Values(Refused{R"({"cameras":[{"ranges":{"Gain":{"min":"5"}}}]})",
                                                 "cameras[0].ranges.Gain.min: \"5\" is no number from -1e+18 to 1e+18"},
                                         Refused{R"({"cameras":[{"ranges":{"Gain":{"max":null}}}]})",
                                                 "cameras[0].ranges.Gain.max: null is no number from -1e+18 to 1e+18"},
                                         Refused{R"({"cameras":[{"ranges":{"Gain":{"max":true}}}]})",
                                                 "cameras[0].ranges.Gain.max: true is no number from -1e+18 to 1e+18"},
                                         Refused{R"({"cameras":[{"ranges":{"Width":{"step":[]}}}]})",
                                                 "cameras[0].ranges.Width.step: [] is no number from -1e+18 to 1e+18"},
                                         Refused{R"({"cameras":[{"packetLoss":"0"}]})",
                                                 "cameras[0].packetLoss: \"0\" is no number from 0 to 1"}));

// With these ranges the camera would divide by zero, wait for ever or leave its clock's range.
class RangeTooWide : public testing::TestWithParam<Refused> {};

TEST_P(RangeTooWide, IsRefusedWithFeatureBoundAndValue) {
  const std::string json = std::string(R"({"cameras":[{"ranges":{)") + GetParam().json + "}}]}";

  EXPECT_EQ(VimbaSimConfigure(json.c_str()), kRefused);

  EXPECT_EQ(VimbaSimLastError(), std::string("cameras[0].ranges.") + GetParam().why);
}

INSTANTIATE_TEST_SUITE_P(
    Configuration, RangeTooWide,
    testing::Values(
        Refused{R"("BinningHorizontal":{"min":0})", "BinningHorizontal.min: 0 is no number from 1 to 8"},
        Refused{R"("BinningHorizontal":{"min":0.5})", "BinningHorizontal.min: 0.5 is no number from 1 to 8"},
        Refused{R"("BinningVertical":{"max":4294967296})", "BinningVertical.max: 4294967296 is no number from 1 to 8"},
        Refused{R"("GVSPPacketSize":{"min":36})", "GVSPPacketSize.min: 36 is no number from 37 to 65535"},
        Refused{R"("GVSPPacketSize":{"max":65536})", "GVSPPacketSize.max: 65536 is no number from 37 to 65535"},
        Refused{R"("StreamBytesPerSecond":{"min":0})", "StreamBytesPerSecond.min: 0 is no number from 1000 to 1e+12"},
        Refused{R"("ExposureTimeAbs":{"min":0})", "ExposureTimeAbs.min: 0 is no number from 1 to 3.6e+09"},
        Refused{R"("ExposureTimeAbs":{"max":1e18})", "ExposureTimeAbs.max: 1e+18 is no number from 1 to 3.6e+09"},
        Refused{R"("TriggerDelayAbs":{"min":-1})", "TriggerDelayAbs.min: -1 is no number from 0 to 3.6e+09"},
        Refused{R"("TriggerDelayAbs":{"max":1e18})", "TriggerDelayAbs.max: 1e+18 is no number from 0 to 3.6e+09"},
        Refused{R"("Gain":{"max":1e5})", "Gain.max: 1e+05 is no number from -100 to 100"},
        Refused{R"("BalanceRatioAbs":{"min":0})", "BalanceRatioAbs.min: 0 is no number from 0.01 to 100"},
        Refused{R"("AcquisitionFrameCount":{"min":0})", "AcquisitionFrameCount.min: 0 is no number from 1 to 1e+09"}));

TEST(Configuration, NarrowsRangesThatDependOnOthersAndNeverWidensThem) {
  const StartedCameras world{
      SimulatedCamera().Range("Width", 0, 1e18).Range("OffsetX", -5, 1e18).Range("AcquisitionFrameRateAbs", 0, 1e18)};
  const OpenedHandle camera;
  VmbInt64_t integers[4]{};
  double floats[2]{};

  EXPECT_EQ(VmbFeatureIntRangeQuery(camera, "Width", &integers[0], &integers[1]), VmbErrorSuccess);
  EXPECT_EQ(VmbFeatureIntRangeQuery(camera, "OffsetX", &integers[2], &integers[3]), VmbErrorSuccess);
  EXPECT_EQ(VmbFeatureFloatRangeQuery(camera, "AcquisitionFrameRateAbs", &floats[0], &floats[1]), VmbErrorSuccess);

  EXPECT_THAT(integers, ElementsAre(8, SimulatedCamera::kWidth, 0, 0));
  EXPECT_THAT(floats, ElementsAre(0.01, FloatOf(camera, "AcquisitionFrameRateLimit")));
}

TEST(Configuration, OfTheSmallestPacketsStillDeliversFrames) {
  StartedCameras world{SimulatedCamera().Range("GVSPPacketSize", 37, 9000).Feature("GVSPPacketSize", 37)};
  const OpenedHandle camera;
  FrameRing ring(camera, 1);
  ring.Start();

  world.cameras.Deliver();

  EXPECT_EQ(ring.WaitFor(1).front().receiveStatus, VmbFrameStatusComplete);
  // A byte of the image in each.
  EXPECT_EQ(IntOf(camera, "StatPacketReceived"), SimulatedCamera::kWidth * SimulatedCamera::kHeight);
}

TEST(Configuration, OfALeastBinningShrinksThePictureAtPowerUp) {
  const StartedCameras world{SimulatedCamera().Range("BinningHorizontal", 2, 4)};
  const OpenedHandle camera;

  EXPECT_EQ(IntOf(camera, "BinningHorizontal"), 2);
  EXPECT_EQ(IntOf(camera, "Width"), SimulatedCamera::kWidth / 2);
  EXPECT_EQ(IntOf(camera, "PayloadSize"), SimulatedCamera::kWidth / 2 * SimulatedCamera::kHeight);
}

TEST(Configuration, OfAPictureThatIsNotThereNamesTheFile) {
  EXPECT_EQ(VimbaSimConfigure(R"({"cameras":[{"scene":{"picture":"no such picture.png"}}]})"), kRefused);

  EXPECT_THAT(VimbaSimLastError(), testing::HasSubstr("no such picture.png"));
}

class ConfigurationFile : public testing::Test {
 protected:
  ConfigurationFile()
      : m_path(std::filesystem::temp_directory_path() /
               ("vimba_sim_" + std::to_string(std::random_device()()) + ".json")) {}
  ~ConfigurationFile() override {
    SetVariable("");
    std::filesystem::remove(m_path);
    std::ignore = VimbaSimConfigure(nullptr);
  }
  void Write(const char* text) {
    std::ofstream(m_path) << text;
    SetVariable(m_path.string());
  }
  static void SetVariable(const std::string& value) {
#ifdef _WIN32
    std::ignore = _putenv_s("VIMBA_SIM_CONFIG", value.c_str());
#else
    std::ignore = setenv("VIMBA_SIM_CONFIG", value.c_str(), 1);
#endif
  }
  const std::filesystem::path m_path;
};

TEST_F(ConfigurationFile, DescribesTheCamerasOfTheEnvironment) {
  Write(R"({"cameras":[{"id":"DEV_X","name":"Außen"}]})");
  EXPECT_EQ(VimbaSimConfigure(nullptr), kAccepted) << VimbaSimLastError();
  const StartedApi api;
  VmbCameraInfo_t info{};

  EXPECT_EQ(VmbCameraInfoQuery("DEV_X", &info, sizeof info), VmbErrorSuccess);

  EXPECT_STREQ(info.cameraName, "Außen");
}

TEST_F(ConfigurationFile, ThatIsWrongIsNamed) {
  Write(R"({"cameras":1})");

  EXPECT_EQ(VimbaSimConfigure(nullptr), kRefused);

  EXPECT_EQ(VimbaSimLastError(), m_path.string() + ": cameras: 1 is no array");
}

TEST_F(ConfigurationFile, WithCamerasThatCannotBeBuiltIsNamed) {
  const Refused cases[] = {{R"({"cameras":[{"ranges":{"Gain":{"min":50}}}]})",
                            "cameras[0].ranges.Gain: the minimum 50 is above the maximum 40"},
                           {R"({"cameras":[{},{"id":"DEV_2","features":{"Gain":100}}]})",
                            "cameras[1].features.Gain: the camera refuses 100 with error -11"},
                           {R"({"cameras":[{"missing":["Wdth"]}]})", "cameras[0].missing: there is no feature Wdth"},
                           {R"({"link":{"capacity":1e999}})", "the text: 1e999 is too large a number"}};
  for (const Refused& wrong : cases) {
    Write(wrong.json);
    EXPECT_EQ(VimbaSimConfigure(nullptr), kRefused) << wrong.json;
    EXPECT_EQ(VimbaSimLastError(), m_path.string() + ": " + wrong.why);
  }
}

TEST_F(ConfigurationFile, WithAPictureThatIsNotThereIsNamedWithThePicture) {
  Write(R"({"cameras":[{"scene":{"picture":"no such picture.png"}}]})");

  EXPECT_EQ(VimbaSimConfigure(nullptr), kRefused);

  EXPECT_THAT(VimbaSimLastError(),
              testing::StartsWith(m_path.string() + ": picture no such picture.png: cannot be read: "));
}

std::string ReasonOf(std::errc error) { return std::make_error_code(error).message(); }

TEST_F(ConfigurationFile, ThatIsNotThereIsNamedWithTheReason) {
  SetVariable("no such file.json");

  EXPECT_EQ(VimbaSimConfigure(nullptr), kRefused);

  EXPECT_EQ(VimbaSimLastError(),
            "no such file.json: cannot be read: " + ReasonOf(std::errc::no_such_file_or_directory));
}

TEST_F(ConfigurationFile, ThatIsAFolderIsNamedWithTheReason) {
  std::filesystem::create_directory(m_path);
  SetVariable(m_path.string());

  EXPECT_EQ(VimbaSimConfigure(nullptr), kRefused);

  EXPECT_EQ(VimbaSimLastError(), m_path.string() + ": cannot be read: " + ReasonOf(std::errc::is_a_directory));
}

}  // namespace

// families_test.cpp
// What callers see of cameras of several families, each described by a file of tests/unit/bridge/cameras.
#include <gmock/gmock.h>

#include "described_camera.h"

namespace {

using testing::ElementsAreArray;

using Lines = std::vector<std::string>;

// What callers ask for and cameras name differently.
const std::vector<const char*> kAsked{"ExposureTimeAbs",
                                      "ExposureAuto",
                                      "ExposureMode",
                                      "Gain",
                                      "GainAuto",
                                      "BalanceWhiteAuto",
                                      "BalanceRatioSelector",
                                      "BalanceRatioAbs",
                                      "AcquisitionFrameRateAbs",
                                      "AcquisitionFrameRateLimit",
                                      "StreamBytesPerSecond",
                                      "SensorType",
                                      "PixelFormat",
                                      "TriggerMode",
                                      "TriggerSource",
                                      "TriggerActivation",
                                      "DeviceTemperatureSelector",
                                      "DeviceTemperature"};

struct Family {
  const char* file;
  Lines lines;
};

void PrintTo(const Family& family, std::ostream* stream) { *stream << family.file; }

class Families : public testing::TestWithParam<Family> {};

TEST_P(Families, HaveWhatCanBeMappedAndNothingElse) {
  DescribedCamera camera(GetParam().file);

  EXPECT_THAT(Described(camera.Features(), kAsked), ElementsAreArray(GetParam().lines));
}

TEST_P(Families, HaveWhatNeedsNoMapping) {
  DescribedCamera camera(GetParam().file);

  EXPECT_THAT(
      Described(camera.Features(),
                {"Width", "Height", "OffsetX", "OffsetY", "BinningHorizontal", "AcquisitionMode", "AcquisitionStart",
                 "AcquisitionStop", "TriggerSelector", "TriggerSoftware", "BinningVertical", "GVSPPacketSize"}),
      ElementsAreArray(Lines{"Width = 640 (16 to 1280)", "Height = 480 (2 to 960)", "OffsetX = 0 (0 to 640)",
                             "OffsetY = 0 (0 to 480)", "BinningHorizontal = 1 (1 to 4)", "AcquisitionMode = Continuous",
                             "AcquisitionStart", "AcquisitionStop", "TriggerSelector = FrameStart", "TriggerSoftware",
                             "BinningVertical: NotFound", "GVSPPacketSize: NotFound"}));
}

const Family kConvention{
    "convention",
    {"ExposureTimeAbs = 10000 (10 to 30000000)", "ExposureAuto = Off", "ExposureMode = Timed", "Gain = 6 (0 to 47.5)",
     "GainAuto = Off", "BalanceWhiteAuto = Off", "BalanceRatioSelector = Red", "BalanceRatioAbs = 1.25 (0.25 to 4)",
     "AcquisitionFrameRateAbs = 30 (1 to 60)", "AcquisitionFrameRateLimit = 60 (60 to 60)",
     "StreamBytesPerSecond = 100000000 (1000000 to 125000000)", "SensorType = Bayer", "PixelFormat = Mono8",
     "TriggerMode = Off", "TriggerSource = Line0", "TriggerActivation = RisingEdge",
     "DeviceTemperatureSelector = Sensor", "DeviceTemperature = 31.5"}};

const Family kAbsolute{
    "absolute",
    {"ExposureTimeAbs = 3000 (35 to 1000000)", "ExposureAuto = Off", "ExposureMode = Timed", "Gain: NotFound",
     "GainAuto = Continuous", "BalanceWhiteAuto = Off", "BalanceRatioSelector = Red",
     "BalanceRatioAbs = 1.5 (0 to 3.98)", "AcquisitionFrameRateAbs = 25 (0.1 to 1000)",
     "AcquisitionFrameRateLimit = 1000 (1000 to 1000)", "StreamBytesPerSecond: NotFound", "SensorType = Bayer",
     "PixelFormat = BayerGB8", "TriggerMode = Off", "TriggerSource = Line1", "TriggerActivation = RisingEdge",
     "DeviceTemperatureSelector: NotFound", "DeviceTemperature: NotFound"}};

const Family kWholeNumbers{
    "whole_numbers",
    {"ExposureTimeAbs = 5000 (20 to 100000)", "ExposureAuto = Off", "ExposureMode = Timed", "Gain = 3.5 (0 to 17)",
     "GainAuto = Off", "BalanceWhiteAuto = Off", "BalanceRatioSelector = Red", "BalanceRatioAbs: NotFound",
     "AcquisitionFrameRateAbs = 20 (0.2 to 500)", "AcquisitionFrameRateLimit = 500 (500 to 500)",
     "StreamBytesPerSecond: NotFound", "SensorType = Mono", "PixelFormat = Mono8", "TriggerMode = Off",
     "TriggerSource = Software", "TriggerActivation = RisingEdge", "DeviceTemperatureSelector: NotFound",
     "DeviceTemperature: NotFound"}};

const Family kFactors{
    "factors",
    {"ExposureTimeAbs = 12500 (10 to 1000000)", "ExposureAuto = Off", "ExposureMode = Timed", "Gain = 20 (0 to 40)",
     "GainAuto = Off", "BalanceWhiteAuto = Off", "BalanceRatioSelector: NotFound", "BalanceRatioAbs: NotFound",
     "AcquisitionFrameRateAbs = 18 (18 to 18)", "AcquisitionFrameRateLimit = 18 (18 to 18)",
     "StreamBytesPerSecond: NotFound", "SensorType = Mono", "PixelFormat = Mono8", "TriggerMode = Off",
     "TriggerSource = Line0", "TriggerActivation: NotFound", "DeviceTemperatureSelector: NotFound",
     "DeviceTemperature: NotFound"}};

const Family kSameNames{
    "same_names",
    {"ExposureTimeAbs = 15000 (40 to 60000000)", "ExposureAuto = Continuous", "ExposureMode = Timed",
     "Gain = 2 (0 to 40)", "GainAuto = Off", "BalanceWhiteAuto = Off", "BalanceRatioSelector: NotFound",
     "BalanceRatioAbs: NotFound", "AcquisitionFrameRateAbs = 10 (0.1 to 50)", "AcquisitionFrameRateLimit = 23.5",
     "StreamBytesPerSecond = 115000000 (1000000 to 124000000)", "SensorType = Mono", "PixelFormat = Mono8",
     "TriggerMode = Off", "TriggerSource = Freerun", "TriggerActivation: NotFound",
     "DeviceTemperatureSelector = Sensor", "DeviceTemperature = 38.5"}};

INSTANTIATE_TEST_SUITE_P(Described, Families,
                         testing::Values(kConvention, kAbsolute, kWholeNumbers, kFactors, kSameNames),
                         [](const auto& family) { return std::string(family.param.file); });

}  // namespace

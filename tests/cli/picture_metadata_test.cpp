// picture_metadata_test.cpp
// What the files of kelcam snap say of their pictures.
#include "picture_metadata.h"

#include <regex>

#include "kelcam_test.h"
#include "modules/scripted_picture.h"

namespace {

using Texts = std::map<std::string, std::string>;
using Numbers = std::vector<std::uint32_t>;

// Tags of TIFF and Exif.
constexpr int kBitsPerSample = 258;
constexpr int kCompression = 259;
constexpr int kPhotometric = 262;
constexpr int kImageDescription = 270;
constexpr int kModel = 272;
constexpr int kRowsPerStrip = 278;
constexpr int kXResolution = 282;
constexpr int kResolutionUnit = 296;
constexpr int kSoftware = 305;
constexpr int kDateTime = 306;
constexpr int kExposureTime = 33434;
constexpr int kDateTimeOriginal = 36867;
constexpr int kSubSecTimeOriginal = 37521;
constexpr int kSerialNumber = 42033;

constexpr std::uint32_t kBlackIsZero = 1;
constexpr std::uint32_t kRedGreenBlue = 2;

class PictureMetadata : public ScriptedKelcamTest {
 protected:
  // 20261122T055537.123+0100 out of 2026-11-22T05:55:37.123+01:00
  static std::string Basic(const std::string& extended) {
    return std::regex_replace(extended.substr(0, 19), std::regex("[-:]"), "") + extended.substr(19, 7) +
           extended.substr(27);
  }
};

TEST_F(PictureMetadata, APngHasTextsOnCameraTimeExposureAndGain) {
  Snap({"-o", In("x.png"), "--set", "exposure=12.5ms", "--set", "gain=10"});

  Texts texts = PngTexts(Text("x.png"));
  EXPECT_TRUE(
      std::regex_match(texts["Creation Time"], std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}[+-]\d\d:\d\d)")))
      << texts["Creation Time"];
  texts.erase("Creation Time");
  EXPECT_EQ(texts, (Texts{{"Source", "Vimba_Scripted_1"},
                          {"Serial Number", "1"},
                          {"Exposure", "12.5 ms"},
                          {"Gain", "3.16228 x"},
                          {"Software", "kelcam " KEL_VERSION}}));
}

TEST_F(PictureMetadata, WhatACameraLacksIsLeftOut) {
  Script("exposure=0");

  Snap({"-o", In("x.png")});

  const Texts texts = PngTexts(Text("x.png"));
  EXPECT_EQ(texts.count("Exposure"), 0u);
  EXPECT_EQ(texts.count("Gain"), 1u);
}

TEST_F(PictureMetadata, ATiffHasTheTagsOfABaselineFile) {
  Script("color=1");

  Snap({"-o", In("x.TIFF")});

  TiffFile tiff = DecodedTiff(Text("x.TIFF"));
  EXPECT_TRUE(tiff.is_sorted);
  EXPECT_EQ(tiff.picture.pixels, ScriptedPicture(1).Pixels(3));
  EXPECT_EQ(tiff.numbers[kBitsPerSample], (Numbers{8, 8, 8}));
  EXPECT_EQ(tiff.numbers[kCompression], Numbers{1});
  EXPECT_EQ(tiff.numbers[kPhotometric], Numbers{kRedGreenBlue});
  EXPECT_EQ(tiff.numbers[kRowsPerStrip], Numbers{ScriptedPicture::kHeight});
  EXPECT_EQ(tiff.numbers[kXResolution], (Numbers{1, 1}));
  EXPECT_EQ(tiff.numbers[kResolutionUnit], Numbers{1});
}

TEST_F(PictureMetadata, AGreyTiffHasOneSample) {
  Snap({"-o", In("x.tif")});

  TiffFile tiff = DecodedTiff(Text("x.tif"));
  EXPECT_EQ(tiff.picture.width, ScriptedPicture::kWidth);
  EXPECT_EQ(tiff.picture.height, ScriptedPicture::kHeight);
  EXPECT_EQ(tiff.picture.pixels, ScriptedPicture(1).Pixels(1));
  EXPECT_EQ(tiff.numbers[kBitsPerSample], Numbers{8});
  EXPECT_EQ(tiff.numbers[kPhotometric], Numbers{kBlackIsZero});
}

TEST_F(PictureMetadata, ATiffHasCameraTimeAndExposureInTheirTags) {
  Snap({"-o", In("x.tif"), "--set", "exposure=12.5ms"});

  TiffFile tiff = DecodedTiff(Text("x.tif"));
  EXPECT_EQ(tiff.texts[kModel], "Vimba_Scripted_1");
  EXPECT_EQ(tiff.texts[kSerialNumber], "1");
  EXPECT_EQ(tiff.texts[kSoftware], "kelcam " KEL_VERSION);
  EXPECT_EQ(tiff.numbers[kExposureTime], (Numbers{12'500, 1'000'000}));
  EXPECT_TRUE(std::regex_match(tiff.texts[kDateTime], std::regex(R"(\d{4}:\d\d:\d\d \d\d:\d\d:\d\d)")));
  EXPECT_EQ(tiff.texts[kDateTimeOriginal], tiff.texts[kDateTime]);
  EXPECT_TRUE(std::regex_match(tiff.texts[kSubSecTimeOriginal], std::regex(R"(\d{3})")));
  EXPECT_THAT(tiff.texts[kImageDescription],
              testing::MatchesRegex("Source: Vimba_Scripted_1; Serial Number: 1; Creation Time: .*; Exposure: 12.5 ms; "
                                    "Gain: 10 x; Software: kelcam .*"));
}

TEST_F(PictureMetadata, NameDocumentAndFileAgreeOnTheTime) {
  const auto document = Document(With("snap", {"-o", In("%t.png")}));

  const std::string time = document["images"][0]["time"];
  EXPECT_EQ(PngTexts(Text(Basic(time) + ".png"))["Creation Time"], time);
}

#ifndef _WIN32
TEST_F(PictureMetadata, TimesAreLocalAndNameTheirDistanceFromUtc) {
  Setting("TZ", "XYZ-05:45");

  const auto document = Document(With("snap", {"-o", In("x.png")}));

  EXPECT_THAT(std::string(document["images"][0]["time"]), testing::EndsWith("+05:45"));
}
#endif

}  // namespace

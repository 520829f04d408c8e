// nearest_name_test.cpp
// What somebody may have meant who wrote a name that there is not.
#include "base/nearest_name.h"

#include "gtest/gtest.h"

namespace {

using Kelcam::DidYouMean;
using Kelcam::NearestName;

const std::vector<std::string> kKeys{"SHUTTER", "GAIN", "MINGAIN", "IP", "Bayertype"};

TEST(NearestName, IsFoundWhereALetterIsMoreLessOtherOrSwapped) {
  for (const char* wrong : {"SHUTTTER", "SHUTER", "SHUTTAR", "SHUTTRE", "shutter", "HSUTTER"}) {
    EXPECT_EQ(NearestName(wrong, kKeys), "SHUTTER") << wrong;
  }
}

TEST(NearestName, TakesTheOneWithTheFewestChanges) {
  EXPECT_EQ(NearestName("GAINN", kKeys), "GAIN");
  EXPECT_EQ(NearestName("MIGAIN", kKeys), "MINGAIN");
}

TEST(NearestName, IsEmptyWhereNothingIsNear) {
  for (const char* wrong : {"", "BRIGHTNESS", "TRIGGER", "zzzzzzz"}) EXPECT_EQ(NearestName(wrong, kKeys), "") << wrong;
  EXPECT_EQ(NearestName("GAIN", {}), "");
}

TEST(NearestName, OfAShortNameMayDifferInOneLetter) {
  EXPECT_EQ(NearestName("IO", kKeys), "IP");
  EXPECT_EQ(NearestName("XY", kKeys), "");
}

TEST(NearestName, IsAQuestionInAMessage) {
  EXPECT_EQ(DidYouMean("GIAN", kKeys), "; did you mean GAIN?");
  EXPECT_EQ(DidYouMean("elephant", kKeys), "");
}

}  // namespace

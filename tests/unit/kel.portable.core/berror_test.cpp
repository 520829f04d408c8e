// berror_test.cpp
// The host's error and its sentences.
#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

#include "berror.h"

namespace {

TEST(Error, IsSuccessByDefault) {
  const BError error;

  EXPECT_FALSE(error.IsError());
  EXPECT_EQ(0, error.ErrorCode());
  EXPECT_EQ(L"", error.Message().Str());
}

TEST(Error, CarriesCodeAndTexts) {
  const BError error(77, L"a", L"b", L"c", L"d");

  EXPECT_TRUE(error.IsError());
  EXPECT_EQ(77, error.ErrorCode());
  EXPECT_EQ(L"a", error.Text(0).Str());
  EXPECT_EQ(L"d", error.Text(3).Str());
  EXPECT_THROW(error.Text(4), std::out_of_range);
}

TEST(Error, EqualsWhenCodeAndAllTextsDo) {
  const BError error(77, L"a", {}, {}, L"d");

  EXPECT_TRUE(error == BError(77, L"a", L"", L"", L"d"));
  EXPECT_TRUE(error != BError(78, L"a", L"", L"", L"d"));
  EXPECT_TRUE(error != BError(77, L"a"));
}

TEST(Error, IsCopiedAndMovedWhole) {
  BError original(12103, L"boo");
  const BError copy(original);
  BError moved(std::move(original));
  BError assigned;
  assigned = moved;

  EXPECT_EQ(BError(12103, L"boo"), copy);
  EXPECT_EQ(BError(12103, L"boo"), moved);
  EXPECT_EQ(BError(12103, L"boo"), assigned);
}

struct CodeAndSentence {
  BError error;
  const wchar_t* sentence;
};

TEST(Error, HasASentenceForEachCode) {
  const CodeAndSentence all[] = {
      {BError(BError::eProfileNotReadable, L"cam.ini", L"No such file or directory"),
       L"the profile cam.ini cannot be read: No such file or directory"},
      {BError(BError::eProfileMalformed, L"cam.ini", L"3", L"why"), L"the profile cam.ini is malformed, line 3: why"},
      {BError(BError::eBadRotation, L"cam.ini", L"RotateBy90Degree", L"2"),
       L"the profile cam.ini asks for a rotation that the driver does not have: RotateBy90Degree = 2"},
      {BError(BError::eAcquisitionFailed, L"AcquisitionStart failed"), L"acquisition failed: AcquisitionStart failed"},
      {BError(BError::eTimeout), L"no image arrived in time"},
      {BError(BError::eFrameTooSmall), L"the frame buffer is too small for the image"},
      {BError(BError::eAborted), L"the acquisition was aborted"},
      {BError(BError::eFrameInvalid), L"the received frame is invalid"},
  };
  for (const CodeAndSentence& each : all) EXPECT_EQ(each.sentence, each.error.Message().Str());
}

TEST(Error, HasTheNumbersThatHostsAndDriversAgreeOn) {
  EXPECT_EQ((std::array<int, 9>{0, 8400, 8401, 8420, 12103, 12106, 12108, 12109, 12110}),
            (std::array<int, 9>{BError::eSuccess, BError::eProfileNotReadable, BError::eProfileMalformed,
                                BError::eBadRotation, BError::eAcquisitionFailed, BError::eTimeout,
                                BError::eFrameTooSmall, BError::eAborted, BError::eFrameInvalid}));
}

TEST(Error, EndsItsSentenceBeforeAMissingText) {
  EXPECT_EQ(L"acquisition failed", BError(BError::eAcquisitionFailed).Message().Str());
}

TEST(Error, TakesPercentSignsInTextsAsTheyAre) {
  EXPECT_EQ(L"acquisition failed: 100%s %d", BError(BError::eAcquisitionFailed, L"100%s %d").Message().Str());
}

TEST(Error, TellsNumberAndTextsOfACodeThatItDoesNotKnow) {
  EXPECT_EQ(L"error -7", BError(-7).Message().Str());
  EXPECT_EQ(L"error 9999: a, c", BError(9999, L"a", L"", L"c").Message().Str());
}

}  // namespace

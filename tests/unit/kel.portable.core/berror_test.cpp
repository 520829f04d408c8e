// berror_test.cpp
// The host's error and its sentences.
#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

#include "berror.h"

namespace {

// Codes that are none of the host's.
constexpr int kOwnCode = 77;
constexpr int kUnknownCode = 9999;

TEST(Error, IsSuccessByDefault) {
  const BError error;

  EXPECT_FALSE(error.IsError());
  EXPECT_EQ(error.ErrorCode(), BError::eSuccess);
  EXPECT_EQ(error.Message().Str(), L"");
}

TEST(Error, CarriesCodeAndTexts) {
  const BError error(kOwnCode, L"a", L"b", L"c", L"d");

  EXPECT_TRUE(error.IsError());
  EXPECT_EQ(error.ErrorCode(), kOwnCode);
  EXPECT_EQ(error.Text(0).Str(), L"a");
  EXPECT_EQ(error.Text(3).Str(), L"d");
  EXPECT_THROW(error.Text(4), std::out_of_range);
}

TEST(Error, EqualsWhenCodeAndAllTextsDo) {
  const BError error(kOwnCode, L"a", {}, {}, L"d");

  EXPECT_TRUE(error == BError(kOwnCode, L"a", L"", L"", L"d"));
  EXPECT_TRUE(error != BError(kOwnCode + 1, L"a", L"", L"", L"d"));
  EXPECT_TRUE(error != BError(kOwnCode, L"a"));
}

TEST(Error, IsCopiedAndMovedWhole) {
  BError original(BError::eAcquisitionFailed, L"boo");
  const BError copy(original);
  BError moved(std::move(original));
  BError assigned;
  assigned = moved;

  EXPECT_EQ(copy, BError(BError::eAcquisitionFailed, L"boo"));
  EXPECT_EQ(moved, BError(BError::eAcquisitionFailed, L"boo"));
  EXPECT_EQ(assigned, BError(BError::eAcquisitionFailed, L"boo"));
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
  for (const CodeAndSentence& each : all) EXPECT_EQ(each.error.Message().Str(), each.sentence);
}

TEST(Error, HasTheNumbersThatHostsAndDriversAgreeOn) {
  EXPECT_EQ((std::array<int, 9>{BError::eSuccess, BError::eProfileNotReadable, BError::eProfileMalformed,
                                BError::eBadRotation, BError::eAcquisitionFailed, BError::eTimeout,
                                BError::eFrameTooSmall, BError::eAborted, BError::eFrameInvalid}),
            (std::array<int, 9>{0, 8400, 8401, 8420, 12103, 12106, 12108, 12109, 12110}));
}

TEST(Error, EndsItsSentenceBeforeAMissingText) {
  EXPECT_EQ(BError(BError::eAcquisitionFailed).Message().Str(), L"acquisition failed");
}

TEST(Error, TakesPercentSignsInTextsAsTheyAre) {
  EXPECT_EQ(BError(BError::eAcquisitionFailed, L"100%s %d").Message().Str(), L"acquisition failed: 100%s %d");
}

TEST(Error, PrintsNumberAndTextsOfACodeThatItDoesNotKnow) {
  EXPECT_EQ(BError(-7).Message().Str(), L"error -7");
  EXPECT_EQ(BError(kUnknownCode, L"a", L"", L"c").Message().Str(), L"error 9999: a, c");
}

}  // namespace

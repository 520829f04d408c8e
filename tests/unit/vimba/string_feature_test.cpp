// string_feature_test.cpp
// Reading a text from a camera that is not to be trusted with its length or its end.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VimbaC.h"
#include "unit/scripted/scripted_library.h"
#include "vimba/vimba_features.h"

namespace {

using Calls = std::vector<std::string>;

constexpr VmbUint32_t kMebibyte = 1U << 20U;
const Calls kLengthAlone{"VmbFeatureStringMaxlengthQuery(Ident)"};

Calls LengthAndText(const std::string& size) {
  return {"VmbFeatureStringMaxlengthQuery(Ident)", "VmbFeatureStringGet(Ident, " + size + ")"};
}

struct StringFeature : testing::Test {
  StringFeature() { Library().Reset(); }

  VmbError_t Read() { return Vimba::GetString(gVimbaHandle, "Ident", text); }

  BString text{"as before"};
};

TEST_F(StringFeature, IsReadWithABufferOfExactlyItsLongestLength) {
  Library().SetText({.max_length = 16, .content = std::string("DEV_1\0", 6)});

  EXPECT_EQ(Read(), VmbErrorSuccess);

  EXPECT_EQ(text.Str(), "DEV_1");
  EXPECT_EQ(Library().Calls(), LengthAndText("16"));
}

TEST_F(StringFeature, WithoutALengthIsNotRead) {
  Library().SetText({.max_length = 16, .content = "DEV_1"});
  Library().Fail("VmbFeatureStringMaxlengthQuery", VmbErrorNotFound);

  EXPECT_EQ(Read(), VmbErrorNotFound);

  EXPECT_EQ(text.Str(), "as before");
  EXPECT_EQ(Library().Calls(), kLengthAlone);
}

TEST_F(StringFeature, ThatCannotBeReadLeavesTheTextAsItWas) {
  Library().SetText({.max_length = 16, .content = "half a text"});
  Library().Fail("VmbFeatureStringGet", VmbErrorIO);

  EXPECT_EQ(Read(), VmbErrorIO);

  EXPECT_EQ(text.Str(), "as before");
}

TEST_F(StringFeature, OfNoLengthIsReadIntoAnEmptyBufferAndTheResultDecides) {
  Library().SetText({.max_length = 0, .content = "too long"});
  EXPECT_EQ(Read(), VmbErrorSuccess);
  EXPECT_EQ(text.Str(), "");
  EXPECT_EQ(Library().Calls(), LengthAndText("0"));

  text = BString("as before");
  Library().Fail("VmbFeatureStringGet", VmbErrorMoreData);
  EXPECT_EQ(Read(), VmbErrorMoreData);
  EXPECT_EQ(text.Str(), "as before");
}

// The sanitizers see a look beyond the buffer.
TEST_F(StringFeature, WithoutATerminatingZeroEndsWithItsBuffer) {
  Library().SetText({.max_length = 5, .content = "DEV_1 and more"});

  EXPECT_EQ(Read(), VmbErrorSuccess);

  EXPECT_EQ(text.Str(), "DEV_1");
}

// Nothing ends such a text but the zeros of the buffer.
TEST_F(StringFeature, ThatIsShorterThanItsBufferHasNoOldBytesBehindIt) {
  Library().SetText({.max_length = 32, .content = "DEV_1"});

  EXPECT_EQ(Read(), VmbErrorSuccess);

  EXPECT_EQ(text.Str(), "DEV_1");
}

TEST_F(StringFeature, OfAnUnbelievableLengthIsNotRead) {
  Library().SetText({.max_length = kMebibyte + 1, .content = "DEV_1"});

  EXPECT_EQ(Read(), VmbErrorResources);

  EXPECT_EQ(text.Str(), "as before");
  EXPECT_EQ(Library().Calls(), kLengthAlone);
}

TEST_F(StringFeature, OfALongButPossibleLengthIsRead) {
  const std::string content(kMebibyte - 1, 'x');
  Library().SetText({.max_length = kMebibyte, .content = content});

  EXPECT_EQ(Read(), VmbErrorSuccess);

  EXPECT_EQ(text.Str(), content);
}

}  // namespace

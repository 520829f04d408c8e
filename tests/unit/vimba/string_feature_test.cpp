// string_feature_test.cpp
// Reading a text from a camera that is not to be trusted with its length or its end.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unit/vimba/scripted_library.h"
#include "vimba/vimba_features.h"

namespace {

using Calls = std::vector<std::string>;

class StringFeature : public testing::Test {
 protected:
  StringFeature() { Script() = {}; }

  VmbError_t Read() { return Vimba::GetString(gVimbaHandle, "Ident", text); }

  BString text{"as before"};
};

TEST_F(StringFeature, IsReadWithABufferOfExactlyItsLongestLength) {
  Script().max_length = 16;
  Script().text = std::string("DEV_1\0", 6);

  EXPECT_EQ(VmbErrorSuccess, Read());

  EXPECT_EQ("DEV_1", text.Str());
  EXPECT_EQ((Calls{"Maxlength Ident", "Get Ident 16"}), Script().calls);
}

TEST_F(StringFeature, WithoutALengthIsNotRead) {
  Script().length_code = VmbErrorNotFound;
  Script().max_length = 16;

  EXPECT_EQ(VmbErrorNotFound, Read());

  EXPECT_EQ("as before", text.Str());
  EXPECT_EQ(Calls{"Maxlength Ident"}, Script().calls);
}

TEST_F(StringFeature, ThatCannotBeReadLeavesTheTextAsItWas) {
  Script().max_length = 16;
  Script().text = "half a text";
  Script().text_code = VmbErrorIO;

  EXPECT_EQ(VmbErrorIO, Read());

  EXPECT_EQ("as before", text.Str());
}

TEST_F(StringFeature, OfNoLengthIsReadIntoAnEmptyBufferAndTheResultDecides) {
  Script().text = "too long";
  EXPECT_EQ(VmbErrorSuccess, Read());
  EXPECT_EQ("", text.Str());
  EXPECT_EQ((Calls{"Maxlength Ident", "Get Ident 0"}), Script().calls);

  text = BString("as before");
  Script().text_code = VmbErrorMoreData;
  EXPECT_EQ(VmbErrorMoreData, Read());
  EXPECT_EQ("as before", text.Str());
}

// The sanitizers see a look beyond the buffer.
TEST_F(StringFeature, WithoutATerminatingZeroEndsWithItsBuffer) {
  Script().max_length = 5;
  Script().text = "DEV_1 and more";

  EXPECT_EQ(VmbErrorSuccess, Read());

  EXPECT_EQ("DEV_1", text.Str());
}

TEST_F(StringFeature, ThatIsShorterThanItsBufferHasNoOldBytesBehindIt) {
  Script().max_length = 32;
  Script().text = "DEV_1";  // nothing ends it but the zeros of the buffer

  EXPECT_EQ(VmbErrorSuccess, Read());

  EXPECT_EQ("DEV_1", text.Str());
}

TEST_F(StringFeature, OfAnUnbelievableLengthIsNotRead) {
  Script().max_length = ~VmbUint32_t{0};

  EXPECT_EQ(VmbErrorResources, Read());

  EXPECT_EQ("as before", text.Str());
  EXPECT_EQ(Calls{"Maxlength Ident"}, Script().calls);
}

TEST_F(StringFeature, OfALongButPossibleLengthIsRead) {
  Script().max_length = 1U << 20U;
  Script().text = std::string((1U << 20U) - 1, 'x');

  EXPECT_EQ(VmbErrorSuccess, Read());

  EXPECT_EQ(Script().text, text.Str());
}

}  // namespace

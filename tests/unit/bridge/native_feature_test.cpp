// native_feature_test.cpp
// Features that go to the camera as they are: types, ranges, steps, locks.
#include <gtest/gtest.h>

#include <limits>

#include "described_camera.h"

namespace {

struct NativeFeatures : testing::Test {
  DescribedCamera camera{"types"};
  Bridge::Features& features = camera.Features();
  std::int64_t whole = 0;
  double real = 0.0;
  bool flag = false;
  std::string text;
  const char* entry = nullptr;
};

TEST_F(NativeFeatures, HaveOneTypeEach) {
  EXPECT_EQ(features.GetFloat("Whole", real), VmbErrorWrongType);
  EXPECT_EQ(features.GetString("Whole", text), VmbErrorWrongType);
  EXPECT_EQ(features.GetInteger("Real", whole), VmbErrorWrongType);
  EXPECT_EQ(features.GetInteger("Choice", whole), VmbErrorWrongType);
  EXPECT_EQ(features.SetInteger("Choice", 1), VmbErrorWrongType);
  EXPECT_EQ(features.GetInteger("Flag", whole), VmbErrorWrongType);
  EXPECT_EQ(features.GetEnum("Whole", entry), VmbErrorWrongType);
  EXPECT_EQ(features.GetBool("Whole", flag), VmbErrorWrongType);
  EXPECT_EQ(features.Run("Whole"), VmbErrorWrongType);
  EXPECT_EQ(features.IsDone("Real", flag), VmbErrorWrongType);
  EXPECT_EQ(features.SetFloat("Whole", 1.0), VmbErrorWrongType);
}

TEST_F(NativeFeatures, OfEachTypeAreRead) {
  EXPECT_EQ(features.GetInteger("Whole", whole), VmbErrorSuccess);
  EXPECT_EQ(whole, 12);
  EXPECT_EQ(features.GetFloat("Real", real), VmbErrorSuccess);
  EXPECT_EQ(real, 1.5);
  EXPECT_EQ(features.GetEnum("Choice", entry), VmbErrorSuccess);
  EXPECT_STREQ(entry, "Second");
  EXPECT_EQ(features.GetBool("Flag", flag), VmbErrorSuccess);
  EXPECT_TRUE(flag);
  EXPECT_EQ(features.Run("Go"), VmbErrorSuccess);
  EXPECT_EQ(features.IsDone("Go", flag), VmbErrorSuccess);
  EXPECT_TRUE(flag);
  EXPECT_EQ(camera.OwnInteger("Went"), 5);
}

TEST_F(NativeFeatures, TakeWholeStepsWithinTheirRange) {
  EXPECT_EQ(features.SetInteger("Whole", 22), VmbErrorSuccess);
  for (const std::int64_t refused :
       {std::int64_t{23}, std::int64_t{-3}, std::int64_t{107}, std::int64_t{20},
        std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(features.SetInteger("Whole", refused), VmbErrorInvalidValue) << refused;
  }

  EXPECT_EQ(camera.OwnInteger("Whole"), 22);
}

TEST_F(NativeFeatures, WithoutLimitsTakeEveryValue) {
  VimbaLibrary::IntegerRange range;
  EXPECT_EQ(features.IntegerRangeOf("Unlimited", range), VmbErrorSuccess);
  EXPECT_LT(range.min, 0);
  EXPECT_EQ(range.max, std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(range.step, 1);

  EXPECT_EQ(features.SetInteger("Unlimited", range.max), VmbErrorSuccess);
  EXPECT_EQ(features.SetInteger("Unlimited", -1), VmbErrorSuccess);

  EXPECT_EQ(camera.OwnInteger("Unlimited"), -1);
}

TEST_F(NativeFeatures, RefuseWhatIsNoNumber) {
  EXPECT_EQ(features.SetFloat("Real", std::numeric_limits<double>::quiet_NaN()), VmbErrorInvalidValue);
  EXPECT_EQ(features.SetFloat("Real", 2.01), VmbErrorInvalidValue);
  EXPECT_EQ(features.SetFloat("Real", 2.0), VmbErrorSuccess);

  EXPECT_EQ(camera.OwnFloat("Real"), 2.0);
}

TEST_F(NativeFeatures, ThatAreReadOnlyOrLockedCannotBeWritten) {
  EXPECT_EQ(features.SetInteger("ReadOnly", 7), VmbErrorInvalidAccess);
  EXPECT_EQ(features.SetInteger("Lockable", 8), VmbErrorSuccess);
  camera.SetOwn("TLParamsLocked", "1");

  EXPECT_EQ(features.SetInteger("Lockable", 9), VmbErrorInvalidAccess);

  EXPECT_EQ(features.GetInteger("Lockable", whole), VmbErrorSuccess);
  EXPECT_EQ(whole, 8);
}

TEST_F(NativeFeatures, ThatAreNotAvailableAreNeitherReadNorWritten) {
  EXPECT_EQ(features.GetInteger("Sometimes", whole), VmbErrorSuccess);
  camera.SetOwn("Available", "0");

  EXPECT_EQ(features.GetInteger("Sometimes", whole), VmbErrorInvalidAccess);
  EXPECT_EQ(features.SetInteger("Sometimes", 1), VmbErrorInvalidAccess);
}

TEST_F(NativeFeatures, ThatAreNotImplementedAreNotFound) {
  EXPECT_EQ(features.GetInteger("Never", whole), VmbErrorNotFound);
  EXPECT_EQ(features.GetInteger("NoSuchName", whole), VmbErrorNotFound);
  // A node that is no feature.
  EXPECT_EQ(features.GetInteger("Device", whole), VmbErrorNotFound);
}

TEST_F(NativeFeatures, OffersOnlyEntriesThatThereAre) {
  EXPECT_EQ(features.SetEnum("Choice", "First"), VmbErrorSuccess);
  EXPECT_EQ(features.SetEnum("Choice", "Absent"), VmbErrorInvalidValue);
  EXPECT_EQ(features.SetEnum("Choice", "Fourth"), VmbErrorInvalidValue);
  EXPECT_EQ(features.SetEnum("Choice", ""), VmbErrorInvalidValue);

  EXPECT_EQ(camera.OwnEntry("Choice"), "First");
}

}  // namespace

// claims_test.cpp
// Who may open a camera with full access.
#include "camera/claims.h"

#include <gtest/gtest.h>

namespace {

using Bridge::Claims;

TEST(Claim, KeepsACameraFromOthersAsLongAsItLives) {
  const auto claims = std::make_shared<Claims>();
  std::unique_ptr<Claims::Claim> claim = claims->Take("DEV_1");
  ASSERT_TRUE(claim);

  EXPECT_TRUE(claims->Has("DEV_1"));
  EXPECT_FALSE(claims->Take("DEV_1"));
  // A refusal gives nothing up.
  EXPECT_TRUE(claims->Has("DEV_1"));

  claim.reset();
  EXPECT_FALSE(claims->Has("DEV_1"));
  EXPECT_TRUE(claims->Take("DEV_1"));
}

TEST(Claim, IsOfOneCamera) {
  const auto claims = std::make_shared<Claims>();
  const std::unique_ptr<Claims::Claim> claim = claims->Take("DEV_1");

  EXPECT_FALSE(claims->Has("DEV_2"));
  EXPECT_TRUE(claims->Take("DEV_2"));
}

TEST(Claim, MayOutliveWhatItWasTakenFrom) {
  auto claims = std::make_shared<Claims>();
  const std::unique_ptr<Claims::Claim> claim = claims->Take("DEV_1");

  claims.reset();

  EXPECT_TRUE(claim);
}

}  // namespace

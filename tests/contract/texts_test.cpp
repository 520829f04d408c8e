// texts_test.cpp
// Features that are texts: what is copied, and what is said of their sizes.
#include <string>
#include <vector>

#include "camera_under_test.h"

namespace {

constexpr char kFeature[] = "DeviceModelName";

struct Texts : CameraTest {
  // Of at least two letters, which a buffer can be too small for.
  std::string model;

  void SetUp() override {
    CameraTest::SetUp();
    std::vector<char> text(256);
    EXPECT_EQ(VmbFeatureStringGet(camera, kFeature, text.data(), 256, nullptr), VmbErrorSuccess);
    model = text.data();
    ASSERT_GE(model.size(), 2u);
  }
};

TEST_F(Texts, FitTheirMaximumLength) {
  VmbUint32_t length = 0;
  EXPECT_EQ(VmbFeatureStringMaxlengthQuery(camera, kFeature, &length), VmbErrorSuccess);
  std::vector<char> text(length);
  VmbUint32_t filled = 0;

  EXPECT_EQ(VmbFeatureStringGet(camera, kFeature, text.data(), length, &filled), VmbErrorSuccess);

  EXPECT_EQ(std::string(text.data()), model);
  EXPECT_EQ(filled, model.size() + 1);
}

TEST_F(Texts, FillABufferThatJustFits) {
  std::vector<char> text(model.size() + 1, '-');

  EXPECT_EQ(VmbFeatureStringGet(camera, kFeature, text.data(), static_cast<VmbUint32_t>(text.size()), nullptr),
            VmbErrorSuccess);

  EXPECT_STREQ(text.data(), model.c_str());
}

TEST_F(Texts, ThatDoNotFitAreCutAndAnswerMoreData) {
  std::vector<char> text(model.size() + 1, '-');
  VmbUint32_t needed = 0;

  EXPECT_EQ(VmbFeatureStringGet(camera, kFeature, text.data(), static_cast<VmbUint32_t>(model.size()), &needed),
            VmbErrorMoreData);

  EXPECT_EQ(text.data(), model.substr(0, model.size() - 1));
  EXPECT_EQ(text.back(), '-');
  EXPECT_EQ(needed, model.size() + 1);
}

TEST_F(Texts, GoNowhereWithoutRoom) {
  char text[] = "-";

  EXPECT_EQ(VmbFeatureStringGet(camera, kFeature, text, 0, nullptr), VmbErrorMoreData);

  EXPECT_STREQ(text, "-");
}

TEST_F(Texts, WithoutABufferGiveTheNeededSize) {
  VmbUint32_t needed = 0;

  EXPECT_EQ(VmbFeatureStringGet(camera, kFeature, nullptr, 0, &needed), VmbErrorSuccess);

  EXPECT_EQ(needed, model.size() + 1);
}

}  // namespace

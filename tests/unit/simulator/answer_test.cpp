// answer_test.cpp
// Faults in what a call reports.
#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "simulated_link.h"

namespace {

using testing::ElementsAre;

constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();

struct Answers : testing::Test {
  StartedCameras world{SimulatedCamera()};
  OpenedHandle camera;

  void Answer(const char* call, const nlohmann::json& answer) {
    world.cameras.Fault({{"call", call}, {"answer", answer}});
  }
};

TEST_F(Answers, TakeThePlaceOfANumber) {
  Answer("VmbFeatureIntGet", nlohmann::json::array({kLargest}));
  VmbInt64_t width = 0;

  EXPECT_EQ(VmbFeatureIntGet(camera, "Width", &width), VmbErrorSuccess);

  EXPECT_EQ(width, kLargest);
}

TEST_F(Answers, TakeThePlaceOfBothEndsOfARange) {
  Answer("VmbFeatureFloatRangeQuery", nlohmann::json::array({"inf", "nan"}));
  double min = 0.0;
  double max = 0.0;

  EXPECT_EQ(VmbFeatureFloatRangeQuery(camera, "Gain", &min, &max), VmbErrorSuccess);

  EXPECT_EQ(min, std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(max));
}

TEST_F(Answers, LeaveAResultUntouchedThatTheCallHasFound) {
  Answer("VmbFeatureIntRangeQuery", "untouched");
  VmbInt64_t min = 3;
  VmbInt64_t max = 4;

  EXPECT_EQ(VmbFeatureIntRangeQuery(camera, "Width", &min, &max), VmbErrorSuccess);

  EXPECT_EQ(min, 3);
  EXPECT_EQ(max, 4);
}

TEST_F(Answers, KeepTheTruthWhereTheyAreEmpty) {
  Answer("VmbCamerasList", nlohmann::json::array({nlohmann::json::object(), 5000}));
  VmbCameraInfo_t info{};
  VmbUint32_t found = 0;

  EXPECT_EQ(VmbCamerasList(&info, 1, &found, sizeof info), VmbErrorSuccess);

  EXPECT_EQ(found, 5000u);
  EXPECT_STREQ(info.cameraIdString, SimulatedCamera::kId);
}

TEST_F(Answers, TakeThePlaceOfEveryTextOfACamera) {
  Answer("VmbCameraInfoQuery", nlohmann::json::array({nullptr}));
  VmbCameraInfo_t info{};

  EXPECT_EQ(VmbCameraInfoQuery(SimulatedCamera::kId, &info, sizeof info), VmbErrorSuccess);

  EXPECT_EQ(info.cameraIdString, nullptr);
  EXPECT_EQ(info.serialString, nullptr);
}

TEST_F(Answers, FillATextWithoutItsEnd) {
  Answer("VmbFeatureStringGet", nlohmann::json::array({"ab"}));
  char text[5] = {};

  EXPECT_EQ(VmbFeatureStringGet(gVimbaHandle, "DiscoveryCameraIdent", text, sizeof text, nullptr), VmbErrorSuccess);

  EXPECT_THAT(text, ElementsAre('a', 'b', 'a', 'b', 'a'));
}

TEST_F(Answers, DoNotMakeAFailedCallWork) {
  Answer("VmbFeatureIntGet", nlohmann::json::array({1}));
  VmbInt64_t value = 5;

  EXPECT_EQ(VmbFeatureIntGet(camera, "none such", &value), VmbErrorNotFound);

  EXPECT_EQ(value, 5);
}

TEST_F(Answers, ThatAreNoResultAreRefused) {
  EXPECT_EQ(VimbaSimAddFaults(R"({"call": "VmbFeatureIntGet", "answer": 5})"), kRefused);
  EXPECT_EQ(VimbaSimAddFaults(R"({"call": "VmbFeatureIntGet", "answer": [[1]]})"), kRefused);
}

}  // namespace

// switch_test.cpp
// Switches and triggers.
#include <gtest/gtest.h>

#include <vector>

#include "../table_place.h"
#include "bimagingdevicetrigger.h"

namespace {

class Trigger : public BImagingDeviceTrigger {
 public:
  void SetOn() override { ++switched_on; }
  bool IsAvailable() const override { return true; }
  bool IsExternal() const override { return external; }
  void SetExternal(bool now_external) override { external = now_external; }
  bool SetActivation(int) override { return true; }
  bool SetSource(int) override {
    ++sources_set;
    return true;
  }
  void Fire() override {}

  bool external = true;
  int switched_on = 0;
  int sources_set = 0;
};

TEST(Switch, IsNoLongerExternalWhenOffAndTouchesNothingElse) {
  Trigger trigger;

  trigger.SetOff();

  EXPECT_FALSE(trigger.IsExternal());
  EXPECT_EQ(trigger.switched_on, 0);
  EXPECT_EQ(trigger.sources_set, 0);
}

TEST(Trigger, HasTheNumbersThatHostsAndDriversAgreeOn) {
  EXPECT_EQ((std::vector<int>{Trigger::eSoftware, Trigger::eLine, Trigger::eFreeRun}), (std::vector<int>{0, 1, 2}));
  EXPECT_EQ((std::vector<int>{Trigger::eRising, Trigger::eFalling}), (std::vector<int>{0, 1}));
}

TEST(Trigger, ContinuesTheSwitchInTableOrder) {
  using Switch = BImagingDeviceSwitch;
  const std::vector<std::size_t> places = {TablePlace(&Switch::SetOn), TablePlace(&Switch::IsAvailable),
                                           TablePlace(&Switch::IsExternal), TablePlace(&Switch::SetExternal),
                                           TablePlace(&Switch::SetOff)};
  EXPECT_EQ(places, (std::vector<std::size_t>{0, 1, 2, 3, 4}));

  const std::vector<std::size_t> own_places = {TablePlace(&BImagingDeviceTrigger::SetActivation),
                                               TablePlace(&BImagingDeviceTrigger::SetSource),
                                               TablePlace(&BImagingDeviceTrigger::Fire)};
  EXPECT_EQ(own_places, (std::vector<std::size_t>{5, 6, 7}));
}

}  // namespace

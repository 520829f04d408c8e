// set_control_test.cpp
// --set CONTROL=VALUE against what the camera has.
#include "kelcam_test.h"

namespace {

using testing::HasSubstr;

class SetControl : public ScriptedKelcamTest {
 protected:
  // The first operation of the run, by which the device got the value.
  std::string OperationOf(const std::string& setting) const {
    Snap({"-o", In("x.png"), "--set", setting});
    const Lines operations = Operations();
    return operations.empty() ? "none" : operations.front();
  }
};

TEST_F(SetControl, APlainNumberIsTheIntegerUnit) {
  EXPECT_EQ(OperationOf("gain=12"), "gain.SetValue(12)");
  EXPECT_EQ(OperationOf("exposure=125"), "exposure.SetValue(125)");
}

TEST_F(SetControl, ANumberWithTheUnitIsTheRealUnit) {
  EXPECT_EQ(OperationOf("exposure=12.5ms"), "exposure.SetValue(125)");
  EXPECT_EQ(OperationOf("exposure=1e1ms"), "exposure.SetValue(100)");
  EXPECT_EQ(OperationOf("gain=10x"), "gain.SetValue(20)");
}

TEST_F(SetControl, SecondsAndDecibelsAreUnitsToo) {
  EXPECT_EQ(OperationOf("exposure=1.5s"), "exposure.SetValue(15000)");
  EXPECT_EQ(OperationOf("gain=6dB"), "gain.SetValue(6)");
}

TEST_F(SetControl, AFractionWithoutAUnitIsRefusedWithWhatToWrite) {
  const std::pair<const char*, const char*> cases[] = {
      {"exposure=12.5", "a number without a unit must be whole; write 12.5ms, or 125 (steps of 0.1 ms)"},
      {"gain=2.5", "a number without a unit must be whole; write 2.5x (steps of 1 dB)"},
      {"wbred=1.5", "a number without a unit must be whole; write 150 (steps of 0.01)"},
      {"gain=2.5dB", "only whole dB"}};
  for (const auto& [setting, reason] : cases) {
    const ProcessResult result = Snap({"-o", In("x.png"), "--set", setting});

    EXPECT_EQ(result.err, std::string("kelcam: --set ") + setting + ": " + reason + "\n(see kelcam --help)\n");
    EXPECT_EQ(result.exit_code, kWrongUsage);
  }
}

TEST_F(SetControl, WhiteBalanceGoesThroughTheDevice) {
  Script("color=1");

  EXPECT_EQ(OperationOf("wbred=150"), "SetWhiteBalanceRed(150, color = false)");
  EXPECT_EQ(OperationOf("wbblue=250"), "SetWhiteBalanceBlue(250, color = false)");
}

TEST_F(SetControl, SettingsAreAppliedInTheirOrder) {
  Snap({"-o", In("x.png"), "--set", "gain=1", "--set", "exposure=2", "--set", "gain=3"});

  EXPECT_EQ(First(Operations(), 3), (Lines{"gain.SetValue(1)", "exposure.SetValue(2)", "gain.SetValue(3)"}));
}

TEST_F(SetControl, AWrongUnitIsNamedAndNothingIsSnapped) {
  const ProcessResult result = Snap({"-o", In("x.png"), "--set", "exposure=3us"});

  EXPECT_EQ(result.err,
            "kelcam: --set exposure=3us: wrong unit \"us\"; the unit of exposure is ms\n(see kelcam --help)\n");
  EXPECT_EQ(Operations(), Lines{});
  EXPECT_TRUE(IsReleased());
  EXPECT_EQ(result.exit_code, kWrongUsage);
}

TEST_F(SetControl, WhiteBalanceHasNoUnit) {
  Script("color=1");

  const ProcessResult result = Snap({"-o", In("x.png"), "--set", "wbred=1.5x"});

  EXPECT_EQ(result.err, "kelcam: --set wbred=1.5x: wrong unit \"x\"; wbred has none\n(see kelcam --help)\n");
  EXPECT_EQ(result.exit_code, kWrongUsage);
}

TEST_F(SetControl, AControlThatTheCameraLacksIsNamed) {
  Script("exposure=0");
  const std::string end = "\n(see kelcam --help)\n";

  EXPECT_EQ(Snap({"-o", In("x.png"), "--set", "exposure=3"}).err,
            "kelcam: this camera has no control \"exposure\"" + end);
  EXPECT_EQ(Snap({"-o", In("x.png"), "--set", "wbblue=3"}).err, "kelcam: this camera has no control \"wbblue\"" + end);
}

TEST_F(SetControl, AValueOutsideTheRangeIsSetToItsEndAndNoticed) {
  const std::pair<const char*, int> cases[] = {{"exposure=99999", 20000},
                                               {"exposure=0", 1},
                                               {"exposure=1e300ms", 20000},
                                               {"exposure=-4ms", 1},
                                               {"exposure=1e300", 20000}};
  for (const auto& [setting, value] : cases) {
    const ProcessResult result = Snap({"-o", In("x.png"), "--set", setting});

    EXPECT_EQ(result.err, std::string("notice: ") + setting +
                              " is outside the camera's range (1 to 20000 in the control's integer unit); set to " +
                              std::to_string(value) + "\n");
    EXPECT_EQ(First(Operations(), 1), Lines{"exposure.SetValue(" + std::to_string(value) + ")"});
    EXPECT_EQ(result.exit_code, kDone);
  }
}

TEST_F(SetControl, AWhiteBalanceOutsideTheRangeIsNoticedToo) {
  Script("color=1");

  const ProcessResult result = Snap({"-o", In("x.png"), "--set", "wbblue=1000"});

  EXPECT_EQ(
      result.err,
      "notice: wbblue=1000 is outside the camera's range (80 to 400 in the control's integer unit); set to 400\n");
  EXPECT_EQ(First(Operations(), 1), Lines{"SetWhiteBalanceBlue(400, color = false)"});
}

TEST_F(SetControl, AValueThatTheCameraRefusesEndsTheCommand) {
  for (const std::string control : {"gain", "exposure", "wbred", "wbblue"}) {
    Script("color=1 refuse=" + control);

    const ProcessResult result = Snap({"-o", In("x.png"), "--set", control + "=90"});

    EXPECT_THAT(result.err, HasSubstr("error: the camera refused " + control + "=90\n"));
    EXPECT_EQ(result.exit_code, kFailed);
  }
}

}  // namespace

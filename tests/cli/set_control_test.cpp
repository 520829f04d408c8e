// set_control_test.cpp
// --set CONTROL=VALUE against what the camera has.
#include "kelcam_test.h"

namespace {

class SetControl : public ScriptedKelcamTest {
 protected:
  // The one operation by which the device got the value.
  std::string OperationOf(const std::string& setting) {
    Snap({"-o", In("x.png"), "--set", setting});
    return Operations().front();
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

TEST_F(SetControl, WhiteBalanceGoesThroughTheDevice) {
  Script("color=1");

  EXPECT_EQ(OperationOf("wbred=150"), "SetWhiteBalanceRed(150, 0)");
  EXPECT_EQ(OperationOf("wbblue=250"), "SetWhiteBalanceBlue(250, 0)");
}

TEST_F(SetControl, SettingsAreAppliedInTheirOrder) {
  Snap({"-o", In("x.png"), "--set", "gain=1", "--set", "exposure=2", "--set", "gain=3"});

  EXPECT_EQ(std::vector<std::string>(Operations()).at(2), "gain.SetValue(3)");
}

TEST_F(SetControl, AWrongUnitIsNamedAndNothingIsSnapped) {
  const ProcessResult result = Snap({"-o", In("x.png"), "--set", "exposure=3us"});

  EXPECT_EQ(result.err,
            "kelcam: --set exposure=3us: wrong unit \"us\"; the unit of exposure is ms\n(kelcam --help tells more)\n");
  EXPECT_EQ(Operations(), std::vector<std::string>{});
  EXPECT_NE(Text("log.txt").find("=== LogMessage\nRelease\n"), std::string::npos);
  EXPECT_EQ(result.exit_code, 2);
}

TEST_F(SetControl, WhiteBalanceHasNoUnit) {
  Script("color=1");

  const ProcessResult result = Snap({"-o", In("x.png"), "--set", "wbred=1.5x"});

  EXPECT_EQ(result.err, "kelcam: --set wbred=1.5x: wrong unit \"x\"; wbred has none\n(kelcam --help tells more)\n");
  EXPECT_EQ(result.exit_code, 2);
}

TEST_F(SetControl, AControlThatTheCameraLacksIsNamed) {
  Script("exposure=0");
  const std::string end = "\n(kelcam --help tells more)\n";

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
    EXPECT_EQ(Operations().front(), "exposure.SetValue(" + std::to_string(value) + ")");
    EXPECT_EQ(result.exit_code, 0);
  }
}

TEST_F(SetControl, AWhiteBalanceOutsideTheRangeIsNoticedToo) {
  Script("color=1");

  EXPECT_EQ(OperationOf("wbblue=1000"), "SetWhiteBalanceBlue(400, 0)");
}

TEST_F(SetControl, AValueThatTheCameraRefusesEndsTheCommand) {
  for (const std::string control : {"gain", "exposure", "wbred", "wbblue"}) {
    Script("color=1 refuse=" + control);

    const ProcessResult result = Snap({"-o", In("x.png"), "--set", control + "=90"});

    EXPECT_NE(result.err.find("error: the camera does not take " + control + "=90\n"), std::string::npos) << result.err;
    EXPECT_EQ(result.exit_code, 1);
  }
}

}  // namespace

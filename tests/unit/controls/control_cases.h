// control_cases.h
// Cameras and controls that the tests of controls share.
#pragma once

#include <utility>

#include "controls/vimba_control.h"
#include "support/simulated_cameras.h"

inline constexpr NBoard::CONTROLTYPE kWhiteBalances[] = {NBoard::eWhiteBalanceRed, NBoard::eWhiteBalanceBlue};
inline constexpr NBoard::CONTROLTYPE kTemperatures[] = {NBoard::eTemperatureSensor, NBoard::eTemperatureMain};

// A colour camera whose ranges all begin and end at values that no other one has.
inline SimulatedCamera WholeRanges() {
  return SimulatedCamera()
      .Colour()
      .Range("Gain", 0.0, 26.0)
      .Range("ExposureTimeAbs", 25.0, 60e6)
      .Range("BalanceRatioAbs", 0.8, 3.0)
      .Feature("Gain", 5.0)
      .Feature("ExposureTimeAbs", 15000.0);
}

inline std::pair<int, int> RangeOf(BVimbaControl& control) {
  std::pair<int, int> range;
  control.GetRange(range.first, range.second);
  return range;
}

// control_types.h
// The control types that the driver serves: their features, their units and what both are worth.
#pragma once

#include <limits>
#include <span>

#include "nboard.h"

// How many of one unit another one is. Multiplying or dividing alone, so that no value is rounded twice.
struct UnitScale {
  double times = 1.0;
  double over = 1.0;

  double Apply(double value) const { return value * times / over; }
  double Revert(double value) const { return value * over / times; }
};

// One row a type. A feature value is in the camera's own unit, an integer in the host's, a real value in the one that a
// person reads. Conversions to integers cut off toward zero and stop at the ends of int.
struct ControlType {
  NBoard::CONTROLTYPE type;
  // The float feature behind the control; null in the rows of types that the driver does not create.
  const char* feature = nullptr;
  // The enumeration that must be set before the feature, or null.
  const char* selector = nullptr;
  const char* selector_entry = nullptr;
  // The enumeration that would change the value by itself, or null, and the entry that keeps it from doing so.
  const char* automatic = nullptr;
  const char* automatic_entry = nullptr;
  bool color_only = false;
  // Range and default, in feature units, for a camera that does not report them.
  double fallback_min = 0.0;
  double fallback_max = 0.0;
  double default_value = 0.0;
  // The control's maximum is never above this.
  double max_cap = std::numeric_limits<double>::max();
  UnitScale feature_to_integer = {};
  UnitScale real_to_integer = {};
  // The integer counts decibels of an amplitude, the real value is its factor.
  bool is_decibels = false;
  // Converted back, an integer keeps whole units only.
  bool is_whole_units = false;
  const wchar_t* unit = L"";

  int FeatureToInteger(double value) const;
  double IntegerToFeature(int value) const;
  double IntegerToReal(int value) const;
  int RealToInteger(double value) const;
};

// The types that the driver creates, in the order in which it does.
std::span<const ControlType> CreatedControlTypes();

// The row of a type. For a number that is none, and for a type that the driver does not create, a row without a
// feature, whose values convert one to one.
const ControlType& ControlTypeOf(int type);

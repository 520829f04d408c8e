// control_types.h
// The control types that the driver serves: their features, their units and what both are worth.
#pragma once

#include "nboard.h"

// One row a type. A feature value is in the camera's own unit, an integer in the host's, a real value in the one that a
// person reads.
struct ControlType {
  NBoard::CONTROLTYPE type;
  const char* feature;   // the float feature behind the control
  const char* selector;  // the enumeration that must be set before it, or null
  const char* selector_entry;
  const char* automatic;        // the enumeration that would change the value by itself, or null
  const char* automatic_entry;  // ... and the entry that keeps it from doing so
  double fallback_min;          // range and default for a camera that does not tell
  double fallback_max;
  double default_value;
  double max_cap;  // the control's maximum is never above this
  const wchar_t* unit;
};

// The row of a type, or null for one that the driver does not create.
const ControlType* FindControlType(int type);

// Conversions by type; all truncate toward zero, and stop at the ends of int. Types without a row convert one to one.
int FeatureToInteger(int type, double value);
double IntegerToFeature(int type, int value);
double IntegerToReal(int type, int value);
int RealToInteger(int type, double value);
const wchar_t* UnitOfControl(int type);

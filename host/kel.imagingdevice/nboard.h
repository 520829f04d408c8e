// nboard.h
// Numbers and key texts that hosts and camera drivers agree on.
#pragma once

#include "kel_imagingdevice_api.h"
#include "wstring.h"

namespace NBoard {

// The quantities of a camera that a host can adjust or read; each has a place of its own in a camera's table of
// controls.
enum CONTROLTYPE : int {
  eGain = 0,
  eWhiteBalanceRed = 1,
  eWhiteBalanceGreen = 2,
  eWhiteBalanceBlue = 3,
  eShutter = 4,
  eBrightness = 5,
  eOffset = 6,
  eGamma = 7,
  eTemperatureSensor = 8,
  eTemperatureMain = 9,
};
inline constexpr int kControlTypes = 10;

// Thrown as it is, across the module boundary.
enum class Exception : int {
  eWrongImageKind = 1,  // an image area holds another kind of image than the operation needs
};

// The white-balance values that a profile keeps: those of colour mode and those of mono mode.
enum WBVALUE : int { eColorBlue = 0, eColorRed = 1, eMonoBlue = 2, eMonoRed = 3 };

// The area of interest that a profile asks for, in pixels.
enum CAMAOIVALUE : int { eAoiX = 0, eAoiY = 1, eAoiWidth = 2, eAoiHeight = 3 };

// The profile keys of these numbers. A number that has no key, known or not, gives an empty text. [any thread]
KEL_IMAGINGDEVICE_API WString ControlTypeString(int control_type);  // GAIN, SHUTTER ...: the control's start value
KEL_IMAGINGDEVICE_API WString WBValueString(int value);             // WBCOLORBLUE ...
KEL_IMAGINGDEVICE_API WString CamAOIValueString(int value);         // AOIX ...

}  // namespace NBoard

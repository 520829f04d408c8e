// nboard.cpp
// The profile keys, by number.
#include "nboard.h"

#include <cstddef>

namespace {

constexpr const wchar_t* kControlKeys[NBoard::kControlTypes] = {L"GAIN",
                                                                L"WHITEBALANCERED",
                                                                L"",
                                                                L"WHITEBALANCEBLUE",
                                                                L"SHUTTER",
                                                                L"BRIGHTNESS",
                                                                L"",
                                                                L"",
                                                                L"TEMPERATURESENSOR",
                                                                L"TEMPERATUREMAIN"};
constexpr const wchar_t* kWhiteBalanceKeys[] = {L"WBCOLORBLUE", L"WBCOLORRED", L"WBMONOBLUE", L"WBMONORED"};
constexpr const wchar_t* kAoiKeys[] = {L"AOIX", L"AOIY", L"AOIWIDTH", L"AOIHEIGHT"};

template <std::size_t kSize>
WString KeyAt(const wchar_t* const (&keys)[kSize], int index) {
  return index >= 0 && static_cast<std::size_t>(index) < kSize ? keys[index] : L"";
}

}  // namespace

namespace NBoard {

WString ControlTypeString(int control_type) { return KeyAt(kControlKeys, control_type); }
WString WBValueString(int value) { return KeyAt(kWhiteBalanceKeys, value); }
WString CamAOIValueString(int value) { return KeyAt(kAoiKeys, value); }

}  // namespace NBoard

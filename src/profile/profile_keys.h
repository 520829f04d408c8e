// profile_keys.h
// The keys of a camera profile that this driver reads for itself. Those that a host defines are CamProfileKey's and
// NBoard's.
#pragma once

namespace ProfileKey {

inline constexpr wchar_t kBayerType[] = L"Bayertype";
inline constexpr wchar_t kColorCodeColor[] = L"COLORCODEcolor";
inline constexpr wchar_t kYuvStretch[] = L"YUVSTRETCH";
inline constexpr wchar_t kBinning[] = L"BINNING";
inline constexpr wchar_t kMinGain[] = L"MINGAIN";
inline constexpr wchar_t kMaxGain[] = L"MAXGAIN";
inline constexpr wchar_t kMinShutter[] = L"MINSHUTTER";
inline constexpr wchar_t kMaxShutter[] = L"MAXSHUTTER";
inline constexpr wchar_t kRotateBy90Degree[] = L"RotateBy90Degree";
inline constexpr wchar_t kCameraFrequency[] = L"CAMFREQ";
inline constexpr wchar_t kTriggerPolarity[] = L"TRIGGERPOLARITY";
inline constexpr wchar_t kMinBytePerSecond[] = L"MIN_BYTEPERSECOND";
inline constexpr wchar_t kBytePerSecond[] = L"BYTEPERSECOND";

inline constexpr const wchar_t* kAll[] = {
    kBayerType,  kColorCodeColor,   kYuvStretch,      kBinning,         kMinGain,          kMaxGain,      kMinShutter,
    kMaxShutter, kRotateBy90Degree, kCameraFrequency, kTriggerPolarity, kMinBytePerSecond, kBytePerSecond};

}  // namespace ProfileKey

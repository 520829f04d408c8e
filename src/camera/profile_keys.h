// profile_keys.h
// The keys of a camera profile that this driver reads and writes itself; the host's own keys come from NBoard.
#pragma once

namespace ProfileKey {

inline constexpr wchar_t kInitMethod[] = L"Init.Method";
inline constexpr wchar_t kSerialNumber[] = L"Serial.Number";
inline constexpr wchar_t kCameraIdentifier[] = L"Camera_Identifier";
inline constexpr wchar_t kIp[] = L"IP";
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

// Every integer key is read within this range.
inline constexpr int kLowestInteger = -2147483645;
inline constexpr int kHighestInteger = 2147483645;

}  // namespace ProfileKey

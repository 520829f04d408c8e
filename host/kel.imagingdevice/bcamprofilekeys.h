// bcamprofilekeys.h
// The profile keys that every camera driver shares.
#pragma once

// Those that hosts define, apart from the ones that NBoard gives out by number. A driver may have keys of its own.
// Profiles compare keys without regard to case.
namespace CamProfileKey {

inline constexpr wchar_t kApi[] = L"API";                              // which driver the profile is for
inline constexpr wchar_t kInitMethod[] = L"Init.Method";               // which of the next three finds the camera
inline constexpr wchar_t kSerialNumber[] = L"Serial.Number";           // the camera's serial number
inline constexpr wchar_t kIp[] = L"IP";                                // the camera's address
inline constexpr wchar_t kCameraIdentifier[] = L"Camera_Identifier";   // the camera's id in the driver's library
inline constexpr wchar_t kMaxShutterForFast[] = L"MAXSHUTTERFORFAST";  // the longest shutter of the fast mode
inline constexpr wchar_t kIdent[] = L"Ident";                          // written: which camera was opened
inline constexpr wchar_t kMIIdent[] = L"MIIdent";                      // written: the id by which it was opened

}  // namespace CamProfileKey

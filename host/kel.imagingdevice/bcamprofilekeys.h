// bcamprofilekeys.h
// The profile keys that every camera driver shares, beside those that NBoard names by number.
#pragma once

namespace CamProfileKey {

inline constexpr wchar_t kApi[] = L"API";                              // which driver the profile is for
inline constexpr wchar_t kSerialNumber[] = L"Serial.Number";           // the serial number of the camera
inline constexpr wchar_t kMaxShutterForFast[] = L"MAXSHUTTERFORFAST";  // the longest shutter of the fast mode
inline constexpr wchar_t kIdent[] = L"Ident";                          // the identifier of the camera that was opened
inline constexpr wchar_t kMIIdent[] = L"MIIdent";                      // the id by which the driver opened it

inline constexpr wchar_t kInitMethod[] = L"Init.Method";               // how the camera is looked for
inline constexpr wchar_t kCameraIdentifier[] = L"Camera_Identifier";   // the library's id of the camera
inline constexpr wchar_t kIp[] = L"IP";                                // the camera's address

}  // namespace CamProfileKey

// bcamprofile.cpp
// The shared keys of camera profiles.
#include "bcamprofile.h"

#include "bcamprofilekeys.h"

bool BCamProfile::IsApi(const WString& api) const {
  WString value;
  return ReadString(CamProfileKey::kApi, value) && value.IEquals(api);
}

bool BCamProfile::ReadSerialNumber(WString& serial_number) const {
  return ReadString(CamProfileKey::kSerialNumber, serial_number);
}

bool BCamProfile::ReadMaxShutterForFast(int& max_shutter) const {
  return ReadInt(CamProfileKey::kMaxShutterForFast, max_shutter, max_shutter, kMinInt, kMaxInt);
}

bool BCamProfile::WriteIdent(const WString& identifier) { return Write(CamProfileKey::kIdent, identifier); }
bool BCamProfile::WriteMIIdent(const WString& identifier) { return Write(CamProfileKey::kMIIdent, identifier); }

WString BCamProfile::ArchiveName() const { return L"BCamProfile"; }

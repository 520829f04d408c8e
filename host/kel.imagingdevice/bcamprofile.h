// bcamprofile.h
// The profile of one camera: an ini profile with the keys that every camera driver shares.
#pragma once

#include "biniprofile.h"
#include "kel_imagingdevice_api.h"

// Made, and failing to be made, as BIniProfile is. The operations work where the profile is, like all its reads and
// writes, and a driver expects it at the root: a host hands it over as it was made, or after GoToRoot. [host thread]
class KEL_IMAGINGDEVICE_API BCamProfile : public BIniProfile {
 public:
  using BIniProfile::BIniProfile;

  // Whether the profile is for this driver ("API"), without regard to case. Without the key it is for none.
  bool IsApi(const WString& api) const;
  // "Serial.Number"; false and an empty text when absent.
  bool ReadSerialNumber(WString& serial_number) const;
  // "MAXSHUTTERFORFAST", in the unit of the shutter control; false and the value untouched when absent or no number.
  bool ReadMaxShutterForFast(int& max_shutter) const;
  // "Ident" and "MIIdent": which camera it was in the end. False when they cannot be saved.
  bool WriteIdent(const WString& identifier);
  bool WriteMIIdent(const WString& identifier);

  WString ArchiveName() const override;
};

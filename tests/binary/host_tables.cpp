// host_tables.cpp
// One class for each host class that has virtual operations, so that a compiler lays out its table and can print it.
#include "bcamprofile.h"
#include "bimagingdevice.h"
#include "bimagingdeviceimpl.h"
#include "bsyncablesmartobj.h"
#include "dlist.h"

// A constructor that is not inline makes the compiler lay the table out, also of a class that has pure operations left.
#define KEL_TABLE_OF(Name, Host, ...) \
  struct Name : Host {                \
    Name();                           \
  };                                  \
  Name::Name() : Host(__VA_ARGS__) {}

KEL_TABLE_OF(Device, BImagingDevice)
KEL_TABLE_OF(DeviceImpl, BImagingDeviceImpl)
KEL_TABLE_OF(Control, BImagingDeviceControl, NBoard::CONTROLTYPE())
KEL_TABLE_OF(Trigger, BImagingDeviceTrigger)
KEL_TABLE_OF(SmartObj, BSmartObj)
KEL_TABLE_OF(SyncableSmartObj, BSyncableSmartObj)
KEL_TABLE_OF(IniProfile, BIniProfile, WString())
KEL_TABLE_OF(Profile, IProfile)
KEL_TABLE_OF(Error, BError)
KEL_TABLE_OF(List, DList<WString>)

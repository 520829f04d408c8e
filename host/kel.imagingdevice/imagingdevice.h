// imagingdevice.h
// Where drivers report to: notices and diagnostic messages (ShowInfo) and log lines (LogMessage).
#pragma once

#include "kel_imagingdevice_api.h"
#include "wstring.h"

namespace ImagingDevice {

// A host's receiver. It is called from any thread, one call at a time, and the texts live as long as the call. Drivers
// may hold their locks meanwhile, so it must not call back into a driver, nor wait for a thread that does; nor may it
// call the functions below. What it throws is dropped: a host that cannot show a message still gets its images.
class KEL_IMAGINGDEVICE_API BSink {
 public:
  virtual ~BSink();
  virtual void OnShowInfo(const wchar_t* text, const wchar_t* caption) = 0;  // caption may be null or empty
  virtual void OnLogMessage(const WString& text, bool important) = 0;
};

// Installs the receiver (null: none) and returns the one before, for which this waits: no call into it runs or begins
// once this returns, and it may be deleted. The caller keeps what it installs alive until then. [any thread]
KEL_IMAGINGDEVICE_API BSink* InstallSink(BSink* sink);

// For drivers. A message for a person, with line breaks if it is a long one; a null text counts as empty. Without a
// receiver it is dropped. Never throws. [any thread]
KEL_IMAGINGDEVICE_API void ShowInfo(const wchar_t* text, const wchar_t* caption = nullptr);
// A line for the host's log. [any thread]
KEL_IMAGINGDEVICE_API void LogMessage(WString text, bool important);

}  // namespace ImagingDevice

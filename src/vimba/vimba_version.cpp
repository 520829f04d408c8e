// vimba_version.cpp
// Which Vimba library answers.
#include "vimba/vimba_version.h"

#include "VimbaC.h"

WString VimbaVersionText() {
  VmbVersionInfo_t version{};
  if (VmbVersionQuery(&version, sizeof version) != VmbErrorSuccess) return {};
  return WString::Format(L"VimbaC %d.%d.%d", version.major, version.minor, version.patch);
}

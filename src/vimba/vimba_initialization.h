// vimba_initialization.h
// The started Vimba system, as an object: as long as it lives, the system is up.
#pragma once

#include "VimbaC.h"
#include "bsmartobj.h"
#include "bsmartref.h"

class VimbaInitialization : public BSmartObj {
 public:
  // Starts Vimba, insists on the GigE transport layer and runs a discovery; hands out `open_system` instead when there
  // is one. Null on failure, with Vimba shut down again; the reasons are in the message "Vimba Initialization". [host
  // thread]
  static BSmartRef<VimbaInitialization> Open(VimbaInitialization* open_system);

  ~VimbaInitialization() override;  // the one place where Vimba is shut down
  VimbaInitialization(const VimbaInitialization&) = delete;
  VimbaInitialization& operator=(const VimbaInitialization&) = delete;

 private:
  VimbaInitialization() = default;

  bool m_started = false;
};

// Reports which camera came or went, and why; changes nothing. [Vimba thread]
void CameraDiscoveryCallback(VmbHandle_t handle, const char* name, void* user_context) noexcept;

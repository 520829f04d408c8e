// camera_identifier.h
// The texts by which cameras are known to the host.
#pragma once

#include "VimbaC.h"
#include "dlist.h"
#include "wstring.h"

// "Vimba_%s_%s": the camera's name (for the Manta family its model without the part in brackets) and its serial number.
WString IdentifierOf(const VmbCameraInfo_t& camera);

// The identifiers of all attached cameras, in the library's order. The Vimba system is started. [host thread]
DList<WString> ListIdentifiers();

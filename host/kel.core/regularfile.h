// regularfile.h
// Whether a name leads to a file that can be read and written as a whole.
#pragma once

#include <system_error>

#include "kel_core_api.h"
#include "wstring.h"

enum class FileKind { kRegular, kFolder, kPipe, kDevice, kSocket, kOther };

// Success for a regular file. The message of any other kind's error says what the file is: a pipe, a device or a socket
// waits for whoever is at its other end, or never ends. [any thread]
KEL_CORE_API std::error_code ErrorOfKind(FileKind kind);

// The same for the file that a name leads to, links followed. Success also when there is none: whoever opens it learns
// why. Waits for nothing. [any thread]
KEL_CORE_API std::error_code ErrorIfNotRegular(const WString& file_name);

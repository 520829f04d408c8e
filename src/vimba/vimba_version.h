// vimba_version.h
// Which Vimba library answers.
#pragma once

#include "wstring.h"

// "VimbaC major.minor.patch"; empty when the library does not say. Needs no started system. [any thread]
WString VimbaVersionText();

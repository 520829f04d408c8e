// bstring.h
// BString, the host's narrow text: UTF-8 where it leaves the process.
#pragma once

#include "bbasicstring.h"

using BString = BBasicString<char>;

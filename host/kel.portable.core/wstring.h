// wstring.h
// WString, the host's wide text, and its conversions from and to narrow UTF-8 text.
#pragma once

#include "bbasicstring.h"
#include "bstring.h"

// UTF-16 where wchar_t has 16 bits (Windows), code points where it has 32.
using WString = BBasicString<wchar_t>;

// UTF-8 to wide text. Null gives an empty text. What is not UTF-8 (stray and missing bytes, needlessly long forms,
// surrogates, values beyond U+10FFFF) becomes U+FFFD, one for each piece that cannot be continued. [any thread]
KEL_PORTABLE_CORE_API WString ToWString(const char* utf8);
KEL_PORTABLE_CORE_API WString ToWString(const BString& utf8);

// Wide text to UTF-8. Lone surrogates and values outside Unicode become U+FFFD. [any thread]
KEL_PORTABLE_CORE_API BString ToBString(const WString& text);

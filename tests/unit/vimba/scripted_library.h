// scripted_library.h
// A library that answers as no sane one does: what a test wants its string features to say.
#pragma once

#include <string>
#include <vector>

#include "VimbaC.h"

// What the two string calls answer, and what they were asked. Every other call answers VmbErrorNotImplemented.
struct ScriptedStrings {
  VmbError_t length_code = VmbErrorSuccess;
  VmbUint32_t max_length = 0;
  VmbError_t text_code = VmbErrorSuccess;
  std::string text;  // copied as it is, as far as the buffer goes; no zero is added

  std::vector<std::string> calls;
};

// The script in force; set it before a call.
ScriptedStrings& Script();

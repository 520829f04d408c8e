// answer_cases.h
// The cases of the answer sweep.
#pragma once

#include <cstddef>
#include <vector>

#include "call_keys.h"
#include "fault.h"

// For each call that reports through pointers, every lie that there is for what it reports.
std::vector<Case> AnswerCases(const LivesCalls& lives);

// differences.h
// What is not the same in every VimbaC library.
#pragma once

#include <string>

// Which library answers: what KEL_CONTRACT_LIBRARY says; otherwise the simulated one.
std::string LibraryUnderTest();

// Why the running test is not for that library. Null: it is.
const char* WhyNotForThisLibrary();

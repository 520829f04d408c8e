// main.cpp
// Uses the SDK of the project that is a part of this one.
#include <iostream>

#include "wstring.h"

int main() {
  std::cout << ToBString(L"a text of the SDK").c_str() << "\n";
  return 0;
}

// profile_writer.cpp
// A process that writes many keys into a profile, one at a time: profile-writer FILE PREFIX COUNT.
#include <cstdlib>
#include <iostream>
#include <string>

#include "berror.h"
#include "biniprofile.h"

int main(int argc, char** argv) try {
  if (argc != 4) return 2;
  BIniProfile profile(ToWString(argv[1]));
  for (int number = 0; number < std::atoi(argv[3]); ++number) {
    const std::string key = argv[2] + std::to_string(number);
    if (profile.Write(ToWString(key.c_str()), WString::Format(L"%d", number))) continue;
    std::cerr << ToBString(profile.Complaints().back()).c_str() << "\n";
    return 1;
  }
  return 0;
} catch (const BError& error) {
  std::cerr << ToBString(error.Message()).c_str() << "\n";
  return 1;
}

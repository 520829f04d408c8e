// iprofile.cpp
// The home of the interface's type information.
#include "iprofile.h"

IProfile::~IProfile() = default;

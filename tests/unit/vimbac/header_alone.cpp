// header_alone.cpp
// Both interfaces compile alone as C++17.
#include "VimbaC.h"
#include "vimba_simulator.h"

static_assert(sizeof(VmbHandle_t) == 8 && sizeof(VmbBool_t) == 1);

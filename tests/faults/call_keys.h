// call_keys.h
// The calls of a life as faults name them.
#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "fault.h"

// The calls of each kind of life without faults.
using LivesCalls = std::map<LifeKind, std::vector<CallLine>>;

// Each call by its key, in their order.
std::vector<CallKey> KeysOf(const std::vector<CallLine>& calls);

// works.h
// What is measured: every conversion of an image, and the libraries that a user would take instead.
#pragma once

#include <vector>

#include "bsize.h"
#include "side_by_side.h"

// The works on a frame of `size`. They share frames and images, which live as long as they do.
std::vector<Work> WorksOn(const BSize& size);

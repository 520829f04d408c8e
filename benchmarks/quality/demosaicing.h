// demosaicing.h
// Ways to get colours back out of a mosaic, and how well they do.
#pragma once

#include <string>
#include <vector>

#include "original.h"

// The names of the ways, in the order of the results below.
const std::vector<std::string>& WayNames();

// The colour peak signal-to-noise ratio of each way, in dB: the picture is seen through an RGGB mosaic, demosaiced and
// compared, all three colours together. The outermost pixels are left out, where the ways differ in what they assume
// beyond the edge.
std::vector<double> ColourPsnr(const Original& original);

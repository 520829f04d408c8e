// demosaicing.h
// Ways to get colours back out of a mosaic, and how well they do.
#pragma once

#include <string>
#include <vector>

#include "original.h"

// The names of the ways, in the order of the results below.
const std::vector<std::string>& WayNames();

struct Score {
  double psnr_db;
  double ms_per_megapixel;
};

// How well each way does: the picture is seen through an RGGB mosaic, demosaiced and compared, all three colours
// together, as peak signal-to-noise ratio. The outermost pixels are left out, where the ways differ in what they assume
// beyond the edge. The time is that of the second of two runs.
std::vector<Score> Scores(const Original& original);

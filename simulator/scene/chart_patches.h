// scene/chart_patches.h
// The colour patches of the test chart: their published colours and where they lie.
#pragma once

#include <array>

namespace Simulator {

// sRGB values for daylight; in rows of six, from the top left.
struct ChartPatch {
  const char* name;
  int red;
  int green;
  int blue;
};

inline constexpr std::array<ChartPatch, 24> kChartPatches{{
    {"dark skin", 115, 82, 68},   {"light skin", 194, 150, 130},  {"blue sky", 98, 122, 157},
    {"foliage", 87, 108, 67},     {"blue flower", 133, 128, 177}, {"bluish green", 103, 189, 170},
    {"orange", 214, 126, 44},     {"purplish blue", 80, 91, 166}, {"moderate red", 193, 90, 99},
    {"purple", 94, 60, 108},      {"yellow green", 157, 188, 64}, {"orange yellow", 224, 163, 46},
    {"blue", 56, 61, 150},        {"green", 70, 148, 73},         {"red", 175, 54, 60},
    {"yellow", 231, 199, 31},     {"magenta", 187, 86, 149},      {"cyan", 8, 133, 161},
    {"white", 243, 243, 242},     {"neutral 8", 200, 200, 200},   {"neutral 6.5", 160, 160, 160},
    {"neutral 5", 122, 122, 121}, {"neutral 3.5", 85, 85, 85},    {"black", 52, 52, 52},
}};

// In sensor pixels: [left, right) x [top, bottom). The pixels along its edges may show part of the surroundings.
struct PatchArea {
  double left;
  double top;
  double right;
  double bottom;
};

// Where patch `index` lies on the chart for a sensor of this size.
PatchArea ChartPatchArea(int sensor_width, int sensor_height, int index);

}  // namespace Simulator

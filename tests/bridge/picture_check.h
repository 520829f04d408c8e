// picture_check.h
// Whether a picture is the one that the tests' camera has drawn, pixel by pixel.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "bbaseaoi.h"
#include "bpoint.h"
#include "bsize.h"

// The pixels of a frame of Mono8, row after row; `at` is where on the sensor it begins.
testing::AssertionResult ShowsGrey(const std::uint8_t* pixels, BSize size, std::uint64_t frame_id, BPoint at = {});
// The same of a host's area. Which frame it was follows from its first pixel.
testing::AssertionResult ShowsGrey(BBaseAoi& aoi, BSize size, BPoint at = {});
// Frames of RGB8 and BayerRG8.
testing::AssertionResult ShowsColour(const std::vector<std::uint8_t>& pixels);
testing::AssertionResult ShowsMosaic(const std::vector<std::uint8_t>& pixels, int width);
// An area of RGB pixels that was made of either.
testing::AssertionResult ShowsColour(BBaseAoi& aoi, BSize size);

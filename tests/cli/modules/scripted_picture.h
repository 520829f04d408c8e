// scripted_picture.h
// The pictures of the scripted device, known to it and to the tests: no two pixels, rows or pictures are alike.
#pragma once

#include <cstdint>
#include <vector>

#include "bbaseaoi.h"

struct ScriptedPicture {
  static constexpr int kWidth = 5;  // odd and small: rows are longer than their pixels
  static constexpr int kHeight = 3;

  explicit ScriptedPicture(int picture) : number(picture) {}

  std::uint8_t At(int x, int y, int channel) const {
    return static_cast<std::uint8_t>(number * 50 + y * 11 + x * 2 + channel * 70);
  }

  std::vector<std::uint8_t> Pixels(int channels) const {
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < kHeight; ++y) {
      for (int x = 0; x < kWidth * channels; ++x) pixels.push_back(At(x / channels, y, x % channels));
    }
    return pixels;
  }

  void Fill(BBaseAoi& area) const {
    area.Reset({kWidth, kHeight});
    const int channels = area.Rgb() ? BImageRgb::kChannels : 1;
    for (int y = 0; y < kHeight; ++y) {
      std::uint8_t* row = area.Rgb() ? area.Rgb()->Row(y) : area.Mono()->Row(y);
      for (int x = 0; x < kWidth * channels; ++x) row[x] = At(x / channels, y, x % channels);
    }
  }

  int number;
};

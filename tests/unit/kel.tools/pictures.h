// pictures.h
// Frames with random pixels, images with known bytes, and what is in an image, for tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "bimage8u.h"
#include "bimagergb.h"
#include "bsize.h"

namespace Pictures {

using Bytes = std::vector<std::uint8_t>;

// Every byte of the rows, their unused ends included.
constexpr std::uint8_t kGuard = 0xA5;

inline Bytes RandomBytes(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  Bytes bytes(count);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 24);
  return bytes;
}

// A frame of exactly the bytes that it may be read in: the sanitizers see every byte next to it.
struct Frame {
  BSize size;
  int padding = 0;
  int bytes_per_pixel = 1;
  Bytes bytes;

  std::size_t LineLength() const {
    return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(bytes_per_pixel) +
           static_cast<std::size_t>(padding);
  }
  int At(int x, int y) const { return bytes[static_cast<std::size_t>(y) * LineLength() + static_cast<std::size_t>(x)]; }
};

inline Frame RandomFrame(const BSize& size, int padding, unsigned seed, int bytes_per_pixel = 1) {
  Frame frame{size, padding, bytes_per_pixel, {}};
  frame.bytes = RandomBytes(frame.LineLength() * static_cast<std::size_t>(size.height), seed);
  return frame;
}

template <class Image>
Image GuardedImage(const BSize& size) {
  Image image(size);
  for (int y = 0; y < size.height; ++y) {
    for (std::size_t i = 0; i < image.LineLength(); ++i) image.Row(y)[i] = kGuard;
  }
  return image;
}

template <class Image>
inline constexpr int kChannels = 1;
template <>
inline constexpr int kChannels<BImageRgb> = BImageRgb::kChannels;

// The pixels of an image, without the rows' unused ends.
template <class Image>
Bytes PixelsOf(const Image& image) {
  Bytes pixels;
  for (int y = 0; y < image.Size().height; ++y) {
    pixels.insert(pixels.end(), image.Row(y), image.Row(y) + image.Size().width * kChannels<Image>);
  }
  return pixels;
}

// The unused ends of the rows that are no longer kGuard.
template <class Image>
int TouchedGuards(const Image& image) {
  int touched = 0;
  for (int y = 0; y < image.Size().height; ++y) {
    const auto used = static_cast<std::size_t>(image.Size().width) * kChannels<Image>;
    for (std::size_t i = used; i < image.LineLength(); ++i) touched += image.Row(y)[i] != kGuard;
  }
  return touched;
}

inline std::string Named(const BSize& size) { return std::to_string(size.width) + " x " + std::to_string(size.height); }

}  // namespace Pictures

// bayer_test.cpp
// Every Bayer conversion against the definitions, in every vector unit's way of doing it.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "bayer_reference.h"
#include "bcolorconverter.h"
#include "every_kernel.h"
#include "pictures.h"

namespace {

using BayerReference::Colour;
using Pictures::Bytes;
using Pictures::Frame;

constexpr int kOrders = 4;
constexpr unsigned kSeed = 20170;

struct Conversion {
  std::string name;
  std::function<Bytes(const BColorConverter&, const Frame&)> convert;
  std::function<Bytes(const Frame&, int)> expected;
};

Bytes ToRgb(const Frame& frame, const std::function<void(BImageRgb&)>& convert) {
  auto target = Pictures::GuardedImage<BImageRgb>(frame.size);
  convert(target);
  EXPECT_EQ(Pictures::TouchedGuards(target), 0);
  return Pictures::PixelsOf(target);
}

Bytes ToMono(const Frame& frame, const std::function<void(BImage8u&)>& convert) {
  auto target = Pictures::GuardedImage<BImage8u>(frame.size);
  convert(target);
  EXPECT_EQ(Pictures::TouchedGuards(target), 0);
  return Pictures::PixelsOf(target);
}

template <class Pixel>
std::function<Bytes(const Frame&, int)> By(Pixel pixel) {
  return [pixel](const Frame& frame, int order) { return BayerReference::Image(frame, order, frame.size, pixel); };
}

template <class Pixel>
Conversion Rgb(bool good, Pixel pixel) {
  const auto convert = [good](const BColorConverter& converter, const Frame& frame) {
    return ToRgb(frame, [&](BImageRgb& target) {
      good ? converter.ConvertRawToRGB(frame.bytes.data(), target)
           : converter.ConvertFastRawToRGB(frame.bytes.data(), target);
    });
  };
  return {good ? "good RGB" : "fast RGB", convert, By(pixel)};
}

template <class Pixel>
Conversion Mono(bool good, int flag, Pixel pixel) {
  const auto convert = [good, flag](const BColorConverter& converter, const Frame& frame) {
    return ToMono(frame, [&](BImage8u& target) {
      good ? converter.ConvertRawToMono(frame.bytes.data(), target, flag)
           : converter.ConvertFastRawToMono(frame.bytes.data(), target, flag);
    });
  };
  return {(good ? "good mono " : "fast mono ") + std::to_string(flag), convert, By(pixel)};
}

// By the colours that two ways of interpolation make of (frame, order, x, y).
template <class Corrected, class Bilinear>
std::vector<Conversion> ConversionsBy(Corrected corrected, Bilinear bilinear) {
  const auto luma = [](auto interpolation) {
    return [=](const Frame& frame, int order, int x, int y) {
      return BayerReference::Luma(interpolation(frame, order, x, y));
    };
  };
  const auto weighted = [=](const Frame& frame, int order, int x, int y) {
    return BayerReference::WeightedMean(corrected(frame, order, x, y));
  };
  return {Rgb(true, corrected),    Rgb(false, bilinear),           Mono(true, 0, luma(corrected)),
          Mono(true, 1, weighted), Mono(false, 0, luma(bilinear)), Mono(false, 1, BayerReference::Binomial)};
}

std::vector<Conversion> Conversions() { return ConversionsBy(BayerReference::Corrected, BayerReference::Bilinear); }

// The interpolation, done once for all conversions that need its colours. One frame of a size and order is asked for.
template <class Interpolation>
auto Remembered(Interpolation interpolation) {
  struct Memory {
    BSize size;
    int order = -1;
    std::vector<Colour> colours;
  };
  return [interpolation, memory = std::make_shared<Memory>()](const Frame& frame, int order, int x, int y) {
    if (memory->order != order || !(memory->size == frame.size)) {
      *memory = {frame.size, order, {}};
      for (int row = 0; row < frame.size.height; ++row) {
        for (int column = 0; column < frame.size.width; ++column) {
          memory->colours.push_back(interpolation(frame, order, column, row));
        }
      }
    }
    return memory->colours.begin()[std::ptrdiff_t{y} * frame.size.width + x];
  };
}

class Bayer : public EveryKernel {};

void ExpectDefinition(const BSize& size, int padding) {
  const unsigned seed = kSeed + static_cast<unsigned>(size.width * 1000 + size.height);
  const Frame frame = Pictures::RandomFrame(size, padding, seed);
  for (const Conversion& conversion : Conversions()) {
    for (int order = 0; order < kOrders; ++order) {
      const Bytes made = conversion.convert(BColorConverter(size, order, padding), frame);
      ASSERT_EQ(made, conversion.expected(frame, order))
          << conversion.name << ", order " << order << ", " << Pictures::Named(size) << ", seed " << seed;
    }
  }
}

// All vector units at once: here the definition takes longer than they do.
TEST(BayerSizes, EveryPixelOfEverySizeMeetsTheDefinition) {
  const std::vector<Conversion> conversions =
      ConversionsBy(Remembered(BayerReference::Corrected), Remembered(BayerReference::Bilinear));
  const std::vector<std::string> all_kernels = KernelNames();
  for (int at = 0; at < KEL_LARGEST_SIZE * KEL_LARGEST_SIZE; ++at) {
    const BSize size{at % KEL_LARGEST_SIZE + 1, at / KEL_LARGEST_SIZE + 1};
    const Frame frame = Pictures::RandomFrame(size, 0, kSeed);
    for (int order = 0; order < kOrders; ++order) {
      for (const Conversion& conversion : conversions) {
        const Bytes expected = conversion.expected(frame, order);
        for (const std::string& kernels : all_kernels) {
          UseKernels(kernels);
          ASSERT_EQ(conversion.convert(BColorConverter(size, order), frame), expected)
              << conversion.name << " by " << kernels << ", order " << order << ", " << Pictures::Named(size);
        }
      }
    }
  }
  UseBestKernels();
}

TEST_P(Bayer, EveryPixelOfEveryWidthMeetsTheDefinition) {
  for (int width = 17; width <= 280; ++width) {
    ExpectDefinition({width, 3}, width % 7);
    if (HasFailure()) return;
  }
}

TEST_P(Bayer, LargeOddSizesMeetTheDefinition) {
  for (const BSize size : {BSize{643, 17}, BSize{1293, 5}, BSize{2465, 3}, BSize{63, 129}}) {
    ExpectDefinition(size, 5);
    if (HasFailure()) return;
  }
}

// Extremes of both signs: no sum may leave the width of the numbers that it is made in.
TEST_P(Bayer, HardEdgesMeetTheDefinition) {
  Frame frame = Pictures::RandomFrame({301, 9}, 0, kSeed);
  for (std::uint8_t& byte : frame.bytes) byte = byte < 128 ? 0 : 255;
  for (const Conversion& conversion : Conversions()) {
    for (int order = 0; order < kOrders; ++order) {
      ASSERT_EQ(conversion.convert(BColorConverter(frame.size, order), frame), conversion.expected(frame, order))
          << conversion.name << ", order " << order;
    }
  }
}

Frame FlatMosaic(const BSize& size, int order, const Colour& colour) {
  Frame frame = Pictures::RandomFrame(size, 0, kSeed);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      const char site = BayerReference::ColourAt(order, x, y);
      const double value = site == 'R' ? colour.red : site == 'G' ? colour.green : colour.blue;
      frame.bytes.begin()[std::ptrdiff_t{y} * size.width + x] = static_cast<std::uint8_t>(value);
    }
  }
  return frame;
}

TEST_P(Bayer, AFlatMosaicGivesBackItsColour) {
  const Colour colour{200, 31, 255};
  const Bytes rgb = {200, 31, 255};
  const Bytes luma = {107};
  const Bytes weighted_mean = {129};
  const std::vector<Bytes> expected = {rgb, rgb, luma, weighted_mean, luma, weighted_mean};
  for (int order = 0; order < kOrders; ++order) {
    for (const BSize size : {BSize{2, 2}, BSize{3, 2}, BSize{75, 5}}) {
      const Frame frame = FlatMosaic(size, order, colour);
      for (std::size_t i = 0; i < expected.size(); ++i) {
        const Bytes made = Conversions()[i].convert(BColorConverter(size, order), frame);
        for (std::size_t k = 0; k < made.size(); ++k) {
          ASSERT_EQ(made[k], expected[i][k % expected[i].size()]) << Conversions()[i].name << ", order " << order;
        }
      }
    }
  }
}

TEST_P(Bayer, AnUnknownOrderIsGrbg) {
  const Frame frame = Pictures::RandomFrame({20, 6}, 0, kSeed);
  const Conversion good = Rgb(true, BayerReference::Corrected);
  for (int order : {-1, 4, 77}) {
    EXPECT_EQ(good.convert(BColorConverter(frame.size, order), frame), good.expected(frame, BColorConverter::eGRBG));
  }
}

TEST_P(Bayer, WhatLiesInTheLinePaddingDoesNotMatter) {
  Frame frame = Pictures::RandomFrame({97, 6}, 9, kSeed);
  const BColorConverter converter(frame.size, 1, frame.padding);
  for (const Conversion& conversion : Conversions()) {
    const Bytes before = conversion.convert(converter, frame);
    for (std::size_t i = 0; i < frame.bytes.size(); ++i) {
      if (i % frame.LineLength() >= static_cast<std::size_t>(frame.size.width)) frame.bytes[i] ^= 0xFF;
    }
    EXPECT_EQ(conversion.convert(converter, frame), before) << conversion.name;
  }
}

TEST(BayerLuma, IsTheRec601LumaWithinOneStep) {
  for (int red = 0; red < 256; red += 5) {
    for (int green = 0; green < 256; green += 3) {
      for (int blue = 0; blue < 256; blue += 5) {
        const Colour colour{double(red), double(green), double(blue)};
        const double rounded = BayerReference::Rounded(0.299 * red + 0.587 * green + 0.114 * blue);
        ASSERT_NEAR(BayerReference::Luma(colour), rounded, 1) << red << ' ' << green << ' ' << blue;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, Bayer, testing::ValuesIn(KernelNames()), KernelOf);

}  // namespace

// statistics_test.cpp
// Histograms, means and sharpness of pictures for which they are known.
#include "view/pictures/statistics.h"

#include <numeric>

#include "gtest/gtest.h"

namespace {

using Kelcam::Histogram;
using Kelcam::HistogramsOf;
using Kelcam::Pixels;
using Kelcam::SharpnessOf;

struct Picture {
  Picture(BSize its_size, std::size_t its_channels)
      : size(its_size),
        channels(its_channels),
        bytes(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * channels) {}

  Pixels View() const { return {bytes.data(), static_cast<std::size_t>(size.width) * channels, size, channels}; }
  template <class Value>
  Picture Filled(const Value& value) && {
    std::size_t at = 0;
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) {
        for (std::size_t c = 0; c < channels; ++c) bytes[at++] = static_cast<std::uint8_t>(value(x, y, c));
      }
    }
    return *this;
  }

  BSize size;
  std::size_t channels;
  std::vector<std::uint8_t> bytes;
};

TEST(Histograms, CountEachValueOfEachChannel) {
  // Channel c has the values c, c + 1, ... once in each row.
  const Picture picture =
      Picture({101, 7}, 3).Filled([](int x, int, std::size_t c) { return x + static_cast<int>(c); });

  const std::vector<Histogram> histograms = HistogramsOf(picture.View());

  ASSERT_EQ(histograms.size(), 3U);
  for (std::size_t c = 0; c < 3; ++c) {
    for (std::size_t value = 0; value < Kelcam::kValues; ++value) {
      EXPECT_EQ(histograms[c][value], value >= c && value < c + 101 ? 7U : 0U) << c << ", " << value;
    }
    EXPECT_DOUBLE_EQ(Kelcam::MeanOf(histograms[c]), 50.0 + static_cast<double>(c));
  }
}

TEST(Histograms, SharesAreOfTheEnds) {
  const Picture picture = Picture({8, 1}, 1).Filled([](int x, int, std::size_t) {
    return x < 2 ? 0 : x < 3 ? 255 : 9;
  });

  const Histogram histogram = HistogramsOf(picture.View()).front();

  EXPECT_DOUBLE_EQ(Kelcam::DarkShareOf(histogram), 0.25);
  EXPECT_DOUBLE_EQ(Kelcam::BrightShareOf(histogram), 0.125);
}

TEST(Sharpness, OfARampIsThatOfItsSlope) {
  // Its Sobel gradient is eight times the slope, and its mean is that of its ends.
  const Picture across = Picture({51, 20}, 1).Filled([](int x, int, std::size_t) { return 3 * x; });
  const Picture down = Picture({20, 51}, 1).Filled([](int, int y, std::size_t) { return 3 * y; });

  EXPECT_DOUBLE_EQ(SharpnessOf(across.View()), 24.0 * 24.0 / (75.0 * 75.0));
  EXPECT_DOUBLE_EQ(SharpnessOf(down.View()), 24.0 * 24.0 / (75.0 * 75.0));
}

TEST(Sharpness, OfAStepCountsTheTwoColumnsBesideIt) {
  const Picture picture = Picture({102, 52}, 1).Filled([](int x, int, std::size_t) { return x < 51 ? 50 : 150; });

  // Four times the step in 2 of the 100 inner columns, over the squared mean.
  EXPECT_DOUBLE_EQ(SharpnessOf(picture.View()), 400.0 * 400.0 * 2 / 100 / (100.0 * 100.0));
}

TEST(Sharpness, DoesNotChangeWithTheExposure) {
  const Picture dark = Picture({300, 200}, 1).Filled([](int x, int y, std::size_t) { return (x * 7 + y * 13) % 100; });
  const Picture bright =
      Picture({300, 200}, 1).Filled([](int x, int y, std::size_t) { return 2 * ((x * 7 + y * 13) % 100); });

  EXPECT_NEAR(SharpnessOf(bright.View()) / SharpnessOf(dark.View()), 1.0, 1e-12);
}

TEST(Sharpness, FallsWithBlur) {
  const auto stripes = [](int x, int, std::size_t) { return x % 8 < 4 ? 40 : 200; };
  const auto blurred = [&](int x, int y, std::size_t c) {
    return (stripes(x, y, c) + stripes(x + 1, y, c) + stripes(x + 2, y, c)) / 3;
  };

  EXPECT_GT(SharpnessOf(Picture({64, 64}, 1).Filled(stripes).View()),
            1.5 * SharpnessOf(Picture({64, 64}, 1).Filled(blurred).View()));
}

TEST(Sharpness, OfTheLargestGradientsInAWidePictureDoesNotOverflow) {
  const Picture picture = Picture({9000, 4}, 1).Filled([](int x, int, std::size_t) { return x % 4 < 2 ? 0 : 255; });

  // Every inner column is beside a step.
  EXPECT_NEAR(SharpnessOf(picture.View()), 1020.0 * 1020.0 / (127.5 * 127.5), 0.1);
}

TEST(Sharpness, OfEqualChannelsIsThatOfGrey) {
  const auto value = [](int x, int y, std::size_t) { return (x * 5 + y * 3) % 256; };

  EXPECT_NEAR(SharpnessOf(Picture({40, 30}, 3).Filled(value).View()),
              SharpnessOf(Picture({40, 30}, 1).Filled(value).View()), 1e-9);
}

TEST(Sharpness, OfNothingToMeasureIsZero) {
  EXPECT_EQ(SharpnessOf(Picture({2, 100}, 1).View()), 0.0);
  EXPECT_EQ(SharpnessOf(Picture({10, 10}, 1).View()), 0.0);
}

}  // namespace

// demosaicing.cpp
// Ways to get colours back out of a mosaic, and how well they do.
#include "demosaicing.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <opencv2/imgproc.hpp>

#include "bcolorconverter.h"
#include "bimagergb.h"
#include "hamilton_adams.h"
#include "rows/row_kernels.h"

namespace {

constexpr int kChannels = 3;
constexpr int kBorder = 8;
// OpenCV 4.6 lays VNG's rows one above their places; they are compared where they belong.
constexpr int kVngRowsTooHigh = 1;

using Mosaic = std::vector<std::uint8_t>;

struct Way {
  std::string name;
  std::function<cv::Mat(Mosaic&, const BSize&)> colours;
  int rows_too_high = 0;
};

Mosaic MosaicOf(const Original& original) {
  Mosaic mosaic;
  for (int y = 0; y < original.size.height; ++y) {
    for (int x = 0; x < original.size.width; ++x) {
      const auto pixel =
          static_cast<std::size_t>(y) * static_cast<std::size_t>(original.size.width) + static_cast<std::size_t>(x);
      // R G over G B.
      const int channel = x % 2 + y % 2;
      mosaic.push_back(original.rgb[pixel * kChannels + static_cast<std::size_t>(channel)]);
    }
  }
  return mosaic;
}

cv::Mat Ours(const Mosaic& mosaic, const BSize& size, bool good) {
  const BColorConverter converter(size, BColorConverter::eRGGB);
  BImageRgb image(size);
  good ? converter.ConvertRawToRGB(mosaic.data(), image) : converter.ConvertFastRawToRGB(mosaic.data(), image);
  return cv::Mat(size.height, size.width, CV_8UC3, image.Row(0), image.LineLength()).clone();
}

cv::Mat OursInScalarLoops(const Mosaic& mosaic, const BSize& size) {
  Rows::UseKernels("scalar");
  cv::Mat colours = Ours(mosaic, size, true);
  Rows::UseKernels(Rows::KernelNames()[0]);
  return colours;
}

cv::Mat Directional(const Mosaic& mosaic, const BSize& size) {
  std::vector<std::uint8_t> rgb = HamiltonAdams(mosaic, size);
  return cv::Mat(size.height, size.width, CV_8UC3, rgb.data()).clone();
}

// OpenCV names a mosaic by the tile one row down and one column right of the top left.
Way OpenCv(const char* name, int code, int rows_too_high = 0) {
  return {name,
          [code](Mosaic& mosaic, const BSize& size) {
            cv::Mat colours;
            cv::demosaicing(cv::Mat(size.height, size.width, CV_8UC1, mosaic.data()), colours, code);
            return colours;
          },
          rows_too_high};
}

const std::vector<Way>& Ways() {
  static const std::vector<Way> kWays = {
      {"fast", [](Mosaic& mosaic, const BSize& size) { return Ours(mosaic, size, false); }, 0},
      {"good", [](Mosaic& mosaic, const BSize& size) { return Ours(mosaic, size, true); }, 0},
      {"good, scalar", [](Mosaic& mosaic, const BSize& size) { return OursInScalarLoops(mosaic, size); }, 0},
      {"Hamilton-Adams, scalar", [](Mosaic& mosaic, const BSize& size) { return Directional(mosaic, size); }, 0},
      OpenCv("OpenCV bilinear", cv::COLOR_BayerBG2RGB),
      OpenCv("OpenCV edge-aware", cv::COLOR_BayerBG2RGB_EA),
      OpenCv("OpenCV VNG", cv::COLOR_BayerBG2RGB_VNG, kVngRowsTooHigh),
  };
  return kWays;
}

double Psnr(const Original& original, const cv::Mat& colours, int rows_too_high) {
  double squares = 0;
  double count = 0;
  for (int y = kBorder; y < original.size.height - kBorder; ++y) {
    const std::uint8_t* const line =
        original.rgb.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(original.size.width) * kChannels;
    for (int i = kBorder * kChannels; i < (original.size.width - kBorder) * kChannels; ++i) {
      const double difference = line[i] - colours.ptr(y - rows_too_high)[i];
      squares += difference * difference;
      ++count;
    }
  }
  return 10 * std::log10(255.0 * 255.0 * count / squares);
}

}  // namespace

const std::vector<std::string>& WayNames() {
  static const std::vector<std::string> kNames = [] {
    std::vector<std::string> list;
    for (const Way& way : Ways()) list.push_back(way.name);
    return list;
  }();
  return kNames;
}

std::vector<Score> Scores(const Original& original) {
  Mosaic mosaic = MosaicOf(original);
  std::vector<Score> results;
  for (const Way& way : Ways()) {
    way.colours(mosaic, original.size);
    const std::clock_t start = std::clock();
    const cv::Mat colours = way.colours(mosaic, original.size);
    const double ms = static_cast<double>(std::clock() - start) * 1e3 / CLOCKS_PER_SEC;
    results.push_back({Psnr(original, colours, way.rows_too_high), ms * 1e6 / static_cast<double>(mosaic.size())});
  }
  return results;
}

// works.cpp
// What is measured: every conversion of an image, and the libraries that a user would take instead.
#include "works.h"

#include <libyuv.h>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <opencv2/imgproc.hpp>
#include <random>
#include <string>
#include <utility>

#include "bcolorconverter.h"
#include "bimage8u.h"
#include "bimagergb.h"

namespace {

std::vector<std::uint8_t> Noise(std::size_t count) {
  std::mt19937 random(1);
  std::vector<std::uint8_t> bytes(count);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 24);
  return bytes;
}

// Everything that the works read and write, allocated once.
struct Bench {
  explicit Bench(const BSize& wanted)
      : size(wanted),
        pixels(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height)),
        frame(Noise(2 * pixels)),
        copy(pixels),
        converter(size, BColorConverter::eRGGB),
        rgb(size),
        mono(size),
        turned({size.height, size.width}),
        cv_raw(size.height, size.width, CV_8UC1, frame.data()),
        cv_yuv(size.height, size.width, CV_8UC2, frame.data()),
        argb(4 * pixels),
        rgb24(3 * pixels),
        yuv_turned(pixels) {}

  BSize size;
  std::size_t pixels;
  std::vector<std::uint8_t> frame;
  std::vector<std::uint8_t> copy;
  BColorConverter converter;
  BImageRgb rgb;
  BImage8u mono;
  BImage8u turned;
  cv::Mat cv_raw;
  cv::Mat cv_yuv;
  cv::Mat cv_rgb;
  cv::Mat cv_mono;
  cv::Mat cv_turned;
  std::vector<std::uint8_t> argb;
  std::vector<std::uint8_t> rgb24;
  std::vector<std::uint8_t> yuv_turned;
};

using Shared = std::shared_ptr<Bench>;

Contender Demosaic(const Shared& b, const char* name, int code) {
  return {name, [b, code] { cv::demosaicing(b->cv_raw, b->cv_rgb, code); }};
}

Contender OpenCvGrey(const Shared& b) {
  return {"OpenCV Bayer to gray", [b] { cv::demosaicing(b->cv_raw, b->cv_mono, cv::COLOR_BayerRG2GRAY); }};
}

Contender LibyuvColour(const Shared& b) {
  return {"libyuv UYVY to ARGB to RAW", [b] {
            const int width = b->size.width;
            libyuv::UYVYToARGB(b->frame.data(), 2 * width, b->argb.data(), 4 * width, width, b->size.height);
            libyuv::ARGBToRAW(b->argb.data(), 4 * width, b->rgb24.data(), 3 * width, width, b->size.height);
          }};
}

Contender LibyuvTurn(const Shared& b, bool clockwise) {
  return {"libyuv RotatePlane", [b, clockwise] {
            libyuv::RotatePlane(b->frame.data(), b->size.width, b->yuv_turned.data(), b->size.height, b->size.width,
                                b->size.height, clockwise ? libyuv::kRotate90 : libyuv::kRotate270);
          }};
}

// What a conversion has to do at least: read every byte of the frame, write every one of the image. A row's copy stays
// in the nearest cache.
template <class Image>
std::function<void()> ReadFrameAndFill(const Shared& b, int frame_channels, Image& image, std::size_t image_channels) {
  const std::size_t frame_row_bytes =
      static_cast<std::size_t>(frame_channels) * static_cast<std::size_t>(b->size.width);
  const std::size_t image_row_bytes = image_channels * static_cast<std::size_t>(image.Size().width);
  return [b, &image, frame_row_bytes, image_row_bytes, row = std::vector<std::uint8_t>(frame_row_bytes)]() mutable {
    // As many of the frame's rows for each of the image's as they have, which a quarter turn changes.
    const int frame_rows = b->size.height;
    const int image_rows = image.Size().height;
    int read = 0;
    for (int y = 0; y < image_rows; ++y) {
      for (; read * image_rows < (y + 1) * frame_rows && read < frame_rows; ++read) {
        std::memcpy(row.data(), b->frame.data() + static_cast<std::size_t>(read) * frame_row_bytes, frame_row_bytes);
      }
      std::memset(image.Row(y), row.front(), image_row_bytes);
    }
  };
}

std::function<void()> LimitOfRgb(const Shared& b, int frame_channels) {
  return ReadFrameAndFill(b, frame_channels, b->rgb, BImageRgb::kChannels);
}
std::function<void()> LimitOfMono(const Shared& b) { return ReadFrameAndFill(b, 1, b->mono, 1); }

void AddColour(const Shared& b, std::vector<Work>& works) {
  const auto good = [b] { b->converter.ConvertRawToRGB(b->frame.data(), b->rgb); };
  works.push_back({"fast Bayer to RGB",
                   {3.0, 2.5, 1.5, 0.9},
                   [b] { b->converter.ConvertFastRawToRGB(b->frame.data(), b->rgb); },
                   LimitOfRgb(b, 1),
                   {Demosaic(b, "OpenCV bilinear", cv::COLOR_BayerRG2RGB)}});
  works.push_back({"good Bayer to RGB",
                   {2.3, 1.9, 1.1, 0.8},
                   good,
                   LimitOfRgb(b, 1),
                   {Demosaic(b, "OpenCV bilinear", cv::COLOR_BayerRG2RGB)}});
  for (const auto& [name, code] : {std::pair{"OpenCV edge-aware", static_cast<int>(cv::COLOR_BayerRG2RGB_EA)},
                                   std::pair{"OpenCV VNG", static_cast<int>(cv::COLOR_BayerRG2RGB_VNG)}}) {
    works.push_back({"good Bayer to RGB", {1, 1, 0, 0}, good, LimitOfRgb(b, 1), {Demosaic(b, name, code)}});
  }
  works.push_back(
      {"YUV422 to RGB",
       {2.5, 2.0, 1.4, 0.9},
       [b] { b->converter.ConvertYUV422ToRGB(b->frame.data(), b->rgb); },
       LimitOfRgb(b, 2),
       {{"OpenCV UYVY to RGB", [b] { cv::cvtColor(b->cv_yuv, b->cv_rgb, cv::COLOR_YUV2RGB_UYVY); }}, LibyuvColour(b)}});
}

void AddMono(const Shared& b, std::vector<Work>& works) {
  for (int flag : {0, 1}) {
    const std::string name = " Bayer to mono, flag " + std::to_string(flag);
    works.push_back({"fast" + name,
                     {1.5, 1.5, 0, 0},
                     [b, flag] { b->converter.ConvertFastRawToMono(b->frame.data(), b->mono, flag); },
                     LimitOfMono(b),
                     {OpenCvGrey(b)}});
    works.push_back({"good" + name,
                     flag == 0 ? Aims{1.7, 1.5, 0.9, 0.7} : Aims{2.2, 1.8, 1.1, 0.7},
                     [b, flag] { b->converter.ConvertRawToMono(b->frame.data(), b->mono, flag); },
                     LimitOfMono(b),
                     {OpenCvGrey(b)}});
  }
}

void AddTurns(const Shared& b, std::vector<Work>& works) {
  for (bool clockwise : {true, false}) {
    const int code = clockwise ? cv::ROTATE_90_CLOCKWISE : cv::ROTATE_90_COUNTERCLOCKWISE;
    works.push_back(
        {clockwise ? "rotate clockwise" : "rotate counter-clockwise",
         {1.7, 1.6, 1.1, 0.8},
         [b, clockwise] {
           b->turned.CopyRotated(b->frame.data(), static_cast<std::size_t>(b->size.width), b->size, clockwise);
         },
         ReadFrameAndFill(b, 1, b->turned, 1),
         {{"OpenCV rotate", [b, code] { cv::rotate(b->cv_raw, b->cv_turned, code); }}, LibyuvTurn(b, clockwise)}});
  }
}

void AddPlain(const Shared& b, std::vector<Work>& works) {
  const auto line_length = static_cast<std::size_t>(b->size.width);
  works.push_back({"mono to RGB",
                   {1, 1, 0, 0.9},
                   [b, line_length] { b->rgb.TakeGrey(b->frame.data(), line_length, b->size); },
                   LimitOfRgb(b, 1),
                   {{"OpenCV gray to RGB", [b] { cv::cvtColor(b->cv_raw, b->cv_rgb, cv::COLOR_GRAY2RGB); }}}});
  works.push_back({"plain copy",
                   {0.8, 0.8, 0, 0.8},
                   [b, line_length] { b->mono.CopyRows(b->frame.data(), line_length, b->size); },
                   LimitOfMono(b),
                   {{"memcpy", [b] { std::memcpy(b->copy.data(), b->frame.data(), b->pixels); }}}});
  cv::Mat stretch(1, 256, CV_8UC1);
  for (int i = 0; i < 256; ++i) stretch.at<std::uint8_t>(i) = cv::saturate_cast<std::uint8_t>((i - 16) * 255.0 / 219.0);
  works.push_back({"stretch luma",
                   {0, 0, 0, 0},
                   [b] { b->converter.StretchYUV(b->frame.data(), b->mono); },
                   LimitOfMono(b),
                   {{"OpenCV LUT", [b, stretch] { cv::LUT(b->cv_raw, stretch, b->cv_mono); }}}});
}

}  // namespace

std::vector<Work> WorksOn(const BSize& size) {
  const auto bench = std::make_shared<Bench>(size);
  std::vector<Work> works;
  AddColour(bench, works);
  AddMono(bench, works);
  AddTurns(bench, works);
  AddPlain(bench, works);
  return works;
}

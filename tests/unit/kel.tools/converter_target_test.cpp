// converter_target_test.cpp
// Converters whose target has another size than the frame, and frames without pixels.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "bcolorconverter.h"
#include "every_kernel.h"
#include "pictures.h"

namespace {

using Pictures::Bytes;
using Pictures::Frame;
using ToRgb = void (BColorConverter::*)(const std::uint8_t*, BImageRgb&) const;

constexpr unsigned kSeed = 4711;
const std::vector<BSize> kTargets = {{150, 90}, {90, 150}, {149, 97}, {1, 1}, {0, 0}, {3, 200}, {200, 2}};

// What the target must hold: the whole picture's top left part, guards elsewhere.
template <class Image>
Bytes Expected(const Image& whole, const BSize& size) {
  Bytes bytes;
  constexpr int kChannels = Pictures::kChannels<Image>;
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width * kChannels; ++x) {
      const bool inside = y < whole.Size().height && x < whole.Size().width * kChannels;
      bytes.push_back(inside ? whole.Row(y)[x] : Pictures::kGuard);
    }
  }
  return bytes;
}

template <class Image>
void ExpectOverlapOnly(const BSize& frame_size, const std::function<void(Image&)>& convert) {
  Image whole(frame_size);
  convert(whole);
  for (const BSize& size : kTargets) {
    auto target = Pictures::GuardedImage<Image>(size);
    convert(target);
    EXPECT_EQ(Pictures::PixelsOf(target), Expected(whole, size)) << Pictures::Named(size);
    EXPECT_EQ(Pictures::TouchedGuards(target), 0) << Pictures::Named(size);
  }
}

class Converter : public EveryKernel {
 protected:
  const BSize m_size{149, 91};
  const Frame m_frame = Pictures::RandomFrame(m_size, 0, kSeed, 2);  // enough for every format
  const BColorConverter m_converter{m_size, 2};
};

TEST_P(Converter, FillsTheOverlapOfAnRgbTargetOfAnotherSize) {
  for (const ToRgb convert : {&BColorConverter::ConvertRawToRGB, &BColorConverter::ConvertFastRawToRGB,
                              &BColorConverter::ConvertYUV422ToRGB}) {
    ExpectOverlapOnly<BImageRgb>(m_size,
                                 [&](BImageRgb& target) { (m_converter.*convert)(m_frame.bytes.data(), target); });
  }
}

TEST_P(Converter, FillsTheOverlapOfAMonoTargetOfAnotherSize) {
  const std::uint8_t* const raw = m_frame.bytes.data();
  for (int flag : {0, 1}) {
    ExpectOverlapOnly<BImage8u>(m_size, [&](BImage8u& target) { m_converter.ConvertRawToMono(raw, target, flag); });
    ExpectOverlapOnly<BImage8u>(m_size, [&](BImage8u& target) { m_converter.ConvertFastRawToMono(raw, target, flag); });
  }
  ExpectOverlapOnly<BImage8u>(m_size, [&](BImage8u& target) { m_converter.StretchYUV(raw, target); });
}

TEST_P(Converter, ReadsNothingOfAFrameWithoutPixels) {
  for (const BSize size : {BSize{0, 5}, BSize{5, 0}, BSize{-3, 4}, BSize{4, -3}}) {
    const BColorConverter converter(size, 0, -1);
    auto rgb = Pictures::GuardedImage<BImageRgb>({4, 4});
    auto mono = Pictures::GuardedImage<BImage8u>({4, 4});

    converter.ConvertRawToRGB(nullptr, rgb);
    converter.ConvertFastRawToRGB(nullptr, rgb);
    converter.ConvertYUV422ToRGB(nullptr, rgb);
    converter.ConvertRawToMono(nullptr, mono, 0);
    converter.ConvertFastRawToMono(nullptr, mono, 1);
    converter.StretchYUV(nullptr, mono);

    EXPECT_EQ(Pictures::PixelsOf(rgb), Bytes(48, Pictures::kGuard));
    EXPECT_EQ(Pictures::PixelsOf(mono), Bytes(16, Pictures::kGuard));
  }
}

TEST(ConverterObject, DescribesItself) {
  const BColorConverter converter({640, 480}, 7, 4);

  EXPECT_EQ(converter.ArchiveName(), WString(L"BColorConverter"));
  EXPECT_EQ(converter.Properties(), WString(L"Bayer GRBG, 640 x 480 pixels, 4 bytes between lines"));
}

INSTANTIATE_TEST_SUITE_P(Kernels, Converter, testing::ValuesIn(KernelNames()), KernelOf);

}  // namespace

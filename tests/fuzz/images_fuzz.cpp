// images_fuzz.cpp
// Frames and images of any geometry: no conversion reads or writes outside, and each makes what its definition says.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "VimbaC.h"
#include "acquisition/frame_copy.h"
#include "bbaseaoi.h"
#include "bcolorconverter.h"
#include "fuzz/fuzz_input.h"
#include "nboard.h"
#include "rows/row_kernels.h"
#include "unit/kel.tools/bayer_reference.h"
#include "unit/kel.tools/pictures.h"

namespace {

using Fuzz::Expect;
using Pictures::Bytes;
using Pictures::Frame;
using Pictures::kGuard;
using Pictures::PixelsOf;

constexpr int kLongestSide = 150;
constexpr std::uint32_t kFormats[] = {
    VmbPixelFormatMono8,    VmbPixelFormatBayerGR8, VmbPixelFormatBayerRG8, VmbPixelFormatBayerGB8,
    VmbPixelFormatBayerBG8, VmbPixelFormatYuv422,   VmbPixelFormatRgb8,     0xFFFFFFFF};

BSize ReadSize(Fuzz::Input& input) { return {input.Number(0, kLongestSide), input.Number(0, kLongestSide)}; }
BPoint ReadPoint(Fuzz::Input& input) {
  return {input.Number(-kLongestSide, kLongestSide), input.Number(-kLongestSide, kLongestSide)};
}

// Exactly as many bytes as may be read, from the input as far as it goes, then from the generator that it seeds.
Frame ReadFrame(Fuzz::Input& input, const BSize& size, int padding, int bytes_per_pixel) {
  const unsigned seed = input.Byte();
  Frame frame = Pictures::RandomFrame(size, padding, seed, bytes_per_pixel);
  for (std::size_t i = 0; i < frame.bytes.size() && !input.IsEmpty(); ++i) frame.bytes[i] = input.Byte();
  // Nothing is read behind the last pixel, so that there is no padding.
  if (size.height > 0) frame.bytes.resize(frame.bytes.size() - static_cast<std::size_t>(padding));
  frame.bytes.shrink_to_fit();
  return frame;
}

// A picture as it has to be: a pixel from the source where there is one, else as it was.
template <class Image>
class Expected {
 public:
  explicit Expected(const BSize& size) : m_size(size), m_pixels(IndexOf(0, size.height), kGuard) {}

  std::uint8_t* At(int x, int y) {
    const bool inside = x >= 0 && y >= 0 && x < m_size.width && y < m_size.height;
    return inside ? &m_pixels[IndexOf(x, y)] : nullptr;
  }
  void Set(int x, int y, int value) {
    if (std::uint8_t* pixel = At(x, y))
      std::fill_n(pixel, Pictures::kChannels<Image>, static_cast<std::uint8_t>(value));
  }
  const BSize& Size() const { return m_size; }
  const Bytes& Pixels() const { return m_pixels; }

 private:
  std::size_t IndexOf(int x, int y) const {
    constexpr auto kChannels = static_cast<std::size_t>(Pictures::kChannels<Image>);
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(m_size.width) + static_cast<std::size_t>(x)) *
           kChannels;
  }

  BSize m_size;
  Bytes m_pixels;
};

// Every vector unit makes the same picture.
template <class Image>
void ExpectPicture(const Expected<Image>& expected, const std::function<void(Image&)>& make, const char* what) {
  for (const char* const* name = Rows::KernelNames(); *name != nullptr; ++name) {
    Rows::UseKernels(*name);
    Image image = Pictures::GuardedImage<Image>(expected.Size());
    make(image);
    Expect(PixelsOf(image) == expected.Pixels(), std::string(what) + " with " + *name + ", every pixel as defined");
  }
}

void CheckRows(Fuzz::Input& input) {
  const BSize size = ReadSize(input);
  const BSize target = ReadSize(input);
  const BPoint at = ReadPoint(input);
  const Frame frame = ReadFrame(input, size, input.Number(0, 70), 1);
  Expected<BImage8u> copied(target);
  Expected<BImageRgb> grey(target);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      copied.Set(at.x + x, at.y + y, frame.At(x, y));
      grey.Set(at.x + x, at.y + y, frame.At(x, y));
    }
  }
  ExpectPicture<BImage8u>(
      copied, [&](BImage8u& image) { image.CopyRows(frame.bytes.data(), frame.LineLength(), size, at); }, "CopyRows");
  ExpectPicture<BImageRgb>(
      grey, [&](BImageRgb& image) { image.TakeGrey(frame.bytes.data(), frame.LineLength(), size, at); }, "TakeGrey");
}

void CheckTurns(Fuzz::Input& input) {
  const BSize size = ReadSize(input);
  const BSize target = ReadSize(input);
  const Frame frame = ReadFrame(input, size, input.Number(0, 70), 1);
  for (const bool clockwise : {false, true}) {
    Expected<BImage8u> turned(target);
    for (int y = 0; y < size.width; ++y) {
      for (int x = 0; x < size.height; ++x) {
        turned.Set(x, y, clockwise ? frame.At(y, size.height - 1 - x) : frame.At(size.width - 1 - y, x));
      }
    }
    ExpectPicture<BImage8u>(
        turned, [&](BImage8u& image) { image.CopyRotated(frame.bytes.data(), frame.LineLength(), size, clockwise); },
        "CopyRotated");
  }
}

template <class Image, class Pixel>
void CheckBayer(const Frame& frame, int order, const BSize& target, Pixel pixel,
                const std::function<void(Image&)>& make, const char* what) {
  Expected<Image> expected(target);
  for (int y = 0; y < std::min(frame.size.height, target.height); ++y) {
    for (int x = 0; x < std::min(frame.size.width, target.width); ++x) {
      const BayerReference::Colour colour = pixel(frame, order, x, y);
      std::uint8_t* at = expected.At(x, y);
      for (const double value : {colour.red, colour.green, colour.blue}) {
        *at++ = static_cast<std::uint8_t>(value);
        if (Pictures::kChannels<Image> == 1) break;
      }
    }
  }
  ExpectPicture<Image>(expected, make, what);
}

// A frame of one column or row has its own rule for missing colours, which the reference does not know.
BSize BayerSize(const BSize& size) { return {std::max(size.width, 2), std::max(size.height, 2)}; }

void CheckBayer(Fuzz::Input& input) {
  const BSize size = BayerSize(ReadSize(input));
  const BSize target = ReadSize(input);
  const int order = input.Number(0, 3);
  const int padding = input.Number(0, 70);
  const bool fast = input.Flag();
  const Frame frame = ReadFrame(input, size, padding, 1);
  const BSmartRef<BColorConverter> converter(new BColorConverter(size, order, padding));
  const std::uint8_t* const raw = frame.bytes.data();
  namespace Reference = BayerReference;
  const auto colour = [&](const Frame& f, int o, int x, int y) {
    return fast ? Reference::Bilinear(f, o, x, y) : Reference::Corrected(f, o, x, y);
  };
  const auto luma = [&](const Frame& f, int o, int x, int y) {
    return Reference::Colour{Reference::Luma(colour(f, o, x, y)), 0, 0};
  };
  const auto weighted = [&](const Frame& f, int o, int x, int y) {
    const double grey = fast ? Reference::Binomial(f, o, x, y) : Reference::WeightedMean(colour(f, o, x, y));
    return Reference::Colour{grey, 0, 0};
  };
  CheckBayer<BImageRgb>(
      frame, order, target, colour,
      [&](BImageRgb& image) {
        fast ? converter->ConvertFastRawToRGB(raw, image) : converter->ConvertRawToRGB(raw, image);
      },
      "Bayer to RGB");
  for (const int flag : {0, 1}) {
    const auto make = [&](BImage8u& image) {
      fast ? converter->ConvertFastRawToMono(raw, image, flag) : converter->ConvertRawToMono(raw, image, flag);
    };
    if (flag == 0) {
      CheckBayer<BImage8u>(frame, order, target, luma, make, "Bayer to luma");
    } else {
      CheckBayer<BImage8u>(frame, order, target, weighted, make, "Bayer to weighted grey");
    }
  }
}

// Within 1 of the real-valued formula.
void ExpectNearYuv(const Frame& frame, const BImageRgb& image) {
  for (int y = 0; y < std::min(image.Size().height, frame.size.height); ++y) {
    for (int x = 0; x + 1 < std::min(image.Size().width, frame.size.width); ++x) {
      const std::size_t begin =
          static_cast<std::size_t>(y) * frame.LineLength() + 4 * (static_cast<std::size_t>(x) / 2);
      const std::uint8_t* const pair = frame.bytes.data() + begin;
      const double luma = pair[x % 2 == 0 ? 1 : 3];
      const double u = pair[0] - 128.0;
      const double v = pair[2] - 128.0;
      const std::array<double, 3> colour{luma + 1.402 * v, luma - 0.344136 * u - 0.714136 * v, luma + 1.772 * u};
      for (std::size_t channel = 0; channel < colour.size(); ++channel) {
        const double made = image.Row(y)[3 * static_cast<std::size_t>(x) + channel];
        Expect(std::abs(made - std::clamp(std::round(colour[channel]), 0.0, 255.0)) <= 1,
               "YUV within 1 of its formula");
      }
    }
  }
}

void CheckYuv(Fuzz::Input& input) {
  const BSize size = ReadSize(input);
  const BSize target = ReadSize(input);
  const int padding = input.Number(0, 70);
  const Frame frame = ReadFrame(input, size, padding, 2);
  const BSmartRef<BColorConverter> converter(new BColorConverter(size, BColorConverter::eRGGB, padding));
  Bytes first;
  for (const char* const* name = Rows::KernelNames(); *name != nullptr; ++name) {
    Rows::UseKernels(*name);
    BImageRgb image = Pictures::GuardedImage<BImageRgb>(target);
    converter->ConvertYUV422ToRGB(frame.bytes.data(), image);
    ExpectNearYuv(frame, image);
    if (first.empty()) first = PixelsOf(image);
    Expect(PixelsOf(image) == first, "every vector unit makes the same of YUV");
  }
  const Frame luma = ReadFrame(input, size, padding, 1);
  Expected<BImage8u> stretched(target);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      stretched.Set(x, y, static_cast<int>(std::clamp(std::round((luma.At(x, y) - 16) * 255 / 219.0), 0.0, 255.0)));
    }
  }
  ExpectPicture<BImage8u>(
      stretched, [&](BImage8u& image) { converter->StretchYUV(luma.bytes.data(), image); }, "StretchYUV");
}

// The bytes that a format needs, counted here once more.
std::int64_t BytesNeeded(std::uint32_t format, const FrameLayout& layout, bool to_mono) {
  const std::int64_t pixels = std::int64_t{layout.size.width} * layout.size.height;
  if (to_mono && !layout.is_color) return pixels;
  if (format == VmbPixelFormatYuv422) return 2 * pixels;
  const bool is_one_byte =
      format == VmbPixelFormatMono8 || (format >= VmbPixelFormatBayerGR8 && format <= VmbPixelFormatBayerBG8);
  return is_one_byte ? pixels : -1;
}

void ExpectArea(BBaseAoi& area, const FrameLayout& layout) {
  const bool turned = layout.rotation != 0 && area.ImageKind() == BBaseAoi::eMono8;
  const BSize size = turned ? BSize{layout.size.height, layout.size.width} : layout.size;
  const bool is_empty = size.width == 0 || size.height == 0;
  Expect(area.ImageSize() == (is_empty ? BSize{} : size), "an area has the camera's size");
  Expect(area.IsPlain() && area.Offset() == BPoint{}, "an area is plain and at its place");
}

// A frame as it arrives, of any format, of a camera of any kind, into an area of any kind and geometry.
void CheckFrameCopy(Fuzz::Input& input) {
  const BSize size = ReadSize(input);
  const std::uint32_t format = kFormats[input.Number(0, static_cast<int>(std::size(kFormats)) - 1)];
  const int payload = input.Number(0, 3 * kLongestSide * 30);
  const BSmartRef<BColorConverter> converter(new BColorConverter(size, input.Number(0, 3)));
  FrameLayout layout{size, payload, input.Number(-1, 1), input.Flag(), input.Flag(), nullptr};
  if (layout.is_color || input.Flag()) layout.converter = converter.Get();
  const auto kind = static_cast<BBaseAoi::Kind>(input.Number(BBaseAoi::eNone, BBaseAoi::eMono16));
  const wchar_t* const texts[] = {L"", L"[l]", L"[P]", L"other"};
  const BSmartRef<BBaseAoi> area(new BBaseAoi(kind, texts[input.Number(0, 3)]));
  area->Reset(ReadSize(input), ReadPoint(input));
  area->SetPlain(input.Flag());
  const BSize before = area->ImageSize();
  const Bytes bytes = ReadFrame(input, {payload, 1}, 0, 1).bytes;
  const BSmartRef<BFrameQueue::BFrame> frame(new BFrameQueue::BFrame(bytes.size(), format, 0, L"DEV"));
  if (!bytes.empty()) std::memcpy(frame->Data(), bytes.data(), bytes.size());

  CopyFrameToAoi(*frame, layout, *area);

  if (kind != BBaseAoi::eMono8 && kind != BBaseAoi::eRgb) {
    Expect(area->ImageSize() == before, "an area without an image is left alone");
    return;
  }
  ExpectArea(*area, layout);
  const std::int64_t needed = BytesNeeded(format, layout, kind == BBaseAoi::eMono8);
  const bool is_whole_copy = kind == BBaseAoi::eMono8 && !layout.is_color && needed > 0 && needed <= payload;
  if (!is_whole_copy || layout.rotation != 0) return;
  Expect(PixelsOf(*area->Mono()) == Bytes(bytes.begin(), bytes.begin() + needed), "a mono frame is copied as it is");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  switch (input.Number(0, 4)) {
    case 0:
      CheckRows(input);
      break;
    case 1:
      CheckTurns(input);
      break;
    case 2:
      CheckBayer(input);
      break;
    case 3:
      CheckYuv(input);
      break;
    default:
      CheckFrameCopy(input);
      break;
  }
  return 0;
}

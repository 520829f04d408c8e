// jpeg.cpp
// Pictures as JPEG files.
#include "view/pictures/jpeg.h"

#include "base/failure.h"

// The library is one header, which becomes code here.
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#define STB_IMAGE_WRITE_STATIC
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#endif
#include "stb/stb_image_write.h"
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace Kelcam {
namespace {

// Up to 90 the library halves the resolution of colours, which takes half the time.
constexpr int kQuality = 85;

void Append(void* context, void* data, int size) {
  auto& file = *static_cast<std::vector<std::uint8_t>*>(context);
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  file.insert(file.end(), bytes, bytes + size);
}

}  // namespace

std::vector<std::uint8_t> EncodeJpeg(const Pixels& pixels) {
  std::vector<std::uint8_t> file;
  // Usual pictures take less than a bit for each value.
  file.reserve(pixels.Bytes() / 8);
  const int done = stbi_write_jpg_to_func(Append, &file, pixels.size.width, pixels.size.height,
                                          static_cast<int>(pixels.channels), pixels.first_row, kQuality);
  if (done == 0) throw Failure("the picture cannot be written as JPEG");
  return file;
}

}  // namespace Kelcam

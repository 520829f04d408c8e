// picture_file.cpp
// Pictures on disk, for scenes that a simulated camera looks at.
#include "support/picture_file.h"

#include <fstream>
#include <stdexcept>

#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>

void WriteGreyPng(const std::filesystem::path& file, int width, int height, const std::vector<std::uint8_t>& pixels) {
  std::ofstream stream(file, std::ios::binary);
  const auto write = [](void* target, void* data, int size) {
    static_cast<std::ofstream*>(target)->write(static_cast<const char*>(data), size);
  };
  const bool encoded = stbi_write_png_to_func(write, &stream, width, height, 1, pixels.data(), width) != 0;
  if (!encoded || !stream.flush()) throw std::runtime_error("cannot write " + file.string());
}

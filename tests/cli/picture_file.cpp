// picture_file.cpp
// A picture file taken apart again.
#include "picture_file.h"

#define STBI_NO_STDIO
#define STBI_ONLY_PNG
#define STBI_ONLY_PNM
#define STB_IMAGE_IMPLEMENTATION
#include "stb/stb_image.h"

DecodedPicture Decoded(const std::string& file) {
  DecodedPicture picture;
  stbi_uc* pixels = stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(file.data()), static_cast<int>(file.size()),
                                          &picture.width, &picture.height, &picture.channels, 0);
  if (!pixels) return {};
  picture.pixels.assign(pixels, pixels + std::ptrdiff_t{picture.width} * picture.height * picture.channels);
  stbi_image_free(pixels);
  return picture;
}

// scene/stb_picture.cpp
// The one place that compiles the libraries which read and scale pictures.

// They are not ours to analyse.
#ifndef __clang_analyzer__
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_RESIZE_IMPLEMENTATION
#endif

#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_NO_STDIO
#include <stb/stb_image.h>
#include <stb/stb_image_resize.h>

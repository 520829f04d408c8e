// numbered_picture.h
// Reads back which frame a picture of the numbered scene holds.
#pragma once

#include <cstdint>
#include <optional>

class BBaseAoi;

// Fills the area's image, of the size that the camera delivers, with a value that no frame has.
void PaintOver(BBaseAoi& area);

struct PictureContent {
  // No byte has been written.
  bool untouched = false;
  // The frame that all of it is of; none where it is a mixture or torn.
  std::optional<std::uint64_t> frame{};
};
PictureContent ReadPicture(BBaseAoi& area);

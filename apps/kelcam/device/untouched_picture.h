// untouched_picture.h
// How a picture that a driver did not write is told from one that it did.
#pragma once

#include <optional>

#include "base/failure.h"
#include "bbaseaoi.h"

namespace Kelcam {

// A driver may report success and leave the image alone, for instance because it does not convert the frame's format.
// Before the snap the image gets the size that it will have, and a pattern that no camera delivers by chance.
class UntouchedPicture {
 public:
  // size: that of the image to come. The area must live as long as this.
  UntouchedPicture(BBaseAoi& area, const BSize& size);

  // After a snap that reported success: the fault where the driver wrote nothing. What it left out of a picture becomes
  // black.
  std::optional<Fault> FaultAfterSnap();

 private:
  BBaseAoi& m_area;
};

}  // namespace Kelcam

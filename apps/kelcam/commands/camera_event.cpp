// camera_event.cpp
// What is reported of a camera that goes away and comes back.
#include "commands/camera_event.h"

#include "picture/image_time.h"

namespace Kelcam {

std::string CameraEvent::Line() const {
  std::string line = LocalTimeOf(time).Extended() + ": " + Printable(camera) + ": ";
  if (loss) return line + loss->text;
  constexpr int kDecimals = 1;
  line += "returned after " + Fixed(away.count(), kDecimals) + " s (" +
          (tries == 1 ? "1 try" : std::to_string(tries) + " tries") + ")";
  return returned_as.empty() ? line : line + " as another camera, " + Printable(returned_as);
}

Json ToJson(const CameraEvent& event) {
  Json document = {{"event", event.loss ? "lost" : "returned"},
                   {"camera", event.camera},
                   {"time", LocalTimeOf(event.time).Extended()}};
  if (event.loss) {
    document["error"] = ToJson(*event.loss);
    return document;
  }
  document["awaySeconds"] = event.away.count();
  document["tries"] = event.tries;
  if (!event.returned_as.empty()) document["returnedAs"] = event.returned_as;
  return document;
}

}  // namespace Kelcam

// frame_ids.h
// The camera's own count of its frames, as the driver's messages report it.
#pragma once

#include <cstdint>
#include <optional>

#include "bmutex.h"
#include "imagingdevice.h"

namespace Kelcam {

// Reads the driver's messages on their way to their receiver, and counts the ids between those of two frames that
// arrived one after the other. A frame that arrived incomplete is not missing.
class FrameIds : public ImagingDevice::BSink {
 public:
  // Takes the place of the host's sink until it is destroyed, and passes everything on to it.
  explicit FrameIds(ImagingDevice::BSink& receiver);
  ~FrameIds() override;

  void OnShowInfo(const wchar_t* text, const wchar_t* caption) override;
  void OnLogMessage(const WString& text, bool important) override;

  // How many ids did not arrive; none: no frame with an id has arrived. [any thread]
  std::optional<std::uint64_t> Missing() const;

 private:
  void Note(std::uint64_t id);

  ImagingDevice::BSink& m_receiver;
  mutable BMutex m_mutex;
  std::optional<std::uint64_t> m_last KEL_GUARDED_BY(m_mutex);
  std::uint64_t m_missing KEL_GUARDED_BY(m_mutex) = 0;
};

}  // namespace Kelcam

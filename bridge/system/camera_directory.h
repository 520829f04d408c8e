// system/camera_directory.h
// The cameras that discovery has found.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "VimbaC.h"
#include "bmutex.h"
#include "camera/camera_record.h"

namespace Bridge {

// Looking takes Aravis a second, in which no camera can be opened: it is done when callers ask for it, and once before
// the first question. [any thread]
class CameraDirectory {
 public:
  using Records = std::vector<std::shared_ptr<const CameraRecord>>;
  struct Changes {
    Records gone;
    Records found;
  };

  // Looks for cameras. What changed since the last time.
  Changes Search();
  // In order of their ids.
  Records All();
  // By any of its names; null when there is none.
  std::shared_ptr<const CameraRecord> Find(std::string_view name);

 private:
  void SearchOnce();

  // Held through a search, so that one waits for another instead of repeating it.
  BMutex m_search;
  bool m_searched KEL_GUARDED_BY(m_search) = false;
  BMutex m_mutex;
  Records m_cameras KEL_GUARDED_BY(m_mutex);
  // Callers keep pointers into the texts until the library is shut down.
  Records m_earlier KEL_GUARDED_BY(m_mutex);
};

}  // namespace Bridge

// shared_link.h
// Cameras that share a link, and come and go.
#pragma once

#include <vector>

#include "bimagingdevice.h"
#include "bmutex.h"

namespace Kelcam {

// Makes each of its members a bandwidth partner of each other one. [any thread]
class SharedLink {
 public:
  // A device that is on the link for as long as this lives.
  class Member {
   public:
    // Throws Failure when the driver refuses, and leaves no partners then.
    Member(SharedLink& link, BImagingDevice& device);
    ~Member();
    Member(const Member&) = delete;
    Member& operator=(const Member&) = delete;

   private:
    SharedLink& m_link;
    BImagingDevice& m_device;
  };

 private:
  void Part(BImagingDevice& device) KEL_REQUIRES(m_mutex);

  BMutex m_mutex;
  std::vector<BImagingDevice*> m_devices KEL_GUARDED_BY(m_mutex);
};

}  // namespace Kelcam

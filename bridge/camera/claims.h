// camera/claims.h
// Which cameras this process has opened with full access.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>

#include "bmutex.h"

namespace Bridge {

// A camera is claimed as long as its Claim lives: while it is being opened, open, and being given up. [any thread]
class Claims : public std::enable_shared_from_this<Claims> {
 public:
  class Claim {
   public:
    ~Claim();
    Claim(const Claim&) = delete;
    Claim& operator=(const Claim&) = delete;

   private:
    friend class Claims;
    Claim(std::shared_ptr<Claims> claims, std::string camera_id)
        : m_claims(std::move(claims)), m_camera_id(std::move(camera_id)) {}

    const std::shared_ptr<Claims> m_claims;
    const std::string m_camera_id;
    bool m_holds = false;
  };

  // Null when it is claimed already.
  std::unique_ptr<Claim> Take(const std::string& camera_id);
  bool Has(const std::string& camera_id) const;

 private:
  mutable BMutex m_mutex;
  std::set<std::string> m_ids KEL_GUARDED_BY(m_mutex);
};

}  // namespace Bridge

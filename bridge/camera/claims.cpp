// camera/claims.cpp
// Which cameras this process has opened with full access.
#include "camera/claims.h"

namespace Bridge {

Claims::Claim::~Claim() {
  if (!m_holds) return;
  const BMutexLock lock(m_claims->m_mutex);
  m_claims->m_ids.erase(m_camera_id);
}

std::unique_ptr<Claims::Claim> Claims::Take(const std::string& camera_id) {
  std::unique_ptr<Claim> claim(new Claim(shared_from_this(), camera_id));
  {
    const BMutexLock lock(m_mutex);
    claim->m_holds = m_ids.insert(camera_id).second;
  }
  return claim->m_holds ? std::move(claim) : nullptr;
}

bool Claims::Has(const std::string& camera_id) const {
  const BMutexLock lock(m_mutex);
  return m_ids.contains(camera_id);
}

}  // namespace Bridge

// bandwidth_partners.cpp
// The cameras that share a link, as one of them sees the others.
#include "stream/bandwidth_partners.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <tuple>

#include "diagnostics/log_collector.h"
#include "stream/stream_rate.h"

BMutex BandwidthPartners::s_partner_mutex;
std::set<BandwidthPartners*> BandwidthPartners::s_everyone;

BandwidthPartners::BandwidthPartners(StreamRate& own_rate, Listener& listener)
    : m_own_rate(own_rate), m_listener(listener) {
  const BMutexLock lock(s_partner_mutex);
  s_everyone.insert(this);
}

BandwidthPartners::~BandwidthPartners() { Leave(); }

bool BandwidthPartners::AddBandwidthPartner(BandwidthPartners* other) {
  const BMutexLock lock(s_partner_mutex);
  if (!other) return false;
  m_has_partners = true;
  return m_partners.insert(other).second;
}

bool BandwidthPartners::RemoveBandwidthPartner(BandwidthPartners* other) {
  const BMutexLock lock(s_partner_mutex);
  return Unlist(other);
}

bool BandwidthPartners::Unlist(BandwidthPartners* other) {
  const bool listed = m_partners.erase(other) != 0;
  m_has_partners = !m_partners.empty();
  return listed;
}

void BandwidthPartners::SynchBandwidth(BLogCollector& log) {
  const BMutexLock lock(s_partner_mutex);
  std::int64_t lowest = std::numeric_limits<std::int64_t>::max();
  for (const BandwidthPartners* partner : m_partners) {
    const std::int64_t rate = partner->m_own_rate.GetBandwidth();
    if (rate > 0) lowest = std::min(lowest, rate);
  }
  const std::int64_t own = m_own_rate.GetBandwidth();
  if (lowest >= own) return;
  log << L"SynchBandwidth : " << own << L"bps -->" << lowest << L"bps" << L'\n';
  std::ignore = m_own_rate.SetBandwidth(lowest);
}

// Without partners the mutex is left alone: a device that compares rates holds it while cameras answer.
void BandwidthPartners::AbortPartners() {
  if (!m_has_partners) return;
  const BMutexLock lock(s_partner_mutex);
  for (BandwidthPartners* partner : m_partners) partner->m_listener.OnPartnerLostFrame();
}

void BandwidthPartners::Leave() {
  const BMutexLock lock(s_partner_mutex);
  s_everyone.erase(this);
  for (BandwidthPartners* other : s_everyone) other->Unlist(this);
  m_partners.clear();
  m_has_partners = false;
}

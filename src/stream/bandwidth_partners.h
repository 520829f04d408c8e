// bandwidth_partners.h
// The cameras that share a link, as one of them sees the others.
#pragma once

#include <atomic>
#include <set>

#include "bmutex.h"

class BLogCollector;
class StreamRate;

// Partnership is one-way: each camera lists its own partners, and slows down for them. Whoever goes is listed by nobody
// any more. One mutex guards the lists of all cameras.
class BandwidthPartners {
 public:
  // Where a camera hears that one of those that list it as a partner has lost a frame: most likely its own next frame
  // is lost, too. Called with the partner mutex held. [Vimba thread]
  class Listener {
   public:
    virtual void OnPartnerLostFrame() = 0;

   protected:
    ~Listener() = default;
  };

  // What is given must outlive the object.
  BandwidthPartners(StreamRate& own_rate, Listener& listener);
  ~BandwidthPartners();
  BandwidthPartners(const BandwidthPartners&) = delete;
  BandwidthPartners& operator=(const BandwidthPartners&) = delete;

  // True when the other was not listed already. Null is refused. [any thread]
  bool AddBandwidthPartner(BandwidthPartners* other);
  // True when it was listed. [any thread]
  bool RemoveBandwidthPartner(BandwidthPartners* other);

  // Brings the own rate down to the lowest of the partners. Their rates are read with the partner mutex held.
  // [host thread]
  void SynchBandwidth(BLogCollector& log);
  // Passes a lost frame on to every partner. [Vimba thread]
  void AbortPartners();
  // Leaves the lists of all others and gives up its own: from then on no other device's thread comes here, and this
  // one's goes nowhere. [host thread]
  void Leave();

 private:
  bool Unlist(BandwidthPartners* other) KEL_REQUIRES(s_partner_mutex);

  static BMutex s_partner_mutex;
  static std::set<BandwidthPartners*> s_everyone KEL_GUARDED_BY(s_partner_mutex);

  StreamRate& m_own_rate;
  Listener& m_listener;
  std::set<BandwidthPartners*> m_partners KEL_GUARDED_BY(s_partner_mutex);
  // Written under the mutex, read without.
  std::atomic<bool> m_has_partners{false};
};

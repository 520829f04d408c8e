// cameras_under_test.h
// The simulated link of the sweeps: one colour camera, a monochrome one as its partner, and one that comes and goes.
#pragma once

#include <array>
#include <string>

#include "support/profile_file.h"

// A life runs free where its continuous run is not triggered; that is all it snaps then.
enum class LifeKind { kAlone, kWithPartner, kFree };
inline constexpr std::array kLifeKinds{LifeKind::kAlone, LifeKind::kWithPartner, LifeKind::kFree};

// Set up anew before each life, so that every life begins alike.
class CamerasUnderTest {
 public:
  CamerasUnderTest();
  CamerasUnderTest(const CamerasUnderTest&) = delete;
  CamerasUnderTest& operator=(const CamerasUnderTest&) = delete;

  // Throws std::runtime_error while the Vimba system is started.
  void SetUp();

  // The first camera is opened by its id when it is alone, by its serial number beside a partner.
  BSmartRef<BCamProfile> MainProfile(LifeKind kind);
  // By its address.
  BSmartRef<BCamProfile> PartnerProfile();

 private:
  std::string m_configuration;
  ProfileFile m_by_id;
  ProfileFile m_by_serial;
  ProfileFile m_by_address;
};

// cameras_under_test.cpp
// The simulated link of the sweeps: one colour camera, a monochrome one as its partner, and one that comes and goes.
#include "cameras_under_test.h"

#include <fstream>
#include <stdexcept>

#include "support/simulated_cameras.h"
#include "vimba_simulator.h"

namespace {

nlohmann::json Numbered(SimulatedCamera camera) { return camera.With("scene", "numbers").Configuration(); }

void Describe(ProfileFile& profile) {
  profile.Key("Bayertype", "RGGB")
      .Key("COLORCODEcolor", "YUV")
      .Key("BINNING", "1")
      .Key("MAXGAIN", "20")
      .Key("GAIN", "3")
      .Key("SHUTTER", "50")
      .Key("CAMFREQ", "30")
      .Key("TRIGGERPOLARITY", "LOW")
      .Key("MIN_BYTEPERSECOND", "50000000");
}

// Without what the life before has written.
BSmartRef<BCamProfile> OpenAnew(ProfileFile& profile) {
  profile.Key("API", "Vimba");
  return profile.Open();
}

}  // namespace

CamerasUnderTest::CamerasUnderTest() {
  SimulatedCamera colour(1);
  colour.Colour("RGGB").WidestPayload();
  m_configuration =
      nlohmann::json{{"cameras", {Numbered(colour), Numbered(SimulatedCamera(2)), SimulatedCamera(3).Configuration()}}}
          .dump();
  Describe(m_by_id.Key("Camera_Identifier", SimulatedCamera::kId));
  Describe(m_by_serial.Key("Init.Method", "Serial").Key("Serial.Number", SimulatedCamera::kSerial));
  m_by_address.Key("Init.Method", "IP").Key("IP", "169.254.10.2");
}

void CamerasUnderTest::SetUp() {
  if (VimbaSimConfigure(m_configuration.c_str()) != 0) throw std::runtime_error(VimbaSimLastError());
}

BSmartRef<BCamProfile> CamerasUnderTest::MainProfile(LifeKind kind) {
  return OpenAnew(kind == LifeKind::kWithPartner ? m_by_serial : m_by_id);
}

BSmartRef<BCamProfile> CamerasUnderTest::PartnerProfile() { return OpenAnew(m_by_address); }

// camera/session.cpp
// One opening of a camera, from VmbCameraOpen to VmbCameraClose.
#include "camera/session.h"

#include <cctype>
#include <tuple>
#include <utility>

#include "aravis/errors.h"
#include "aravis/heartbeat.h"

namespace Bridge {
namespace {

// Without separators and in one case: "000F31034C65".
std::string PlainMac(std::string_view text) {
  std::string plain;
  for (const char character : text) {
    if (character == ':' || character == '-') continue;
    plain += static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  }
  return plain;
}

}  // namespace

bool CameraRecord::IsCalled(std::string_view text) const {
  if (text.empty()) return false;
  return text == id || text == serial || text == ip_address ||
         (!mac_address.empty() && PlainMac(text) == PlainMac(mac_address));
}

std::shared_ptr<Session> Session::Open(VmbHandle_t handle, const CameraRecord& camera,
                                       std::unique_ptr<Claims::Claim> claim, VmbError_t& error) {
  ErrorSlot slot;
  Object<ArvDevice> device(arv_open_device(camera.ip_address.c_str(), slot.Take()));
  if (!device) {
    error = slot.Code() ? slot.Code() : VmbError_t{VmbErrorNotFound};
    return nullptr;
  }
  if (ARV_IS_GV_DEVICE(device.get())) {
    ArvGvDevice* const camera_device = ARV_GV_DEVICE(device.get());
    if (claim && !arv_gv_device_is_controller(camera_device)) {
      error = VmbErrorInvalidAccess;
      return nullptr;
    }
    // Who only reads leaves control to others.
    if (!claim && arv_gv_device_is_controller(camera_device)) arv_gv_device_leave_control(camera_device, slot.Take());
    // The packet size is the caller's to choose.
    arv_gv_device_set_packet_size_adjustment(camera_device, ARV_GV_PACKET_SIZE_ADJUSTMENT_NEVER);
  }
  arv_device_set_range_check_policy(device.get(), ARV_RANGE_CHECK_POLICY_ENABLE);
  arv_device_set_access_check_policy(device.get(), ARV_ACCESS_CHECK_POLICY_ENABLE);
  error = VmbErrorSuccess;
  return std::shared_ptr<Session>(new Session(handle, std::move(claim), std::move(device)));
}

Session::Session(VmbHandle_t handle, std::unique_ptr<Claims::Claim> claim, Object<ArvDevice> device)
    : m_claim(std::move(claim)),
      m_device(std::move(device)),
      m_clock(m_device.get()),
      m_features(m_device.get(), m_clock, m_state),
      m_stream(m_claim ? std::make_unique<FrameStream>(handle, m_device.get(), m_mutex, m_clock, m_state) : nullptr) {
  // A camera may still send to a program that has died.
  if (m_claim) std::ignore = m_features.Run("AcquisitionStop");
  g_signal_connect(m_device.get(), "control-lost", G_CALLBACK(OnControlLost), this);
}

Session::~Session() {
  Close();
  AwaitVerdict(m_device.get(), IsSilent());
}

bool Session::IsSilent() const {
  const BRecursiveMutexLock lock(m_mutex);
  return m_lost || std::chrono::steady_clock::now() < m_silent_until;
}

void Session::OnControlLost(ArvDevice* /*device*/, gpointer self) { static_cast<Session*>(self)->m_lost = true; }

void Session::Close() {
  {
    const BRecursiveMutexLock lock(m_mutex);
    if (std::exchange(m_closed, true)) return;
    // A camera that is gone would be asked in vain, and for seconds.
    if (m_state.Acquiring() && !IsSilent()) std::ignore = Answered(m_features.Run("AcquisitionStop"));
  }
  if (m_stream) m_stream->Close();
  g_signal_handlers_disconnect_by_data(m_device.get(), this);
}

}  // namespace Bridge

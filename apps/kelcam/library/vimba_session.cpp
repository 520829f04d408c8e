// vimba_session.cpp
// Cameras as the VimbaC library shows them, for what a module's interface does not say.
#include "library/vimba_session.h"

#include <algorithm>
#include <array>
#include <tuple>

// The library's function of this name, with its type.
#define KEL_VIMBA_CALL(library, name) (library).Call<decltype(name)>(#name)

namespace Kelcam {
namespace {

constexpr const char* kDiscovery = "GeVDiscoveryAllOnce";
constexpr const char* kAddress = "GevCurrentIPAddress";
constexpr VmbUint32_t kMostCameras = 4096;
constexpr std::size_t kLongestText = 256;

std::string TextOf(const char* text) { return text ? text : ""; }

// The first byte of an address is the highest of the number.
std::string DottedAddress(std::int64_t address) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    if (!text.empty()) text += '.';
    text += std::to_string((static_cast<std::uint64_t>(address) >> shift) & 0xFFu);
  }
  return text;
}

}  // namespace

VimbaSession::VimbaSession(const VimbaLibrary& library) : m_library(library) {
  const VmbError_t code = KEL_VIMBA_CALL(library, VmbStartup)();
  if (code == VmbErrorSuccess) return;
  throw Failure("the VimbaC library " + library.Description() + " does not start: VmbStartup returns " +
                std::to_string(code));
}

VimbaSession::~VimbaSession() { KEL_VIMBA_CALL(m_library, VmbShutdown)(); }

std::vector<CameraRecord> VimbaSession::Cameras() const {
  // Without a network there may be cameras of other kinds.
  std::ignore = KEL_VIMBA_CALL(m_library, VmbFeatureCommandRun)(gVimbaHandle, kDiscovery);
  const auto list = KEL_VIMBA_CALL(m_library, VmbCamerasList);
  VmbUint32_t count = 0;
  if (list(nullptr, 0, &count, sizeof(VmbCameraInfo_t)) != VmbErrorSuccess) count = 0;
  std::vector<VmbCameraInfo_t> infos(std::min(count, kMostCameras));
  VmbUint32_t found = 0;
  const VmbError_t code = list(infos.data(), static_cast<VmbUint32_t>(infos.size()), &found, sizeof(VmbCameraInfo_t));
  // A camera that came since the first question is left for the next list.
  if (code != VmbErrorSuccess && code != VmbErrorMoreData) found = 0;
  infos.resize(std::min<std::size_t>(found, infos.size()));
  std::vector<CameraRecord> cameras;
  cameras.reserve(infos.size());
  for (const VmbCameraInfo_t& info : infos) {
    cameras.push_back({TextOf(info.cameraIdString), TextOf(info.cameraName), TextOf(info.modelName),
                       TextOf(info.serialString), info.permittedAccess});
  }
  return cameras;
}

std::optional<VmbAccessMode_t> VimbaSession::PermittedAccess(const std::string& id) const {
  VmbCameraInfo_t info{};
  const VmbError_t code = KEL_VIMBA_CALL(m_library, VmbCameraInfoQuery)(id.c_str(), &info, sizeof info);
  return code == VmbErrorSuccess ? std::optional(info.permittedAccess) : std::nullopt;
}

std::optional<std::string> VimbaSession::IdOf(const std::string& name) const {
  VmbCameraInfo_t info{};
  const VmbError_t code = KEL_VIMBA_CALL(m_library, VmbCameraInfoQuery)(name.c_str(), &info, sizeof info);
  return code == VmbErrorSuccess ? std::optional(TextOf(info.cameraIdString)) : std::nullopt;
}

OpenedCamera::OpenedCamera(const VimbaSession& session, const std::string& id, VmbAccessMode_t access)
    : m_library(session.Library()), m_code(KEL_VIMBA_CALL(m_library, VmbCameraOpen)(id.c_str(), access, &m_handle)) {}

OpenedCamera::~OpenedCamera() {
  if (IsOpen()) std::ignore = KEL_VIMBA_CALL(m_library, VmbCameraClose)(m_handle);
}

std::optional<std::int64_t> OpenedCamera::Integer(const char* feature) const {
  VmbInt64_t value = 0;
  const bool is_read = KEL_VIMBA_CALL(m_library, VmbFeatureIntGet)(m_handle, feature, &value) == VmbErrorSuccess;
  return is_read ? std::optional(value) : std::nullopt;
}

std::optional<std::pair<std::int64_t, std::int64_t>> OpenedCamera::IntegerRange(const char* feature) const {
  std::pair<VmbInt64_t, VmbInt64_t> range;
  const auto query = KEL_VIMBA_CALL(m_library, VmbFeatureIntRangeQuery);
  const bool is_read = query(m_handle, feature, &range.first, &range.second) == VmbErrorSuccess;
  return is_read ? std::optional(range) : std::nullopt;
}

std::optional<double> OpenedCamera::Number(const char* feature) const {
  double value = 0.0;
  const bool is_read = KEL_VIMBA_CALL(m_library, VmbFeatureFloatGet)(m_handle, feature, &value) == VmbErrorSuccess;
  return is_read ? std::optional(value) : std::nullopt;
}

std::optional<std::string> OpenedCamera::Entry(const char* feature) const {
  const char* value = nullptr;
  const bool is_read = KEL_VIMBA_CALL(m_library, VmbFeatureEnumGet)(m_handle, feature, &value) == VmbErrorSuccess;
  return is_read && value ? std::optional<std::string>(value) : std::nullopt;
}

bool OpenedCamera::SetEntry(const char* feature, const std::string& entry) const {
  return KEL_VIMBA_CALL(m_library, VmbFeatureEnumSet)(m_handle, feature, entry.c_str()) == VmbErrorSuccess;
}

std::optional<std::string> OpenedCamera::Text(const char* feature) const {
  std::array<char, kLongestText> text{};
  VmbUint32_t filled = 0;
  const auto get = KEL_VIMBA_CALL(m_library, VmbFeatureStringGet);
  const VmbError_t code = get(m_handle, feature, text.data(), static_cast<VmbUint32_t>(text.size() - 1), &filled);
  return code == VmbErrorSuccess && text[0] ? std::optional<std::string>(text.data()) : std::nullopt;
}

// Cameras report it as a number, or as a text.
std::optional<std::string> OpenedCamera::Address() const {
  if (const std::optional<std::int64_t> number = Integer(kAddress)) return DottedAddress(*number);
  return Text(kAddress);
}

}  // namespace Kelcam

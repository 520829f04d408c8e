// camera_identifier.cpp
// The texts by which cameras are known to the host.
#include "camera/camera_identifier.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace {

// This family's cameras all carry the family's name; only their models differ.
constexpr wchar_t kFamilyNamedByModel[] = L"Manta";

constexpr VmbUint32_t kMaxListedCameras = 128;

WString NameOf(const VmbCameraInfo_t& camera) {
  WString name = ToWString(camera.cameraName);
  if (!name.IEquals(kFamilyNamedByModel)) return name;
  name = ToWString(camera.modelName);
  return name.CutAfter(L"(", true).EraseTrailingChars(L"(").EraseTrailingChars(L" ").Replace(L" ", L"-");
}

}  // namespace

WString IdentifierOf(const VmbCameraInfo_t& camera) {
  return WString::Format(L"Vimba_%s_%s", NameOf(camera), ToWString(camera.serialString));
}

DList<WString> ListIdentifiers() {
  std::array<VmbCameraInfo_t, kMaxListedCameras> cameras{};
  VmbUint32_t found = 0;
  std::ignore = VmbCamerasList(cameras.data(), kMaxListedCameras, &found, sizeof(VmbCameraInfo_t));
  DList<WString> identifiers;
  std::for_each_n(cameras.begin(), std::min(found, kMaxListedCameras),
                  [&](const VmbCameraInfo_t& camera) { identifiers.Append(IdentifierOf(camera)); });
  return identifiers;
}

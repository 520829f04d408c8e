// scripted_cameras.cpp
// The calls that the scripted library leaves to a program.
#include "fuzz/scripted_cameras.h"

#include "unit/scripted/scripted_library.h"

ScriptedCameras& Cameras() {
  static ScriptedCameras cameras;
  return cameras;
}

VmbError_t VmbStartup() {
  ++Cameras().started;
  return VmbErrorSuccess;
}

void VmbShutdown() { --Cameras().started; }

VmbError_t VmbVersionQuery(VmbVersionInfo_t* version, VmbUint32_t /*size*/) {
  *version = {1, 2, 3};
  return VmbErrorSuccess;
}

VmbError_t VmbCameraInfoQuery(const char* /*id*/, VmbCameraInfo_t* info, VmbUint32_t /*size*/) {
  const std::vector<VmbCameraInfo_t> records = Library().CameraRecords();
  if (!records.empty()) *info = records.front();
  return Cameras().query_code;
}

VmbError_t VmbCameraOpen(const char* /*id*/, VmbAccessMode_t /*access*/, VmbHandle_t* camera) {
  const std::size_t opening = Cameras().openings++;
  const auto& codes = Cameras().open_codes;
  if (opening < codes.size() && codes[opening] != VmbErrorSuccess) return codes[opening];
  ++Cameras().opened;
  *camera = ScriptedLibrary::Handle(2);
  return VmbErrorSuccess;
}

VmbError_t VmbFeatureEnumAsInt(VmbHandle_t /*handle*/, const char* name, const char* /*entry*/, VmbInt64_t* value) {
  *value = 0;
  return Library().Record("VmbFeatureEnumAsInt", name);
}

VmbError_t VmbFeatureInvalidationRegister(VmbHandle_t /*handle*/, const char* name,
                                          VmbInvalidationCallback /*callback*/, void* /*context*/) {
  return Library().Record("VmbFeatureInvalidationRegister", name);
}

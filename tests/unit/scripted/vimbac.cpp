// vimbac.cpp
// The calls of the scripted library.
#include "VimbaC.h"

#include <algorithm>
#include <tuple>

#include "unit/scripted/scripted_library.h"

VmbError_t VmbFeatureIntGet(VmbHandle_t handle, const char* name, VmbInt64_t* value) {
  Library().BeginInteger(handle);
  const VmbError_t code = Library().Record("VmbFeatureIntGet", name);
  if (code != VmbErrorSuccess) return code;
  return Library().Find(handle, name, *value) ? VmbErrorSuccess : VmbErrorNotFound;
}

VmbError_t VmbFeatureIntSet(VmbHandle_t handle, const char* name, VmbInt64_t value) {
  Library().BeginInteger(handle);
  const VmbError_t code = Library().Record("VmbFeatureIntSet", name, std::to_string(value));
  if (code == VmbErrorSuccess) Library().SetInteger(handle, name, value);
  return code;
}

VmbError_t VmbFeatureIntRangeQuery(VmbHandle_t /*handle*/, const char* name, VmbInt64_t* min, VmbInt64_t* max) {
  const VmbError_t code = Library().Record("VmbFeatureIntRangeQuery", name);
  if (code != VmbErrorSuccess) return code;
  return Library().FindRange(name, *min, *max) ? VmbErrorSuccess : VmbErrorNotFound;
}

VmbError_t VmbFeatureFloatGet(VmbHandle_t /*handle*/, const char* name, double* value) {
  const VmbError_t code = Library().Record("VmbFeatureFloatGet", name);
  if (code == VmbErrorSuccess) std::ignore = Library().FindFloat(name, *value);
  return code;
}

VmbError_t VmbFeatureFloatSet(VmbHandle_t /*handle*/, const char* name, double value) {
  return Library().Record("VmbFeatureFloatSet", name, std::to_string(value));
}

VmbError_t VmbFeatureFloatRangeQuery(VmbHandle_t /*handle*/, const char* name, double* /*min*/, double* /*max*/) {
  return Library().Record("VmbFeatureFloatRangeQuery", name);
}

VmbError_t VmbFeatureEnumGet(VmbHandle_t /*handle*/, const char* name, const char** value) {
  if (const char* entry = Library().TheEntry()) *value = entry;
  return Library().Record("VmbFeatureEnumGet", name);
}

VmbError_t VmbFeatureEnumSet(VmbHandle_t /*handle*/, const char* name, const char* value) {
  return Library().Record("VmbFeatureEnumSet", name, value);
}

VmbError_t VmbFeatureBoolGet(VmbHandle_t handle, const char* name, VmbBool_t* value) {
  VmbInt64_t number = 0;
  if (Library().Find(handle, name, number)) *value = number != 0 ? 1 : 0;
  return Library().Record("VmbFeatureBoolGet", name);
}

VmbError_t VmbFeatureStringMaxlengthQuery(VmbHandle_t /*handle*/, const char* name, VmbUint32_t* max_length) {
  *max_length = Library().TheText().max_length;
  return Library().Record("VmbFeatureStringMaxlengthQuery", name);
}

VmbError_t VmbFeatureStringGet(VmbHandle_t /*handle*/, const char* name, char* buffer, VmbUint32_t size,
                               VmbUint32_t* filled) {
  const std::string text = Library().TheText().content;
  std::copy_n(text.begin(), std::min<std::size_t>(size, text.size()), buffer);
  *filled = static_cast<VmbUint32_t>(text.size());
  return Library().Record("VmbFeatureStringGet", name, std::to_string(size));
}

VmbError_t VmbFeatureCommandRun(VmbHandle_t /*handle*/, const char* name) {
  return Library().Record("VmbFeatureCommandRun", name);
}

VmbError_t VmbFeatureCommandIsDone(VmbHandle_t /*handle*/, const char* name, VmbBool_t* done) {
  *done = 1;
  return Library().Record("VmbFeatureCommandIsDone", name);
}

VmbError_t VmbCamerasList(VmbCameraInfo_t* records, VmbUint32_t length, VmbUint32_t* found, VmbUint32_t /*size*/) {
  const VmbUint32_t claim = Library().NextClaim();
  if (claim != ScriptedLibrary::kNoClaim) {
    *found = claim;
    const std::size_t room = std::min(length, claim);
    std::fill_n(records, room, VmbCameraInfo_t{});
    const std::vector<VmbCameraInfo_t> known = Library().CameraRecords();
    std::copy_n(known.begin(), std::min(room, known.size()), records);
  }
  return Library().Record("VmbCamerasList", "", std::to_string(length));
}

VmbError_t VmbCameraClose(VmbHandle_t /*camera*/) { return Library().Record("VmbCameraClose"); }

VmbError_t VmbFrameAnnounce(VmbHandle_t /*camera*/, const VmbFrame_t* frame, VmbUint32_t size) {
  const VmbError_t code = Library().Record("VmbFrameAnnounce", "", std::to_string(size));
  if (code == VmbErrorSuccess) Library().Announce(frame);
  return code;
}

VmbError_t VmbCaptureFrameQueue(VmbHandle_t /*camera*/, const VmbFrame_t* frame, VmbFrameCallback /*callback*/) {
  Library().BeginQueueing();
  const VmbError_t code = Library().Record("VmbCaptureFrameQueue");
  if (code == VmbErrorSuccess) Library().Queue(frame);
  return code;
}

VmbError_t VmbCaptureQueueFlush(VmbHandle_t /*camera*/) {
  const VmbError_t code = Library().Record("VmbCaptureQueueFlush");
  if (code == VmbErrorSuccess) Library().Flush();
  return code;
}

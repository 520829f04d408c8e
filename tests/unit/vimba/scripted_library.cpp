// scripted_library.cpp
// A library that answers as no sane one does: what a test wants its string features to say.
#include "unit/vimba/scripted_library.h"

#include <algorithm>

ScriptedStrings& Script() {
  static ScriptedStrings script;
  return script;
}

VmbError_t VmbFeatureStringMaxlengthQuery(VmbHandle_t, const char* name, VmbUint32_t* max_length) {
  Script().calls.push_back(std::string("Maxlength ") + name);
  *max_length = Script().max_length;
  return Script().length_code;
}

VmbError_t VmbFeatureStringGet(VmbHandle_t, const char* name, char* buffer, VmbUint32_t size, VmbUint32_t* filled) {
  Script().calls.push_back(std::string("Get ") + name + " " + std::to_string(size));
  const std::string fitting = Script().text.substr(0, size);
  std::copy(fitting.begin(), fitting.end(), buffer);
  *filled = static_cast<VmbUint32_t>(Script().text.size());
  return Script().text_code;
}

VmbError_t VmbFeatureIntGet(VmbHandle_t, const char*, VmbInt64_t*) { return VmbErrorNotImplemented; }
VmbError_t VmbFeatureIntSet(VmbHandle_t, const char*, VmbInt64_t) { return VmbErrorNotImplemented; }
VmbError_t VmbFeatureIntRangeQuery(VmbHandle_t, const char*, VmbInt64_t*, VmbInt64_t*) {
  return VmbErrorNotImplemented;
}
VmbError_t VmbFeatureFloatGet(VmbHandle_t, const char*, double*) { return VmbErrorNotImplemented; }
VmbError_t VmbFeatureFloatSet(VmbHandle_t, const char*, double) { return VmbErrorNotImplemented; }
VmbError_t VmbFeatureFloatRangeQuery(VmbHandle_t, const char*, double*, double*) { return VmbErrorNotImplemented; }
VmbError_t VmbFeatureEnumGet(VmbHandle_t, const char*, const char**) { return VmbErrorNotImplemented; }
VmbError_t VmbFeatureEnumSet(VmbHandle_t, const char*, const char*) { return VmbErrorNotImplemented; }
VmbError_t VmbFeatureBoolGet(VmbHandle_t, const char*, VmbBool_t*) { return VmbErrorNotImplemented; }
VmbError_t VmbFeatureCommandRun(VmbHandle_t, const char*) { return VmbErrorNotImplemented; }

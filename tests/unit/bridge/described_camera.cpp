// described_camera.cpp
// The bridge's features over a camera that is a description and some memory: no network, no pictures.
#include "described_camera.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "aravis/errors.h"

namespace {

using Bridge::ErrorSlot;
namespace fs = std::filesystem;

constexpr char kHead[] = R"(<?xml version="1.0" encoding="utf-8"?>
<RegisterDescription ModelName="Described" VendorName="Test" StandardNameSpace="GEV" SchemaMajorVersion="1"
  SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
  xmlns="http://www.genicam.org/GenApi/Version_1_1">
)";
constexpr char kTail[] = R"(<Port Name="Device"/>
</RegisterDescription>
)";

std::string TextOf(const fs::path& file) {
  std::ifstream stream(file);
  if (!stream) throw std::runtime_error("no file " + file.string());
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

// A file while it lives.
class DescriptionFile {
 public:
  explicit DescriptionFile(const std::string& text)
      : m_path(fs::temp_directory_path() / ("kel-description-" + std::to_string(getpid()) + ".xml")) {
    std::ofstream(m_path) << text;
  }
  ~DescriptionFile() { fs::remove(m_path); }
  DescriptionFile(const DescriptionFile&) = delete;
  DescriptionFile& operator=(const DescriptionFile&) = delete;

  const fs::path& Path() const { return m_path; }

 private:
  const fs::path m_path;
};

void Check(const ErrorSlot& error) {
  if (error.Code()) throw std::runtime_error(error.Text());
}

const char* NameOf(VmbError_t error) {
  switch (error) {
    case VmbErrorNotFound:
      return "NotFound";
    case VmbErrorInvalidAccess:
      return "InvalidAccess";
    case VmbErrorInvalidValue:
      return "InvalidValue";
    case VmbErrorInternalFault:
      return "InternalFault";
    default:
      return "another error";
  }
}

template <class Value>
std::string InRange(const Value& value, bool has_range, const Value& min, const Value& max) {
  std::ostringstream text;
  text.precision(10);
  text << " = " << value;
  if (has_range) text << " (" << min << " to " << max << ')';
  return text.str();
}

std::string ValueOf(const Bridge::Features& features, const char* name) {
  if (!features.Has(name)) return ": NotFound";
  std::int64_t whole = 0;
  VmbError_t error = features.GetInteger(name, whole);
  if (!error) {
    VimbaLibrary::IntegerRange range;
    const bool has_range = !features.IntegerRangeOf(name, range);
    return InRange(whole, has_range, range.min, range.max);
  }
  double real = 0.0;
  if (error == VmbErrorWrongType) error = features.GetFloat(name, real);
  if (!error) {
    VimbaLibrary::FloatRange range;
    const bool has_range = !features.FloatRangeOf(name, range) && range.max < std::numeric_limits<double>::max();
    return InRange(real, has_range, range.min, range.max);
  }
  const char* entry = "";
  if (error == VmbErrorWrongType) error = features.GetEnum(name, entry);
  if (!error) return std::string(" = ") + entry;
  bool done = false;
  if (error == VmbErrorWrongType) error = features.IsDone(name, done);
  return error ? std::string(": ") + NameOf(error) : std::string();
}

}  // namespace

DescribedCamera::DescribedCamera(const std::string& family) {
  const fs::path folder = KEL_DESCRIPTIONS;
  const DescriptionFile file(kHead + TextOf(folder / "common.xml") + TextOf(folder / (family + ".xml")) + kTail);
  arv_set_fake_camera_genicam_filename(file.Path().c_str());
  ErrorSlot error;
  m_device.reset(arv_fake_device_new("1", error.Take()));
  Check(error);
  if (!m_device || !arv_device_get_feature(m_device.get(), "Width")) throw std::runtime_error("no camera: " + family);
  m_clock = std::make_unique<Bridge::CameraClock>(m_device.get());
  m_features = std::make_unique<Bridge::Features>(m_device.get(), *m_clock, m_state);
}

std::int64_t DescribedCamera::OwnInteger(const char* feature) const {
  ErrorSlot error;
  const std::int64_t value = arv_device_get_integer_feature_value(m_device.get(), feature, error.Take());
  Check(error);
  return value;
}

double DescribedCamera::OwnFloat(const char* feature) const {
  ErrorSlot error;
  const double value = arv_device_get_float_feature_value(m_device.get(), feature, error.Take());
  Check(error);
  return value;
}

std::string DescribedCamera::OwnEntry(const char* feature) const {
  ErrorSlot error;
  const char* const value = arv_device_get_string_feature_value(m_device.get(), feature, error.Take());
  Check(error);
  return value;
}

void DescribedCamera::SetOwn(const char* feature, const std::string& value) {
  ErrorSlot error;
  arv_device_set_features_from_string(m_device.get(), (feature + ("=" + value)).c_str(), error.Take());
  Check(error);
}

std::vector<std::string> Described(const Bridge::Features& features, const std::vector<const char*>& names) {
  std::vector<std::string> lines;
  lines.reserve(names.size());
  for (const char* name : names) lines.push_back(name + ValueOf(features, name));
  return lines;
}

double FloatOf(DescribedCamera& camera, const char* feature) {
  double value = 0.0;
  EXPECT_EQ(camera.Features().GetFloat(feature, value), VmbErrorSuccess) << feature;
  return value;
}

std::int64_t IntOf(DescribedCamera& camera, const char* feature) {
  std::int64_t value = 0;
  EXPECT_EQ(camera.Features().GetInteger(feature, value), VmbErrorSuccess) << feature;
  return value;
}

std::string EntryOf(DescribedCamera& camera, const char* feature) {
  const char* value = "";
  EXPECT_EQ(camera.Features().GetEnum(feature, value), VmbErrorSuccess) << feature;
  return value;
}

void ExpectFloatSet(DescribedCamera& camera, const char* feature, double value, VmbError_t expected) {
  EXPECT_EQ(camera.Features().SetFloat(feature, value), expected) << feature << " = " << value;
}

void ExpectEntrySet(DescribedCamera& camera, const char* feature, const char* entry, VmbError_t expected) {
  EXPECT_EQ(camera.Features().SetEnum(feature, entry), expected) << feature << " = " << entry;
}

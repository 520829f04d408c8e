// allowed_results.cpp
// What a failure of each call may cause: the results that a host may see in place of those without faults.
#include "allowed_results.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "frame_results.h"
#include "text_pattern.h"

namespace {

// Groups of results: `operation=value`, apart by `|`, with `*` for any text. First: no device, of whichever camera.
constexpr std::string_view kNoDevice = "create=null|partner.create=null";
// A picture that does not come, and the rate that follows from it.
constexpr std::string_view kTimeout = "*.snap=error 12106|bandwidth*=*";
constexpr std::string_view kNoWhiteBalance =
    "white balance=false|white balance range=false 0 0|colour balance=*|blue.set=false|red.set=false";
// A device whose trigger could not be set up has none, and a camera that has kept its source hears no other.
constexpr std::string_view kNoTrigger = "trigger=false|trigger.*=false|trigger.*=left out|free*=left out|free.*=false";

// What may follow when this call fails, once.
struct Consequence {
  std::string_view call;
  // Empty: a call without one.
  std::string_view feature;
  std::array<std::string_view, 3> results;
};

constexpr std::array kConsequences{
    Consequence{"VmbStartup", "", {"list=0", kNoDevice}},
    Consequence{"VmbFeatureBoolGet", "GeVTLIsPresent", {"list=0", kNoDevice}},
    Consequence{"VmbFeatureCommandRun", "GeVDiscoveryAllOnce", {"list=0", kNoDevice}},
    Consequence{"VmbCamerasList", "", {"list=0"}},
    // A camera that was opened and answers an error cannot be opened again.
    Consequence{"VmbCameraOpen", "", {kNoDevice}},
    // Nor can one that could not be identified and would not be closed again.
    Consequence{"VmbCameraClose", "", {kNoDevice}},
    Consequence{"VmbFeatureEnumGet", "SensorType", {"is colour=false", kNoWhiteBalance}},
    Consequence{"VmbFeatureEnumSet", "PixelFormat", {kNoDevice, "colour.*=false"}},
    Consequence{"VmbFeatureIntSet", "BinningHorizontal", {kNoDevice}},
    Consequence{"VmbFeatureIntSet", "BinningVertical", {kNoDevice}},
    Consequence{"VmbFeatureIntRangeQuery", "StreamBytesPerSecond", {"bandwidth*=*"}},
    Consequence{"VmbFeatureIntGet", "StreamBytesPerSecond", {"bandwidth*=*|partner.bandwidth.set=false"}},
    Consequence{"VmbFeatureIntSet", "StreamBytesPerSecond", {"bandwidth*=*|partner.bandwidth.set=false"}},
    Consequence{"VmbFeatureIntRangeQuery", "Width", {kNoDevice}},
    Consequence{"VmbFeatureIntRangeQuery", "Height", {kNoDevice}},
    Consequence{"VmbFeatureIntSet", "Width", {kNoDevice}},
    Consequence{"VmbFeatureIntSet", "Height", {kNoDevice}},
    Consequence{"VmbFeatureIntSet", "OffsetX", {kNoDevice}},
    Consequence{"VmbFeatureIntSet", "OffsetY", {kNoDevice}},
    Consequence{"VmbFeatureIntGet", "PayloadSize", {kNoDevice}},
    // A frame that is not announced cannot be queued.
    Consequence{"VmbFrameAnnounce", "", {kNoDevice}},
    Consequence{"VmbCaptureStart", "", {kNoDevice}},
    Consequence{"VmbFeatureEnumSet", "TriggerMode", {kNoDevice, kTimeout, kNoTrigger}},
    Consequence{"VmbFeatureEnumSet", "TriggerSelector", {kNoDevice, kTimeout, kNoTrigger}},
    Consequence{"VmbFeatureEnumSet", "TriggerSource", {kNoDevice, kTimeout, kNoTrigger}},
    Consequence{"VmbFeatureCommandRun", "TriggerSoftware", {kTimeout}},
    Consequence{"VmbFeatureEnumSet",
                "AcquisitionMode",
                {kNoDevice, kTimeout, "*.start=throws error 12103 AcquisitionMode failed"}},
    Consequence{"VmbFeatureCommandRun", "GevTimestampControlLatch", {kTimeout}},
    Consequence{"VmbFeatureIntGet", "GevTimestampValue", {kTimeout}},
    Consequence{
        "VmbFeatureCommandRun", "AcquisitionStart", {kTimeout, "*.start=throws error 12103 AcquisitionStart failed"}},
    // What still runs keeps its format and its source.
    Consequence{"VmbFeatureCommandRun",
                "AcquisitionStop",
                {kTimeout, "*.stop=throws error 12103 AcquisitionStop failed|colour.*=false"}},
    // Of the first ten the camera's opening fails. A frame that the library has although it refused it is refused when
    // it comes.
    Consequence{"VmbCaptureFrameQueue",
                "",
                {kNoDevice, "bandwidth*=*|*.snap=error 12103  ReQueueFrame failed|*.snap=error 12110"}},
    Consequence{"VmbFeatureFloatRangeQuery", "Gain", {"gain=*|gain.set=*"}},
    Consequence{"VmbFeatureFloatGet", "Gain", {"gain=*|gain.set=*"}},
    Consequence{"VmbFeatureFloatSet", "Gain", {"gain=*|gain.set=*|gain.default=false"}},
    Consequence{"VmbFeatureFloatRangeQuery", "ExposureTimeAbs", {"shutter=*|shutter.set=*|max shutter for fast=*"}},
    Consequence{"VmbFeatureFloatGet", "ExposureTimeAbs", {"shutter=*|shutter.set=*"}},
    Consequence{"VmbFeatureFloatSet", "ExposureTimeAbs", {"shutter=*|shutter.set=*"}},
    Consequence{"VmbFeatureEnumSet", "BalanceRatioSelector", {kNoWhiteBalance}},
    Consequence{"VmbFeatureFloatRangeQuery", "BalanceRatioAbs", {kNoWhiteBalance}},
    Consequence{"VmbFeatureFloatGet", "BalanceRatioAbs", {kNoWhiteBalance}},
    Consequence{"VmbFeatureFloatSet", "BalanceRatioAbs", {"blue.set=false|red.set=false"}},
    Consequence{"VmbFeatureEnumSet", "DeviceTemperatureSelector", {"temperature.*=*"}},
    Consequence{"VmbFeatureFloatGet", "DeviceTemperature", {"temperature.*=*"}},
    Consequence{"VmbFeatureFloatGet", "AcquisitionFrameRateLimit", {"frame rate=false *"}},
};

// Where a call fails each time, no later try helps.
constexpr std::array kConsequencesOfLasting{
    Consequence{"VmbCamerasList", "", {kNoDevice}},
    Consequence{"VmbCameraInfoQuery", "", {kNoDevice}},
};

// What has to follow in the operation in which the call fails.
struct Demand {
  std::string_view call;
  std::string_view feature;
  std::string_view operation;
  std::string_view value;
};

constexpr std::string_view kCreation = "create|partner.create";

constexpr std::array kDemands{
    Demand{"VmbStartup", "", "list", "0"},
    Demand{"VmbStartup", "", kCreation, "null"},
    Demand{"VmbFeatureBoolGet", "GeVTLIsPresent", "list", "0"},
    Demand{"VmbFeatureBoolGet", "GeVTLIsPresent", kCreation, "null"},
    Demand{"VmbFeatureCommandRun", "GeVDiscoveryAllOnce", "list", "0"},
    Demand{"VmbFeatureCommandRun", "GeVDiscoveryAllOnce", kCreation, "null"},
    Demand{"VmbFeatureIntRangeQuery", "Width", kCreation, "null"},
    Demand{"VmbFeatureIntRangeQuery", "Height", kCreation, "null"},
    Demand{"VmbFeatureIntSet", "Width", kCreation, "null"},
    Demand{"VmbFeatureIntSet", "Height", kCreation, "null"},
    Demand{"VmbFeatureIntGet", "PayloadSize", kCreation, "null"},
    Demand{"VmbCaptureStart", "", kCreation, "null"},
    Demand{"VmbCaptureFrameQueue", "", kCreation, "null"},
    Demand{"VmbFeatureEnumSet", "AcquisitionMode", kCreation, "null"},
    Demand{"VmbFeatureEnumSet", "AcquisitionMode", "*.start", "throws error 12103 AcquisitionMode failed"},
    Demand{"VmbFeatureCommandRun", "AcquisitionStart", "*.start", "throws error 12103 AcquisitionStart failed"},
    Demand{"VmbFeatureCommandRun", "AcquisitionStop", "*.stop", "throws error 12103 AcquisitionStop failed"},
    Demand{"VmbFeatureEnumSet", "PixelFormat", "colour.on|colour.off", "false"},
    Demand{"VmbFeatureEnumSet", "TriggerSource", "trigger.line|free.source|free.software", "false"},
    Demand{"VmbFeatureFloatGet", "AcquisitionFrameRateLimit", "frame rate", "false *"},
    Demand{"VmbFeatureIntGet", "StreamBytesPerSecond", "bandwidth|bandwidth.after|bandwidth.synchronised", "0"},
    Demand{"VmbFeatureIntGet", "StreamBytesPerSecond", "*bandwidth.set", "false"},
    Demand{"VmbFeatureIntSet", "StreamBytesPerSecond", "*bandwidth.set", "false"},
    Demand{"VmbFeatureFloatSet", "Gain", "gain.set", "false *"},
    Demand{"VmbFeatureFloatSet", "ExposureTimeAbs", "shutter.set", "false *"},
    Demand{"VmbFeatureFloatSet", "BalanceRatioAbs", "blue.set|red.set", "false"},
};

// What is reported is reported on, where it can be believed.
constexpr std::string_view kOfLies =
    "list=*|name=*|size=*|frame rate=*|white balance range=*|blue.set=*|red.set=*|*.snap=error 12108|max shutter*=*";
// Those of all operations on a partner that could not be created.
constexpr std::string_view kWithoutPartner = "partner.*=left out|slow.*=left out|bandwidth.synchronised=left out";
// A picture itself has been looked at where it was taken.
constexpr std::string_view kPictures = "*.picture=frame|*.picture=not copied|*.picture=none|*.picture=left out";

// A library that refuses everything, or lies, causes what any failure may cause.
bool MayFollow(const std::string& text, const Fault& fault) {
  if (!fault.IsOfCall() && MayFollowFromFrame(text, fault)) return true;
  const bool everything =
      fault.key.call == "any" || !fault.answer.empty() || fault.frame.find("unplug") != fault.frame.npos;
  if (!fault.answer.empty() && FitsOneOf(kOfLies, text)) return true;
  const auto allows = [&](const Consequence& row) {
    const bool is_row = everything || (row.call == fault.key.call && row.feature == fault.key.feature);
    return is_row && std::ranges::any_of(row.results, [&](std::string_view group) { return FitsOneOf(group, text); });
  };
  return std::ranges::any_of(kConsequences, allows) ||
         (fault.lasting && std::ranges::any_of(kConsequencesOfLasting, allows));
}

}  // namespace

bool IsAllowed(const Observation& seen, const std::vector<Fault>& faults) {
  const std::string text = seen.name + "=" + seen.value;
  return FitsOneOf(kWithoutPartner, text) || FitsOneOf(kPictures, text) ||
         std::ranges::any_of(faults, [&](const Fault& fault) { return MayFollow(text, fault); });
}

bool IsDemandMet(const Observation& seen, const CallKey& failed) {
  return std::ranges::all_of(kDemands, [&](const Demand& row) {
    const bool is_row = row.call == failed.call && row.feature == failed.feature;
    return !is_row || !FitsOneOf(row.operation, seen.name) || Fits(row.value, seen.value);
  });
}

// camera_probe.cpp
// Measures what a check says of one camera.
#include "check/camera_probe.h"

#include <algorithm>
#include <cstdlib>

#include "base/interrupt.h"
#include "base/utf8.h"
#include "bcamprofilekeys.h"
#include "device/control_setting.h"
#include "library/vimba_session.h"
#include "messages/frame_ids.h"

namespace Kelcam {
namespace {

constexpr int kQuestions = 20;
constexpr int kMostFailuresInARow = 3;
constexpr std::chrono::milliseconds kPatience{5000};
// Of a degree.
constexpr double kTemperatureSteps = 10.0;
constexpr wchar_t kColorFormat[] = L"COLORCODEcolor";
constexpr const char* kClockLine = "Current camera timestamp = ";
constexpr const char* kFastConversion = "[l]";
constexpr const char* kExposureUnit = "ms";

// What the library says of a camera.
constexpr const char* kFirmware = "DeviceFirmwareVersion";
constexpr const char* kSensorType = "SensorType";
constexpr const char* kTicks = "GevTimestampTickFrequency";
constexpr const char* kPacketsReceived = "StatPacketReceived";
constexpr const char* kPacketsMissed = "StatPacketMissed";
constexpr const char* kPacketsResent = "StatPacketResent";
constexpr const char* kFramesDropped = "StatFrameDropped";

std::optional<double> TemperatureOf(BImagingDevice& device, bool sensor) {
  BImagingDeviceControl* const control = device.TemperatureControl(sensor);
  if (!control || !control->IsAvailable()) return std::nullopt;
  return control->Value() / kTemperatureSteps;
}

Temperatures TemperaturesOf(const CameraSession& camera) {
  const CallWatch::Call call(camera.Watch(), Operation::kControls);
  return {TemperatureOf(camera.Device(), true), TemperatureOf(camera.Device(), false)};
}

std::optional<double> ExposureOf(BImagingDevice& device) {
  BImagingDeviceControl* const exposure = device.ShutterControl();
  if (!exposure || !exposure->IsAvailable() || UnitOf(*exposure) != kExposureUnit) return std::nullopt;
  return exposure->ToRealValue(exposure->Value());
}

std::optional<double> RateOf(BImagingDevice& device) {
  double rate_hz = 0.0;
  return device.FramesPerSecond(rate_hz) || rate_hz > 0.0 ? std::optional(rate_hz) : std::nullopt;
}

DeviceFacts DeviceFactsOf(const CameraSession& camera) {
  const CallWatch::Call call(camera.Watch(), Operation::kControls);
  BImagingDevice& device = camera.Device();
  DeviceFacts facts;
  bool rotated = false;
  const BSize size = device.ImageSize(rotated);
  facts.width = size.width;
  facts.height = size.height;
  facts.is_color = device.IsColor();
  facts.has_trigger = device.Trigger() != nullptr;
  facts.exposure_ms = ExposureOf(device);
  facts.rate_hz = RateOf(device);
  for (int i = 0; i < kQuestions; ++i) {
    const auto start = std::chrono::steady_clock::now();
    facts.stream_bytes_per_s = device.GetBandwidth();
    if (facts.stream_bytes_per_s > 0) facts.answers.emplace_back(std::chrono::steady_clock::now() - start);
  }
  return facts;
}

void Add(FaultsByCode& faults, const Fault& fault) {
  CountedFault& counted = faults.try_emplace(fault.code, CountedFault{fault, 0}).first->second;
  ++counted.count;
}

BSmartRef<BBaseAoi> AreaFor(const BImagingDevice& device) {
  const BBaseAoi::Kind kind = device.IsColor() ? BBaseAoi::eRgb : BBaseAoi::eMono8;
  return BSmartRef<BBaseAoi>(new BBaseAoi(kind, Wide(kFastConversion)));
}

std::optional<PacketCounters> CountersOf(const OpenedCamera& camera) {
  const std::optional<std::int64_t> received = camera.Integer(kPacketsReceived);
  const std::optional<std::int64_t> missed = camera.Integer(kPacketsMissed);
  if (!received || !missed) return std::nullopt;
  return PacketCounters{*received, *missed, camera.Integer(kPacketsResent), camera.Integer(kFramesDropped)};
}

}  // namespace

CameraProbe::CameraProbe(const CameraChoice& choice, std::size_t index, std::chrono::duration<double> run_time,
                         const Module& module, MessageLog& log, KnownFacts& known)
    : m_choice(choice), m_index(index), m_run_time(run_time), m_module(module), m_log(log), m_known(known) {}

template <class Change>
void CameraProbe::Update(const Change& change) {
  m_known.Update([&](CheckFacts& facts) { change(facts.cameras[m_index]); });
}

void CameraProbe::Begin(Operation operation, std::chrono::milliseconds may_wait) {
  m_known.Begin(operation, m_log.Messages().Count(), may_wait);
}

void CameraProbe::Measure() {
  ReadProfile();
  if (Interrupted()) return;
  Begin(Operation::kOpening);
  const Clock::time_point start = Clock::now();
  try {
    const CameraSession camera(m_module, m_log, m_choice);
    const Milliseconds opening = Clock::now() - start;
    Update([&](CameraFacts& facts) { facts.opening = opening; });
    MeasureOpened(camera);
    Begin(Operation::kClosing);
  } catch (...) {
    const Fault fault = FaultOfCurrentException();
    Update([&](CameraFacts& facts) {
      if (!facts.opening) facts.opening_fault = fault;
    });
  }
  try {
    AskLibrary();
  } catch (const Failure&) {
    // What it would have said stays unknown.
  }
}

void CameraProbe::ReadProfile() {
  if (m_choice.profile_file.empty()) return;
  try {
    const std::vector<ProfileFinding> findings = FindingsIn(m_choice.profile_file);
    WString color_format;
    BCamProfile(Wide(m_choice.profile_file)).ReadString(kColorFormat, color_format);
    Update([&](CameraFacts& facts) {
      facts.findings = findings;
      facts.color_format = Utf8(color_format);
    });
  } catch (...) {
    const Fault fault = FaultOfCurrentException();
    Update([&](CameraFacts& facts) { facts.profile_fault = fault; });
  }
}

void CameraProbe::MeasureOpened(const CameraSession& camera) {
  Describe(camera);
  if (!Interrupted()) TakeSingleImages(camera);
  if (!Interrupted()) Run(camera);
  Begin(Operation::kControls);
  // A camera that is gone has no temperature.
  if (camera.LooksGone()) return;
  const Temperatures warm = TemperaturesOf(camera);
  Update([&](CameraFacts& facts) { facts.warm = warm; });
}

void CameraProbe::Describe(const CameraSession& camera) {
  Begin(Operation::kControls);
  const Lines lines = LinesOf(camera.Messages().MessagesSince(0));
  WString id;
  camera.Profile().ReadString(CamProfileKey::kCameraIdentifier, id);
  m_id = Utf8(id);
  Update([&](CameraFacts& facts) {
    facts.name = camera.Identifier();
    facts.opening_lines = lines;
  });
  const DeviceFacts device = DeviceFactsOf(camera);
  const Temperatures cold = TemperaturesOf(camera);
  m_timeout = TimeoutOf(camera.Device());
  Update([&](CameraFacts& facts) {
    facts.device = device;
    facts.cold = cold;
  });
}

std::chrono::milliseconds CameraProbe::TimeoutOf(BImagingDevice& device) const {
  return kPatience + std::chrono::milliseconds(static_cast<std::int64_t>(ExposureOf(device).value_or(0.0)));
}

std::optional<Fault> CameraProbe::SnapOnce(const CameraSession& camera, BBaseAoi& area) {
  const std::uint64_t first_message = camera.Messages().Count();
  Begin(Operation::kSingleSnap, m_timeout);
  AcquisitionRun run(camera, true, TriggerChoice::kSoftware);
  ReadClock(camera, first_message);
  if (run.StartFault()) return run.StartFault();
  const std::optional<Fault> fault = run.Snap(area, m_timeout);
  const std::optional<Fault> stop_fault = run.Stop();
  return fault ? fault : stop_fault;
}

void CameraProbe::ReadClock(const CameraSession& camera, std::uint64_t first_message) {
  for (const DriverMessage& message : camera.Messages().MessagesSince(first_message)) {
    const std::size_t at = message.text.find(kClockLine);
    if (at == std::string::npos) continue;
    const std::uint64_t ticks =
        std::strtoull(message.text.c_str() + at + std::char_traits<char>::length(kClockLine), nullptr, 10);
    Update([&](CameraFacts& facts) { facts.clock.push_back({message.time, ticks}); });
  }
}

void CameraProbe::TakeSingleImages(const CameraSession& camera) {
  const BSmartRef<BBaseAoi> area = AreaFor(camera.Device());
  Update([](CameraFacts& facts) { facts.snaps.emplace().figures.Start(); });
  int failures_in_a_row = 0;
  for (int i = 0; i < kSnaps && !Interrupted() && failures_in_a_row < kMostFailuresInARow; ++i) {
    const Clock::time_point start = Clock::now();
    const std::optional<Fault> fault = SnapOnce(camera, *area);
    const Milliseconds time = Clock::now() - start;
    const bool is_gone = fault && camera.LooksGone();
    failures_in_a_row = !fault ? 0 : is_gone ? kMostFailuresInARow : failures_in_a_row + 1;
    Update([&](CameraFacts& facts) {
      facts.snaps->figures.AddSnap(fault, 0);
      fault ? Add(facts.snaps->faults, *fault) : facts.snaps->times.push_back(time);
      facts.snaps->was_ended = failures_in_a_row >= kMostFailuresInARow;
    });
  }
}

// Each image has changed the stream rate, and that the rate of images.
void CameraProbe::UpdateRates(BImagingDevice& device) {
  const std::optional<double> rate_hz = RateOf(device);
  const std::int64_t stream_bytes_per_s = device.GetBandwidth();
  Update([&](CameraFacts& facts) {
    facts.device->rate_hz = rate_hz;
    facts.device->stream_bytes_per_s = stream_bytes_per_s;
  });
}

// Without a trigger a driver has no free running, and waits for single images.
void CameraProbe::Run(const CameraSession& camera) {
  if (!camera.Device().Trigger()) return;
  Begin(Operation::kStart);
  const TriggerSetting trigger(camera.Device(), TriggerChoice::kFree, false);
  UpdateRates(camera.Device());
  const FrameIds ids(m_log, camera.IdentifierInMessages());
  const FrameArrivals arrivals(m_log, camera.IdentifierInMessages());
  const std::optional<std::uint64_t> dropped_before = DatagramsDropped();
  const BSmartRef<BBaseAoi> area = AreaFor(camera.Device());
  LostCamera lost(1);
  RunFacts facts;
  const auto note = [&](const Fault& fault) {
    ++facts.figures.failures[fault.code];
    Add(facts.faults, fault);
  };
  AcquisitionRun run(camera, false, TriggerChoice::kFree);
  const Clock::time_point start = Clock::now();
  if (run.StartFault()) note(*run.StartFault());
  while (!run.StartFault() && !Interrupted() && !facts.loss && Clock::now() - start < m_run_time) {
    Begin(Operation::kSnap, m_timeout);
    const std::optional<Fault> fault = run.Snap(*area, m_timeout);
    fault ? note(*fault) : static_cast<void>(++facts.figures.frames);
    if (lost.IsLostAfter(fault && camera.LooksGone())) facts.loss = lost.AsFault();
    facts.figures.elapsed = Clock::now() - start;
    facts.figures.missing_frame_ids = ids.Missing();
    Update([&](CameraFacts& camera_facts) { camera_facts.run = facts; });
  }
  Begin(Operation::kControls);
  facts.figures.stream_rate_bytes_per_s = camera.Device().GetBandwidth();
  Begin(Operation::kStop);
  if (const std::optional<Fault> fault = run.Stop()) note(*fault);
  facts.arrivals = arrivals.All();
  const std::optional<std::uint64_t> dropped_after = DatagramsDropped();
  if (dropped_before && dropped_after) facts.dropped_by_system = *dropped_after - *dropped_before;
  Update([&](CameraFacts& camera_facts) { camera_facts.run = facts; });
}

// What nobody can ask while the driver has the camera.
void CameraProbe::AskLibrary() {
  if (!m_module.Vimba() || m_id.empty()) return;
  Begin(Operation::kControls);
  const VimbaSession session(*m_module.Vimba());
  const std::vector<CameraRecord> records = session.Cameras();
  const auto record =
      std::find_if(records.begin(), records.end(), [&](const CameraRecord& one) { return one.id == m_id; });
  const OpenedCamera camera(session, m_id, VmbAccessModeRead);
  const std::optional<std::string> address = camera.IsOpen() ? camera.Address() : std::nullopt;
  const std::optional<Route> route = address ? RouteTo(*address) : std::nullopt;
  Update([&](CameraFacts& facts) {
    if (record != records.end()) {
      facts.row = CameraRow{static_cast<std::size_t>(record - records.begin()) + 1,
                            record->id,
                            record->model,
                            record->serial,
                            address,
                            {},
                            session.Library().IsSimulated()};
    }
    if (!camera.IsOpen()) return;
    facts.was_asked = true;
    facts.firmware = camera.Text(kFirmware);
    facts.sensor_type = camera.Entry(kSensorType);
    facts.ticks_per_s = camera.Integer(kTicks);
    facts.packets = CountersOf(camera);
    facts.route = route;
  });
}

}  // namespace Kelcam

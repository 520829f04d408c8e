// storm_world.cpp
// What a storm rages over: the loaded module, a few simulated cameras, and the checks of all that they leave.
#include "storms/storm_world.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <tuple>

#include "support/call_pairs.h"
#include "support/message_form.h"
#include "support/picture_file.h"
#include "vimba_simulator.h"

namespace {

constexpr std::chrono::seconds kThreadsEndWithin{10};
constexpr std::uint32_t kTimeoutMs = 200;

// What docs/troubleshooting.md lists for a snap; a start and a stop throw the first.
bool IsAnswerOfASnap(const BError& error) {
  switch (error.ErrorCode()) {
    case BError::eSuccess:
    case BError::eAcquisitionFailed:
    case BError::eTimeout:
    case BError::eFrameTooSmall:
    case BError::eAborted:
    case BError::eFrameInvalid:
      return true;
    default:
      return false;
  }
}

std::string TextOf(const BError& error) {
  return std::to_string(error.ErrorCode()) + " " + ToBString(error.Message()).c_str();
}

// A thread that has ended its work still has to leave the system.
ProcessCensus CensusOnceAlone(std::size_t threads) {
  const auto deadline = std::chrono::steady_clock::now() + kThreadsEndWithin;
  ProcessCensus census = ProcessCensus::Now();
  while (census.threads > threads && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::yield();
    census = ProcessCensus::Now();
  }
  return census;
}

std::vector<std::uint8_t> PixelsOf(const BImage8u& image) {
  std::vector<std::uint8_t> pixels;
  for (int y = 0; y < image.Size().height; ++y) {
    pixels.insert(pixels.end(), image.Row(y), image.Row(y) + image.Size().width);
  }
  return pixels;
}

}  // namespace

MessageProof::MessageProof(Findings& findings) : m_findings(findings), m_before(ImagingDevice::InstallSink(this)) {}

MessageProof::~MessageProof() { ImagingDevice::InstallSink(m_before); }

void MessageProof::OnShowInfo(const wchar_t* text, const wchar_t* caption) {
  if (!caption || *caption) return;
  const std::string defect = DefectOf(text);
  if (!defect.empty()) m_findings.Report("a message is not whole: " + defect);
}

void MessageProof::OnLogMessage(const WString& /*text*/, bool /*important*/) {}

StormWorld::StormWorld(Findings& findings, std::vector<SimulatedCamera> cameras)
    : m_findings(findings), m_pictures(cameras.size() + 1) {
  constexpr int kGreyStep = 50;
  for (std::size_t i = 0; i < cameras.size(); ++i) {
    const int number = static_cast<int>(i) + 1;
    ProfileFile& profile = m_profiles.emplace_back();
    profile.Key("Camera_Identifier", IdOf(number));
    const std::filesystem::path picture = profile.Path().parent_path() / "scene.png";
    const std::vector<std::uint8_t> pixels(std::size_t{8} * 8, static_cast<std::uint8_t>(kGreyStep * number));
    WriteGreyPng(picture, 8, 8, pixels);
    if (!cameras[i].Configuration().contains("scene")) {
      cameras[i].With("scene", {{"picture", picture.string()}}).With("noise", false);
    }
  }
  m_link.emplace(cameras);
  m_messages.emplace(findings);
  m_module.emplace();
}

StormWorld::~StormWorld() {
  m_module.reset();
  m_messages.reset();
  CheckLeftovers();
}

std::string StormWorld::IdOf(int camera) { return "DEV_000F3100000" + std::to_string(camera); }

BImagingDevice* StormWorld::Open(int camera) {
  BImagingDevice* device = m_module->create(m_profiles[static_cast<std::size_t>(camera) - 1].Open());
  if (!device) m_findings.Report("camera " + std::to_string(camera) + " does not open");
  return device;
}

void StormWorld::Release(BImagingDevice*& device) {
  if (!m_module->release(&device) || device) m_findings.Report("the release answers that there is no device");
}

void StormWorld::List() {
  DList<WString> identifiers;
  m_module->list(identifiers);
  if (identifiers.Count() != m_profiles.size()) {
    m_findings.Report(std::to_string(identifiers.Count()) + " cameras are listed");
  }
}

void StormWorld::SnapOnce(BImagingDevice& device, int camera) {
  if (!Start(device, true)) return;
  std::ignore = Snap(device, camera, kTimeoutMs);
  Stop(device);
}

bool StormWorld::Start(BImagingDevice& device, bool one_shot) {
  try {
    device.StartSnap(one_shot);
    return true;
  } catch (const BError& error) {
    if (error.ErrorCode() != BError::eAcquisitionFailed) m_findings.Report("StartSnap throws " + TextOf(error));
    return false;
  }
}

BError StormWorld::Snap(BImagingDevice& device, int camera, std::uint32_t timeout_ms) {
  const BSmartRef<BBaseAoi> area(new BBaseAoi(BBaseAoi::eMono8));
  BError error = device.Snap(area.Get(), timeout_ms);
  if (!IsAnswerOfASnap(error)) m_findings.Report("Snap answers " + TextOf(error));
  if (!error.IsError()) CheckPicture(camera, *area);
  return error;
}

void StormWorld::Stop(BImagingDevice& device) {
  try {
    device.StopSnap();
  } catch (const BError& error) {
    if (error.ErrorCode() != BError::eAcquisitionFailed) m_findings.Report("StopSnap throws " + TextOf(error));
  }
}

void StormWorld::CheckPicture(int camera, const BBaseAoi& area) {
  const BImage8u* const image = const_cast<BBaseAoi&>(area).Mono();
  std::vector<std::uint8_t> pixels = PixelsOf(*image);
  const BMutexLock lock(m_mutex);
  std::vector<std::uint8_t>& first = m_pictures[static_cast<std::size_t>(camera)];
  if (first.empty()) first = pixels;
  if (pixels.empty() || pixels != first) m_findings.Report("a picture is not of camera " + std::to_string(camera));
}

void StormWorld::CheckLeftovers() {
  for (const std::string& defect : DefectsOfRecordedCalls()) m_findings.Report(defect);
  const ProcessCensus after = CensusOnceAlone(m_before.threads);
  if (after.threads > m_before.threads) {
    m_findings.Report(std::to_string(after.threads - m_before.threads) + " threads are left");
  }
  if (after.descriptors > m_before.descriptors) {
    m_findings.Report(std::to_string(after.descriptors - m_before.descriptors) + " descriptors are left");
  }
}

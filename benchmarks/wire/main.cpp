// main.cpp
// A host for measurements over the wire: takes frames of a GigE Vision camera and prints what that took, as JSON.
//   bench_wire library SECONDS WIDTH HEIGHT PACKET RATE   frames through the calls of VimbaC, given back at once
//   bench_wire copies SECONDS WIDTH HEIGHT PACKET RATE    the same with a thread and two copies for each frame
//   bench_wire module SECONDS WIDTH HEIGHT PACKET RATE    frames through the module, which has these by contract
//   bench_wire trigger COUNT WIDTH HEIGHT                 from the trigger's command to the callback and to the picture
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "VimbaC.h"
#include "bbaseaoi.h"
#include "bcamprofile.h"
#include "bmutex.h"
#include "bsmartref.h"
#include "camera/vimba_imaging_device_impl.h"
#include "vimba/vimba_initialization.h"

namespace {

using Clock = std::chrono::steady_clock;
using Json = nlohmann::json;

constexpr std::size_t kFrames = 10;

struct Request {
  double seconds;
  std::int64_t width;
  std::int64_t height;
  std::int64_t packet_bytes;
  double rate_hz;
};

void Check(const std::string& call, VmbError_t code) {
  if (code != VmbErrorSuccess) throw std::runtime_error(call + " answers " + std::to_string(code));
}

std::string FirstCamera() {
  VmbCameraInfo_t info{};
  VmbUint32_t found = 0;
  std::ignore = VmbCamerasList(&info, 1, &found, sizeof info);
  if (found == 0) throw std::runtime_error("there is no camera");
  return info.cameraIdString;
}

void SetUp(VmbHandle_t camera, const Request& request) {
  Check("PixelFormat", VmbFeatureEnumSet(camera, "PixelFormat", "Mono8"));
  Check("Width", VmbFeatureIntSet(camera, "Width", request.width));
  Check("Height", VmbFeatureIntSet(camera, "Height", request.height));
  Check("GVSPPacketSize", VmbFeatureIntSet(camera, "GVSPPacketSize", request.packet_bytes));
  // The pause between packets that the module asks for would limit a camera to gigabit.
  std::ignore = VmbFeatureIntSet(camera, "StreamBytesPerSecond", 124'000'000);
  Check("AcquisitionFrameRateAbs", VmbFeatureFloatSet(camera, "AcquisitionFrameRateAbs", request.rate_hz));
}

// Counts frames and gives them back.
class LibraryHost {
 public:
  LibraryHost() {
    Check("VmbStartup", VmbStartup());
    Check("VmbCameraOpen", VmbCameraOpen(FirstCamera().c_str(), VmbAccessModeFull, &m_camera));
  }
  virtual ~LibraryHost() { VmbShutdown(); }
  LibraryHost(const LibraryHost&) = delete;
  LibraryHost& operator=(const LibraryHost&) = delete;

  VmbHandle_t Camera() const { return m_camera; }
  void Start() {
    VmbInt64_t bytes = 0;
    Check("PayloadSize", VmbFeatureIntGet(m_camera, "PayloadSize", &bytes));
    m_buffers.assign(kFrames, std::vector<std::uint8_t>(static_cast<std::size_t>(bytes)));
    m_records.assign(kFrames, VmbFrame_t{});
    for (std::size_t i = 0; i < kFrames; ++i) {
      m_records[i].buffer = m_buffers[i].data();
      m_records[i].bufferSize = static_cast<VmbUint32_t>(bytes);
      m_records[i].context[0] = this;
      Check("VmbFrameAnnounce", VmbFrameAnnounce(m_camera, &m_records[i], sizeof(VmbFrame_t)));
    }
    Check("VmbCaptureStart", VmbCaptureStart(m_camera));
    for (const VmbFrame_t& record : m_records)
      Check("VmbCaptureFrameQueue", VmbCaptureFrameQueue(m_camera, &record, OnFrame));
    Check("AcquisitionStart", VmbFeatureCommandRun(m_camera, "AcquisitionStart"));
  }
  void Stop() {
    std::ignore = VmbFeatureCommandRun(m_camera, "AcquisitionStop");
    std::ignore = VmbCaptureEnd(m_camera);
    std::ignore = VmbCaptureQueueFlush(m_camera);
    std::ignore = VmbFrameRevokeAll(m_camera);
  }
  std::int64_t Complete() const { return m_complete; }
  std::int64_t Others() const { return m_others; }
  // Waits for a frame after so many.
  Clock::time_point TimeOfFrameAfter(std::int64_t count) {
    BMutexLock lock(m_mutex);
    while (m_complete + m_others <= count) m_changed.Wait(lock);
    return m_last;
  }

 protected:
  // A complete frame, to be given back. On the library's thread.
  virtual void Take(VmbFrame_t* frame) { GiveBack(frame); }
  void GiveBack(VmbFrame_t* frame) { std::ignore = VmbCaptureFrameQueue(m_camera, frame, OnFrame); }

 private:
  static void OnFrame(VmbHandle_t /*camera*/, VmbFrame_t* frame) {
    auto& self = *static_cast<LibraryHost*>(frame->context[0]);
    const auto now = Clock::now();
    const bool complete = frame->receiveStatus == VmbFrameStatusComplete;
    {
      const BMutexLock lock(self.m_mutex);
      ++(complete ? self.m_complete : self.m_others);
      self.m_last = now;
      self.m_changed.NotifyAll();
    }
    complete ? self.Take(frame) : self.GiveBack(frame);
  }

  VmbHandle_t m_camera = nullptr;
  std::vector<std::vector<std::uint8_t>> m_buffers;
  std::vector<VmbFrame_t> m_records;
  BMutex m_mutex;
  BCondition m_changed;
  std::atomic<std::int64_t> m_complete{0};
  std::atomic<std::int64_t> m_others{0};
  Clock::time_point m_last KEL_GUARDED_BY(m_mutex);
};

// Does with each frame what the module has to, and nothing else: a thread copies it and gives it back, and whoever
// wants a picture looks for it every 10 ms and gets a copy of his own.
class CopyingHost : public LibraryHost {
 public:
  ~CopyingHost() override {
    while (m_workers != 0) std::this_thread::yield();
  }

  bool Snap(std::vector<std::uint8_t>& picture) {
    std::vector<std::uint8_t> copy;
    {
      const BMutexLock lock(m_mutex);
      if (m_copies.empty()) return false;
      copy.swap(m_copies.front());
      m_copies.pop_front();
    }
    picture.assign(copy.begin(), copy.end());
    const BMutexLock lock(m_mutex);
    m_spare.push_back(std::move(copy));
    return true;
  }

 private:
  void Take(VmbFrame_t* frame) override {
    ++m_workers;
    std::thread([this, frame] {
      Copy(frame);
      GiveBack(frame);
      --m_workers;
    }).detach();
  }
  void Copy(const VmbFrame_t* frame) {
    std::vector<std::uint8_t> copy;
    {
      const BMutexLock lock(m_mutex);
      if (!m_spare.empty()) {
        copy.swap(m_spare.back());
        m_spare.pop_back();
      }
    }
    const auto* const pixels = static_cast<const std::uint8_t*>(frame->buffer);
    copy.assign(pixels, pixels + frame->imageSize);
    const BMutexLock lock(m_mutex);
    m_copies.push_back(std::move(copy));
  }

  BMutex m_mutex;
  std::deque<std::vector<std::uint8_t>> m_copies KEL_GUARDED_BY(m_mutex);
  std::vector<std::vector<std::uint8_t>> m_spare KEL_GUARDED_BY(m_mutex);
  std::atomic<int> m_workers{0};
};

// The module's device on the first camera, which is set up before: the module leaves rate and packet size as they are.
class ModuleHost {
 public:
  explicit ModuleHost(const Request& request) {
    {
      LibraryHost library;
      SetUp(library.Camera(), request);
    }
    m_system = VimbaInitialization::Open(nullptr);
    std::ofstream(m_profile) << "API=Vimba\nCamera_Identifier=" << FirstCamera() << "\nAOIWIDTH=" << request.width
                             << "\nAOIHEIGHT=" << request.height << '\n';
    m_device = std::make_unique<BVimbaImagingDeviceImpl>();
    if (!m_system || !m_device->Initialize(new BCamProfile(WString(m_profile.wstring())))) {
      throw std::runtime_error("the device cannot be opened");
    }
    std::ignore = m_device->SetBandwidth(124'000'000);
    if (!m_device->Trigger()) throw std::runtime_error("the camera has no trigger");
  }
  ~ModuleHost() {
    m_device.reset();
    m_system = nullptr;
    std::error_code ignored;
    std::filesystem::remove(m_profile, ignored);
  }
  ModuleHost(const ModuleHost&) = delete;
  ModuleHost& operator=(const ModuleHost&) = delete;

  BVimbaImagingDeviceImpl& Device() { return *m_device; }

 private:
  const std::filesystem::path m_profile =
      std::filesystem::temp_directory_path() / ("bench_wire_" + std::to_string(getpid()) + ".ini");
  BSmartRef<VimbaInitialization> m_system;
  std::unique_ptr<BVimbaImagingDeviceImpl> m_device;
};

double SecondsSince(Clock::time_point begin) { return std::chrono::duration<double>(Clock::now() - begin).count(); }

Json ThroughLibrary(const Request& request) {
  LibraryHost host;
  SetUp(host.Camera(), request);
  const auto begin = Clock::now();
  host.Start();
  std::this_thread::sleep_for(std::chrono::duration<double>(request.seconds));
  host.Stop();
  return {{"complete", host.Complete()}, {"others", host.Others()}, {"seconds", SecondsSince(begin)}};
}

Json ThroughCopies(const Request& request) {
  constexpr std::chrono::milliseconds kLook{10};
  CopyingHost host;
  SetUp(host.Camera(), request);
  std::vector<std::uint8_t> picture;
  std::int64_t complete = 0;
  const auto begin = Clock::now();
  host.Start();
  while (SecondsSince(begin) < request.seconds) {
    if (host.Snap(picture)) {
      ++complete;
    } else {
      std::this_thread::sleep_for(kLook);
    }
  }
  host.Stop();
  return {{"complete", complete}, {"others", host.Others()}, {"seconds", SecondsSince(begin)}};
}

Json ThroughModule(const Request& request) {
  ModuleHost host(request);
  host.Device().Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
  BBaseAoi area(BBaseAoi::eMono8);
  std::int64_t complete = 0;
  std::int64_t others = 0;
  const auto begin = Clock::now();
  host.Device().StartSnap(false);
  while (SecondsSince(begin) < request.seconds) ++(host.Device().Snap(&area, 1000, 0).IsError() ? others : complete);
  host.Device().StopSnap();
  return {{"complete", complete}, {"others", others}, {"seconds", SecondsSince(begin)}};
}

Json Percentiles(std::vector<double> times_ms) {
  std::sort(times_ms.begin(), times_ms.end());
  const auto at = [&](double share) {
    return times_ms[static_cast<std::size_t>(share * static_cast<double>(times_ms.size() - 1))];
  };
  return {{"median_ms", at(0.5)}, {"p99_ms", at(0.99)}};
}

double MsBetween(Clock::time_point begin, Clock::time_point end) {
  return std::chrono::duration<double, std::milli>(end - begin).count();
}

std::vector<double> TriggerToCallback(int count, const Request& request) {
  LibraryHost host;
  SetUp(host.Camera(), request);
  Check("TriggerSource", VmbFeatureEnumSet(host.Camera(), "TriggerSource", "Software"));
  Check("TriggerMode", VmbFeatureEnumSet(host.Camera(), "TriggerMode", "On"));
  host.Start();
  std::vector<double> times_ms;
  for (int i = 0; i < count; ++i) {
    const auto begin = Clock::now();
    Check("TriggerSoftware", VmbFeatureCommandRun(host.Camera(), "TriggerSoftware"));
    times_ms.push_back(MsBetween(begin, host.TimeOfFrameAfter(i)));
  }
  host.Stop();
  return times_ms;
}

std::vector<double> TriggerToPicture(int count, const Request& request) {
  ModuleHost host(request);
  BBaseAoi area(BBaseAoi::eMono8);
  std::vector<double> times_ms;
  for (int i = 0; i < count; ++i) {
    host.Device().StartSnap(true);
    const auto begin = Clock::now();
    const bool failed = host.Device().Snap(&area, 5000, 0).IsError();
    if (!failed) times_ms.push_back(MsBetween(begin, Clock::now()));
    host.Device().StopSnap();
    if (failed) throw std::runtime_error("a snap has failed");
  }
  return times_ms;
}

int Run(const std::vector<std::string>& words) {
  const std::string& what = words.at(0);
  const auto number = [&](std::size_t i) { return std::stod(words.at(i)); };
  const auto whole = [&](std::size_t i) { return static_cast<std::int64_t>(number(i)); };
  if (what == "trigger") {
    const Request request{0.0, whole(2), whole(3), 1400, 1000.0};
    const int count = static_cast<int>(number(1));
    std::cout << Json{{"callback", Percentiles(TriggerToCallback(count, request))},
                      {"picture", Percentiles(TriggerToPicture(count, request))}}
              << std::endl;
    return 0;
  }
  const Request request{number(1), whole(2), whole(3), whole(4), number(5)};
  const auto measure = what == "library" ? ThroughLibrary : what == "copies" ? ThroughCopies : ThroughModule;
  std::cout << measure(request) << std::endl;
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    std::cerr << "bench_wire: " << failure.what() << std::endl;
    return 1;
  }
}

// main.cpp
// A host whose simulated cameras snap on links: prints what became of each snap.
//   bench_link RIG.json [--real-clock]
// The rig, of which every member but `simulator` may be missing:
//   {"simulator": {...}, "profile": {"BYTEPERSECOND": "57000000"}, "linked": true, "pace": "together", "joins_after":
//   0,
//    "host_rate_bytes_per_s": 0, "snaps": 1000, "timeout_ms": 5000}
// `simulator` is a configuration of the simulated cameras; each is opened with the keys of `profile`. Each snaps on a
// thread of its own: all together, one after the other ("in turn"), or each at its own pace ("own"). All but the first
// join in after so many of its snaps. A rate that is not 0 is set by the host before each snap. A line of the output is
// one snap of one camera:
//   snap,camera,code,bytes_per_s,begin_ms,end_ms
#include <dlfcn.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bcamprofile.h"
#include "berror.h"
#include "bimagingdevice.h"
#include "bmutex.h"
#include "driver/kel_camera_vimba.h"
#include "imagingdevice.h"
#include "vimba_simulator.h"
#include "virtual_clock.h"

namespace {

using Clock = std::chrono::steady_clock;
using Json = nlohmann::json;

struct Snap {
  std::int32_t code = 0;
  std::int64_t rate_bytes_per_s = 0;
  Clock::time_point begin;
  Clock::time_point end;
};

// The module next to this program, as a host loads it.
class Module {
 public:
  Module() {
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    m_library = dlopen((folder / "libkelCameraVimba.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_library) throw std::runtime_error(dlerror());
    create = reinterpret_cast<CreateImagingDeviceFunction*>(dlsym(m_library, "CreateImagingDevice"));
    release = reinterpret_cast<ReleaseImagingDeviceFunction*>(dlsym(m_library, "ReleaseImagingDevice"));
    if (!create || !release) throw std::runtime_error("the module does not export what a host needs");
  }
  ~Module() { dlclose(m_library); }
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  CreateImagingDeviceFunction* create = nullptr;
  ReleaseImagingDeviceFunction* release = nullptr;

 private:
  void* m_library = nullptr;
};

// The messages of 1,000 snaps are nobody's to read.
class Silence final : public ImagingDevice::BSink {
 public:
  Silence() : m_before(ImagingDevice::InstallSink(this)) {}
  ~Silence() { ImagingDevice::InstallSink(m_before); }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

  void OnShowInfo(const wchar_t* /*text*/, const wchar_t* /*caption*/) override {}
  void OnLogMessage(const WString& /*text*/, bool /*important*/) override {}

 private:
  ImagingDevice::BSink* m_before;
};

// Holds each thread until all are there, or all before it.
class Meeting {
 public:
  explicit Meeting(int threads) : m_threads(threads) {}

  void Meet() {
    BMutexLock lock(m_mutex);
    const int round = m_round;
    if (++m_here == m_threads) {
      m_here = 0;
      m_turn = 0;
      ++m_round;
      m_changed.NotifyAll();
    }
    while (m_round == round) m_changed.Wait(lock);
  }
  void AwaitTurn(int thread) {
    BMutexLock lock(m_mutex);
    while (m_turn != thread) m_changed.Wait(lock);
  }
  void EndTurn() {
    const BMutexLock lock(m_mutex);
    ++m_turn;
    m_changed.NotifyAll();
  }

 private:
  const int m_threads;
  BMutex m_mutex;
  BCondition m_changed;
  int m_here KEL_GUARDED_BY(m_mutex) = 0;
  int m_round KEL_GUARDED_BY(m_mutex) = 0;
  int m_turn KEL_GUARDED_BY(m_mutex) = 0;
};

class OpenedRig {
 public:
  explicit OpenedRig(const Json& rig)
      : m_keys(rig.value("profile", Json({}))),
        m_linked(rig.value("linked", false)),
        m_pace(rig.value("pace", "together")),
        m_joins_after(rig.value("joins_after", 0)),
        m_host_rate_bytes_per_s(rig.value("host_rate_bytes_per_s", 0)),
        m_snaps(rig.value("snaps", 1000)),
        m_timeout_ms(rig.value("timeout_ms", 5000U)) {
    if (VimbaSimConfigure(rig.at("simulator").dump().c_str()) != 0) throw std::runtime_error(VimbaSimLastError());
    VimbaSimRecordCalls(0);
    for (const Json& camera : rig.at("simulator").at("cameras")) m_ids.push_back(camera.at("id"));
    // A place stays where it is while another camera joins.
    m_devices.reserve(m_ids.size());
    const std::size_t at_once = m_joins_after > 0 ? 1 : m_ids.size();
    for (std::size_t camera = 0; camera < at_once; ++camera) Join();
  }
  ~OpenedRig() {
    for (BImagingDevice* device : m_devices) m_module.release(&device);
  }
  OpenedRig(const OpenedRig&) = delete;
  OpenedRig& operator=(const OpenedRig&) = delete;

  // Of each camera; those that join have no snaps before.
  std::vector<std::vector<Snap>> TakeAll() {
    std::vector<std::vector<Snap>> snaps(m_ids.size());
    Meeting meeting(static_cast<int>(m_ids.size()));
    std::vector<std::thread> hosts;
    for (std::size_t camera = 0; camera < m_ids.size(); ++camera) {
      hosts.emplace_back([&, camera] { Take(camera, meeting, snaps[camera]); });
    }
    for (std::thread& host : hosts) host.join();
    return snaps;
  }
  int FirstSnapOf(std::size_t camera) const { return camera == 0 ? 1 : m_joins_after + 1; }

 private:
  void Take(std::size_t camera, Meeting& meeting, std::vector<Snap>& snaps) {
    const bool in_turn = m_pace == "in turn";
    for (int number = 1; number <= m_snaps; ++number) {
      // The first goes on until it has to wait for them.
      if (camera == 1 && m_joins_after > 0 && number == FirstSnapOf(camera)) {
        while (m_devices.size() < m_ids.size()) Join();
      }
      if (m_pace != "own") meeting.Meet();
      if (in_turn) meeting.AwaitTurn(static_cast<int>(camera));
      if (number >= FirstSnapOf(camera)) snaps.push_back(TakeOne(*m_devices[camera]));
      if (in_turn) meeting.EndTurn();
    }
  }
  // The rate is that of the frame: after the start, which brings it down to the partners'.
  Snap TakeOne(BImagingDevice& device) const {
    Snap snap;
    snap.begin = Clock::now();
    if (m_host_rate_bytes_per_s != 0 && !device.SetBandwidth(m_host_rate_bytes_per_s)) {
      throw std::runtime_error("a camera does not take the host's rate");
    }
    device.StartSnap(true);
    snap.rate_bytes_per_s = device.GetBandwidth();
    snap.code = device.Snap(nullptr, m_timeout_ms).ErrorCode();
    device.StopSnap();
    snap.end = Clock::now();
    return snap;
  }
  // Opens the next camera.
  void Join() {
    BImagingDevice* const device = Open(m_ids[m_devices.size()]);
    for (BImagingDevice* other : m_devices) {
      if (!m_linked) break;
      device->AddBandwidthPartner(other);
      other->AddBandwidthPartner(device);
    }
    m_devices.push_back(device);
  }
  BImagingDevice* Open(const std::string& id) {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("bench_link_" + std::to_string(getpid()) + ".ini");
    std::ofstream text(file);
    text << "API=Vimba\nCamera_Identifier=" << id << "\n";
    for (const auto& [key, value] : m_keys.items()) text << key << "=" << value.get<std::string>() << "\n";
    text.close();
    BImagingDevice* const device = m_module.create(new BCamProfile(WString(file.wstring())));
    std::filesystem::remove(file);
    if (!device) throw std::runtime_error(id + " does not open");
    return device;
  }

  const Json m_keys;
  const bool m_linked;
  const std::string m_pace;
  const int m_joins_after;
  const std::int32_t m_host_rate_bytes_per_s;
  const int m_snaps;
  const std::uint32_t m_timeout_ms;
  Silence m_silence;
  Module m_module;
  std::vector<std::string> m_ids;
  std::vector<BImagingDevice*> m_devices;
};

double MsSince(Clock::time_point start, Clock::time_point moment) {
  return std::chrono::duration<double, std::milli>(moment - start).count();
}

void Run(const std::string& file) {
  OpenedRig rig(Json::parse(std::ifstream(file)));
  const Clock::time_point start = Clock::now();
  const std::vector<std::vector<Snap>> all = rig.TakeAll();
  std::cout << std::fixed << std::setprecision(3) << "snap,camera,code,bytes_per_s,begin_ms,end_ms\n";
  for (std::size_t camera = 0; camera < all.size(); ++camera) {
    for (std::size_t i = 0; i < all[camera].size(); ++i) {
      const Snap& snap = all[camera][i];
      std::cout << static_cast<std::size_t>(rig.FirstSnapOf(camera)) + i << "," << camera + 1 << "," << snap.code << ","
                << snap.rate_bytes_per_s << "," << MsSince(start, snap.begin) << "," << MsSince(start, snap.end)
                << "\n";
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  const bool real_clock = argc == 3 && std::string(arguments[2]) == "--real-clock";
  if (argc < 2 || (argc > 2 && !real_clock)) {
    std::cerr << "usage: bench_link RIG.json [--real-clock]\n";
    return 2;
  }
  try {
    if (!real_clock) VirtualClock::TurnOn();
    Run(arguments[1]);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "bench_link: " << error.what() << "\n";
    return 1;
  }
}

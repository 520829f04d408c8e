// check_facts.h
// What a check measures. Everything that could not be measured is absent; judging comes later.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/system_facts.h"
#include "check/frame_arrivals.h"
#include "device/camera_table.h"
#include "live/live_figures.h"
#include "messages/driver_messages.h"
#include "profile_text/profile_check.h"
#include "snap/snap_figures.h"

namespace Kelcam {

using Milliseconds = std::chrono::duration<double, std::milli>;

// The first fault of each code, and how many there were.
struct CountedFault {
  Fault fault;
  std::uint64_t count = 0;
};
using FaultsByCode = std::map<int, CountedFault>;

struct LibraryFacts {
  std::string version;
  std::string file;
  bool is_simulated = false;
};

struct SystemFacts {
  std::string program;  // "kelcam 1.0.0"
  std::string system;
  unsigned processors = 0;
  std::string time;                      // when the check began
  std::string module;                    // its file
  std::optional<Fault> module_fault;     // why it is not loaded
  std::optional<LibraryFacts> library;   // none: the module reaches cameras without VimbaC
  bool was_asked = false;                // whether the camera system was started, to list the cameras
  std::optional<Fault> start_fault;      // why it does not start
  Lines start_lines;                     // the driver's, of the start
  std::vector<std::string> identifiers;  // the cameras that the module lists
  std::optional<std::vector<CameraRow>> cameras;
  std::optional<std::int64_t> receive_buffer_bytes;
  std::string stuck;  // as of a camera, while none is measured
};

// What the driver says of an open camera.
struct DeviceFacts {
  int width = 0;
  int height = 0;
  bool is_color = false;
  bool has_trigger = false;
  std::optional<double> exposure_ms;
  std::optional<double> rate_hz;  // the highest that the camera reports at present
  std::int64_t stream_bytes_per_s = 0;
  std::vector<Milliseconds> answers;  // how long the camera took to report its stream rate
};

// In °C; none: the camera does not report it.
struct Temperatures {
  std::optional<double> sensor;
  std::optional<double> board;
};

struct ClockReading {
  std::chrono::steady_clock::time_point time;  // when the driver reported it
  std::uint64_t ticks = 0;
};

struct SnapFacts {
  SnapFigures figures;
  std::vector<Milliseconds> times;  // of the good ones
  FaultsByCode faults;
  bool was_ended = false;  // too many failures in a row
};

struct RunFacts {
  LiveFigures figures;
  FaultsByCode faults;
  std::optional<Fault> loss;  // the camera does not answer any more
  std::vector<FrameArrival> arrivals;
  std::optional<std::uint64_t> dropped_by_system;  // datagrams, of all programs
};

// The library's own counters.
struct PacketCounters {
  std::int64_t received = 0;
  std::int64_t missed = 0;
  std::optional<std::int64_t> resent;
  std::optional<std::int64_t> frames_dropped;
};

struct CameraFacts {
  std::string title;  // "--camera 1"
  std::string name;   // the identifier; of a camera that was not opened, what the command line has
  std::optional<CameraRow> row;
  bool has_profile = false;
  std::optional<std::vector<ProfileFinding>> findings;  // of the profile
  std::optional<Fault> profile_fault;                   // why it cannot be read
  std::string color_format;                             // COLORCODEcolor; empty: the profile has none

  std::optional<Fault> opening_fault;
  std::optional<Milliseconds> opening;  // how long it took
  Lines opening_lines;                  // the driver's
  std::optional<DeviceFacts> device;
  std::optional<Temperatures> cold, warm;  // before the first image, after the last
  std::vector<ClockReading> clock;
  std::optional<SnapFacts> snaps;
  std::optional<RunFacts> run;

  // What the library says after the driver has closed the camera.
  bool was_asked = false;
  std::optional<std::string> firmware;
  std::optional<std::string> sensor_type;
  std::optional<std::int64_t> ticks_per_s;
  std::optional<PacketCounters> packets;
  std::optional<Route> route;

  std::string stuck;  // what a call of the driver waits for that does not return; empty: none
};

struct CheckFacts {
  SystemFacts system;
  std::vector<CameraFacts> cameras;
  std::optional<std::size_t> measured;  // the place of the camera that is measured, or was last
  bool was_interrupted = false;
};

}  // namespace Kelcam

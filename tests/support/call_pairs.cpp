// call_pairs.cpp
// Whether the calls that the simulated library has recorded belong together: what is opened is closed, and so on.
#include "support/call_pairs.h"

#include <map>
#include <sstream>

#include "support/simulator_text.h"
#include "vimba_simulator.h"

namespace {

// VmbFrameAnnounce(DEV_1, frame 0) = 0
struct Call {
  std::string function;
  std::string first_argument;
  bool succeeded = false;
  bool returned = true;
};

std::vector<std::string> RecordedLines() {
  std::vector<std::string> lines;
  std::istringstream stream(SimulatorText(VimbaSimCalls));
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

Call Parse(const std::string& line) {
  const std::size_t open = line.find('(');
  const std::size_t argument_end = line.find_first_of(",)", open);
  Call call{.function = line.substr(0, open), .first_argument = line.substr(open + 1, argument_end - open - 1)};
  std::erase(call.first_argument, '"');
  call.succeeded = line.ends_with(" = 0");
  call.returned = !line.ends_with(" = ...");
  return call;
}

class Pairs {
 public:
  void Take(const std::string& line) {
    const Call call = Parse(line);
    if (!call.returned) m_defects.push_back("has not returned: " + line);
    if (call.first_argument == "unknown") m_defects.push_back("the handle is closed: " + line);
    if (call.function == "VmbStartup" && call.succeeded) ++m_started;
    if (call.function == "VmbShutdown") --m_started;
    if (m_started < 0 || m_started > 1) m_defects.push_back("start-up and shutdown are not in pairs: " + line);
    TakeCameraCall(call, line);
  }

  std::vector<std::string> Defects() {
    if (m_started != 0) m_defects.emplace_back("the library is not shut down");
    for (const auto& [id, camera] : m_cameras) {
      if (camera.open) m_defects.push_back(id + " stays open");
    }
    return m_defects;
  }

 private:
  struct Camera {
    bool open = false;
    int announced = 0;
  };

  void TakeCameraCall(const Call& call, const std::string& line) {
    Camera& camera = m_cameras[call.first_argument];
    if (call.function == "VmbCameraOpen" && call.succeeded) {
      if (camera.open) m_defects.push_back("the camera is open already: " + line);
      camera = {.open = true, .announced = 0};
    } else if (call.function == "VmbFrameAnnounce" && call.succeeded) {
      ++camera.announced;
    } else if (call.function == "VmbFrameRevokeAll") {
      camera.announced = 0;
    } else if (call.function == "VmbCameraClose") {
      if (!camera.open) m_defects.push_back("the camera is not open: " + line);
      if (camera.announced != 0) m_defects.push_back("frames are still announced: " + line);
      camera.open = false;
    }
  }

  int m_started = 0;
  std::map<std::string, Camera> m_cameras;
  std::vector<std::string> m_defects;
};

}  // namespace

std::vector<std::string> DefectsOfRecordedCalls() {
  const std::vector<std::string> lines = RecordedLines();
  // A record that has lost its beginning shows nothing.
  if (VimbaSimCallCount() != lines.size()) {
    return {std::to_string(VimbaSimCallCount()) + " calls, of which " + std::to_string(lines.size()) + " are recorded"};
  }
  Pairs pairs;
  for (const std::string& line : lines) pairs.Take(line);
  return pairs.Defects();
}

std::vector<std::string> LastRecordedCalls(std::size_t count) {
  const std::vector<std::string> lines = RecordedLines();
  std::vector<std::string> last;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i + count >= lines.size() || !Parse(lines[i]).returned) last.push_back(lines[i]);
  }
  return last;
}

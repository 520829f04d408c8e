// wire_camera.cpp
// Cameras that speak GigE Vision, as processes of their own in the network of the test.
#include "bridge/wire_camera.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <utility>

#include "support/process.h"

namespace {

constexpr std::chrono::seconds kDeadline{20};

std::string CameraFile(const std::string& name) { return std::string(KEL_CAMERA_FILES) + '/' + name; }

struct Pipe {
  Pipe() {
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  }
  int ends[2];
};

// The camera's control port, 3956, is in the system's list of sockets that are bound.
bool ControlPortIsBound() {
  std::ifstream sockets("/proc/net/udp");
  for (std::string line; std::getline(sockets, line);) {
    if (line.find(":0F74 ") != std::string::npos) return true;
  }
  return false;
}

bool EndsWithLine(int fd, const std::string& wanted) {
  std::string line;
  for (char c; read(fd, &c, 1) == 1 && c != '\n';) line += c;
  return line == wanted;
}

}  // namespace

WireCamera::WireCamera(int number)
    : m_number(number),
      m_program(ProgramFile("wire-camera")),
      m_arguments{
          "--serial",  "000" + std::to_string(number),      "--mac",       std::to_string(0x000F31000000 + number),
          "--address", "127.0.0." + std::to_string(number), "--additions", CameraFile("additions.xml")} {}

WireCamera::WireCamera(std::filesystem::path program, std::vector<std::string> arguments)
    : m_program(std::move(program)), m_arguments(std::move(arguments)), m_says_ready(false) {}

WireCamera WireCamera::Stock() { return {KEL_STOCK_CAMERA, {"--interface", kAddress}}; }

WireCamera& WireCamera::Colour() {
  m_arguments.emplace_back("--colour");
  return *this;
}

WireCamera& WireCamera::Loses(double permille) {
  m_arguments.insert(m_arguments.end(), {"--lost", std::to_string(permille)});
  return *this;
}

WireCamera& WireCamera::WidestPayload() {
  m_arguments.insert(m_arguments.end(), {"--additions", CameraFile("widest_payload.xml")});
  return *this;
}

std::string WireCamera::Id() const { return m_says_ready ? "DEV_000F3100000" + std::to_string(m_number) : kStockId; }

RunningCamera::RunningCamera(const WireCamera& camera) {
  const Pipe life;
  const Pipe ready;
  m_process = fork();
  if (m_process < 0) throw std::runtime_error("no process for a camera");
  if (m_process == 0) Start(camera, ready.ends[1], life.ends[0]);
  close(life.ends[0]);
  close(ready.ends[1]);
  m_life = life.ends[1];
  bool started = false;
  if (camera.SaysReady()) {
    started = EndsWithLine(ready.ends[0], "ready");
  } else {
    // Nothing but its port says that this one is there.
    const auto deadline = std::chrono::steady_clock::now() + kDeadline;
    while (!(started = ControlPortIsBound()) && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  }
  close(ready.ends[0]);
  if (!started) {
    Kill();
    throw std::runtime_error("the camera " + camera.Program().string() + " does not start");
  }
}

// In the new process.
void RunningCamera::Start(const WireCamera& camera, int ready_fd, int life_fd) const {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  dup2(life_fd, STDIN_FILENO);
  dup2(ready_fd, STDOUT_FILENO);
  std::vector<std::string> words{camera.Program().string()};
  words.insert(words.end(), camera.Arguments().begin(), camera.Arguments().end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execv(camera.Program().c_str(), pointers.data());
  _exit(1);
}

RunningCamera::~RunningCamera() { Kill(); }

void RunningCamera::Kill() {
  if (m_process <= 0) return;
  kill(m_process, SIGKILL);
  waitpid(m_process, nullptr, 0);
  m_process = 0;
  close(m_life);
}

bool NetworkIsShared() { return std::getenv("KEL_SHARED_NETWORK") != nullptr; }

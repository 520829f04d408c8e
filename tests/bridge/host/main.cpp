// host/main.cpp
// A second host: takes frames of the camera that is named until the camera is lost to it. Says on standard error how it
// goes.
#include <sys/prctl.h>

#include <chrono>
#include <csignal>
#include <exception>
#include <iostream>
#include <thread>

#include "bridge/camera_host.h"

namespace {

constexpr std::chrono::milliseconds kPause{20};

void Run(const char* id) {
  const StartedVimba vimba;
  CameraHost host(id);
  host.Start();
  if (!host.WaitForFrames(1)) throw std::runtime_error("no frame comes");
  std::cerr << "streaming" << std::endl;
  VmbInt64_t width = 0;
  VmbError_t error = VmbErrorSuccess;
  // A request that is under way when the process goes on may be answered or time out, as the camera likes.
  while (error == VmbErrorSuccess || error == VmbErrorTimeout) {
    std::this_thread::sleep_for(kPause);
    error = VmbFeatureIntGet(host.Handle(), "Width", &width);
  }
  std::cerr << "VmbFeatureIntGet answers " << error << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  try {
    if (argc != 2) throw std::runtime_error("wire-host CAMERA");
    Run(argv[1]);
    std::cerr << "closed" << std::endl;
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << std::endl;
    return 1;
  }
}

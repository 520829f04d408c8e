// wire_camera.h
// Cameras that speak GigE Vision, as processes of their own in the network of the test.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

// What a camera is. WireCamera(2).Colour().Loses(5)
class WireCamera {
 public:
  static constexpr char kId[] = "DEV_000F31000001";
  static constexpr char kSerial[] = "0001";
  static constexpr char kAddress[] = "127.0.0.1";
  // Of the frames, until somebody sets another size.
  static constexpr int kWidth = 512;
  static constexpr int kHeight = 512;
  static constexpr int kSensorWidth = 2048;
  static constexpr int kSensorHeight = 2048;

  // Camera n: id, serial number and address end with n. A test with cameras other than the first has to begin with
  // KEL_NEEDS_OWN_NETWORK.
  explicit WireCamera(int number = 1);
  // The camera that Aravis' packages install, as it is: fewer features, and a picture of its own.
  static WireCamera Stock();
  static constexpr char kStockId[] = "DEV_GV01";

  WireCamera& Colour();
  WireCamera& Loses(double permille);  // of the packets
  // Its payload is that of the widest format, whatever it sends.
  WireCamera& WidestPayload();

  std::string Id() const;
  const std::filesystem::path& Program() const { return m_program; }
  const std::vector<std::string>& Arguments() const { return m_arguments; }
  bool SaysReady() const { return m_says_ready; }

 private:
  WireCamera(std::filesystem::path program, std::vector<std::string> arguments);

  int m_number = 1;
  std::filesystem::path m_program;
  std::vector<std::string> m_arguments;
  bool m_says_ready = true;
};

// On the network when the object is made, off it when the object goes. It goes with this process, too, whatever ends
// it; so make it on the main thread, whose end would be its own.
class RunningCamera {
 public:
  // Throws std::runtime_error when the camera does not start.
  explicit RunningCamera(const WireCamera& camera = WireCamera());
  ~RunningCamera();
  RunningCamera(const RunningCamera&) = delete;
  RunningCamera& operator=(const RunningCamera&) = delete;

  // Like a cable that is pulled: it says nothing any more.
  void Kill();

 private:
  void Start(const WireCamera& camera, int ready_fd, int life_fd) const;

  pid_t m_process = 0;
  // The camera's standard input: it ends when this closes.
  int m_life = -1;
};

// Whether the network is the machine's own, which has one address for cameras.
bool NetworkIsShared();

#define KEL_NEEDS_OWN_NETWORK() \
  if (NetworkIsShared()) GTEST_SKIP() << "several cameras need a network of their own"

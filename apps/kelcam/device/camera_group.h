// camera_group.h
// The cameras of one command, each with its own results.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/failure.h"
#include "device/bandwidth_link.h"
#include "device/camera_choice.h"
#include "device/camera_run.h"

namespace Kelcam {

// A camera that does not open or is not set up keeps no other one from running. [the command's thread]
class CameraGroup {
 public:
  struct Member {
    const CameraChoice& choice;
    std::string name;                // the camera's identifier; of one that was not opened, what the choice has
    std::unique_ptr<CameraRun> run;  // null: it has not got so far
    std::optional<Fault> fault;      // why, or what ended the run
    ExitCode result = kDone;         // of that fault

    // Takes the exception being handled, and prints it.
    void NoteFault(const std::string& label);
  };
  using Open = std::function<std::unique_ptr<CameraRun>(const CameraChoice&)>;

  // Opens the cameras and sets them up, one after the other, as long as the program is not interrupted. Prints what
  // fails. The choices must outlive the group.
  CameraGroup(const std::vector<CameraChoice>& choices, const Open& open);
  // Undoes the link, then closes the cameras, the last one first.
  ~CameraGroup();
  CameraGroup(const CameraGroup&) = delete;
  CameraGroup& operator=(const CameraGroup&) = delete;

  // Makes the open cameras bandwidth partners. Throws Failure when the driver refuses.
  void Link();
  // Runs all open cameras at the same time, each on its own thread, and returns when all have ended.
  void Run();

  const std::vector<Member>& Members() const { return m_members; }
  std::vector<const CameraSession*> OpenCameras() const;
  // The worst of all: wrong usage, then a failure.
  ExitCode Result() const;

 private:
  static void Try(Member& member, const Open& open);
  static void Run(Member& member);

  std::vector<Member> m_members;
  std::optional<BandwidthLink> m_link;
};

}  // namespace Kelcam

// main.cpp
// The smallest whole host: lists the attached cameras, or opens the one that a profile names and takes a picture.
//   embedding MODULE                      prints the cameras' identifiers
//   embedding MODULE PROFILE PICTURE      writes a PPM from a colour camera, a PGM from a monochrome one
// Exit codes: 0 done, 1 failed (standard error says why), 2 wrong usage.
#include <fstream>
#include <iostream>
#include <new>
#include <stdexcept>
#include <string>

#include "bbaseaoi.h"
#include "driver_module.h"
#include "imagingdevice.h"
#include "nboard.h"

namespace {

enum ExitCode : int { kDone = 0, kFailed = 1, kWrongUsage = 2 };

constexpr std::uint32_t kTimeoutMs = 5000;

// Prints what a driver reports. Called from any thread, one call at a time; it must not call the driver back.
class Notices final : public ImagingDevice::BSink {
 public:
  void OnShowInfo(const wchar_t* text, const wchar_t* caption) override {
    const bool is_operation_report = caption && !*caption;
    if (!is_operation_report) std::cerr << ToBString(text).c_str() << "\n";
  }
  void OnLogMessage(const WString& text, bool /*important*/) override { std::cerr << ToBString(text).c_str() << "\n"; }
};

// Called while an exception is handled: whatever profile, module or device throw.
void PrintFailure() {
  try {
    throw;
  } catch (const BError& error) {
    std::cerr << "error " << error.ErrorCode() << ": " << ToBString(error.Message()).c_str() << "\n";
  } catch (NBoard::Exception exception) {
    // Its one value is eWrongImageKind.
    std::cerr << "error: the area is of the wrong kind for the picture (" << static_cast<int>(exception) << ")\n";
  } catch (const std::bad_alloc&) {
    std::cerr << "error: out of memory\n";
  } catch (const std::exception& error) {
    std::cerr << "error: " << error.what() << "\n";
  }
}

// An open camera, given back to the module that made it.
class Camera {
 public:
  Camera(const DriverModule& module, const std::string& profile_file)
      : m_module(module), m_device(module.create(new BCamProfile(ToWString(profile_file.c_str())))) {
    if (!m_device) throw std::runtime_error("the camera of " + profile_file + " cannot be opened");
  }
  ~Camera() { m_module.release(&m_device); }
  Camera(const Camera&) = delete;
  Camera& operator=(const Camera&) = delete;
  BImagingDevice& Device() const { return *m_device; }

 private:
  const DriverModule& m_module;
  BImagingDevice* m_device;
};

// From StartSnap to StopSnap. A start that did not throw has its stop, whatever the snap does.
class Acquisition {
 public:
  explicit Acquisition(BImagingDevice& device) : m_device(device) { m_device.StartSnap(true); }
  ~Acquisition() {
    if (m_is_stopped) return;
    try {
      m_device.StopSnap();
    } catch (...) {
      PrintFailure();
    }
  }
  Acquisition(const Acquisition&) = delete;
  Acquisition& operator=(const Acquisition&) = delete;
  void Stop() {
    m_is_stopped = true;
    m_device.StopSnap();
  }

 private:
  BImagingDevice& m_device;
  bool m_is_stopped = false;
};

void TakePicture(BImagingDevice& device, BBaseAoi& area) {
  Acquisition acquisition(device);
  const BError error = device.Snap(&area, kTimeoutMs);
  if (error.IsError()) throw error;
  acquisition.Stop();
}

template <class Image>
void WriteRows(std::ostream& file, const Image& image, const char* format, int bytes_per_pixel) {
  file << format << "\n" << image.Size().width << " " << image.Size().height << "\n255\n";
  for (int y = 0; y < image.Size().height; ++y) {
    file.write(reinterpret_cast<const char*>(image.Row(y)), std::streamsize{image.Size().width} * bytes_per_pixel);
  }
}

void WritePicture(BBaseAoi& area, const std::string& file_name) {
  const BAutoLockR lock(area);
  std::ofstream file(file_name, std::ios::binary);
  area.Mono() ? WriteRows(file, *area.Mono(), "P5", 1) : WriteRows(file, *area.Rgb(), "P6", BImageRgb::kChannels);
  file.close();
  if (!file) throw std::runtime_error("cannot write " + file_name);
}

void List(const DriverModule& module) {
  DList<WString> identifiers;
  module.list(identifiers);
  if (identifiers.IsEmpty()) throw std::runtime_error("no camera was found, or the camera system does not start");
  for (const WString& identifier : identifiers) std::cout << ToBString(identifier).c_str() << "\n";
}

void Snap(const DriverModule& module, const std::string& profile_file, const std::string& picture_file) {
  const Camera camera(module, profile_file);
  BImagingDevice& device = camera.Device();
  const BSmartRef<BBaseAoi> area(new BBaseAoi(device.IsColor() ? BBaseAoi::eRgb : BBaseAoi::eMono8));
  TakePicture(device, *area);
  WritePicture(*area, picture_file);
}

ExitCode Run(int argc, char** argv) {
  try {
    const DriverModule module(argv[1]);
    argc == 2 ? List(module) : Snap(module, argv[2], argv[3]);
    return kDone;
  } catch (...) {
    PrintFailure();
    return kFailed;
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 4) {
    std::cerr << "usage: embedding MODULE [PROFILE PICTURE]\n";
    return kWrongUsage;
  }
  Notices notices;
  ImagingDevice::InstallSink(&notices);
  const ExitCode result = Run(argc, argv);
  // Before the sink goes.
  ImagingDevice::InstallSink(nullptr);
  return result;
}

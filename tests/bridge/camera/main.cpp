// camera/main.cpp
// A GigE Vision camera for the tests, made of Aravis' own one. Prints "ready" and ends when its standard input closes.
#include <arv.h>
#include <sys/prctl.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "camera/description.h"
#include "camera/drawing.h"
#include "camera/pacing.h"

namespace {

// Of the GigE Vision bootstrap registers, and of additions.xml.
constexpr guint32 kMacRegister = 0x0008;
constexpr guint32 kModelRegister = 0x0068;
constexpr std::size_t kModelBytes = 32;
constexpr guint32 kPacketSizeRegister = 0x0d04;
constexpr guint32 kSensorTypeRegister = 0x8000;

struct Options {
  std::string address = "127.0.0.1";
  std::string serial = "0001";
  std::string model = "Wire Camera";
  std::uint64_t mac = 0x000F31000001;
  double lost_permille = 0.0;
  double trigger_hz = 1000.0;
  bool colour = false;
  bool paced = false;
  std::uint32_t packet_bytes = 0;
  std::vector<std::string> additions;
  std::string description;
};

void Prepare(ArvFakeCamera* camera, Options options) {
  std::uint8_t mac[8];
  for (unsigned i = 0; i < sizeof mac; ++i)
    mac[i] = static_cast<std::uint8_t>(options.mac >> (8 * (sizeof mac - 1 - i)));
  arv_fake_camera_write_memory(camera, kMacRegister, sizeof mac, mac);
  options.model.resize(kModelBytes - 1);
  arv_fake_camera_write_memory(camera, kModelRegister, kModelBytes, options.model.c_str());
  if (options.colour) arv_fake_camera_write_register(camera, kSensorTypeRegister, 1);
  arv_fake_camera_set_trigger_frequency(camera, options.trigger_hz);
  arv_fake_camera_set_fill_pattern(camera, DrawPattern, nullptr);
  if (options.packet_bytes != 0) arv_fake_camera_write_register(camera, kPacketSizeRegister, options.packet_bytes);
  if (options.paced) PacePackets(camera);
}

void Run(const Options& options) {
  std::optional<TemporaryFile> extended;
  if (!options.additions.empty()) extended.emplace(ExtendedDescription(options.additions));
  const std::string& file = extended ? extended->Path() : options.description;
  const std::unique_ptr<ArvGvFakeCamera, decltype(&g_object_unref)> device(
      arv_gv_fake_camera_new_full(options.address.c_str(), options.serial.c_str(),
                                  file.empty() ? nullptr : file.c_str()),
      g_object_unref);
  extended.reset();
  if (!device || !arv_gv_fake_camera_is_running(device.get())) {
    throw std::runtime_error("the camera does not start on " + options.address);
  }
  g_object_set(device.get(), "gvsp-lost-ratio", options.lost_permille / 1000.0, nullptr);
  Prepare(arv_gv_fake_camera_get_fake_camera(device.get()), options);
  std::cout << "ready" << std::endl;
  while (std::getchar() != EOF) {
  }
}

}  // namespace

int main(int argc, char** argv) {
  // What starts it may be killed.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  Options options;
  CLI::App app("A GigE Vision camera for tests");
  app.add_option("--address", options.address, "of the interface to be on");
  app.add_option("--serial", options.serial);
  app.add_option("--model", options.model);
  app.add_option("--mac", options.mac, "six bytes as one number");
  app.add_option("--lost", options.lost_permille, "of a thousand packets so many are not sent");
  app.add_option("--trigger-hz", options.trigger_hz, "how often the camera looks for a software trigger");
  app.add_flag("--colour", options.colour, "the sensor's type; in additions.xml");
  app.add_option("--packet-bytes", options.packet_bytes,
                 "with its IP, UDP and GVSP headers; this camera sends no test packets");
  app.add_flag("--paced", options.paced, "keep the pause between packets, as a camera on gigabit Ethernet");
  app.add_option("--additions", options.additions, "files of features to add to the stock ones");
  app.add_option("--description", options.description, "a file of all features instead");
  CLI11_PARSE(app, argc, argv);
  try {
    Run(options);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << std::endl;
    return 1;
  }
}

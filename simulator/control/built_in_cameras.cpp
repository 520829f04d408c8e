// control/built_in_cameras.cpp
// The three cameras on a link without configuration.
#include "camera/pixel_format.h"
#include "control/configuration.h"

namespace Simulator {

std::vector<CameraConfiguration> BuiltInCameras() {
  CameraConfiguration mono;
  mono.id = "DEV_000F31034C65";
  mono.model = "Manta G-507B (E0022705)";
  mono.serial = "50-0536953957";
  mono.ip = "169.254.76.101";
  mono.mac = "00:0F:31:03:4C:65";
  mono.device_id = "50-0536953957";
  mono.sensor_width = 2464;
  mono.sensor_height = 2056;
  mono.formats = {PixelFormatName::kMono8};

  CameraConfiguration colour = mono;
  colour.id = "DEV_000F31034C66";
  colour.model = "Manta G-507C (E0022706)";
  colour.serial = "50-0536953958";
  colour.ip = "169.254.76.102";
  colour.mac = "00:0F:31:03:4C:66";
  colour.device_id = "50-0536953958";
  colour.colour = true;
  colour.formats = {PixelFormatName::kBayerRG8, PixelFormatName::kMono8, PixelFormatName::kYuv422,
                    PixelFormatName::kRgb8};
  colour.seed = 2;

  CameraConfiguration other = colour;
  other.id = "DEV_000F310199B8";
  other.name = "GC1290C";
  other.model = "GC1290C";
  other.serial = "02-2186A-06584";
  other.ip = "169.254.153.184";
  other.mac = "00:0F:31:01:99:B8";
  other.device_id = "02-2186A-06584";
  other.firmware = "00.01.44.17317";
  other.sensor_width = 1292;
  other.sensor_height = 964;
  other.payload_widest = true;
  other.line_time = Microseconds(31.0);
  other.ticks_per_second = 36'858'974;
  other.sensor_temperature_celsius = 44.0;
  other.main_temperature_celsius = 48.5;
  other.seed = 3;
  return {mono, colour, other};
}

}  // namespace Simulator

// simulated_kelcam_test.cpp
// kelcam over the real module and simulated cameras, with the example profiles.
#include "simulated_kelcam_test.h"

#include <cmath>
#include <fstream>
#include <numeric>
#include <sstream>

std::string SimulatedKelcamTest::Profile(const std::string& name, const std::string& more_lines) const {
  const std::filesystem::path example = std::filesystem::path(KEL_EXAMPLE_PROFILES) / (name + ".ini");
  std::ostringstream text;
  text << std::ifstream(example, std::ios::binary).rdbuf();
  return Write(name + ".ini", text.str() + more_lines);
}

ProcessResult SimulatedKelcamTest::Kelcam(const Arguments& arguments) const {
  const std::string begin = "notice: the cameras are simulated (";
  ProcessResult result = KelcamTest::Kelcam(arguments);
  EXPECT_THAT(result.err, testing::StartsWith(begin));
  EXPECT_EQ(result.err.find(begin, begin.size()), std::string::npos) << result.err;
  result.err.erase(0, result.err.find('\n') + 1);
  return result;
}

ProcessResult SimulatedKelcamTest::Run(const std::string& command, const std::string& profile,
                                       const Arguments& more) const {
  Arguments arguments{"--log", In("log.txt"), command, "--profile", profile};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return Kelcam(arguments);
}

nlohmann::json SimulatedKelcamTest::Info(const std::string& profile) const {
  return Document({"info", "--profile", profile});
}

DecodedPicture SimulatedKelcamTest::Picture(const std::string& profile, const Arguments& more) const {
  // Drawing the first picture takes long in a slow build.
  Arguments arguments{"-o", In("x.png"), "--timeout", "60000"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const ProcessResult result = Run("snap", profile, arguments);
  EXPECT_EQ(result.exit_code, kDone) << result.err;
  DecodedPicture picture = Decoded(Text("x.png"));
  EXPECT_FALSE(picture.pixels.empty());
  return picture;
}

void SimulatedKelcamTest::Simulate(const nlohmann::json& configuration) {
  nlohmann::json all = nlohmann::json::parse(R"({"cameras": [
    {"like": "DEV_000F31034C65", "sensor": {"width": 616, "height": 514}},
    {"like": "DEV_000F31034C66", "sensor": {"width": 616, "height": 514}},
    {"like": "DEV_000F310199B8", "sensor": {"width": 646, "height": 482}}]})");
  all.update(configuration);
  Setting("VIMBA_SIM_CONFIG", Write("simulator.json", all.dump(2)));
}

double Mean(const DecodedPicture& picture, int channel, double left, double top, double right, double bottom) {
  double sum = 0.0;
  int count = 0;
  for (int y = static_cast<int>(std::ceil(top)); y + 1 <= bottom; ++y) {
    for (int x = static_cast<int>(std::ceil(left)); x + 1 <= right; ++x, ++count) {
      sum += picture.pixels.begin()[(std::ptrdiff_t{y} * picture.width + x) * picture.channels + channel];
    }
  }
  return count ? sum / count : -1.0;
}

double Mean(const DecodedPicture& picture) {
  if (picture.pixels.empty()) return -1.0;
  return std::accumulate(picture.pixels.begin(), picture.pixels.end(), 0.0) /
         static_cast<double>(picture.pixels.size());
}

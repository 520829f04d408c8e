// simulated_kelcam_test.h
// kelcam over the real module and simulated cameras, with the example profiles.
#pragma once

#include "kelcam_test.h"
#include "picture_file.h"

class SimulatedKelcamTest : public KelcamTest {
 protected:
  // An example profile, copied into the test's folder (a profile is written to), with more lines.
  std::string Profile(const std::string& name, const std::string& more_lines = {}) const;

  // COMMAND --profile PROFILE and these arguments; the log goes to log.txt.
  ProcessResult Run(const std::string& command, const std::string& profile, const Arguments& more = {}) const;
  // Each run says once, before all else, that its cameras are simulated; what it says apart from that.
  ProcessResult Kelcam(const Arguments& arguments) const;
  nlohmann::json Info(const std::string& profile) const;

  // Snaps x.png; a failure of the test and an empty picture when there is none.
  DecodedPicture Picture(const std::string& profile, const Arguments& more = {}) const;

  // The built-in cameras with small sensors, so that sanitizer builds keep up; what is given is added to that or
  // replaces it.
  void Simulate(const nlohmann::json& configuration = nlohmann::json::object());
};

// The mean of a channel over a part of the picture; right and bottom are outside.
double Mean(const DecodedPicture& picture, int channel, double left, double top, double right, double bottom);
double Mean(const DecodedPicture& picture);

// driver_messages.h
// The driver's messages, taken apart into what they say.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace Kelcam {

// As it came. Of a very long one the beginning.
struct DriverMessage {
  std::string text;  // UTF-8, one line or several
  std::chrono::steady_clock::time_point time;
};

using Lines = std::vector<std::string>;

// What the lines of the messages say, in their order: without number and times, without the camera and the thread in a
// title. Starts and ends of messages are left out.
Lines LinesOf(const std::vector<DriverMessage>& messages);

// Whether a message is about the camera with this identifier: its title names that camera, or none. An empty identifier
// stands for any camera.
bool IsAbout(std::string_view message, std::string_view identifier);

bool Contains(std::string_view text, std::string_view part);
bool AnyContains(const Lines& lines, std::string_view part);
std::size_t CountContaining(const Lines& lines, std::string_view part);

// Equal neighbours become one line that ends in "(10 times)". A Vimba code at the end of a line gets its meaning behind
// it: "VmbCaptureStart failed. Return value = -12 (the camera did not answer in time)".
Lines Condensed(const Lines& lines);

}  // namespace Kelcam

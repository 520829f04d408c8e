// heartbeat.h
// The thread by which Aravis notices that a camera is gone.
#pragma once

#include <arv.h>

#include <chrono>

namespace Bridge {

// How long Aravis takes at most to find that a camera is gone: a second until it asks, five in which it asks again, and
// three for the last question.
inline constexpr std::chrono::seconds kLongestVerdict{10};

// Returns when this thread no longer reports the loss of the camera. Before a device is given up: a report needs a
// reference to it. If the last other one goes before the report begins, there is none to be had, and the program ends;
// if it goes during the report, the thread has the last one, and waits for its own end. Returns at once if the camera
// answers, and after kLongestVerdict at the latest. `is_silent`: it is known that the camera does not answer, and not
// asked again. [any thread but Aravis' own]
void AwaitVerdict(ArvDevice* device, bool is_silent);

}  // namespace Bridge

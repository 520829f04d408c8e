// interrupt.h
// Ctrl-C asks a running command to stop at the next image; a second one ends the program at once.
#pragma once

namespace Kelcam {

void WatchForInterrupt();
bool Interrupted();

}  // namespace Kelcam

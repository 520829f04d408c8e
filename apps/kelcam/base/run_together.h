// run_together.h
// Work that begins at the same time on several threads.
#pragma once

#include <functional>
#include <vector>

namespace Kelcam {

// Runs each task on a thread of its own. None begins before all threads are there. Returns when all have ended. Tasks
// must not throw.
void RunTogether(const std::vector<std::function<void()>>& tasks);

}  // namespace Kelcam

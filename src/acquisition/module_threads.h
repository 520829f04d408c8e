// module_threads.h
// The threads that run the module's code without anybody joining them.
#pragma once

#include "bdetachedthreads.h"

// They belong to the host SDK, which stays when the module is unloaded and loaded again.
inline BDetachedThreads& ModuleThreads() {
  static BDetachedThreads& threads = BDetachedThreads::Of("kelCameraVimba");
  return threads;
}

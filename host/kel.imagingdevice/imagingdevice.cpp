// imagingdevice.cpp
// The one receiver of the process, and the lock that serves its calls one at a time.
#include "imagingdevice.h"

#include <utility>

#include "bmutex.h"

namespace ImagingDevice {
namespace {

struct Output {
  BMutex mutex;
  BSink* sink KEL_GUARDED_BY(mutex) = nullptr;
};

// Never destroyed: threads of a driver may report while the process ends.
Output& TheOutput() {
  static Output& output = *new Output;
  return output;
}

template <class Call>
void CallSink(Call call) {
  Output& output = TheOutput();
  const BMutexLock lock(output.mutex);
  if (!output.sink) return;
  try {
    call(*output.sink);
  } catch (...) {
    // Drivers report from destructors and from threads that nothing can be thrown through.
    return;
  }
}

}  // namespace

BSink::~BSink() = default;

BSink* InstallSink(BSink* sink) {
  Output& output = TheOutput();
  const BMutexLock lock(output.mutex);
  return std::exchange(output.sink, sink);
}

void ShowInfo(const wchar_t* text, const wchar_t* caption) {
  CallSink([=](BSink& sink) { sink.OnShowInfo(text ? text : L"", caption); });
}

void LogMessage(WString text, bool important) {
  CallSink([&](BSink& sink) { sink.OnLogMessage(text, important); });
}

}  // namespace ImagingDevice

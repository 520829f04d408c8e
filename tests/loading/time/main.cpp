// main.cpp
// How long it takes to load the module and call its first export, compared with an empty library in the same run.
//   loading-time MODULE VIMBAC EMPTY ROUNDS LIMIT     1 when the module takes more than LIMIT times as long
// The module's process has the host SDK and VimbaC in it already: their time is spent by whoever asks for them first.
// VimbaC's own is printed with the result.
#include <algorithm>
#include <chrono>
#include <iostream>
#include <stdexcept>
#include <string>

#include "bbaseaoi.h"
#include "bsmartref.h"
#include "imagingdevice.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;
using Release = bool(void**);

constexpr char kFirstExport[] = "ReleaseImagingDevice";

#if defined(_WIN32)
void* Load(const char* file) { return LoadLibraryA(file); }
void* Find(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}
void Unload(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }
#else
void* Load(const char* file) { return dlopen(file, RTLD_NOW | RTLD_LOCAL); }
void* Find(void* library, const char* name) { return dlsym(library, name); }
void Unload(void* library) { dlclose(library); }
#endif

void* LoadOrThrow(const char* file) {
  void* const library = Load(file);
  if (!library) throw std::runtime_error(std::string("cannot load ") + file);
  return library;
}

Microseconds TimeToFirstCall(const char* file) {
  const Clock::time_point start = Clock::now();
  void* const library = LoadOrThrow(file);
  Release* const release = reinterpret_cast<Release*>(Find(library, kFirstExport));
  if (!release || release(nullptr)) throw std::runtime_error(std::string(file) + " does not answer");
  const Microseconds time = Clock::now() - start;
  Unload(library);
  return time;
}

Microseconds TimeToLoad(const char* file) {
  const Clock::time_point start = Clock::now();
  void* const library = LoadOrThrow(file);
  const Microseconds time = Clock::now() - start;
  Unload(library);
  return time;
}

// The shortest of the rounds: what else the machine does only adds.
struct Times {
  Microseconds vimbac = Microseconds::max(), module = Microseconds::max(), empty = Microseconds::max();
};

Times Measure(const char* module, const char* vimbac, const char* empty, int rounds) {
  Times times;
  for (int round = 0; round < rounds; ++round) times.vimbac = std::min(times.vimbac, TimeToLoad(vimbac));
  void* const kept = LoadOrThrow(vimbac);
  for (int round = 0; round < rounds; ++round) {
    times.module = std::min(times.module, TimeToFirstCall(module));
    times.empty = std::min(times.empty, TimeToFirstCall(empty));
  }
  Unload(kept);
  return times;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) return 2;
  try {
    // The whole SDK, as a host has it.
    ImagingDevice::InstallSink(nullptr);
    const BSmartRef<BBaseAoi> area(new BBaseAoi(BBaseAoi::eMono8));
    const Times times = Measure(argv[1], argv[2], argv[3], std::stoi(argv[4]));
    const double ratio = times.module / times.empty;
    std::cout << "module " << times.module.count() << " us, empty library " << times.empty.count() << " us, ratio "
              << ratio << "; VimbaC itself " << times.vimbac.count() << " us\n";
    return ratio <= std::stod(argv[5]) ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << "error: " << error.what() << "\n";
    return 1;
  }
}

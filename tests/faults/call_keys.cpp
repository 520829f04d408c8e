// call_keys.cpp
// The calls of a life as faults name them.
#include "call_keys.h"

#include <map>
#include <tuple>

namespace {

// A device queues its ten frames when it is created. How often it does later, and between which other calls, is chance:
// workers do it. So many of these are numbered.
constexpr std::int64_t kFirstQueueings = 10;
constexpr std::int64_t kLaterQueueings = 12;

}  // namespace

std::vector<CallKey> KeysOf(const std::vector<CallLine>& calls) {
  std::map<std::tuple<std::string, std::string, std::string>, std::int64_t> seen;
  std::vector<CallKey> keys;
  std::vector<CallKey> later;
  for (const CallLine& line : calls) {
    // It answers nothing that could fail.
    if (line.Is("VmbShutdown")) continue;
    const std::int64_t occurrence = ++seen[{line.call, line.camera, line.feature}];
    const CallKey key{line.call, line.camera, line.feature, occurrence};
    if (!line.Is("VmbCaptureFrameQueue") || occurrence <= kFirstQueueings) {
      keys.push_back(key);
    } else if (occurrence == kFirstQueueings + 1) {
      later.push_back(key);
    }
  }
  for (CallKey key : later) {
    for (std::int64_t i = 0; i < kLaterQueueings; ++i, ++key.occurrence) keys.push_back(key);
  }
  return keys;
}

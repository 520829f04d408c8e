// packet_size.cpp
// The GigE stream packet size, negotiated once when a camera is set up.
#include "stream/packet_size.h"

#include <chrono>
#include <cstdint>
#include <tuple>

#include "diagnostics/log_collector.h"
#include "diagnostics/platform.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_features.h"

namespace {

// Network adapters that announce larger frames do not all carry them.
constexpr std::int64_t kLargestPacketBytes = 8228;

}  // namespace

void GVSPAdjustPacketSize(BLogCollector& log, VmbHandle_t camera) {
  if (Vimba::RunCommand(camera, Feature::kGVSPAdjustPacketSize) == VmbErrorSuccess) {
    Vimba::WaitUntilDone(camera, Feature::kGVSPAdjustPacketSize, [] { SleepFor(std::chrono::milliseconds(0)); });
  }
  std::int64_t size = 0;
  if (Vimba::GetInt(camera, Feature::kGVSPPacketSize, size) == VmbErrorSuccess && size > kLargestPacketBytes) {
    log << L"GVSPAdjustPacketSize --> " << size << L'\n';
    std::ignore = Vimba::SetInt(camera, Feature::kGVSPPacketSize, kLargestPacketBytes);
  }
  if (Vimba::GetInt(camera, Feature::kGVSPPacketSize, size) == VmbErrorSuccess) {
    log << L"GVSPPacketSize = " << size << L'\n';
  } else {
    log << L"VmbFeatureIntGet GVSPPacketSize failed" << L'\n';
  }
}

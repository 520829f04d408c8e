// packet_size_properties_test.cpp
// The packet size of random cameras, which may refuse each of the calls.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "VimbaC.h"
#include "diagnostics/log_collector.h"
#include "stream/packet_size.h"
#include "support/host_output.h"
#include "support/random_cases.h"
#include "unit/scripted/scripted_library.h"

namespace {

using Texts = std::vector<std::wstring>;
using Calls = std::vector<std::string>;

constexpr char kSize[] = "GVSPPacketSize";
constexpr std::int64_t kCap = 8228;

// What one camera does.
struct Answers {
  std::int64_t size = 0;
  bool negotiates = true;
  bool readable = true;
  bool writable = true;

  bool IsLowered() const { return readable && size > kCap; }
  std::int64_t Final() const { return IsLowered() && writable ? kCap : size; }
};

struct PacketSizes : RandomCases {
  HostOutput output;
  const VmbHandle_t camera = ScriptedLibrary::Handle(1);

  Answers Draw() {
    constexpr int kEthernetMost = 65'535;
    const bool at_the_cap = random.OneIn(3);
    return {at_the_cap ? random.BetweenWide(kCap - 1, kCap + 1) : random.Between(37, kEthernetMost), !random.OneIn(4),
            !random.OneIn(4), !random.OneIn(4)};
  }
  void Script(const Answers& answers) {
    Library().Reset();
    Library().SetInteger(camera, kSize, answers.size);
    if (!answers.negotiates) Library().Fail("VmbFeatureCommandRun", VmbErrorNotFound, "GVSPAdjustPacketSize");
    if (!answers.readable) Library().Fail("VmbFeatureIntGet", VmbErrorIO, kSize);
    if (!answers.writable) Library().Fail("VmbFeatureIntSet", VmbErrorInvalidAccess, kSize);
  }
  // The lines between title and end.
  Texts Adjust() {
    output.Clear();
    {
      BLogCollector log(L"title");
      GVSPAdjustPacketSize(log, camera);
    }
    Texts lines = LinesOf(output.Diagnostics(L"title").at(0));
    return {lines.begin() + 1, lines.end() - 1};
  }
};

Texts ExpectedLines(const Answers& answers) {
  Texts lines;
  if (answers.IsLowered()) lines.push_back(L"GVSPAdjustPacketSize --> " + std::to_wstring(answers.size));
  lines.push_back(answers.readable ? L"GVSPPacketSize = " + std::to_wstring(answers.Final())
                                   : L"VmbFeatureIntGet GVSPPacketSize failed");
  return lines;
}

Calls ExpectedCalls(const Answers& answers) {
  const std::string get = "VmbFeatureIntGet(GVSPPacketSize)";
  Calls calls{"VmbFeatureCommandRun(GVSPAdjustPacketSize)"};
  if (answers.negotiates) calls.emplace_back("VmbFeatureCommandIsDone(GVSPAdjustPacketSize)");
  calls.push_back(get);
  if (answers.IsLowered()) calls.emplace_back("VmbFeatureIntSet(GVSPPacketSize, 8228)");
  calls.push_back(get);
  return calls;
}

TEST_F(PacketSizes, AreCappedAndReportedWhateverTheCameraRefuses) {
  constexpr int kCameras = 2'000;
  for (int i = 0; i < kCameras; ++i) {
    const Answers answers = Draw();
    Script(answers);
    ASSERT_EQ(Adjust(), ExpectedLines(answers)) << "camera " << i;
    ASSERT_EQ(Library().Calls(), ExpectedCalls(answers)) << "camera " << i;
    ASSERT_EQ(Library().Integer(camera, kSize), answers.Final()) << "camera " << i;
  }
}

}  // namespace

// locale_test.cpp
// A host that writes numbers its own way: messages read alike all the same.
#include <locale>

#include "VimbaC.h"
#include "driver/opened_camera.h"

namespace {

using testing::Contains;
using testing::ElementsAre;

// 1.234.567,5
template <class Char>
struct GroupsAndCommas : std::numpunct<Char> {
  Char do_decimal_point() const override { return ','; }
  Char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

struct Locale : OpenedCamera {
  std::locale before = std::locale::global(
      std::locale(std::locale(std::locale::classic(), new GroupsAndCommas<wchar_t>), new GroupsAndCommas<char>));
  ~Locale() override { std::locale::global(before); }
};

TEST_F(Locale, OfTheHostDoesNotShowInMessages) {
  ASSERT_TRUE(Open(SimulatedCamera().Range("StreamBytesPerSecond", 10'000'000, 125'000'000)));
  const Texts opening = LinesOf(output.Diagnostics(L"Initialize by camera").at(0));
  EXPECT_THAT(opening, Contains(L"StreamBytesPerSecond range = 45000000 , 125000000"));
  Forget();
  cameras->FailCall("VmbFeatureCommandRun", "TriggerSoftware", VmbErrorOther, 1);
  Device().StartSnap(true);
  EXPECT_EQ(Device().Snap(nullptr, 10), BError(BError::eTimeout));
  Device().StopSnap();
  EXPECT_THAT(Message(L"StopSnap!"),
              ElementsAre(L"StopSnap!", L"Start", L"VmbFeatureCommandRun AcquisitionStop returns 0",
                          L"Received 1 Frames [18446744073709551615]", L"Snap failure 12106 #failure = 1", L"End"));
  EXPECT_THAT(Message(L"ChangeBandwidth( -0.1 )"),
              ElementsAre(L"ChangeBandwidth( -0.1 )",
                          L"ChangeBandwidth absolute : 98300000 -> 88500000 (Min=45000000; Max=125000000)", L"End"));
}

TEST_F(Locale, OfTheHostDoesNotShowInFrameRates) {
  profile.Key("CAMFREQ", "0.5");
  ASSERT_TRUE(Open());
  Forget();
  double frames_per_second = 0.0;
  EXPECT_TRUE(Device().FramesPerSecond(frames_per_second));
  EXPECT_THAT(Message(L"FramesPerSecond()"), Contains(L"AcquisitionFrameRateLimit (defined camera INI file) = 0.5000"));
}

}  // namespace

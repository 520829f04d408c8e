// message_stress_test.cpp
// Messages under stress: four devices report at once, and exceptions end operations in the middle.
#include <deque>
#include <regex>
#include <thread>
#include <tuple>

#include "VimbaC.h"
#include "driver/opened_camera.h"
#include "support/message_form.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using testing::Truly;

constexpr int kDevices = 4;
constexpr int kCycles = 40;
constexpr std::uint32_t kTimeoutMs = 30'000;

#if defined(_WIN32)
unsigned long ThisThread() { return GetCurrentThreadId(); }
#else
unsigned long ThisThread() { return static_cast<unsigned long>(syscall(SYS_gettid)); }
#endif

// Every diagnostic message with the thread that brought it.
class Transcript final : public ImagingDevice::BSink {
 public:
  struct Entry {
    std::wstring text;
    unsigned long thread_id;
  };

  Transcript() : m_before(ImagingDevice::InstallSink(this)) {}
  ~Transcript() override { ImagingDevice::InstallSink(m_before); }
  Transcript(const Transcript&) = delete;
  Transcript& operator=(const Transcript&) = delete;

  void OnShowInfo(const wchar_t* text, const wchar_t* caption) override {
    const BMutexLock lock(m_mutex);
    if (caption && !*caption) m_entries.push_back({text, ThisThread()});
  }
  void OnLogMessage(const WString& /*text*/, bool /*important*/) override {}

  std::vector<Entry> Entries() const {
    const BMutexLock lock(m_mutex);
    return m_entries;
  }

 private:
  mutable BMutex m_mutex;
  std::vector<Entry> m_entries KEL_GUARDED_BY(m_mutex);
  ImagingDevice::BSink* m_before;
};

std::wstring NameOf(int number) { return L"Vimba_Manta-G-507B_50-050334000" + std::to_wstring(number); }

// By its size a frame shows in a message whose camera it is of.
int WidthOf(int number) { return 64 + 16 * number; }

// The expressions of GoogleTest know too little on Windows.
auto Fits(const std::string& expression) {
  return Truly([regex = std::regex(expression)](const std::string& text) { return std::regex_search(text, regex); });
}

struct MessageStress : testing::Test {
  std::deque<ProfileFile> profiles;
  std::optional<SimulatedCameras> cameras;
  std::optional<Transcript> transcript{std::in_place};

  MessageStress() {
    std::vector<SimulatedCamera> simulated;
    for (int number = 1; number <= kDevices; ++number) {
      simulated.push_back(SimulatedCamera(number).Sensor(WidthOf(number), 48));
      profiles.emplace_back().Key("Camera_Identifier", "DEV_000F3100000" + std::to_string(number));
    }
    cameras.emplace(simulated);
  }

  // What a host does with one device: good cycles, and every fourth whose start throws.
  void Drive(BImagingDevice& device, int number) {
    for (int cycle = 0; cycle < kCycles; ++cycle) {
      if (cycle % 4 == 3) RefuseNextStart(number);
      try {
        device.StartSnap(cycle % 2 == 0);
        std::ignore = device.Snap(nullptr, cycle % 2 == 0 ? kTimeoutMs : 0);
      } catch (const BError&) {  // the start was refused
      }
      device.StopSnap();
    }
  }
  void RefuseNextStart(int number) {
    cameras->Fault({{"call", "VmbFeatureCommandRun"},
                    {"camera", "DEV_000F3100000" + std::to_string(number)},
                    {"feature", "AcquisitionStart"},
                    {"error", VmbErrorOther}});
  }
  void DriveAllAtOnce() {
    std::deque<OpenDevice> devices;
    for (const ProfileFile& profile : profiles) devices.emplace_back(profile.Open());
    std::vector<std::thread> hosts;
    for (int number = 1; number <= kDevices; ++number) {
      BImagingDevice* const device = devices[static_cast<std::size_t>(number) - 1].Get();
      ASSERT_NE(device, nullptr);
      hosts.emplace_back([this, device, number] { Drive(*device, number); });
    }
    for (std::thread& host : hosts) host.join();
  }
  // The messages of one camera with this beginning of a label.
  std::vector<std::string> Of(int number, const std::wstring& label) const {
    std::vector<std::string> texts;
    for (const Transcript::Entry& entry : transcript->Entries()) {
      const MessageTitle title = TitleOf(entry.text);
      if (title.camera == NameOf(number) && title.label.starts_with(label)) {
        texts.emplace_back(entry.text.begin(), entry.text.end());
      }
    }
    return texts;
  }
};

TEST_F(MessageStress, EveryMessageIsWholeAndBroughtByTheThreadThatItNames) {
  DriveAllAtOnce();
  const std::vector<Transcript::Entry> entries = transcript->Entries();
  EXPECT_GT(entries.size(), std::size_t{3} * kDevices * kCycles);
  for (const Transcript::Entry& entry : entries) {
    EXPECT_EQ(DefectOf(entry.text), "") << std::string(entry.text.begin(), entry.text.end());
    EXPECT_THAT(TitleOf(entry.text).thread_id, AnyOf(0U, entry.thread_id));
  }
}

TEST_F(MessageStress, NoMessageHasALineOfAnotherDevice) {
  DriveAllAtOnce();
  for (int number = 1; number <= kDevices; ++number) {
    const std::string size = "FrameDimension = " + std::to_string(WidthOf(number)) + "x48 ";
    EXPECT_THAT(Of(number, L"OnFrameExt()"), Each(HasSubstr(size)));
    for (int other = 1; other <= kDevices; ++other) {
      if (other == number) continue;
      const std::wstring name = NameOf(other);
      EXPECT_THAT(Of(number, L""), Each(Not(HasSubstr(std::string(name.begin(), name.end())))));
    }
  }
}

// Each kind of message has its own lines, and none of those of a message that is written at the same time.
TEST_F(MessageStress, EachMessageHasTheLinesOfItsOperationAlone) {
  DriveAllAtOnce();
  for (int number = 1; number <= kDevices; ++number) {
    EXPECT_THAT(Of(number, L"StartSnap"),
                AllOf(SizeIs(kCycles), Each(Fits(R"(AcquisitionStart -> (0|-13)\n[^\n]*End\n$)"))));
    EXPECT_THAT(Of(number, L"StopSnap"),
                Each(Fits(R"(: Start\n[^\n]*AcquisitionStop returns 0\n[^\n]*Received [01] Frames [^\n]*\n)")));
    EXPECT_THAT(Of(number, L"OnFrameExt()"),
                Each(Fits(R"(: Start\n[^\n]*Frame context id[^\n]*\n[^\n]*\n[^\n]*End\n$)")));
  }
}

TEST_F(MessageStress, AnExceptionLeavesItsMessageWholeWhileOthersReport) {
  std::deque<OpenDevice> devices;
  for (int number = 1; number < kDevices; ++number)
    devices.emplace_back(profiles[static_cast<std::size_t>(number) - 1].Open());
  std::vector<std::thread> hosts;
  for (int number = 1; number < kDevices; ++number) {
    BImagingDevice* const device = devices[static_cast<std::size_t>(number) - 1].Get();
    ASSERT_NE(device, nullptr);
    hosts.emplace_back([this, device, number] { Drive(*device, number); });
  }
  constexpr int kCreations = 10;
  profiles.back().Key("RotateBy90Degree", "2");
  for (int creation = 0; creation < kCreations; ++creation) {
    EXPECT_THROW(OpenDevice(profiles.back().Open()), BError);
  }
  for (std::thread& host : hosts) host.join();
  int unwound = 0;
  for (const Transcript::Entry& entry : transcript->Entries()) {
    EXPECT_EQ(DefectOf(entry.text), "");
    unwound += entry.text.find(L"Camera initialized: " + NameOf(kDevices)) != std::wstring::npos;
  }
  EXPECT_EQ(unwound, kCreations);
}

}  // namespace

// texts_fuzz.cpp
// What a library answers as text, of any bytes and any length: read, compared and reported as it is.
#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "camera/image_format.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/scripted_cameras.h"
#include "imagingdevice.h"
#include "unit/scripted/scripted_library.h"
#include "vimba/vimba_camera.h"
#include "vimba/vimba_features.h"
#include "vimba/vimba_initialization.h"

namespace {

using Fuzz::Expect;

constexpr VmbUint32_t kLongestTextBytes = 1U << 20U;
// Beyond this a buffer would take most of the time to fill.
constexpr VmbUint32_t kLongestTried = 1U << 12U;

class Messages : public ImagingDevice::BSink {
 public:
  Messages() { ImagingDevice::InstallSink(this); }
  ~Messages() override { ImagingDevice::InstallSink(nullptr); }
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;
  void OnShowInfo(const wchar_t* text, const wchar_t* /*caption*/) override { last = text; }
  void OnLogMessage(const WString& /*text*/, bool /*important*/) override {}

  // A message passes as a zero-terminated text.
  bool LastHas(const std::wstring& line) const {
    return last.find(line.substr(0, std::min(line.find(L'\0'), line.size()))) != std::wstring::npos;
  }

  std::wstring last;
};

VmbUint32_t MaxLength(Fuzz::Input& input) {
  const VmbUint32_t length = input.Bits32();
  return length > kLongestTried && length <= kLongestTextBytes ? length % kLongestTried : length;
}

// What there is of a text before its zero, within the length that was declared.
std::string Believed(const ScriptedLibrary::Text& text) {
  const std::string content = text.content.substr(0, text.max_length);
  return content.substr(0, content.find('\0'));
}

void ReadText(const ScriptedLibrary::Text& text) {
  BString read("as before");
  const VmbError_t code = Vimba::GetString(gVimbaHandle, "Ident", read);
  if (text.max_length > kLongestTextBytes) {
    Expect(code == VmbErrorResources && read == "as before", "a text of more than 1 MiB is not believed");
  } else {
    Expect(code == VmbErrorSuccess && read.Str() == Believed(text), "a text is read up to its zero or its length");
  }
}

void ReadEntry(const char* entry) {
  BString read;
  Expect(Vimba::GetEnum(gVimbaHandle, "SensorType", read) == VmbErrorSuccess, "an entry that is there is read");
  Expect(read == BString(entry), "an entry is read as it is");
}

void StartSystem(const char* entry) {
  Library().SetInteger(gVimbaHandle, "GeVTLIsPresent", 1);
  Messages messages;
  {
    const BSmartRef<VimbaInitialization> system = VimbaInitialization::Open(nullptr);
    Expect(system.Get() != nullptr && Cameras().started == 1, "Vimba is started");
  }
  Expect(Cameras().started == 0, "Vimba is shut down with its object");
  Expect(messages.LastHas(L"Vimba GigE discovery status = " + ToWString(entry).Str()), "a status is reported as it is");
}

void Discover(const ScriptedLibrary::Text& text, const char* entry) {
  Messages messages;
  CameraDiscoveryCallback(gVimbaHandle, "DiscoveryCameraEvent", nullptr);
  const bool believed = text.max_length <= kLongestTextBytes;
  const std::wstring camera = believed ? ToWString(Believed(text).c_str()).Str() : L"failure";
  Expect(messages.LastHas(L"Camera ident (DiscoveryCameraIdent): " + camera), "a camera's name is reported as it is");
  Expect(messages.LastHas(L"Reason (DiscoveryCameraEvent): " + ToWString(entry).Str()), "so is the reason");
}

void Recognise(const char* entry) {
  VimbaCamera camera;
  camera.Adopt(ScriptedLibrary::Handle(2));
  camera.SetNames(L"DEV", ToWString(entry));
  ImageFormat format(camera);
  Expect(format.ReadSensorType() != BString(entry).IEquals("Mono"), "every sensor but Mono sees colours");
  Expect(camera.Prefix().Str().find(L"(" + ToWString(entry).Str() + L")") != std::wstring::npos,
         "a message names its camera as it is");
  std::ignore = camera.Close();
}

}  // namespace

// A length, a text of a string feature up to a separator, and the entry of every enumeration.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Library().Reset();
  Cameras() = {};
  Fuzz::Input input(data, size);
  const VmbUint32_t max_length = MaxLength(input);
  const ScriptedLibrary::Text text{.max_length = max_length, .content = input.Text()};
  const std::string entry = input.Rest();
  Library().SetText(text);
  Library().SetEntry(entry.c_str());
  ReadText(text);
  ReadEntry(entry.c_str());
  Discover(text, entry.c_str());
  Recognise(entry.c_str());
  StartSystem(entry.c_str());
  return 0;
}

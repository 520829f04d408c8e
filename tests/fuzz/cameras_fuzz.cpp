// cameras_fuzz.cpp
// Camera records of any bytes: the list of identifiers, and the searches by serial number, id and address.
#include <algorithm>
#include <deque>
#include <string>
#include <tuple>
#include <vector>

#include "camera/camera_identifier.h"
#include "camera/camera_opening.h"
#include "camera/camera_search.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/scripted_cameras.h"
#include "imagingdevice.h"
#include "iprofile.h"
#include "unit/scripted/scripted_library.h"
#include "vimba/vimba_camera.h"

// The linker puts it in the place of the function that leaves the records of a search unreleased: a fuzzer's process
// would not hold what it leaves.
extern "C" void REPLACED_LEAVE_UNRELEASED(CameraRecords records);

void REPLACED_LEAVE_UNRELEASED(CameraRecords records) { records.clear(); }

namespace {

using Fuzz::Expect;

constexpr VmbUint32_t kMostListed = 128;
constexpr VmbUint32_t kMostBelieved = 4096;

// The texts of one search. Every other key is missing.
class SearchProfile : public IProfile {
 public:
  WString method, serial_number, unique_id, address;

  bool ReadString(const WString& key, WString& value, const WString& default_value) const override {
    const WString* text = key == L"Init.Method"         ? &method
                          : key == L"Serial.Number"     ? &serial_number
                          : key == L"Camera_Identifier" ? &unique_id
                          : key == L"IP"                ? &address
                                                        : nullptr;
    value = text ? *text : default_value;
    return text != nullptr;
  }
  bool ReadInt(const WString&, int&, int, int, int) const override { return false; }
  bool ReadDouble(const WString&, double&, double) const override { return false; }
  bool ReadBool(const WString&, bool&, bool) const override { return false; }
  bool Write(const WString&, const WString&) override { return false; }
};

class CountingSink : public ImagingDevice::BSink {
 public:
  CountingSink() { ImagingDevice::InstallSink(this); }
  ~CountingSink() override { ImagingDevice::InstallSink(nullptr); }
  CountingSink(const CountingSink&) = delete;
  CountingSink& operator=(const CountingSink&) = delete;
  void OnShowInfo(const wchar_t* text, const wchar_t* /*caption*/) override { last = text; }
  void OnLogMessage(const WString& /*text*/, bool /*important*/) override {}
  std::wstring last;
};

// Owns the texts that the records point to.
class Records {
 public:
  void Read(Fuzz::Input& input) {
    const int count = input.Number(0, 9);
    for (int i = 0; i < count; ++i) {
      VmbCameraInfo_t record{};
      record.cameraIdString = Text(input);
      record.cameraName = Text(input);
      record.modelName = Text(input);
      record.serialString = Text(input);
      record.permittedAccess = input.Byte();
      m_records.push_back(record);
    }
    Library().SetCameraRecords(m_records);
  }
  const std::vector<VmbCameraInfo_t>& All() const { return m_records; }

 private:
  // A text that begins with '0' stands for a null pointer.
  const char* Text(Fuzz::Input& input) {
    const std::string text = input.Text();
    if (!text.empty() && text[0] == '0') return nullptr;
    return m_texts.emplace_back(text).c_str();
  }

  std::deque<std::string> m_texts;
  std::vector<VmbCameraInfo_t> m_records;
};

// The identifier as the documents define it, in other words than the driver's.
std::wstring Identifier(const VmbCameraInfo_t& record) {
  std::wstring name = ToWString(record.cameraName).Str();
  if (WString(name).IEquals(L"Manta")) {
    name = ToWString(record.modelName).Str();
    name.resize(std::min(name.find(L'('), name.size()));
    while (!name.empty() && name.back() == L' ') name.pop_back();
    std::replace(name.begin(), name.end(), L' ', L'-');
  }
  return L"Vimba_" + name + L"_" + ToWString(record.serialString).Str();
}

void List(const std::vector<VmbCameraInfo_t>& records, VmbUint32_t claimed) {
  const DList<WString> identifiers = ListIdentifiers();
  std::size_t count = 0;
  for (const WString& identifier : identifiers) {
    const VmbCameraInfo_t record = count < records.size() ? records[count] : VmbCameraInfo_t{};
    Expect(identifier.Str() == Identifier(record), "an identifier is the camera's name and serial number");
    ++count;
  }
  Expect(count == std::min(claimed, kMostListed), "a list has the claimed cameras, at most 128");
}

// Gives how many cameras a list claims.
VmbUint32_t ReadAnswers(Fuzz::Input& input) {
  // The largest number stands for a library that claims nothing.
  const VmbUint32_t claimed =
      std::min(input.Flag() ? VmbUint32_t{input.Byte()} : VmbUint32_t{input.Bits32()}, ScriptedLibrary::kNoClaim - 1);
  Library().SetClaimedCameras({claimed});
  Library().Fail("VmbCamerasList", input.Flag() ? VmbErrorSuccess : -input.Number(0, 9));
  Cameras().query_code = input.Flag() ? VmbErrorSuccess : -input.Number(0, 9);
  const int codes = input.Number(0, 20);
  for (int i = 0; i < codes; ++i) Cameras().open_codes.push_back(-input.Number(0, 9));
  return claimed;
}

void Search(const SearchProfile& profile, const std::vector<VmbCameraInfo_t>& records) {
  CountingSink sink;
  VimbaCamera camera;
  const bool opened = OpenCamera(profile, profile.serial_number, camera);
  Expect(opened == camera.IsOpen(), "a search that succeeds leaves an open camera");
  const bool by_serial = profile.method.IEquals(L"Serial");
  if (opened && by_serial && sink.last.find(L"InitBySerial success") != std::wstring::npos) {
    Expect(std::any_of(records.begin(), records.end(),
                       [&](const VmbCameraInfo_t& record) {
                         return profile.serial_number.IIncludes(ToWString(record.serialString)) &&
                                camera.Identifier().Str() == Identifier(record) &&
                                camera.UniqueId() == ToWString(record.cameraIdString);
                       }),
           "a search by serial number opens a camera of this number");
  }
  if (opened && !by_serial) Expect(sink.last.find(L"success") != std::wstring::npos, "a success is reported");
  if (opened) std::ignore = camera.Close();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Library().Reset();
  Cameras() = {};
  Fuzz::Input input(data, size);
  SearchProfile profile;
  const wchar_t* const methods[] = {L"Serial", L"Uid", L"IP"};
  profile.method = methods[input.Number(0, 2)];
  profile.serial_number = ToWString(input.Text().c_str());
  profile.unique_id = ToWString(input.Text().c_str());
  profile.address = ToWString(input.Text().c_str());
  const VmbUint32_t claimed = ReadAnswers(input);
  Records records;
  records.Read(input);
  List(records.All(), claimed);
  Expect(FetchCameraRecords().size() <= kMostBelieved, "no claim beyond 4,096 cameras is believed");
  Search(profile, records.All());
  const std::vector<std::string> calls = Library().Calls();
  Expect(std::count(calls.begin(), calls.end(), "VmbCameraClose()") == Cameras().opened,
         "every camera that was opened is closed");
  return 0;
}

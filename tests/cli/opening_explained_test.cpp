// opening_explained_test.cpp
// Why a camera could not be opened: each cause with the driver's lines, the reason and the next step.
#include "VimbaC.h"
#include "simulated_kelcam_test.h"

namespace {

using testing::StartsWith;

using nlohmann::json;

constexpr int kEveryTime = 0;
constexpr const char* kBySerial = "API = Vimba\nInit.Method = Serial\nSerial.Number = 50-0536953957\n";
constexpr const char* kColourBySerial = "API = Vimba\nInit.Method = Serial\nSerial.Number = 50-0536953958\n";
constexpr const char* kById = "API = Vimba\nInit.Method = Id\nCamera_Identifier = DEV_000F31034C65\n";
constexpr const char* kByAddress = "API = Vimba\nInit.Method = IP\nIP = 169.254.76.101\n";
constexpr const char* kAttached =
    "; attached: Vimba_Manta-G-507B_50-0536953957, Vimba_Manta-G-507C_50-0536953958, Vimba_GC1290C_02-2186A-06584\n";
constexpr const char* kAddressInUse =
    "why: the camera at this address is attached and cannot be opened: another program has it open";
constexpr const char* kEndThatProgram = "to do: end that program; after a crash, wait 5 seconds and try again\n";

json Fault(const std::string& call, int error, int count = 1) {
  return {{"faults", json::array({{{"call", call}, {"error", error}, {"count", count}}})}};
}

json FeatureFault(const std::string& call, const std::string& feature, int error) {
  return {{"faults", json::array({{{"call", call}, {"feature", feature}, {"error", error}, {"count", kEveryTime}}})}};
}

// What keeps a camera from being opened, and what kelcam says of it.
struct FailedOpening {
  const char* name;
  std::string profile;
  json configuration;
  std::string reason;  // the lines between the error and the hint where the messages are
};

void PrintTo(const FailedOpening& opening, std::ostream* out) { *out << opening.name; }

class OpeningExplained : public SimulatedKelcamTest, public testing::WithParamInterface<FailedOpening> {};

TEST_P(OpeningExplained, NamesTheFailedLinesTheReasonAndTheNextStep) {
  Simulate(GetParam().configuration);
  const std::string profile = Write("camera.ini", GetParam().profile);

  const ProcessResult result = Kelcam({"info", "--profile", profile});

  EXPECT_EQ(result.err, "error: the camera of the profile " + profile + " cannot be opened\n" + GetParam().reason +
                            "(-v prints every message, --log FILE writes them to a file)\n");
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.exit_code, kFailed);
}

const FailedOpening kSystem[] = {
    {"StartUp", kBySerial, Fault("VmbStartup", VmbErrorIncomplete),
     "  Vimba Startup fails : -19 (incomplete)\n"
     "why: the Vimba library does not start\n"
     "to do: install Vimba with its transport layers, or repair its installation\n"},
    {"NoTransportLayer",
     kBySerial,
     {{"system", {{"geVTLIsPresent", false}}}},
     "  GeVTLIsPresent = false\n"
     "why: Vimba has no transport layer for GigE cameras\n"
     "to do: install Vimba's GigE transport layer\n"},
    {"TransportLayerUnknown", kBySerial, FeatureFault("VmbFeatureBoolGet", "GeVTLIsPresent", VmbErrorNotFound),
     "  VmbFeatureBoolGet( GeVTLIsPresent ) returns error : -3 (not found)\n"
     "why: Vimba does not say whether it has a transport layer for GigE cameras\n"
     "to do: repair Vimba's installation\n"},
    {"NoDiscovery", kBySerial, FeatureFault("VmbFeatureCommandRun", "GeVDiscoveryAllOnce", VmbErrorIO),
     "  VmbFeatureCommandRun( GeVDiscoveryAllOnce ) returns error : -20 (input or output failed)\n"
     "why: the search for cameras does not start\n"
     "to do: check that a network adapter is connected and has an address\n"},
};

const FailedOpening kProfile[] = {
    {"NoApi", "Init.Method = IP\nIP = 169.254.76.101\n", json::object(),
     "why: the profile has no key API, so it is for no driver\n"
     "to do: write API = Vimba at the head of the profile\n"},
    {"KeysInASection", std::string("; mine\n[camera]\n") + kByAddress, json::object(),
     "why: the profile's keys are below a section, where the driver does not read them\n"
     "to do: move API and the other keys above the first line in brackets\n"},
    {"OtherDriver", "API = Other\n", json::object(),
     "why: the profile is for another driver\n"
     "to do: write API = Vimba at the head of the profile\n"},
    {"NoCameraNamed", "API = Vimba\n[camera]\nIP = 169.254.76.101\n", json::object(),
     "why: the profile names no camera\n"
     "to do: write Init.Method = Serial and Serial.Number at the head of the profile; kelcam list shows the serial "
     "numbers\n"},
};

const FailedOpening kCamera[] = {
    {"SerialAbsent", "API = Vimba\nInit.Method = Serial\nSerial.Number = 77\n", json::object(),
     std::string("why: no attached camera has this serial number") + kAttached +
         "to do: compare it with kelcam list; check the camera's power and cable, and that it is in the adapter's "
         "subnet\n"},
    {"TooManyCameras",
     kBySerial,
     {{"faults", json::array({{{"call", "VmbCamerasList"}, {"answer", {100000}}, {"count", 10}}})}},
     std::string("  VmbCamerasList failed : 100000 cameras (10 times)\n"
                 "why: Vimba claims more cameras than a network can have") +
         kAttached + "to do: report it to the library's vendor\n"},
    {"SerialInUse", kBySerial, Fault("VmbCameraOpen", VmbErrorInvalidAccess, kEveryTime),
     std::string("  Camera (UniqueId - DEV_000F31034C65): - InitBySerial failed (50-0536953957) (10 times)\n"
                 "why: the camera with this serial number is attached and cannot be opened: another program has it "
                 "open\n") +
         kEndThatProgram},
    {"SerialInUseWithAnAddressToo", std::string(kBySerial) + "IP = 169.254.76.101\n",
     Fault("VmbCameraOpen", VmbErrorInvalidAccess, kEveryTime),
     std::string("  Camera (UniqueId - DEV_000F31034C65): - InitBySerial failed (50-0536953957) (10 times)\n"
                 "  Camera (IP: 169.254.76.101): - InitByAddr failed (2 times)\n"
                 "why: the camera with this serial number is attached and cannot be opened: another program has it "
                 "open\n") +
         kEndThatProgram},
    {"IdInUseByItsOpening", kById, Fault("VmbCameraOpen", VmbErrorInvalidAccess, kEveryTime),
     std::string("  Camera (UniqueId - DEV_000F31034C65): - InitByUid failed (10 times)\n"
                 "why: the camera with this id is attached and cannot be opened: another program has it open") +
         kAttached + kEndThatProgram},
    {"IdAbsent", "API = Vimba\nInit.Method = Id\nCamera_Identifier = DEV_NONE\n", json::object(),
     std::string("  Camera (UniqueId - DEV_NONE): - InitByUid failed (10 times)\n"
                 "why: no camera with this id is attached") +
         kAttached + "to do: compare it with kelcam list --long; check the camera's power and cable\n"},
    // It can be opened by the time that kelcam asks.
    {"IdOpenableAgain", kById, Fault("VmbCameraOpen", VmbErrorInvalidAccess, 10),
     std::string("  Camera (UniqueId - DEV_000F31034C65): - InitByUid failed (10 times)\n"
                 "why: the camera with this id could not be opened, and can be opened now") +
         kAttached + "to do: try again\n"},
    // The answers of the library fit nothing.
    {"IdInUseOrAbsent", kById, Fault("VmbCameraOpen", VmbErrorIO, kEveryTime),
     std::string("  Camera (UniqueId - DEV_000F31034C65): - InitByUid failed (10 times)\n"
                 "why: no camera with this id could be opened: there is none, or another program has it open") +
         kAttached +
         "to do: check the id and the camera's power and cable; end the program that has the camera open\n"},
    {"IdInUse", std::string(kById) + "Ident = Vimba_Manta-G-507B_50-0536953957\nMIIdent = DEV_000F31034C65\n",
     Fault("VmbCameraOpen", VmbErrorInvalidAccess, kEveryTime),
     std::string("  Camera (UniqueId - DEV_000F31034C65): - InitByUid failed (10 times)\n"
                 "why: the camera is attached and cannot be opened: another program has it open") +
         kAttached + kEndThatProgram},
    {"AddressSilent", "API = Vimba\nInit.Method = IP\nIP = 192.0.2.77\n", json::object(),
     std::string("  Camera (IP: 192.0.2.77): - InitByAddr failed (2 times)\n"
                 "why: no camera answers at this address") +
         kAttached +
         "to do: compare it with kelcam list --long; check the camera's power and cable, and that the computer is in "
         "its subnet\n"},
    {"AddressInUse", kByAddress, Fault("VmbCameraOpen", VmbErrorInvalidAccess, kEveryTime),
     std::string("  Camera (IP: 169.254.76.101): - InitByAddr failed (2 times)\n") + kAddressInUse + kAttached +
         kEndThatProgram},
    // The library has another code for it, and permits nobody to open the camera.
    {"AddressNotPermitted",
     kByAddress,
     {{"faults",
       json::array(
           {{{"call", "VmbCameraOpen"}, {"error", VmbErrorTimeout}, {"effect", true}, {"count", kEveryTime}}})}},
     std::string("  Camera (IP: 169.254.76.101): - InitByAddr failed (2 times)\n") + kAddressInUse + kAttached +
         kEndThatProgram},
    {"AddressInUseAfterAnAbsentId", "API = Vimba\nInit.Method = Id\nCamera_Identifier = DEV_1\nIP = 169.254.76.101\n",
     Fault("VmbCameraOpen", VmbErrorInvalidAccess, kEveryTime),
     std::string("  Camera (UniqueId - DEV_1): - InitByUid failed (10 times)\n"
                 "  Camera (IP: 169.254.76.101): - InitByAddr failed (2 times)\n") +
         kAddressInUse + kAttached + kEndThatProgram},
    {"AddressOpenableAgain", kByAddress, Fault("VmbCameraOpen", VmbErrorInvalidAccess, 2),
     std::string("  Camera (IP: 169.254.76.101): - InitByAddr failed (2 times)\n"
                 "why: the camera at this address could not be opened, and can be opened now") +
         kAttached + "to do: try again\n"},
    // The library knows the camera, so it is not absent.
    {"AddressUnclear", kByAddress, Fault("VmbCameraOpen", VmbErrorNotFound, kEveryTime),
     std::string("  Camera (IP: 169.254.76.101): - InitByAddr failed (2 times)\n"
                 "why: no camera could be opened at this address: there is none, or another program has it open") +
         kAttached +
         "to do: check the address and that the computer is in its subnet; end the program that has the camera open\n"},
    {"NoneAttached",
     kByAddress,
     {{"cameras", json::array()}},
     "  Camera (IP: 169.254.76.101): - InitByAddr failed (2 times)\n"
     "why: no camera is attached\n"
     "to do: check power, cable and firewall, and that camera and network adapter are in one subnet\n"},
};

const FailedOpening kSetUp[] = {
    {"NoBayerType", kColourBySerial, json::object(),
     "  ColorCodeMono failed\n"
     "why: the camera does not take the pixel format; without Bayertype a colour camera gets that of GRBG\n"
     "to do: for a colour camera, set Bayertype = RGGB, GBRG, BGGR or GRBG, the order of colours on its sensor\n"},
    {"OtherBayerType", std::string(kColourBySerial) + "Bayertype = BGGR\n", json::object(),
     "  ColorCodeMono failed\n"
     "why: the camera does not have the raw pixel format that Bayertype selects\n"
     "to do: set Bayertype = RGGB, GBRG, BGGR or GRBG, the order of colours on this camera's sensor\n"},
    {"NoColourFormat",
     std::string(kColourBySerial) + "Bayertype = RGGB\nCOLORCODEcolor = YUV\n",
     {{"cameras", json::array({{{"like", "DEV_000F31034C66"}, {"formats", {"BayerRG8"}}}})}},
     "  ColorCodeColor failed\n"
     "why: the camera does not have the pixel format that COLORCODEcolor selects\n"
     "to do: set COLORCODEcolor = YUV, or remove the key\n"},
    {"BinningX", std::string(kBySerial) + "BINNING = 99\n", json::object(),
     "  BinningX failed\n"
     "why: the camera refuses the horizontal binning\n"
     "to do: set BINNING = 1, or remove the key\n"},
    {"BinningY", kBySerial, FeatureFault("VmbFeatureIntSet", "BinningVertical", VmbErrorInvalidValue),
     "  BinningY failed\n"
     "why: the camera refuses the vertical binning\n"
     "to do: set BINNING = 1, or remove the key\n"},
    {"ChipRect", kBySerial, FeatureFault("VmbFeatureIntSet", "Width", VmbErrorInvalidValue),
     "  ChipRect failed\n"
     "why: the camera refuses the area of interest\n"
     "to do: remove AOIX, AOIY, AOIWIDTH and AOIHEIGHT, or set them to the camera's steps\n"},
    {"PayloadSize", kBySerial, FeatureFault("VmbFeatureIntGet", "PayloadSize", VmbErrorNotFound),
     "  PayloadSize failed\n"
     "why: the camera does not report a size of its frames that a buffer can have\n"
     "to do: switch the camera off and on; if it fails again, look for a newer firmware\n"},
    {"CaptureStart", kBySerial, Fault("VmbCaptureStart", VmbErrorTimeout),
     "  VmbCaptureStart failed. Return value = -12 (the camera did not answer in time)\n"
     "why: the library does not start to capture\n"
     "to do: end other programs that use the camera, switch it off and on, and try again\n"},
    {"AcquisitionMode", kBySerial, FeatureFault("VmbFeatureEnumSet", "AcquisitionMode", VmbErrorInvalidValue),
     "  AcquisitionMode failed\n"
     "why: the camera refuses its acquisition mode\n"
     "to do: switch the camera off and on; if it fails again, look for a newer firmware\n"},
    {"Trigger", kBySerial, FeatureFault("VmbFeatureEnumSet", "TriggerSelector", VmbErrorNotFound),
     "  SWTriggerMode failed\n"
     "why: the camera refuses the software trigger\n"
     "to do: use a camera with TriggerSelector, TriggerMode and TriggerSource: this driver needs them\n"},
    {"FrameAnnounce", kBySerial, Fault("VmbFrameAnnounce", VmbErrorResources, kEveryTime),
     "  QueueFrame failed\n"
     "why: the library refuses the buffers for frames (VmbFrameAnnounce, VmbCaptureFrameQueue)\n"
     "to do: end programs that need much memory, or set a smaller area of interest\n"},
    // An earlier failure that the driver got over is shown; the last one is the cause.
    {"FailuresBefore",
     kBySerial,
     {{"cameras", json::array({{{"missing", {"BinningHorizontal", "BinningVertical"}}}})},
      {"faults", json::array({{{"call", "VmbCaptureStart"}, {"error", VmbErrorTimeout}}})}},
     "  BinningX failed\n"
     "  BinningY failed\n"
     "  VmbCaptureStart failed. Return value = -12 (the camera did not answer in time)\n"
     "why: the library does not start to capture\n"
     "to do: end other programs that use the camera, switch it off and on, and try again\n"},
};

const auto kNameOf = [](const testing::TestParamInfo<FailedOpening>& info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(System, OpeningExplained, testing::ValuesIn(kSystem), kNameOf);
INSTANTIATE_TEST_SUITE_P(Profile, OpeningExplained, testing::ValuesIn(kProfile), kNameOf);
INSTANTIATE_TEST_SUITE_P(Camera, OpeningExplained, testing::ValuesIn(kCamera), kNameOf);
INSTANTIATE_TEST_SUITE_P(SetUp, OpeningExplained, testing::ValuesIn(kSetUp), kNameOf);

class FailedOpenings : public SimulatedKelcamTest {};

TEST_F(FailedOpenings, ARotationThatTheDriverDoesNotHaveIsFollowedByTheNextStep) {
  const ProcessResult result = Run("info", Profile("mono", "\nRotateBy90Degree = 2\n"));

  EXPECT_THAT(result.err, StartsWith("error 8420: "));
  EXPECT_THAT(result.err, testing::EndsWith("\nto do: set RotateBy90Degree = 1, -1 or 0, or remove the key\n"));
}

TEST_F(FailedOpenings, TheReasonIsInTheDocument) {
  Simulate(Fault("VmbCaptureStart", VmbErrorTimeout));
  const std::string profile = Profile("mono");

  EXPECT_EQ(Document({"info", "--profile", profile})["error"],
            (json{{"code", 0},
                  {"text", "the camera of the profile " + profile + " cannot be opened"},
                  {"messages", {"VmbCaptureStart failed. Return value = -12 (the camera did not answer in time)"}},
                  {"why", "the library does not start to capture"},
                  {"toDo", "end other programs that use the camera, switch it off and on, and try again"}}));
}

}  // namespace

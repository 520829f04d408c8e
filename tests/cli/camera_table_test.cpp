// camera_table_test.cpp
// kelcam list --long over simulated cameras.
#include "simulated_kelcam_test.h"

namespace {

class CameraTable : public SimulatedKelcamTest {};

TEST_F(CameraTable, HasALineForEachCamera) {
  const ProcessResult result = Kelcam({"list", "--long"});

  EXPECT_EQ(result.out,
            "NO  ID                MODEL                    SERIAL          ADDRESS          ACCESS  CAMERA\n"
            "1   DEV_000F31034C65  Manta G-507B (E0022705)  50-0536953957   169.254.76.101   full    simulated\n"
            "2   DEV_000F31034C66  Manta G-507C (E0022706)  50-0536953958   169.254.76.102   full    simulated\n"
            "3   DEV_000F310199B8  GC1290C                  02-2186A-06584  169.254.153.184  full    simulated\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(CameraTable, IsPartOfTheDocument) {
  const auto document = Document({"list", "--long"});

  EXPECT_EQ(document["cameras"].size(), 3u);
  EXPECT_EQ(document["details"][1], nlohmann::json::parse(R"json({
    "number": 2, "id": "DEV_000F31034C66", "model": "Manta G-507C (E0022706)", "serial": "50-0536953958",
    "address": "169.254.76.102", "access": "full", "simulated": true})json"));
}

TEST_F(CameraTable, ShowsACameraInUseWithoutItsAddress) {
  const auto details = Document({"--simulated=in-use", "list", "--long"})["details"];

  EXPECT_EQ(details[0]["access"], "in use");
  EXPECT_EQ(details[0]["address"], nullptr);
  EXPECT_EQ(details[1]["access"], "full");
}

TEST_F(CameraTable, ShowsNoControlCharacters) {
  const ProcessResult result = Kelcam({"--simulated=hostile-texts", "list", "--long"});

  EXPECT_THAT(result.out, testing::HasSubstr("bell? escape?[31m"));
  EXPECT_EQ(result.out.find('\x1B'), std::string::npos);
}

TEST_F(CameraTable, IsEmptyWithoutCameras) {
  Setting("VIMBA_SIM_CONFIG", Write("none.json", R"({"cameras": []})"));

  const ProcessResult result = Kelcam({"list", "--long"});

  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "notice: no camera found\n");
}

}  // namespace

// profile_test.cpp
// Profiles that cannot be read or do not lead to a camera.
#include "kelcam_test.h"

namespace {

class Profiles : public ScriptedKelcamTest {};

TEST_F(Profiles, AMissingProfileIsNamed) {
  profile = In("none.ini");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err.rfind("error 8400: the profile " + profile + " cannot be read: ", 0), 0u) << result.err;
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(Profiles, AMalformedProfileIsNamedWithItsLine) {
  profile = Write("bad.ini", "API = Vimba\n[never closed\n");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err.rfind("error 8401: the profile " + profile + " is malformed, line 2: ", 0), 0u) << result.err;
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(Profiles, AProfileErrorIsADocumentToo) {
  profile = In("none.ini");

  EXPECT_EQ(Document(With("info"))["error"]["code"], 8400);
}

TEST_F(Profiles, ACameraThatDoesNotOpenIsAnErrorWithTheLastNotices) {
  Script("open=null");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err, "error: the camera of the profile " + profile +
                            " cannot be opened; the driver's last messages were:\n"
                            "  Initialize camera \u00fc\n"
                            "  Camera 1: does not answer\n"
                            "  ChipRect failed\n"
                            "(every message: -v shows them, --log FILE keeps them)\n");
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(Profiles, AnErrorThrownWhileOpeningIsTold) {
  Script("open=8420");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err,
            "error 8420: the profile camera asks for a rotation that the driver does not have: RotateBy90Degree = 2\n");
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(Profiles, ComplaintsAboutValuesAreNotices) {
  profile = Write("odd.ini", "Number = eleven\n");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err.rfind("notice: ", 0), 0u) << result.err;
  EXPECT_NE(result.err.find("Number"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("eleven"), std::string::npos) << result.err;
  EXPECT_EQ(result.exit_code, 0);
}

}  // namespace

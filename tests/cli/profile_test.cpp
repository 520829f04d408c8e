// profile_test.cpp
// Profiles that cannot be read or do not lead to a camera.
#include "berror.h"
#include "kelcam_test.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace {

using testing::StartsWith;

class Profiles : public ScriptedKelcamTest {};

TEST_F(Profiles, AMissingProfileIsNamed) {
  m_profile = In("none.ini");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_THAT(result.err, StartsWith("error 8400: the profile " + m_profile + " cannot be read: "));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Profiles, AMalformedProfileIsNamedWithItsLine) {
  m_profile = Write("bad.ini", "API = Vimba\n[never closed\n");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_THAT(result.err, StartsWith("error 8401: the profile " + m_profile + " is malformed, line 2: "));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Profiles, AProfileErrorIsADocumentToo) {
  m_profile = In("none.ini");

  EXPECT_EQ(Document(With("info"))["error"]["code"], BError::eProfileNotReadable);
}

TEST_F(Profiles, ACameraThatDoesNotOpenIsAnErrorWithItsReason) {
  Script("open=null");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err, "error: the camera of the profile " + m_profile +
                            " cannot be opened\n"
                            "  ChipRect failed\n"
                            "why: the camera refuses the area of interest\n"
                            "to do: remove AOIX, AOIY, AOIWIDTH and AOIHEIGHT, or set them to the camera's steps\n"
                            "(-v prints every message, --log FILE writes them to a file)\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Profiles, AnErrorThrownWhileOpeningIsPrinted) {
  Script(Codes("open", {BError::eBadRotation}));

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err,
            "error 8420: the profile camera asks for a rotation that the driver does not have: RotateBy90Degree = 2\n"
            "to do: set RotateBy90Degree = 1, -1 or 0, or remove the key\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Profiles, ComplaintsAboutValuesAreNotices) {
  m_profile = Write("odd.ini", "Number = eleven\n");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err,
            "notice: " + m_profile + ", line 1: Number = eleven is not used, it is not a whole number from 0 to 10\n");
  EXPECT_EQ(result.exit_code, kDone);
}

#if !defined(_WIN32)
TEST_F(Profiles, APipeIsNotWaitedFor) {
  m_profile = In("pipe.ini");
  ASSERT_EQ(::mkfifo(m_profile.c_str(), 0600), 0);

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err,
            "error 8400: the profile " + m_profile + " cannot be read: it is a pipe (FIFO), not a regular file\n");
  EXPECT_EQ(result.exit_code, kFailed);
}
#endif

TEST_F(Profiles, AFolderIsNone) {
  m_profile = In("");

  EXPECT_EQ(Kelcam(With("info")).err, "error 8400: the profile " + m_profile + " cannot be read: Is a directory\n");
}

}  // namespace

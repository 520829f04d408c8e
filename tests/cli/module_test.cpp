// module_test.cpp
// Loading the module: what is no module is named.
#include "kelcam_test.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ModuleLoading : public KelcamTest {};

TEST_F(ModuleLoading, AMissingModuleIsNamed) {
  const ProcessResult result = Kelcam({"--module", In("none.module"), "list"});

  EXPECT_THAT(result.err, StartsWith("error: the module " + In("none.module") + " cannot be loaded: "));
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(ModuleLoading, AFileThatIsNoLibraryIsNamed) {
  const std::string file = Write("text.module", "this is no library");

  const ProcessResult result = Kelcam({"--module", file, "list"});

  EXPECT_THAT(result.err, StartsWith("error: the module " + file + " cannot be loaded: "));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(ModuleLoading, ALackingExportIsNamed) {
  const std::string file = (ProgramFile("kelcam").parent_path() / "kelcam-incomplete-module.module").string();

  const ProcessResult result = Kelcam({"--module", file, "list"});

  EXPECT_EQ(result.err, "error: the module " + file + " does not export Vimba_ReleaseImagingDevice\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(ModuleLoading, TheErrorIsADocumentToo) {
  const auto document = Document({"--module", In("none.module"), "list"});

  constexpr int kNoCode = 0;
  EXPECT_EQ(document["error"]["code"], kNoCode);
  EXPECT_THAT(document["error"]["text"].get<std::string>(), HasSubstr(In("none.module")));
}

}  // namespace

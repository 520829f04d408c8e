// module_test.cpp
// Loading the module: what is no module is named.
#include "kelcam_test.h"

namespace {

class ModuleLoading : public KelcamTest {};

TEST_F(ModuleLoading, AMissingModuleIsNamed) {
  const ProcessResult result = Kelcam({"--module", In("none.module"), "list"});

  EXPECT_EQ(result.err.rfind("error: the module " + In("none.module") + " cannot be loaded: ", 0), 0u) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(ModuleLoading, AFileThatIsNoLibraryIsNamed) {
  const std::string file = Write("text.module", "this is no library");

  const ProcessResult result = Kelcam({"--module", file, "list"});

  EXPECT_EQ(result.err.rfind("error: the module " + file + " cannot be loaded: ", 0), 0u) << result.err;
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(ModuleLoading, ALackingExportIsNamed) {
  const std::string file = (ProgramFile("kelcam").parent_path() / "kelcam-incomplete-module.module").string();

  const ProcessResult result = Kelcam({"--module", file, "list"});

  EXPECT_EQ(result.err, "error: the module " + file + " lacks the export Vimba_ReleaseImagingDevice\n");
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(ModuleLoading, TheErrorIsADocumentToo) {
  const auto document = Document({"--module", In("none.module"), "list"});

  EXPECT_EQ(document["error"]["code"], 0);
  EXPECT_NE(document["error"]["text"].get<std::string>().find(In("none.module")), std::string::npos);
}

}  // namespace

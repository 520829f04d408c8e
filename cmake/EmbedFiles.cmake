# EmbedFiles.cmake
# Run as a script: writes OUTPUT, a C++ source with the content of FILES for apps/kelcam/view/page_files.h. Texts are written
# as lists of numbers, which every compiler takes at any length.
set(tables)
set(rows)
list(SORT FILES)
set(number 0)
foreach(file ${FILES})
  cmake_path(GET file FILENAME name)
  file(READ ${file} bytes HEX)
  # Sixteen bytes a line.
  string(REPEAT "[0-9a-f]" 32 line)
  string(REGEX REPLACE "(${line})" "\\1\n" bytes "${bytes}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
  string(APPEND tables "constexpr char kFile${number}[] = {\n${bytes}};\n")
  string(APPEND rows "    {\"${name}\", {kFile${number}, sizeof(kFile${number})}},\n")
  math(EXPR number "${number} + 1")
endforeach()
file(WRITE ${OUTPUT} "// Made by cmake/EmbedFiles.cmake.
#include \"view/page_files.h\"

namespace Kelcam {
namespace {

${tables}
constexpr PageFile kFiles[] = {
${rows}};

}  // namespace

std::span<const PageFile> PageFiles() { return kFiles; }

}  // namespace Kelcam
")

// camera/description.cpp
// A camera's description of its features, made of the one that Aravis has and of what is added to it.
#include "camera/description.h"

#include <arv.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace {

std::string StockDescription() {
  const std::unique_ptr<ArvFakeCamera, decltype(&g_object_unref)> camera(arv_fake_camera_new("description"),
                                                                         g_object_unref);
  std::size_t size_bytes = 0;
  const char* const text = arv_fake_camera_get_genicam_xml(camera.get(), &size_bytes);
  return {text, size_bytes};
}

std::string TextOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (!(text << stream.rdbuf())) throw std::runtime_error("cannot read " + file);
  return text.str();
}

void InsertBefore(std::string& text, const std::string& mark, std::size_t from, const std::string& added) {
  const std::size_t place = text.find(mark, from);
  if (place == std::string::npos) throw std::runtime_error("the stock description has no " + mark);
  text.insert(place, added);
}

// One node of the additions.
void Add(std::string& description, const std::smatch& node) {
  const std::string head = '<' + node[1].str() + " Name=\"" + node[2].str() + '"';
  const std::string end = "</" + node[1].str() + '>';
  const std::size_t earlier = description.find(head);
  if (earlier == std::string::npos) {
    InsertBefore(description, "</RegisterDescription>", 0, node[0]);
  } else if (node[1] == "Enumeration") {
    InsertBefore(description, "<pValue>", earlier, node[3]);
  } else {
    description.replace(earlier, description.find(end, earlier) + end.size() - earlier, node[0]);
  }
}

}  // namespace

std::string ExtendedDescription(const std::vector<std::string>& files) {
  static const std::regex kNode(R"re(<(\w+) Name="(\w+)">([^]*?)</\1>)re");
  std::string description = StockDescription();
  for (const std::string& file : files) {
    const std::string added = TextOf(file);
    for (std::sregex_iterator node(added.begin(), added.end(), kNode), end; node != end; ++node)
      Add(description, *node);
  }
  return description;
}

TemporaryFile::TemporaryFile(const std::string& text)
    : m_path((std::filesystem::temp_directory_path() / "camera_XXXXXX").string()) {
  const int file = mkstemp(m_path.data());
  if (file < 0) throw std::runtime_error("cannot create " + m_path);
  close(file);
  std::ofstream(m_path, std::ios::binary) << text;
}

TemporaryFile::~TemporaryFile() { unlink(m_path.c_str()); }

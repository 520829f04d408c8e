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

void Extend(std::string& description, const std::string& added) {
  static const std::regex kEnumeration(R"re(<Enumeration Name="(\w+)">([^]*?)</Enumeration>)re");
  std::string others;
  auto after = added.cbegin();
  for (std::sregex_iterator found(added.begin(), added.end(), kEnumeration), end; found != end; ++found) {
    others.append(after, (*found)[0].first);
    after = (*found)[0].second;
    const std::size_t stock = description.find("<Enumeration Name=\"" + (*found)[1].str() + "\"");
    if (stock == std::string::npos) {
      others += (*found)[0];
    } else {
      InsertBefore(description, "<pValue>", stock, (*found)[2]);
    }
  }
  others.append(after, added.cend());
  InsertBefore(description, "</RegisterDescription>", 0, others);
}

}  // namespace

std::string ExtendedDescription(const std::vector<std::string>& files) {
  std::string description = StockDescription();
  for (const std::string& file : files) Extend(description, TextOf(file));
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

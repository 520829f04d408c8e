// camera/description.h
// A camera's description of its features, made of the one that Aravis has and of what is added to it.
#pragma once

#include <string>
#include <vector>

// The stock description with the nodes of the files. One that has the name of an earlier one takes its place; an
// enumeration gives that one its entries. Throws std::runtime_error when a file cannot be read or a node fits nowhere.
std::string ExtendedDescription(const std::vector<std::string>& files);

// A text in a file of its own for as long as the object lives.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& text);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& Path() const { return m_path; }

 private:
  std::string m_path;
};

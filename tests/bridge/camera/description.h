// camera/description.h
// A camera's description of its features, made of the one that Aravis has and of what is added to it.
#pragma once

#include <string>
#include <vector>

// The stock description with what the files add: an <Enumeration> of a name that is there already gives its entries to that
// one, everything else is added at the end. There a node takes the place of an earlier one of its name. Throws
// std::runtime_error when something fits nowhere.
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

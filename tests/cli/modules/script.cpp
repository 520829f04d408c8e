// script.cpp
// What a test has the scripted module do.
#include "script.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

Script::Script() {
  const char* text = std::getenv("KELCAM_TEST_SCRIPT");
  const BMutexLock lock(m_mutex);
  std::istringstream words(text ? text : "");
  for (std::string word; words >> word;) {
    const std::size_t equals = word.find('=');
    std::istringstream list(word.substr(equals + 1));
    Values values;
    for (std::string value; std::getline(list, value, ',');) values.list.push_back(value);
    m_values[word.substr(0, equals)] = values;
  }
}

std::string Script::Next(const std::string& key, const std::string& default_value) {
  const BMutexLock lock(m_mutex);
  const auto found = m_values.find(key);
  if (found == m_values.end()) return default_value;
  Values& values = found->second;
  return values.list[std::min(values.next++, values.list.size() - 1)];
}

Script& TheScript() {
  static Script script;
  return script;
}

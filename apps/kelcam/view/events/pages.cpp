// pages.cpp
// The pages that are open.
#include "view/events/pages.h"

#include <algorithm>
#include <utility>

namespace Kelcam {
namespace {

constexpr std::size_t kShortestName = 8;
constexpr std::size_t kLongestName = 32;

bool IsLetterOrDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

bool Pages::IsName(const std::string& text) {
  return text.size() >= kShortestName && text.size() <= kLongestName &&
         std::all_of(text.begin(), text.end(), IsLetterOrDigit);
}

bool Pages::HasRoomFor(const std::string& name) const {
  const BMutexLock lock(m_mutex);
  return m_pages.size() < kMost || m_pages.contains(name);
}

std::uint64_t Pages::Add(const std::string& name, std::shared_ptr<EventStream> stream, std::uint64_t old_messages) {
  const BMutexLock lock(m_mutex);
  Page& page = m_pages[name];
  if (page.stream) page.stream->Close();
  page = {name, std::move(stream), ++m_openings, true, 0, old_messages};
  return m_openings;
}

bool Pages::Remove(const std::string& name, std::uint64_t opening) {
  const BMutexLock lock(m_mutex);
  const auto found = m_pages.find(name);
  if (found == m_pages.end() || found->second.opening != opening) return false;
  m_pages.erase(found);
  return true;
}

bool Pages::Has(const std::string& name) const {
  const BMutexLock lock(m_mutex);
  return m_pages.contains(name);
}

void Pages::CloseAll() {
  const BMutexLock lock(m_mutex);
  for (auto& [name, page] : m_pages) page.stream->Close();
  m_pages.clear();
}

std::vector<Pages::Page> Pages::All() const {
  const BMutexLock lock(m_mutex);
  std::vector<Page> pages;
  for (const auto& [name, page] : m_pages) pages.push_back(page);
  return pages;
}

void Pages::NoteSent(const Page& page, std::uint64_t messages) {
  const BMutexLock lock(m_mutex);
  const auto found = m_pages.find(page.name);
  if (found == m_pages.end() || found->second.opening != page.opening) return;
  found->second.is_new = false;
  found->second.messages = messages;
}

}  // namespace Kelcam

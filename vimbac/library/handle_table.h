// library/handle_table.h
// Opened cameras by the handles that callers have of them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "VimbaC.h"

namespace VimbaLibrary {

// A handle is a number that is only ever looked up, and no number is used twice: a stale handle is recognised. Takes no
// lock: its owner does.
template <class Opened>
class HandleTable {
 public:
  VmbHandle_t NextHandle() { return reinterpret_cast<VmbHandle_t>(m_next++); }

  void Add(VmbHandle_t handle, std::shared_ptr<Opened> opened) { m_opened.emplace(handle, std::move(opened)); }
  // Null when there is none, as below.
  std::shared_ptr<Opened> Find(VmbHandle_t handle) const {
    const auto found = m_opened.find(handle);
    return found == m_opened.end() ? nullptr : found->second;
  }
  std::shared_ptr<Opened> Remove(VmbHandle_t handle) {
    const auto found = m_opened.find(handle);
    return found == m_opened.end() ? nullptr : std::move(m_opened.extract(found).mapped());
  }
  std::vector<std::shared_ptr<Opened>> All() const {
    std::vector<std::shared_ptr<Opened>> all;
    all.reserve(m_opened.size());
    for (const auto& [handle, opened] : m_opened) all.push_back(opened);
    return all;
  }
  void Clear() { m_opened.clear(); }

 private:
  std::map<VmbHandle_t, std::shared_ptr<Opened>> m_opened;
  // Far from gVimbaHandle.
  std::uintptr_t m_next = 0x1000;
};

}  // namespace VimbaLibrary

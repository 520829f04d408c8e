// pages.h
// The pages that are open.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bmutex.h"
#include "view/http/http_exchange.h"

namespace Kelcam {

// [any thread]
class Pages {
 public:
  static constexpr std::size_t kMost = 32;

  // A page as events see it.
  struct Page {
    std::string name;
    std::shared_ptr<EventStream> stream;
    std::uint64_t opening = 0;     // different for each opening of a page of this name
    bool is_new = true;            // has got nothing yet
    std::uint64_t messages = 0;    // how many there were of the driver's when it had got its last one
    std::uint64_t old_before = 0;  // how many there were when it came
  };

  static bool IsName(const std::string& text);

  // False: there are too many. One of the same name is closed.
  bool HasRoomFor(const std::string& name) const;
  // The opening's number, for Remove.
  std::uint64_t Add(const std::string& name, std::shared_ptr<EventStream> stream, std::uint64_t old_messages);
  // False: another one of this name has come since.
  bool Remove(const std::string& name, std::uint64_t opening);
  bool Has(const std::string& name) const;
  void CloseAll();

  std::vector<Page> All() const;
  // What the page has got by now.
  void NoteSent(const Page& page, std::uint64_t messages);

 private:
  mutable BMutex m_mutex;
  std::map<std::string, Page> m_pages KEL_GUARDED_BY(m_mutex);
  std::uint64_t m_openings KEL_GUARDED_BY(m_mutex) = 0;
};

}  // namespace Kelcam

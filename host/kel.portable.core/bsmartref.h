// bsmartref.h
// The smart reference: one pointer to a reference-counted object, null allowed everywhere.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "bsmartobj.h"

// Holds one reference of the object it points to: copying takes another (Ref), going away or being assigned drops it
// (Unref). Made from a plain pointer it takes a reference of its own. It is exactly one pointer in size, which is how
// it crosses the module boundary. Several threads may hold references to one object; one reference belongs to one
// thread at a time.
template <class Object>
class BSmartRef {
 public:
  BSmartRef() = default;
  BSmartRef(std::nullptr_t) {}
  BSmartRef(Object* object) : m_object(object) {
    if (m_object) m_object->Ref();
  }
  BSmartRef(const BSmartRef& other) : BSmartRef(other.m_object) {}
  // The other one is null afterwards.
  BSmartRef(BSmartRef&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  template <class Derived, class = std::enable_if_t<std::is_convertible_v<Derived*, Object*>>>
  BSmartRef(const BSmartRef<Derived>& other) : BSmartRef(other.Get()) {}
  BSmartRef& operator=(BSmartRef other) noexcept {
    std::swap(m_object, other.m_object);
    return *this;
  }
  ~BSmartRef() {
    if (m_object) m_object->Unref();
  }

  Object* Get() const { return m_object; }
  Object* operator->() const { return m_object; }  // not for a null reference; nor is *
  Object& operator*() const { return *m_object; }
  explicit operator bool() const { return m_object != nullptr; }

  // The same object.
  friend bool operator==(const BSmartRef& a, const BSmartRef& b) { return a.m_object == b.m_object; }
  friend bool operator!=(const BSmartRef& a, const BSmartRef& b) { return a.m_object != b.m_object; }

 private:
  Object* m_object = nullptr;
};

// dlist.h
// The host's doubly linked list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

// Owns its elements. Fields and virtual operations are in the host's order (head, tail, count; destructor, append a
// list, append a value, insert a value): the list crosses the module boundary by reference and is filled through its
// virtual operations. No two of them share a name: one of the compilers' layouts puts overloads in reverse. Whoever
// clears it frees its nodes: both sides share one C++ runtime and its allocator. An element that cannot be made leaves
// the list as it was before that element.
template <class Value>
class DList {
 public:
  struct Node {
    Value value;
    Node* previous = nullptr;
    Node* next = nullptr;
  };

  // Walks forward; good until its element goes.
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Value;
    using difference_type = std::ptrdiff_t;
    using pointer = const Value*;
    using reference = const Value&;

    explicit Iterator(const Node* node = nullptr) : m_node(node) {}
    reference operator*() const { return m_node->value; }
    pointer operator->() const { return &m_node->value; }
    Iterator& operator++() {
      m_node = m_node->next;
      return *this;
    }
    Iterator operator++(int) { return Iterator(std::exchange(m_node, m_node->next)); }
    friend bool operator==(const Iterator& a, const Iterator& b) { return a.m_node == b.m_node; }
    friend bool operator!=(const Iterator& a, const Iterator& b) { return a.m_node != b.m_node; }

   private:
    const Node* m_node;
  };

  DList() = default;
  DList(const DList& other) : DList() { DList::AppendAll(other); }
  DList& operator=(const DList& other) {
    if (this == &other) return *this;
    DList copy(other);
    std::swap(m_head, copy.m_head);
    std::swap(m_tail, copy.m_tail);
    std::swap(m_count, copy.m_count);
    return *this;
  }
  virtual ~DList() { Clear(); }

  // Copies of all elements of the other list, at the tail. A list may be appended to itself.
  virtual void AppendAll(const DList& other) {
    const Node* node = other.m_head;
    for (std::uint32_t left = other.m_count; left > 0; --left, node = node->next) Append(node->value);
  }
  // A copy of the value at the tail.
  virtual void Append(const Value& value) {
    Node* node = new Node{value, m_tail, nullptr};
    (m_tail ? m_tail->next : m_head) = node;
    m_tail = node;
    ++m_count;
  }
  // A copy of the value at the head.
  virtual void Insert(const Value& value) {
    Node* node = new Node{value, nullptr, m_head};
    (m_head ? m_head->previous : m_tail) = node;
    m_head = node;
    ++m_count;
  }

  void Clear() {
    for (Node* node = std::exchange(m_head, nullptr); node;) delete std::exchange(node, node->next);
    m_tail = nullptr;
    m_count = 0;
  }
  std::uint32_t Count() const { return m_count; }
  bool IsEmpty() const { return m_count == 0; }
  const Node* Head() const { return m_head; }  // null in an empty list; so is the tail
  const Node* Tail() const { return m_tail; }
  Iterator begin() const { return Iterator(m_head); }
  Iterator end() const { return Iterator(); }

 private:
  Node* m_head = nullptr;
  Node* m_tail = nullptr;
  std::uint32_t m_count = 0;
};

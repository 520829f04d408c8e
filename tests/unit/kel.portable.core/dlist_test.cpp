// dlist_test.cpp
// The doubly linked list.
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "../table_place.h"
#include "dlist.h"
#include "wstring.h"

namespace {

using Numbers = std::vector<int>;

DList<int> ListOf(const Numbers& numbers) {
  DList<int> list;
  for (const int number : numbers) list.Append(number);
  return list;
}

Numbers Forward(const DList<int>& list) { return Numbers(list.begin(), list.end()); }

Numbers Backward(const DList<int>& list) {
  Numbers numbers;
  for (const auto* node = list.Tail(); node; node = node->previous) numbers.push_back(node->value);
  return numbers;
}

TEST(List, IsEmptyAtFirst) {
  const DList<WString> list;

  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.Count(), 0u);
  EXPECT_EQ(list.Head(), nullptr);
  EXPECT_EQ(list.Tail(), nullptr);
  EXPECT_TRUE(list.begin() == list.end());
}

TEST(List, AppendsAtTheTail) {
  const DList<int> list = ListOf({1, 2, 3});

  EXPECT_EQ(Forward(list), (Numbers{1, 2, 3}));
  EXPECT_EQ(Backward(list), (Numbers{3, 2, 1}));
  EXPECT_EQ(list.Count(), 3u);
}

TEST(List, InsertsAtTheHead) {
  DList<int> list;

  list.Insert(2);
  list.Insert(1);
  list.Append(3);

  EXPECT_EQ(Forward(list), (Numbers{1, 2, 3}));
  EXPECT_EQ(Backward(list), (Numbers{3, 2, 1}));
}

TEST(List, AppendsAnotherList) {
  DList<int> list = ListOf({1});

  list.AppendAll(ListOf({2, 3}));
  list.AppendAll(DList<int>());

  EXPECT_EQ(Forward(list), (Numbers{1, 2, 3}));
}

TEST(List, AppendsItself) {
  DList<int> list = ListOf({1, 2});

  list.AppendAll(list);

  EXPECT_EQ(Forward(list), (Numbers{1, 2, 1, 2}));
  EXPECT_EQ(list.Count(), 4u);
}

TEST(List, AppendsItsOwnElement) {
  DList<int> list = ListOf({1, 2});

  list.Append(list.Head()->value);

  EXPECT_EQ(Forward(list), (Numbers{1, 2, 1}));
}

TEST(List, IsCopiedElementByElement) {
  DList<int> original = ListOf({1, 2});
  DList<int> copy(original);
  DList<int> assigned = ListOf({7});
  assigned = original;
  original.Clear();

  EXPECT_EQ(Forward(copy), (Numbers{1, 2}));
  EXPECT_EQ(Backward(assigned), (Numbers{2, 1}));
  EXPECT_TRUE(original.IsEmpty());
}

TEST(List, SurvivesBeingAssignedToItself) {
  DList<int> list = ListOf({1, 2});
  const DList<int>& same = list;

  list = same;

  EXPECT_EQ(Forward(list), (Numbers{1, 2}));
}

TEST(List, CanBeFilledAgainAfterClearing) {
  DList<int> list = ListOf({1, 2});

  list.Clear();
  list.Append(3);

  EXPECT_EQ(Forward(list), (Numbers{3}));
  EXPECT_EQ(Backward(list), (Numbers{3}));
  EXPECT_EQ(list.Count(), 1u);
}

// A value whose copies run out.
struct Scarce {
  static inline int s_left = 0;
  static inline int s_alive = 0;
  Scarce() { ++s_alive; }
  Scarce(const Scarce&) {
    if (s_left-- == 0) throw std::runtime_error("no more copies");
    ++s_alive;
  }
  Scarce& operator=(const Scarce&) = delete;
  ~Scarce() { --s_alive; }
};

TEST(List, LosesNothingWhenACopyFails) {
  {
    Scarce::s_left = 3;
    DList<Scarce> list;
    list.Append(Scarce());
    list.Append(Scarce());
    EXPECT_THROW(DList<Scarce>{list}, std::runtime_error);
    EXPECT_EQ(list.Count(), 2u);
  }
  EXPECT_EQ(Scarce::s_alive, 0);
}

TEST(List, KeepsItsFieldsAndOperationsInOrder) {
  struct Fields {
    void* table;
    const void* head;
    const void* tail;
    std::uint32_t count;
  } fields;
  DList<int> list = ListOf({1, 2});
  static_assert(sizeof fields == sizeof list);
  std::memcpy(static_cast<void*>(&fields), static_cast<const void*>(&list), sizeof fields);

  EXPECT_EQ(fields.head, list.Head());
  EXPECT_EQ(fields.tail, list.Tail());
  EXPECT_EQ(fields.count, 2u);
  EXPECT_EQ(TablePlace(&DList<int>::AppendAll), 2u);
  EXPECT_EQ(TablePlace(&DList<int>::Append), 3u);
  EXPECT_EQ(TablePlace(&DList<int>::Insert), 4u);
}

}  // namespace

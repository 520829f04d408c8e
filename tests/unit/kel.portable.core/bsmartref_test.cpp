// bsmartref_test.cpp
// The smart reference.
#include <gtest/gtest.h>

#include <utility>

#include "bsmartref.h"

namespace {

class Base : public BSmartObj {
 public:
  explicit Base(int& deletions) : m_deletions(deletions) {}
  ~Base() override { ++m_deletions; }

 private:
  int& m_deletions;
};
class Derived : public Base {
 public:
  using Base::Base;
};

class SmartRef : public testing::Test {
 protected:
  int m_deletions = 0;
};

TEST_F(SmartRef, IsNullUnlessMadeOfAnObject) {
  const BSmartRef<Base> made_of_nothing;
  const BSmartRef<Base> made_of_null(nullptr);
  const BSmartRef<Base> made_of_a_null_pointer(static_cast<Base*>(nullptr));

  for (const auto& reference : {made_of_nothing, made_of_null, made_of_a_null_pointer}) {
    EXPECT_FALSE(reference);
    EXPECT_EQ(reference.Get(), nullptr);
  }
}

TEST_F(SmartRef, HoldsOneReference) {
  {
    const BSmartRef<Base> reference(new Base(m_deletions));
    EXPECT_EQ(reference->References(), 1);
    EXPECT_EQ(&*reference, reference.Get());
  }
  EXPECT_EQ(m_deletions, 1);
}

TEST_F(SmartRef, TakesAnotherReferenceWhenCopied) {
  BSmartRef<Base> first(new Base(m_deletions));
  const BSmartRef<Base> second(first);
  EXPECT_EQ(first->References(), 2);

  first = nullptr;
  EXPECT_EQ(second->References(), 1);
  EXPECT_EQ(m_deletions, 0);
}

TEST_F(SmartRef, PassesItsReferenceOnWhenMoved) {
  BSmartRef<Base> first(new Base(m_deletions));
  const BSmartRef<Base> second(std::move(first));

  // NOLINTNEXTLINE(bugprone-use-after-move): null is what it promises to be
  EXPECT_FALSE(first);
  EXPECT_EQ(second->References(), 1);
}

TEST_F(SmartRef, DropsTheOldObjectWhenAssigned) {
  int other_deletions = 0;
  BSmartRef<Base> reference(new Base(m_deletions));

  reference = BSmartRef<Base>(new Base(other_deletions));

  EXPECT_EQ(m_deletions, 1);
  EXPECT_EQ(other_deletions, 0);
  EXPECT_EQ(reference->References(), 1);
}

TEST_F(SmartRef, SurvivesBeingAssignedToItself) {
  BSmartRef<Base> reference(new Base(m_deletions));
  const BSmartRef<Base>& same = reference;

  reference = same;

  EXPECT_EQ(m_deletions, 0);
  EXPECT_EQ(reference->References(), 1);
}

TEST_F(SmartRef, ConvertsToAReferenceToTheBase) {
  const BSmartRef<Derived> derived(new Derived(m_deletions));
  const BSmartRef<Base> base(derived);

  EXPECT_EQ(base->References(), 2);
  EXPECT_EQ(base.Get(), derived.Get());
}

TEST_F(SmartRef, EqualsAReferenceToTheSameObject) {
  const BSmartRef<Base> first(new Base(m_deletions));
  const BSmartRef<Base> second(first.Get());
  const BSmartRef<Base> other(new Base(m_deletions));

  EXPECT_TRUE(first == second);
  EXPECT_TRUE(first != other);
  EXPECT_TRUE(first != nullptr);
  EXPECT_TRUE(BSmartRef<Base>() == nullptr);
}

TEST_F(SmartRef, IsOnePointer) { EXPECT_EQ(sizeof(BSmartRef<Base>), sizeof(void*)); }

}  // namespace

// bsmartobj_test.cpp
// Reference counts, what an object answers by default, and the order of its operations.
#include <gtest/gtest.h>

#include <locale>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "../table_place.h"
#include "bsmartobj.h"

namespace {

class Counted : public BSmartObj {
 public:
  explicit Counted(int& deletions) : m_deletions(deletions) {}
  ~Counted() override { ++m_deletions; }

 private:
  int& m_deletions;
};

TEST(SmartObj, IsDeletedWithItsLastReference) {
  int deletions = 0;
  const auto* object = new Counted(deletions);
  EXPECT_EQ(object->References(), 0);

  object->Ref();
  object->Ref();
  object->Unref();
  EXPECT_EQ(object->References(), 1);
  EXPECT_EQ(deletions, 0);

  object->Unref();
  EXPECT_EQ(deletions, 1);
}

TEST(SmartObj, KeepsItsCountWhenCopiedOrAssigned) {
  BSmartObj original;
  original.Ref();
  original.Ref();
  BSmartObj copy(original);
  EXPECT_EQ(copy.References(), 0);

  copy = original;
  static_cast<BSmartObjBase&>(copy) = static_cast<const BSmartObjBase&>(original);

  EXPECT_EQ(copy.References(), 0);
  EXPECT_EQ(original.References(), 2);
}

TEST(SmartObj, IsDeletedOnceByManyThreads) {
  int deletions = 0;
  const auto* object = new Counted(deletions);
  object->Ref();
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    object->Ref();
    threads.emplace_back([object] {
      for (int round = 0; round < 10000; ++round) {
        object->Ref();
        object->Unref();
      }
      object->Unref();
    });
  }
  object->Unref();
  for (std::thread& thread : threads) thread.join();

  EXPECT_EQ(deletions, 1);
}

TEST(SmartObj, AnswersForItselfByDefault) {
  const BSmartObj object;

  EXPECT_EQ(object.AllocatedMemory(), 0u);
  EXPECT_EQ(object.ArchiveName().Str(), L"BSmartObj");
  EXPECT_EQ(object.Properties().Str(), L"BSmartObj");
  EXPECT_TRUE(object.VerifyObj());
  EXPECT_EQ(object.Version(), 1u);
}

class Named : public BSmartObj {
 public:
  WString ArchiveName() const override { return L"Lamp"; }
  std::uint32_t Version() const override { return 1234; }
  WString Properties() const override { return L"a lamp, 100%"; }
};

TEST(SmartObj, WritesItsPrefixBeforeItsContent) {
  std::wostringstream prefix;
  std::wostringstream data;

  Named().WritePrefix(prefix);
  Named().WriteData(data);

  EXPECT_EQ(prefix.str(), L"Lamp 1234\n");
  EXPECT_EQ(data.str(), L"Lamp 1234\na lamp, 100%\n");
}

class Grouping : public std::numpunct<wchar_t> {
  wchar_t do_thousands_sep() const override { return L'.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(SmartObj, WritesItsVersionAlikeInEveryLocale) {
  std::wostringstream prefix;
  prefix.imbue(std::locale(std::locale(), new Grouping));

  Named().WritePrefix(prefix);

  EXPECT_EQ(prefix.str(), L"Lamp 1234\n");
}

TEST(SmartObj, KeepsItsOperationsInTableOrder) {
  using AssignBase = BSmartObjBase& (BSmartObjBase::*)(const BSmartObjBase&);
  using Assign = BSmartObj& (BSmartObj::*)(const BSmartObj&);
  // The second operation, the destructor, takes the places 1 and 2.
  const std::vector<std::size_t> places = {
      TablePlace(static_cast<AssignBase>(&BSmartObjBase::operator=)),
      TablePlace(&BSmartObjBase::AllocatedMemory),
      TablePlace(static_cast<Assign>(&BSmartObj::operator=)),
      TablePlace(&BSmartObj::WriteData),
      TablePlace(&BSmartObj::UpdateAssociations),
      TablePlace(&BSmartObj::ArchiveName),
      TablePlace(&BSmartObj::VerifyObj),
      TablePlace(&BSmartObj::Version),
      TablePlace(&BSmartObj::Properties),
      TablePlace(&BSmartObj::WritePrefix),
  };

  EXPECT_EQ(places, (std::vector<std::size_t>{0, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
}

}  // namespace

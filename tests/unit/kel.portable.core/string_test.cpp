// string_test.cpp
// The operations of the host's texts.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "bstring.h"
#include "wstring.h"

namespace {

// Both kinds of characters run through the same tests.
template <class Char>
class Text : public testing::Test {
 protected:
  using String = BBasicString<Char>;

  static String Of(const char* text) {
    return std::basic_string<Char>(text, text + std::char_traits<char>::length(text));
  }
  static std::string Plain(const String& text) {
    std::string plain;
    for (const Char character : text.Str()) plain += static_cast<char>(character);
    return plain;
  }
};

class KindName {
 public:
  template <class Char>
  static std::string GetName(int) {
    return sizeof(Char) == 1 ? "Narrow" : "Wide";
  }
};
using Kinds = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(Text, Kinds, KindName);

TYPED_TEST(Text, IsEmptyWhenMadeOfNothing) {
  const BBasicString<TypeParam> text;
  const BBasicString<TypeParam> null(static_cast<const TypeParam*>(nullptr));

  EXPECT_TRUE(text.IsEmpty());
  EXPECT_TRUE(null.IsEmpty());
  EXPECT_EQ(null.Length(), 0u);
  EXPECT_EQ(*null.c_str(), TypeParam(0));
}

TYPED_TEST(Text, KeepsZerosInside) {
  const BBasicString<TypeParam> text(std::basic_string<TypeParam>(3, TypeParam(0)));

  EXPECT_EQ(text.Length(), 3u);
  EXPECT_NE(text, BBasicString<TypeParam>());
}

TYPED_TEST(Text, JoinsTexts) {
  auto text = this->Of("Man");
  text += this->Of("ta");

  EXPECT_EQ(this->Plain(text + this->Of("!")), "Manta!");
  EXPECT_EQ(this->Plain(text), "Manta");
}

TYPED_TEST(Text, JoinsItself) {
  auto text = this->Of("ab");

  text += text;

  EXPECT_EQ(this->Plain(text), "abab");
}

TYPED_TEST(Text, ComparesByCharacters) {
  EXPECT_TRUE(this->Of("a") == this->Of("a"));
  EXPECT_TRUE(this->Of("a") != this->Of("A"));
  EXPECT_TRUE(this->Of("a") < this->Of("b"));
  EXPECT_FALSE(this->Of("b") < this->Of("b"));
  EXPECT_TRUE(this->Of("") < this->Of("a"));
}

TEST(WideText, ComparesWithLiteralsFromBothSides) {
  const WString text(L"Manta");

  EXPECT_TRUE(text == L"Manta");
  EXPECT_TRUE(L"Manta" == text);
  EXPECT_TRUE(text != L"manta");
  EXPECT_TRUE(L"manta" != text);
  EXPECT_TRUE(WString() == static_cast<const wchar_t*>(nullptr));
}

TEST(WideText, ServesAsTheKeyOfAMap) {
  std::map<WString, int> numbers;
  numbers[L"b"] = 2;
  numbers[L"a"] = 1;
  numbers[L"b"] = 3;

  EXPECT_EQ(numbers, (std::map<WString, int>{{L"a", 1}, {L"b", 3}}));
}

TYPED_TEST(Text, EqualsWithoutRegardToCase) {
  EXPECT_TRUE(this->Of("mAnTa-[Z]@`{").IEquals(this->Of("MaNtA-[z]@`{")));
  EXPECT_FALSE(this->Of("Manta").IEquals(this->Of("Mantas")));
  EXPECT_FALSE(this->Of("Mantas").IEquals(this->Of("Manta")));
  EXPECT_TRUE(this->Of("").IEquals(this->Of("")));
  // Neighbours of the letters, 32 apart like a letter's two cases.
  EXPECT_FALSE(this->Of("@[").IEquals(this->Of("`{")));
}

TYPED_TEST(Text, IncludesAPartWithoutRegardToCase) {
  EXPECT_TRUE(this->Of("SN50-0503329000").IIncludes(this->Of("0503329000")));
  EXPECT_TRUE(this->Of("xxABCxx").IIncludes(this->Of("abC")));
  EXPECT_TRUE(this->Of("abc").IIncludes(this->Of("ABC")));
  EXPECT_FALSE(this->Of("0503329000").IIncludes(this->Of("SN50-0503329000")));
  EXPECT_FALSE(this->Of("abd").IIncludes(this->Of("abc")));
}

TYPED_TEST(Text, NeverIncludesAnEmptyPart) {
  EXPECT_FALSE(this->Of("abc").IIncludes(this->Of("")));
  EXPECT_FALSE(this->Of("").IIncludes(this->Of("")));
}

TYPED_TEST(Text, IsCutAfterTheFirstMark) {
  EXPECT_EQ(this->Plain(this->Of("a(b(c").CutAfter(this->Of("("), true)), "a(");
}

TYPED_TEST(Text, IsCutAfterTheLastMark) {
  EXPECT_EQ(this->Plain(this->Of("a(b(c").CutAfter(this->Of("("), false)), "a(b(");
}

TYPED_TEST(Text, IsCutAfterAMarkOfSeveralCharacters) {
  EXPECT_EQ(this->Plain(this->Of("a::b::c").CutAfter(this->Of("::"), true)), "a::");
}

TYPED_TEST(Text, IsNotCutWithoutTheMark) {
  EXPECT_EQ(this->Plain(this->Of("abc").CutAfter(this->Of("("), true)), "abc");
  EXPECT_EQ(this->Plain(this->Of("abc").CutAfter(this->Of("("), false)), "abc");
  EXPECT_EQ(this->Plain(this->Of("abc").CutAfter(this->Of(""), true)), "abc");
  EXPECT_EQ(this->Plain(this->Of("abc").CutAfter(this->Of(""), false)), "abc");
}

TYPED_TEST(Text, LosesTrailingCharactersOfASet) {
  EXPECT_EQ(this->Plain(this->Of("a b ( (").EraseTrailingChars(this->Of("( "))), "a b");
  EXPECT_EQ(this->Plain(this->Of("   ").EraseTrailingChars(this->Of(" "))), "");
  EXPECT_EQ(this->Plain(this->Of("abc").EraseTrailingChars(this->Of("ab"))), "abc");
  EXPECT_EQ(this->Plain(this->Of("abc ").EraseTrailingChars(this->Of(""))), "abc ");
}

TYPED_TEST(Text, ReplacesEveryOccurrence) {
  EXPECT_EQ(this->Plain(this->Of("G 504 B").Replace(this->Of(" "), this->Of("-"))), "G-504-B");
  EXPECT_EQ(this->Plain(this->Of("aaa").Replace(this->Of("a"), this->Of(""))), "");
  EXPECT_EQ(this->Plain(this->Of("aaa").Replace(this->Of("aa"), this->Of("b"))), "ba");
}

TYPED_TEST(Text, DoesNotLookAtAReplacementAgain) {
  EXPECT_EQ(this->Plain(this->Of("aa").Replace(this->Of("a"), this->Of("aa"))), "aaaa");
}

TYPED_TEST(Text, StaysWhenNothingOrAnEmptyTextIsReplaced) {
  EXPECT_EQ(this->Plain(this->Of("abc").Replace(this->Of("x"), this->Of("y"))), "abc");
  EXPECT_EQ(this->Plain(this->Of("abc").Replace(this->Of(""), this->Of("y"))), "abc");
}

TYPED_TEST(Text, MayReplaceBothArgumentsFromItself) {
  auto text = this->Of("ab");

  text.Replace(text, text);

  EXPECT_EQ(this->Plain(text), "ab");
}

TEST(WideText, TrimsACameraModelStepByStep) {
  WString model(L"Manta G-504 B (E0022704)");

  model.CutAfter(L"(", true).EraseTrailingChars(L"(").EraseTrailingChars(L" ").Replace(L" ", L"-");

  EXPECT_EQ(model.Str(), L"Manta-G-504-B");
}

}  // namespace

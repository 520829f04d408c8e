// answer_cases.cpp
// The cases of the answer sweep.
#include "answer_cases.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "call_keys.h"

namespace {

// The lies of one call, as arrays of JSON: what VimbaSimAddFaults takes as `answer`.
struct Lies {
  std::string_view call;
  std::vector<std::string_view> answers;
};

constexpr std::string_view kUntouched = R"("untouched")";
constexpr std::string_view kLongest = R"(["0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef"])";

const std::array<Lies, 14>& AllLies() {
  static const std::array<Lies, 14> kLies{{
      {"VmbFeatureIntGet",
       {kUntouched, "[0]", "[1]", "[-1]", "[9223372036854775807]", "[-9223372036854775808]", "[1073741825]"}},
      {"VmbFeatureIntRangeQuery",
       {kUntouched, "[0, 0]", "[10, 5]", "[-1, -1]", "[-9223372036854775808, 9223372036854775807]",
        "[9223372036854775807, -9223372036854775808]", "[1, 2147483647]", "[1, 65537]"}},
      {"VmbFeatureFloatGet",
       {kUntouched, "[0.0]", "[-1.0]", "[1e308]", "[-1e308]", R"(["nan"])", R"(["inf"])", R"(["-inf"])"}},
      {"VmbFeatureFloatRangeQuery",
       {kUntouched, "[0.0, 0.0]", "[5.0, 1.0]", "[-1e308, 1e308]", "[1e308, -1e308]", R"(["nan", "nan"])",
        R"([0.0, "nan"])", R"(["nan", 1.0])", R"(["-inf", "inf"])", R"(["inf", "-inf"])"}},
      {"VmbFeatureEnumGet", {kUntouched, "[null]", R"([""])", kLongest}},
      {"VmbFeatureEnumAsInt", {kUntouched, "[0]", "[-1]", "[9223372036854775807]", "[-9223372036854775808]"}},
      {"VmbFeatureStringMaxlengthQuery", {kUntouched, "[0]", "[1]", "[1048577]", "[4294967295]"}},
      {"VmbFeatureStringGet", {kUntouched, R"(["x"])", "[{}, 4294967295]", R"(["x", 0])"}},
      {"VmbFeatureBoolGet", {kUntouched, "[0]", "[2]", "[-1]"}},
      {"VmbFeatureCommandIsDone", {kUntouched, "[0]", "[2]", "[-1]"}},
      {"VmbCamerasList",
       {kUntouched, "[{}, 0]", "[{}, 4]", "[{}, 4096]", "[{}, 4097]", "[{}, 4294967295]", "[null]", R"([""])",
        kLongest}},
      {"VmbCameraInfoQuery", {kUntouched, "[null]", R"([""])", kLongest}},
      {"VmbCameraOpen", {kUntouched}},
      {"VmbVersionQuery", {kUntouched, "[0]", "[4294967295]"}},
  }};
  return kLies;
}

}  // namespace

std::vector<Case> AnswerCases(const LivesCalls& lives) {
  std::vector<Case> cases;
  for (const auto& [kind, calls] : lives) {
    for (const CallKey& key : KeysOf(calls)) {
      const auto lies = std::ranges::find(AllLies(), key.call, &Lies::call);
      if (lies == AllLies().end()) continue;
      for (const std::string_view answer : lies->answers)
        cases.push_back({kind, {{.key = key, .answer = std::string(answer)}}});
    }
  }
  return cases;
}

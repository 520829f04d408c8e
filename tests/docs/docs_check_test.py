#!/usr/bin/env python3
"""docs_check_test: check_docs holds figures against constants, shown on small texts."""
import unittest

import check_docs

CODE = """
// constexpr int kOld = 7;
inline constexpr std::size_t kRingFrames = 10;
class Blocks { static constexpr std::size_t kUsedBytes = 512U << 20U; static constexpr int kBlocks = 2 * 10; };
constexpr std::int64_t kRateFloor = 45'000'000;
constexpr double kAfterFailure = -0.1;
constexpr std::chrono::milliseconds kPause{20};
constexpr auto kDeadline = std::chrono::seconds(5);
constexpr auto kStep = 100us;
constexpr std::uint32_t kMask = 0x01080001u;
namespace a { constexpr int kSide = 8; } namespace b { constexpr int kSide{16}; }
constexpr std::size_t kMostBlocks = 2 * Ring::kRingFrames;
constexpr std::size_t kLoop = kLoop;
enum Code : int { eSuccess = 0, eTimeout = 12106, eNext };
enum class Kind { eMono, eRgb };
"""


class Figures(unittest.TestCase):
    def complaints(self, text):
        return list(check_docs.wrong_figures(text, check_docs.constants_of(CODE)))

    def test_right_figures_pass(self):
        for span in ("kRingFrames = 10", "Blocks::kUsedBytes = 512 MiB", "kBlocks = 20", "kRateFloor = 45,000,000",
                     "kRateFloor = 45000000", "kAfterFailure = -0.1", "kPause = 20 ms", "kDeadline = 5 s",
                     "kStep = 100 us", "kMask = 0x01080001", "kMostBlocks = 20", "kSide = 8", "kSide = 16", "eTimeout = 12106", "eNext = 12107",
                     "eRgb = 1"):  # fmt: skip
            self.assertEqual([], self.complaints(f"Text with `{span}` in it."), span)

    def test_wrong_figures_are_named_with_what_they_are(self):
        self.assertEqual(["kRingFrames = 11: it is 10"], self.complaints("`kRingFrames = 11`"))
        self.assertEqual(["kPause = 20 s: it is 20ms"], self.complaints("`kPause = 20 s`"))
        self.assertEqual(["kSide = 9: it is 16 or 8"], self.complaints("`kSide = 9`"))
        self.assertEqual(["eTimeout = 12103: it is 12106"], self.complaints("`eTimeout = 12103`"))

    def test_figures_of_what_does_not_exist_are_named(self):
        for name in ("kOld", "kGone"):
            self.assertEqual([f"{name} = 7: no constant and no enumerator has this name"], self.complaints(f"`{name} = 7`"))

    def test_other_spans_and_blocks_are_no_figures(self):
        self.assertEqual([], self.complaints("`key = 3`, `GAIN = 3`, `kRingFrames`\n```cpp\nkRingFrames = 11\n```\n"))


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
"""sizes_check_test: check_sizes measures what it says, shown on small texts and trees."""
import pathlib
import tempfile
import unittest

import check_sizes


def functions(text):
    """(name, number of lines) of every function of the text."""
    return [(function.name, function.lines) for function in check_sizes.functions_of(text)]


class FunctionsOfAText(unittest.TestCase):
    maxDiff = None

    def test_a_function_counts_from_its_head_to_its_closing_brace(self):
        text = "// before\nint Sum(int a,\n        int b) {\n  // adds\n\n  return a + b;\n}\n\nint Zero() { return 0; }\n"
        self.assertEqual([("Sum", 6), ("Zero", 1)], functions(text))
        self.assertEqual([2, 9], [function.line for function in check_sizes.functions_of(text)])

    def test_scopes_hold_functions_and_are_none(self):
        text = (
            "namespace a::b {\nnamespace {\nclass KEL_API Shape final : public Base {\n public:\n  int Area() const { return 1; }\n"
            "};\nstruct KEL_CAPABILITY(\"mutex\") Lock {\n  void Take() KEL_ACQUIRE() {}\n};\n}  // namespace\n"
            'extern "C" {\nvoid Export() {}\n}\n}  // namespace a::b\n'
        )
        self.assertEqual([("Area", 1), ("Take", 1), ("Export", 1)], functions(text))

    def test_declarations_and_values_are_no_functions(self):
        text = (
            "void Later(int size = int{3});\nenum class Colour : int { kRed, kBlue };\nconstexpr int kTable[] = {\n  1,\n  2,\n};\n"
            "std::array<int, 2> numbers{{1, 2}};\nstruct Plain {\n  int a{0};\n  std::function<void(int)> done{nullptr};\n"
            "  Plain() = default;\n  virtual void Do() = 0;\n} plain;\n"
        )
        self.assertEqual([], functions(text))

    def test_names_carry_their_scope(self):
        text = (
            "Shape::Shape() : m_a{1}, m_b(2) {\n}\nShape::~Shape() {}\nbool Shape::operator==(const Shape& other) const { return true; }\n"
            "void Shape::operator()(int) {}\ntemplate <class Char, bool = (sizeof(Char) > 1)>\nint Text<Char>::Find(Char) { return 0; }\n"
            "auto Shape::Side() const -> std::pair<int, int> { return {}; }\n"
        )
        self.assertEqual(
            [("Shape::Shape", 2), ("Shape::~Shape", 1), ("Shape::operator==", 1), ("Shape::operator()", 1),
             ("Text<Char>::Find", 2), ("Shape::Side", 1)], functions(text))  # fmt: skip

    def test_test_bodies_are_functions(self):
        text = "TEST_F(Snap, TimesOut) {\n  EXPECT_TRUE(true);\n}\nMATCHER_P(Is, value, \"is { it }\") { return arg == value; }\n"
        self.assertEqual([("TEST_F(Snap, TimesOut)", 3), ('MATCHER_P(Is, value, "")', 1)], functions(text))

    def test_what_lies_within_a_function_is_part_of_it(self):
        text = "void Outer() {\n  struct Local {\n    int Inner() { return 1; }\n  };\n  const auto f = [] { return Local(); };\n}\n"
        self.assertEqual([("Outer", 6)], functions(text))

    def test_a_lambda_outside_of_functions_is_one(self):
        self.assertEqual([("kAdd", 3)], functions("constexpr auto kAdd = [](int a) {\n  return a;\n};\n"))

    def test_handlers_belong_to_the_function_that_is_a_try_block(self):
        self.assertEqual([("Save", 5)], functions("int Save() try {\n  return 1;\n} catch (const Error&) {\n  return 2;\n}\n"))

    def test_literals_comments_and_directives_hide_their_braces(self):
        text = (
            "#define OPEN {  \\\n  {\n/* {\n#if 0 { */\nconst char* Text() {\n  // {\n  char brace = '{', quote = '\\'';\n"
            '  int million = 1\'000\'000;\n  return R"json({"a": "}" \n# {\n)json" "\\"{";\n}\n'
        )
        self.assertEqual([("Text", 8)], functions(text))

    def test_braces_that_do_not_match_are_named(self):
        for text in ("void F() {\n", "namespace a {\n", "}\n", "void F() { g(1]; }\n"):
            with self.assertRaises(check_sizes.Unreadable):
                functions(text)


class SizesOfATree(unittest.TestCase):
    maxDiff = None

    def measure(self, files):
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder)
            for name, text in files.items():
                file = source / name
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(text, encoding="utf-8")
            return check_sizes.measure(source)

    def test_folders_of_the_module_and_of_the_sdk_have_rows_of_their_own(self):
        files = {"src/camera/a.cpp": "", "src/stream/b.h": "", "host/kel.core/c.cpp": "", "tests/unit/d_test.cpp": "",
                 "simulator/api/e.cpp": "", "docs/f.cpp": "", "apps/g.py": ""}  # fmt: skip
        folders, _ = self.measure(files)
        self.assertEqual(["src/camera", "src/stream", "host/kel.core", "simulator", "tests"], [folder.name for folder in folders])

    def test_the_table_shows_median_nine_in_ten_and_largest(self):
        files = {f"src/camera/{lines}.h": "\n" * lines for lines in range(1, 11)}
        folders, _ = self.measure({**files, "src/camera/a.cpp": "void F() {}\nvoid G() {\n}\n"})
        row = list(check_sizes.table(folders))[2]
        self.assertEqual(["src/camera", "10", "5", "9", "10", "1", "3", "3", "3", "2", "1", "2", "2"], row.split())

    def test_what_is_at_its_limit_passes(self):
        files = {"src/a/a.h": "\n" * 250, "src/a/a.cpp": "\n" * 400, "src/a/b.cpp": "void F() {" + "\n" * 59 + "}\n"}
        self.assertEqual([], self.measure(files)[1])

    def test_what_is_over_its_limit_is_named(self):
        files = {"src/a/a.h": "\n" * 251, "tests/a.c": "\n" * 401, "simulator/b.cpp": "\nvoid F() {" + "\n" * 60 + "}\n"}
        self.assertEqual(
            ["src/a/a.h: 251 lines, headers may have 250", "simulator/b.cpp:2: F has 61 lines, functions may have 60",
             "tests/a.c: 401 lines, sources may have 400"], self.measure(files)[1])  # fmt: skip

    def test_a_file_that_cannot_be_read_is_named(self):
        self.assertEqual(["apps/a.cpp: line 1: { is not closed"], self.measure({"apps/a.cpp": "int F() {\n"})[1])


if __name__ == "__main__":
    unittest.main()

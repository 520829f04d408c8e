#!/usr/bin/env python3
"""mutants_test: what mutants are made of a text, which places are left alone, and how lists of changes are read."""
import unittest

import mutants


def changed(text, kind):
    """The lines that the mutants of this kind make of the text's."""
    return [mutant.new.strip() for mutant in mutants.mutants_of("src/a.cpp", text) if mutant.kind == kind]


class Kinds(unittest.TestCase):
    maxDiff = None

    def test_comparisons_move_by_one_or_turn_round(self):
        text = "bool F() {\n  return a < b && c >= d || e != f;\n}\n"
        self.assertEqual(
            ["return a <= b && c >= d || e != f;", "return a < b && c > d || e != f;", "return a < b && c >= d || e == f;"],
            changed(text, "comparison"),
        )

    def test_logic_changes_words_and_loses_negations(self):
        self.assertEqual(["if (!a || b) F();", "if (a && b) F();"], sorted(changed("void G() {\n  if (!a && b) F();\n}\n", "logic")))

    def test_templates_and_references_are_no_operators(self):
        text = "std::vector<std::map<int, T>> F(T&& value, T* const other) { return G(value); }\n"
        for kind in ("comparison", "logic", "arithmetic"):
            self.assertEqual([], changed(text, kind))

    def test_numbers_grow_by_one_in_their_own_notation(self):
        text = "int a = 9;\nint b = 0x1F;\nint c = 1'000U;\ndouble d = 2.5;\nvirtual void E() = 0;\n"
        self.assertEqual(["int a = 10;", "int b = 0x20;", "int c = 1001U;", "double d = 3.5;"], changed(text, "constant"))

    def test_times_are_halved(self):
        text = "constexpr std::chrono::milliseconds kPause{20};\nvoid F() { Sleep(std::chrono::milliseconds(50)); }\n"
        self.assertEqual(
            ["constexpr std::chrono::milliseconds kPause{10};", "void F() { Sleep(std::chrono::milliseconds(25)); }"],
            changed(text, "constant"),
        )

    def test_texts_change_at_their_end(self):
        self.assertEqual(['F(L"text?");', "F(L'!');"], changed("void G() {\n  F(L\"text\");\n  F(L'\\n');\n}\n", "text"))

    def test_calls_assignments_and_steps_are_dropped_but_no_declarations(self):
        text = (
            "struct S {\n  S(int a);\n  void F() {\n    const Lock lock(m);\n    std::vector<int> v(3);\n    a.b->C(1);\n"
            "    if (x) ++n;\n    y[2] = {3};\n    return G();\n  }\n};\n"
        )
        self.assertEqual(["{}", "if (x) {}", "{}"], changed(text, "dropped call"))

    def test_neighbours_change_places(self):
        self.assertEqual(["B();\n  A();", "C();\n  B();"], changed("void F() {\n  A();\n  B();\n  C();\n}\n", "swapped order"))
        self.assertEqual(["B(a);\n  a = 0;"], changed("void F() {\n  a = 0;\n  B(a);\n}\n", "swapped order"))
        self.assertEqual(["log << G(n);\n  ++n;"], changed("void F() {\n  ++n;\n  log << G(n);\n}\n", "swapped order"))
        for alone in ("A();\n  if (x) B();", "if (x) A();\n  B();", "a = 0;\n  b = 0;", "A();\n  log << L\"text\";",
                      "r.a = A();\n  r.b[0] = B();", "a = 0;\n  B();"):
            self.assertEqual([], changed("void F() {\n  " + alone + "\n}\n", "swapped order"))

    def test_returned_values_become_empty_ones(self):
        self.assertEqual(["return {};"], changed("int F() {\n  return G(1) + 2;\n}\n", "returned value"))
        self.assertEqual(["return false;"], changed("bool F() {\n  return true;\n}\n", "truth"))


class LeftAlone(unittest.TestCase):
    def none(self, text):
        self.assertEqual([], [mutant.diff() for mutant in mutants.mutants_of("src/a.h", text)])

    def test_comments_and_directives(self):
        self.none('// a == 1\n/* if (b < 2) */\n#include "c.h"\n#define D(x) \\\n  x + 1\n')

    def test_static_asserts_annotations_and_linkage(self):
        self.none('static_assert(kSize == 3, "text");\nextern "C" {\nvoid F() KEL_EXCLUDES(m[0]);\n}\n')

    def test_fields_that_nothing_reads(self):
        self.none("struct S {\n  int m_push_count = 0;\n  void F() { ++m_push_count; }\n};\n")

    def test_what_only_windows_compiles(self):
        text = "#if defined(_WIN32)\nint a = 1;\n#else\nint a = 2;\n#endif\n"
        self.assertEqual(["int a = 3;"], changed(text, "constant"))


class Naming(unittest.TestCase):
    def test_a_name_does_not_hang_on_line_numbers(self):
        before = mutants.mutants_of("src/a.cpp", "int a = 1;\n")
        after = mutants.mutants_of("src/a.cpp", "// new\n\nint a = 1;\n")
        self.assertEqual(before[0].id, after[0].id)

    def test_places_that_read_alike_have_names_of_their_own(self):
        names = [mutant.id for mutant in mutants.mutants_of("src/a.cpp", "int a = 1;\nint a = 1;\n")]
        self.assertEqual(2, len(set(names)))

    def test_a_mutant_changes_its_place_and_nothing_else(self):
        text = "int a = 1;\nint b = 2;\n"
        self.assertEqual("int a = 1;\nint b = 3;\n", mutants.mutants_of("src/a.cpp", text)[1].apply(text))


class Choice(unittest.TestCase):
    def test_every_file_is_served_before_one_is_served_twice(self):
        texts = {"src/a.cpp": "int a = 1;\n" * 50, "src/b.cpp": "int b = 1;\n", "src/c.cpp": "int c = 1;\nint d = 2;\n"}
        files = [mutant.file for mutant in mutants.chosen(texts, 5, seed=1)]
        self.assertEqual(["src/a.cpp", "src/b.cpp", "src/c.cpp", "src/a.cpp", "src/c.cpp"], files)

    def test_headers_come_once_for_eight_times_of_a_source(self):
        texts = {"src/a.cpp": "int a = 1;\n" * 50, "src/a.h": "int b = 1;\n" * 50}
        files = [mutant.file for mutant in mutants.chosen(texts, 18, seed=1)]
        self.assertEqual(2, files.count("src/a.h"))

    def test_the_same_seed_chooses_the_same(self):
        texts = {"src/a.cpp": "".join(f"int a{i} = 1;\n" for i in range(50))}
        first, again, other = ([mutant.id for mutant in mutants.chosen(texts, 5, seed)] for seed in (1, 1, 2))
        self.assertEqual(first, again)
        self.assertNotEqual(first, other)


class Lists(unittest.TestCase):
    LIST = "# A list.\n\n# a lock\n# is dropped\n@ src/a.cpp 2\n-   Lock lock(m);\n+ \n"

    def test_a_change_is_found_in_the_text_as_it_is_laid_out_now(self):
        (change,) = mutants.changes_of(self.LIST)
        text = "  Lock lock(m);\n  if (x) {\n    Lock\n        lock(m);\n  }\n"
        mutant = mutants.named(change, text)
        self.assertEqual(("a lock is dropped", 3), (mutant.note, mutant.line))
        self.assertEqual("  Lock lock(m);\n  if (x) {\n    \n  }\n", mutant.apply(text))

    def test_lines_that_are_gone_are_an_error(self):
        (change,) = mutants.changes_of(self.LIST)
        with self.assertRaises(mutants.Unreadable):
            mutants.named(change, "  Lock lock(m);\n")

    def test_a_change_without_a_reason_is_an_error(self):
        with self.assertRaises(mutants.Unreadable):
            mutants.changes_of("@ src/a.cpp\n- a\n+ b\n")

    def test_a_listed_change_names_the_mutant_that_is_made_there(self):
        text = "void F() {\n  if (a < 1) return;\n}\n"
        made = next(mutant for mutant in mutants.mutants_of("src/a.cpp", text) if mutant.kind == "comparison")
        (change,) = mutants.changes_of("# never equal\n@ src/a.cpp\n-   if (a < 1) return;\n+   if (a <= 1) return;\n")
        self.assertEqual(made.change(), mutants.named(change, text).change())


if __name__ == "__main__":
    unittest.main()

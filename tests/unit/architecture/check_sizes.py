#!/usr/bin/env python3
"""check_sizes: measures files and functions by folder, and names those that are too large.

A file counts with all of its lines, a function from the first line of its head to its closing brace. Test bodies
(`TEST_F(...) {`) count as functions, lambdas and local classes as part of the function around them. Exit 1 when anything
is over a limit.
"""
import argparse
import collections
import math
import pathlib
import re
import statistics
import sys

# Where code lies. A folder of the first group is measured part by part.
SPLIT_FOLDERS = ("src", "host")
WHOLE_FOLDERS = ("vimbac", "simulator", "apps", "examples", "tests", "benchmarks")
HEADERS, SOURCES = (".h",), (".c", ".cpp")

HEADER_LIMIT = 250
SOURCE_LIMIT = 400
FUNCTION_LIMIT = 60

Token = collections.namedtuple("Token", "text line")
Function = collections.namedtuple("Function", "name line lines")


class Unreadable(Exception):
    """Braces or parentheses that do not match, so that nothing can be said of the file."""


# --- from text to tokens

LEXEME = re.compile(
    r"""
    (?P<skip> //(?:\\\n|[^\n])* | /\*.*?\*/ | \s+ )
  | (?P<string> (?:u8|[uUL])?R"(?P<delimiter>[^\s()\\]*)\(.*?\)(?P=delimiter)" | (?:u8|[uUL])?"(?:\\.|[^"\\\n])*" )
  | (?P<character> (?:u8|[uUL])?'(?:\\.|[^'\\\n])+' )
  | (?P<number> \.?\d(?:'(?=\w)|[eEpP][+-]|[\w.])* )
  | (?P<word> [^\W\d]\w* )
  | (?P<mark> :: | -> | <=> | [<=>!+*/%&|^-]= | && | \|\| | [^\w\s] )
    """,
    re.VERBOSE | re.DOTALL,
)
DIRECTIVE = re.compile(r"^[ \t]*#(?:\\\n|/\*.*?\*/|[^\n])*", re.MULTILINE | re.DOTALL)


def tokens_of(text):
    """The tokens with their lines; comments, preprocessor directives and the content of literals are left out."""
    kept = without_directives(text)
    result, line = [], 1
    for match in LEXEME.finditer(kept):
        kind, lexeme = match.lastgroup, match.group()
        if match["string"] is not None or match["character"] is not None:
            result.append(Token('""', line))
        elif kind != "skip":
            result.append(Token(lexeme, line))
        line += lexeme.count("\n")
    return result


def without_directives(text):
    """The text with its directives blanked. One that seems to stand in a comment or in a raw string is no directive."""
    blanked, position = [], 0
    while position < len(text):
        at_line_start = position == 0 or text[position - 1] == "\n"
        match = (at_line_start and DIRECTIVE.match(text, position)) or LEXEME.match(text, position)
        lexeme = match.group()
        if match.re is DIRECTIVE:
            lexeme = "\n" * lexeme.count("\n")
        elif lexeme.isspace() and "\n" in lexeme:
            lexeme = lexeme[: lexeme.rindex("\n") + 1]  # so that the next look is at the start of a line
        blanked.append(lexeme)
        position += len(match.group()) if match.re is DIRECTIVE else len(lexeme)
    return "".join(blanked)


# --- from tokens to functions

CLOSING = {"(": ")", "[": "]", "{": "}"}
# What may stand between a function's parameters and its body.
BEFORE_A_BODY = {"()", "{}", "const", "noexcept", "override", "final", "mutable", "try", "&", "&&"}
CLASS_KEYS = {"class", "struct", "union"}
LABELS = {"public", "protected", "private"}


def end_of_group(tokens, begin):
    """The index of the bracket that closes the one at `begin`."""
    open_brackets = []
    for index in range(begin, len(tokens)):
        text = tokens[index].text
        if text in CLOSING:
            open_brackets.append(CLOSING[text])
        elif open_brackets and text == open_brackets[-1]:
            open_brackets.pop()
            if not open_brackets:
                return index
        elif text in CLOSING.values():
            break
    raise Unreadable(f"line {tokens[begin].line}: {tokens[begin].text} is not closed")


def without_template(head):
    """The head of a declaration after its `template <...>`."""
    while head and head[0].text == "template":
        depth = 0
        for index, token in enumerate(head):
            depth += (token.text == "<") - (token.text == ">")
            if token.text == ">" and depth == 0:
                head = head[index + 1 :]
                break
        else:
            return []
    return head


def texts(head):
    return [token.text.partition(" ")[0] for token in head]


def position_of_initializer(words):
    """The index of the `=` that begins an initializer; none for operators of that name."""
    for index, word in enumerate(words):
        if word == "=" and (index == 0 or words[index - 1] != "operator"):
            return index
    return None


def kind_of_block(head):
    """What a brace after this head opens: "scope", "function", the "handler" of a function that is a try block, or
    "value" for a list of values or enumerators."""
    words = texts(without_template(head))
    if not words:
        return "value"
    if words == ["extern", '""'] or "namespace" in words:
        return "scope"
    if words == ["catch", "()"]:
        return "handler"
    initializer = position_of_initializer(words)
    if initializer is not None:
        return "function" if words[initializer + 1 : initializer + 2] == ["[]"] else "value"
    if "enum" in words:
        return "value"
    could_be_body = words[-1] in BEFORE_A_BODY or words[-1].isupper() or ("()" in words and "->" in words)
    if CLASS_KEYS & set(words) and words[-1] != "()":
        return "scope"
    if "()" not in words or not could_be_body:
        return "value"
    parameters = words.index("()")
    if ":" in words[parameters:] and words[-1] not in ("()", "{}", "try"):
        return "value"  # of a member, in a constructor's list
    return "function"


def name_of(head):
    """The name of a function with its scope; of a test body, the macro and what it is given."""
    head = without_template(head)
    words = texts(head)
    initializer = position_of_initializer(words)
    if initializer is not None:
        return words[initializer - 1]
    if len(words) == 2 and words[0].isupper():
        return words[0] + head[1].text.partition(" ")[2]
    operator = words.index("operator") if "operator" in words else None
    parameters = words.index("()", 0 if operator is None else operator + 2)
    begin = parameters - 1 if operator is None else operator
    if words[begin - 1] == "~":
        begin -= 1
    while begin > 1 and words[begin - 1] == "::":
        begin -= 2
        if words[begin] == ">":
            begin = len(words[:begin]) - words[:begin][::-1].index("<") - 2
    return "".join(words[begin:parameters])


def functions_of(text):
    """Every function that the text defines, in order."""
    tokens = tokens_of(text)
    found, head, scopes, index = [], [], 0, 0
    while index < len(tokens):
        token = tokens[index]
        if token.text in ("(", "["):
            end = end_of_group(tokens, index)
            inside = "".join(part.text + (" " if part.text == "," else "") for part in tokens[index : end + 1])
            head.append(Token(f"{token.text}{CLOSING[token.text]} {inside}", token.line))
            index = end
        elif token.text == "{":
            kind = kind_of_block(head)
            if kind == "scope":
                scopes += 1
                head = []
            else:
                end = end_of_group(tokens, index)
                index = end
                if kind == "function":
                    found.append(Function(name_of(head), head[0].line, tokens[end].line - head[0].line + 1))
                    head = []
                elif kind == "handler":
                    found[-1] = found[-1]._replace(lines=tokens[end].line - found[-1].line + 1)
                    head = []
                else:
                    head.append(Token("{}", token.line))
        elif token.text == "}":
            scopes -= 1
            head = []
            if scopes < 0:
                raise Unreadable(f"line {token.line}: a closing brace too many")
        elif token.text == ";" or (token.text == ":" and texts(head) and texts(head)[-1] in LABELS and len(head) == 1):
            head = []
        else:
            head.append(token)
        index += 1
    if scopes:
        raise Unreadable("a closing brace is missing")
    return found


# --- from functions to the table


class Folder:
    """The sizes of what one row of the table stands for."""

    def __init__(self, name):
        self.name = name
        self.headers, self.sources, self.functions = [], [], []


def code_files(source):
    """(row of the table, file) of every file that is measured."""
    for top in (*SPLIT_FOLDERS, *WHOLE_FOLDERS):
        for file in sorted((source / top).rglob("*")):
            if file.suffix in HEADERS + SOURCES and file.is_file():
                parts = file.relative_to(source).parts
                yield "/".join(parts[:2]) if top in SPLIT_FOLDERS and len(parts) > 2 else top, file


def measure(source):
    """The rows of the table, and a complaint for each thing over its limit."""
    folders, complaints = {}, []
    for row, path in code_files(source):
        folder = folders.setdefault(row, Folder(row))
        name = path.relative_to(source).as_posix()
        text = path.read_text(encoding="utf-8")
        lines = len(text.splitlines())
        is_header = path.suffix in HEADERS
        (folder.headers if is_header else folder.sources).append(lines)
        limit = HEADER_LIMIT if is_header else SOURCE_LIMIT
        if lines > limit:
            complaints.append(f"{name}: {lines} lines, {'headers' if is_header else 'sources'} may have {limit}")
        try:
            functions = functions_of(text)
        except Unreadable as error:
            complaints.append(f"{name}: {error}")
            continue
        folder.functions += [function.lines for function in functions]
        complaints += [
            f"{name}:{function.line}: {function.name} has {function.lines} lines, functions may have {FUNCTION_LIMIT}"
            for function in functions
            if function.lines > FUNCTION_LIMIT
        ]
    return list(folders.values()), complaints


def nine_in_ten(sizes):
    """The size that nine in ten do not exceed."""
    return sorted(sizes)[math.ceil(0.9 * len(sizes)) - 1]


def columns(sizes):
    """Number, median, nine in ten and largest, as the table shows them."""
    if not sizes:
        return f"{'-':>7}{'':>15}"
    return f"{len(sizes):>7}{statistics.median_low(sizes):>5}{nine_in_ten(sizes):>5}{max(sizes):>5}"


def table(folders):
    all_folders = Folder("all")
    for folder in folders:
        all_folders.headers += folder.headers
        all_folders.sources += folder.sources
        all_folders.functions += folder.functions
    yield f"{'lines of':<24}{'headers':>22}{'sources':>22}{'functions':>22}"
    yield f"{'':<24}" + f"{'number':>7}{'half':>5}{'90 %':>5}{'max':>5}" * 3
    for folder in [*folders, all_folders]:
        sizes = "".join(columns(of_a_kind) for of_a_kind in (folder.headers, folder.sources, folder.functions))
        yield f"{folder.name:<24}{sizes}".rstrip()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--source", type=pathlib.Path, required=True, help="the top of the tree")
    arguments = parser.parse_args()
    folders, complaints = measure(arguments.source.resolve())
    print("\n".join(table(folders)))
    if complaints:
        print("\n".join(["", *complaints]))
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()

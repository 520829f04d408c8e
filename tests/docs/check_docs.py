#!/usr/bin/env python3
"""check_docs: holds the documents against what they speak of.

Links, paths, commands, options, presets, feature names and identifiers that a document names must exist; excerpts must
stand in their files; every message that the module can report must be in docs/diagnostics.md, and no other. A figure that
stands for a constant is written `kName = value` and must be the constant's value. The README links every document.
"""
import argparse
import ast
import json
import operator
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCE_FOLDERS = ("src", "host", "vimbac", "simulator", "apps", "examples", "tests", "benchmarks", "bridge")
OTHER_FOLDERS = ("script", "cmake", "packaging", "docs", ".ci", ".github")
CODE_ENDINGS = {".h", ".cpp", ".c", ".txt", ".cmake", ".py", ".json", ".map", ".def", ".ini", ""}
FENCE = re.compile(r"^```(\w*)\n(.*?)^```", re.M | re.S)
EXCERPT = re.compile(r"<!-- excerpt of (\S+) -->\n```\w*\n(.*?)^```", re.M | re.S)
complaints = []


def complain(document, text):
    complaints.append(f"{document.relative_to(ROOT)}: {text}")


def documents():
    files = [*sorted(ROOT.glob("*.md")), *sorted((ROOT / "docs").glob("*.md"))]
    return {document: document.read_text(encoding="utf-8") for document in files}


def all_code():
    """The text of everything that documents may name a word of, without the documents and their check."""
    texts = []
    for folder in (*SOURCE_FOLDERS, "script", "cmake", ".ci"):
        for file in sorted((ROOT / folder).rglob("*")):
            if file.is_file() and file.suffix in CODE_ENDINGS and file.parent != ROOT / "tests/docs":
                texts.append(file.read_text(encoding="utf-8", errors="replace"))
    texts += [(ROOT / name).read_text(encoding="utf-8") for name in ("CMakeLists.txt", "CMakePresets.json")]
    return "\n".join(texts)


def spans(text):
    """Code spans outside of fenced blocks."""
    return re.findall(r"`([^`\n]+)`", FENCE.sub("", text))


def command_lines(text):
    """Lines of shell blocks and of blocks without a language, without prompts and comments."""
    for language, block in FENCE.findall(text):
        if language in ("", "sh", "bash", "text"):
            for line in block.splitlines():
                yield re.sub(r"\s+#.*", "", line.removeprefix("$ ").strip())


def anchors(text):
    headings = re.findall(r"^#+\s+(.*)$", FENCE.sub("", text), re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def check_links(document, text):
    for target in re.findall(r"\]\(([^)\s]+)\)", FENCE.sub("", text)):
        if re.match(r"https?:", target):
            continue
        path, _, anchor = target.partition("#")
        file = (document.parent / path).resolve() if path else document
        if not file.exists():
            complain(document, f"link to {target}: no such file")
        elif anchor and anchor not in anchors(file.read_text(encoding="utf-8")):
            complain(document, f"link to {target}: no such heading")


def check_paths(document, text):
    folders = "|".join(map(re.escape, (*SOURCE_FOLDERS, *OTHER_FOLDERS)))
    candidates = [*spans(text), *command_lines(text)]
    for candidate in candidates:
        for path in re.findall(rf"(?:^|[\s=\"'])((?:{folders})/[\w./-]*)", candidate):
            path = path.rstrip(".")
            if not (ROOT / path).exists():
                complain(document, f"{path}: no such path")


def check_presets(document, text):
    presets = {preset["name"] for preset in json.loads((ROOT / "CMakePresets.json").read_text())["configurePresets"]}
    for preset in re.findall(r"--preset[ =]([\w-]+)", text):
        if preset not in presets:
            complain(document, f"preset {preset}: not in CMakePresets.json")
    for preset in re.findall(r"\bbuild/((?:linux|windows)[\w-]*)/", text):
        if preset not in presets:
            complain(document, f"build/{preset}: no preset of this name")


def check_programs(document, text, targets):
    for program in re.findall(r"(?<![\w/])build/(?:linux|windows)[\w-]*/([\w.-]+)(?= |`|$)", text, re.M):
        if program not in targets:
            complain(document, f"{program}: no target builds it")


def check_scripts(document, text):
    """Words after a script's name must stand in the script."""
    for line in [*spans(text), *command_lines(text)]:
        match = re.match(r"(script/\w+)((?:\s+[\w=-]+)*)", line)
        if not match or not (ROOT / match[1]).exists():
            continue
        script = (ROOT / match[1]).read_text(encoding="utf-8")
        for word in match[2].split():
            if not re.search(rf"(?<![\w-]){re.escape(word)}(?![\w-])", script):
                complain(document, f"{line}: {match[1]} knows no {word}")


class Kelcam:
    """What `kelcam --help` and the help of its commands name."""

    def __init__(self, command):
        self.command = command
        self.top = self.help()
        self.commands = self.commands_in(self.top)
        self.options = {name: self.options_below(name) | self.options_of(self.top) for name in self.commands}

    @staticmethod
    def commands_in(text):
        return re.findall(r"^  (\w+)  ", text.partition("ubcommands:")[2], re.M)

    def options_below(self, *command):
        text = self.help(*command)
        return self.options_of(text).union(*(self.options_below(*command, name) for name in self.commands_in(text)))

    def help(self, *command):
        return subprocess.run([*self.command, *command, "--help"], capture_output=True, text=True, check=True).stdout

    @staticmethod
    def options_of(text):
        return set(re.findall(r"(?<![\w-])(--?[a-z][\w-]*)", text))


def check_kelcam(document, text, kelcam):
    lines = [line for line in [*spans(text), *command_lines(text)] if re.match(r"(\S*/)?kelcam(\s|$)", line)]
    for line in lines:
        words = re.sub(r"\"[^\"]*\"|'[^']*'", "TEXT", line).partition(" | ")[0].split()[1:]
        used = [word for word in words if word in kelcam.commands]
        for word in words:
            option = word.partition("=")[0]
            known = kelcam.options[used[0]] if used else set().union(kelcam.options_of(kelcam.top), *kelcam.options.values())
            if option.startswith("-") and option != "-" and option not in known:  # "-" is a file
                complain(document, f"{line}: kelcam has no {option}")
        plain = [word for word in words if re.fullmatch(r"[a-z]+", word)]
        if not used and plain and not any(word.startswith("-") for word in words):
            complain(document, f"{line}: kelcam has no command {plain[0]}")


def check_identifiers(document, text, words):
    """Names of code in code spans: classes, members, constants, features, calls."""
    shapes = r"(?:B[A-Z]\w+|Vmb\w+|Vimba\w+|m_\w+|k[A-Z]\w+|e[A-Z]\w+|KEL_\w+|VIMBA_\w+|[A-Z][a-z]+[A-Z]\w*)"
    for span in spans(text):
        if not re.fullmatch(r"[\w:.<>()~, *&-]+", span):
            continue
        for word in re.findall(rf"\b{shapes}\b", span):
            if word not in words:
                complain(document, f"{span}: {word} is in no source")


# Figures. A constant or an enumerator has the value that a document gives it.

FIGURE = re.compile(r"(?:\w+::)*((?:[ke][A-Z]|Vmb)\w*) = (.+)")
CONSTANT = re.compile(r"\bconstexpr\b([^;={}()]*?)\b(k[A-Z]\w*)\s*(?:=\s*([^;]+)|\{([^;{}]*)\});")
ENUMERATION = re.compile(r"\benum\b[^;{}()]*\{([^}]*)\}")
TIME_UNITS = {"nanoseconds": "ns", "microseconds": "us", "milliseconds": "ms", "seconds": "s", "minutes": "min"}
BYTE_UNITS = {"KiB": 10, "MiB": 20, "GiB": 30}
OPERATIONS = {ast.LShift: operator.lshift, ast.Mult: operator.mul, ast.Add: operator.add, ast.Sub: operator.sub}


def number(expression, constants):
    """The value of an expression of numbers and of constants with one value; raises ValueError for any other."""
    if isinstance(expression, ast.Name):
        values = constants.get(expression.id, ())
        expression = ast.Constant(*values) if len(values) == 1 else None
    if isinstance(expression, ast.Constant) and isinstance(expression.value, (int, float)):
        return expression.value
    if isinstance(expression, ast.UnaryOp) and isinstance(expression.op, ast.USub):
        return -number(expression.operand, constants)
    if isinstance(expression, ast.BinOp) and type(expression.op) in OPERATIONS:
        return OPERATIONS[type(expression.op)](number(expression.left, constants), number(expression.right, constants))
    raise ValueError


def value_of(text, constants):
    """A number as such, a time as number and unit, anything else as its text. Constants may stand for numbers in it."""
    text = re.sub(r"\b\w+::|(?<=[\da-fA-F])[',](?=\d)", "", text.strip())  # scopes, and separators of digits
    text = re.sub(r"\b(\w+)[({](\d+)[)}]", lambda match: match[2] + TIME_UNITS.get(match[1], ""), text)
    text = re.sub(r"\b(\d+) ([KMG]iB)\b", lambda match: f"{match[1]} << {BYTE_UNITS[match[2]]}", text)
    text = re.sub(r"\b(0[xX][\da-fA-F]+|\d+)[uUlL]+\b", r"\1", text)
    try:
        return number(ast.parse(text, mode="eval").body, constants)
    except (SyntaxError, ValueError):
        return re.sub(r"\s+", "", text)


def enumerators(block):
    """(name, value) of an enumeration's entries; one without a value follows the one before."""
    following = 0
    for entry in filter(None, (part.strip() for part in block.split(","))):
        name, has_value, text = entry.partition("=")
        value = value_of(text, {}) if has_value else following
        following = value + 1 if isinstance(value, int) else None
        yield name.strip(), value


def constants_of(code):
    """The values under each name; a name may be taken in several scopes."""
    code = re.sub(r"//[^\n]*|/\*.*?\*/", "", code, flags=re.S)
    values = {}
    for declared, name, assigned, braced in CONSTANT.findall(code):
        unit = re.search(r"std::chrono::(\w+)", declared)
        value = value_of(assigned or braced, {})
        if unit and isinstance(value, (int, float)):
            value = f"{value}{TIME_UNITS.get(unit[1], '')}"
        values.setdefault(name, set()).add(value)
    for block in ENUMERATION.findall(code):
        for name, value in enumerators(block):
            values.setdefault(name, set()).add(value)
    return {name: {value_of(value, values) if isinstance(value, str) else value for value in of_name}
            for name, of_name in values.items()}  # fmt: skip


def wrong_figures(text, constants):
    for span in spans(text):
        figure = FIGURE.fullmatch(span)
        if not figure:
            continue
        if figure[1] not in constants:
            yield f"{span}: no constant and no enumerator has this name"
        elif value_of(figure[2], {}) not in constants[figure[1]]:
            values = " or ".join(sorted(map(str, constants[figure[1]])))
            yield f"{span}: it is {values}"


def check_figures(document, text, constants):
    for complaint in wrong_figures(text, constants):
        complain(document, complaint)


def check_reading_list(readme, text, others):
    for document in others:
        name = document.relative_to(ROOT).as_posix()
        if document != readme and f"]({name})" not in text:
            complain(readme, f"links no {name}")


def check_excerpts(document, text):
    for name, block in EXCERPT.findall(text):
        file = ROOT / name
        content = file.read_text(encoding="utf-8") if file.exists() else ""
        for piece in re.split(r"^// \.\.\.\n", block, flags=re.M):
            if piece not in content:
                complain(document, f"excerpt of {name} is not in it:\n{piece}")


# Messages. A literal's pieces between its conversions must stand in one line of the document, in their order.


def message_literals():
    """Literals of src/ that reach the host's output, with the file that holds them."""
    for file in sorted((ROOT / "src").rglob("*.cpp")):
        code = re.sub(r"//.*", "", file.read_text(encoding="utf-8"))
        code = re.sub(r"(IEquals|ReadString)\([^;]*?\)", "", code)
        code = re.sub(r"constexpr wchar_t k\w*Name\w*\[\] = .*", "", code)  # of libraries and camera families
        if file.name in ("control_types.cpp", "pixel_formats.cpp"):
            continue  # units and profile words
        for literal in re.findall(r'(?:\bL|BString \w+\()"((?:[^"\\]|\\.)*)"', code):
            literal = literal.replace("\\n", "").strip()
            if re.search(r"[A-Za-z]{2}", re.sub(r"%\w+", "", literal)):
                yield literal, file.relative_to(ROOT)


def pieces(literal):
    return [piece for piece in re.split(r"%[a-z]+", literal) if piece.strip()]


def document_has(literal, lines):
    pattern = re.compile(".*?".join(re.escape(piece.strip()) for piece in pieces(literal)))
    return any(pattern.search(line) for line in lines)


# What stands for a value in a quoted message: conversions, <words>, numbers, identifiers of cameras, names of entries.
VALUE = re.compile(r"%l*[a-z]|<[^>]*>|…|\.\.\.|Vimba_[\w-]+|DEV_\w+|\bTrue\b|\bFalse\b|\btrue\b|\bfalse\b|\b[A-Z]\b|[-+]?\d[\d.]*")


def quoted_messages(text):
    """Texts that docs/diagnostics.md quotes: the first cell's code spans of its tables, and numbered lines of blocks."""
    for row in re.findall(r"^\|\s*(`[^|]*)\|", FENCE.sub("", text), re.M):
        yield from re.findall(r"`([^`]+)`", row)
    for _, block in FENCE.findall(text):
        yield from re.findall(r"^\s*\d+ :\s*[\d.]+ \(\s*[\d.]+\) : (.*)$", block, re.M)


def check_messages(document, text):
    literals = list(message_literals())
    lines = text.splitlines()
    for literal, file in literals:
        if not document_has(literal, lines):
            complain(document, f"{file} reports \"{literal}\", which is not described")
    known = sorted({piece.strip() for literal, _ in literals for piece in pieces(literal)}, key=len, reverse=True)
    for message in quoted_messages(text):
        rest = message
        for piece in known:
            rest = rest.replace(piece, " ")
        rest = VALUE.sub(" ", rest)
        if re.search(r"[A-Za-z]{2}", rest):
            complain(document, f"quotes \"{message}\"; no source holds \"{rest.strip()}\"")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--kelcam", required=True)
    parser.add_argument("--launcher", default="")
    arguments = parser.parse_args()
    kelcam = Kelcam([*filter(None, [arguments.launcher]), arguments.kelcam])
    code = all_code()
    targets = set(re.findall(r"(?:add_executable|kel_test_suite)\(([\w.-]+)", code))
    words = set(re.findall(r"\w+", code))
    constants = constants_of(code)
    texts = documents()
    check_reading_list(ROOT / "README.md", texts[ROOT / "README.md"], texts)
    for document, text in texts.items():
        check_links(document, text)
        check_paths(document, text)
        check_presets(document, text)
        check_programs(document, text, targets)
        check_scripts(document, text)
        check_kelcam(document, text, kelcam)
        check_identifiers(document, text, words)
        check_figures(document, text, constants)
        check_excerpts(document, text)
    diagnostics = ROOT / "docs/diagnostics.md"
    if diagnostics.exists():
        check_messages(diagnostics, diagnostics.read_text(encoding="utf-8"))
    else:
        complain(diagnostics, "is missing")
    print("\n".join(complaints) or "everything that the documents name is there")
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()

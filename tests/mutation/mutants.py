#!/usr/bin/env python3
"""mutants: where the sources decide something, and what each decision becomes when it is flipped.

A mutant changes one place of one file. Comparisons, logic, arithmetic, numbers, truth values, texts and returned values are
changed by their tokens; calls and assignments that stand as statements of their own are dropped, and two such statements in
a row change places. Comments, directives, static_assert, KEL_ annotations and what only Windows compiles are left alone.
"""
import collections
import hashlib
import re

# A token and where it lies in the text; `spaced`: with white space on both sides, as binary operators have it.
Token = collections.namedtuple("Token", "kind text start end spaced")

LEXEME = re.compile(
    r"""
    (?P<skip> //(?:\\\n|[^\n])* | /\*.*?\*/ | \s+ )
  | (?P<directive> (?<![^\n]) \#(?:\\\n|[^\n])* )
  | (?P<string> (?:u8|[uUL])?"(?:\\.|[^"\\\n])*" )
  | (?P<character> (?:u8|[uUL])?'(?:\\.|[^'\\\n])+' )
  | (?P<number> \.?\d(?:'(?=\w)|[eEpP][+-]|[\w.])* )
  | (?P<word> [^\W\d]\w* )
  | (?P<mark> :: | -> | <=> | << | \+\+ | -- | [<=>!+*/%&|^-]= | && | \|\| | [^\w\s] )
    """,
    re.VERBOSE | re.DOTALL,
)

# The flips, by what is flipped.
COMPARISONS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">"}
LOGIC = {"&&": "||", "||": "&&"}
ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*", "+=": "-=", "-=": "+="}
TRUTH = {"true": "false", "false": "true"}
STEPS = {"++": "--", "--": "++"}

# Fields that are there to be looked at in a debugger, or by their place. Nothing reads them, as their declarations say.
UNREAD = re.compile(r"\bm_(push_count|color_mode_on|image_offset)\b")

# No statement that begins with one of these is a call or an assignment.
KEYWORDS = frozenset(
    "auto break case class const constexpr continue default delete do else enum explicit extern for friend goto if inline "
    "namespace new operator private protected public return static static_assert struct switch template throw try typedef "
    "typename union using virtual void volatile while catch bool int double".split()
)


class Mutant:
    """One change: `text[start:end]` of the file becomes `replacement`."""

    def __init__(self, file, text, start, end, replacement, kind, note=""):
        self.file, self.kind, self.note = file, kind, note
        self.start, self.end, self.replacement = start, end, replacement
        first = text.rfind("\n", 0, start) + 1
        last = text.find("\n", end)
        last = len(text) if last < 0 else last
        self.line = text.count("\n", 0, start) + 1
        self.old = text[first:last]
        self.new = text[first:start] + replacement + text[end:last]
        # Which of several places that read alike this is, so that the name of a mutant does not hang on line numbers.
        self.number = text.count(self.old, 0, first) + 1
        name = "\n".join((file, self.kind, squeezed(self.old), squeezed(self.new), str(self.number)))
        self.id = hashlib.sha1(name.encode()).hexdigest()[:12]

    def apply(self, text):
        return text[: self.start] + self.replacement + text[self.end :]

    def place(self):
        return f"{self.file}:{self.line}"

    def diff(self):
        return "\n".join([f"- {line}" for line in self.old.split("\n")] + [f"+ {line}" for line in self.new.split("\n")])

    def change(self):
        """What a list of changes names a mutant by."""
        return self.file, squeezed(self.old), squeezed(self.new), self.number


def squeezed(text):
    """Without what only lays it out."""
    return " ".join(text.split())


# --- what is compiled


def tokens_of(text):
    """The tokens that a Linux build compiles, without comments and directives."""
    result, conditions = [], []
    for match in LEXEME.finditer(text):
        kind, lexeme = match.lastgroup, match.group()
        if kind == "directive":
            follow_directive(lexeme, conditions)
        elif kind != "skip" and all(conditions):
            before = text[match.start() - 1 : match.start()]
            spaced = before.isspace() and text[match.end() : match.end() + 1].isspace()
            result.append(Token(kind, lexeme, match.start(), match.end(), spaced))
    return result


def follow_directive(directive, conditions):
    """`conditions`: for each open #if whether its present branch is compiled, as far as _WIN32 decides it."""
    word = re.match(r"#\s*(\w+)(.*)", directive, re.DOTALL)
    if word.group(1) in ("if", "ifdef", "ifndef"):
        conditions.append("_WIN32" not in word.group(2) or "!" in word.group(2))
    elif word.group(1) in ("else", "elif") and not conditions[-1]:
        conditions[-1] = True
    elif word.group(1) == "endif":
        conditions.pop()


def decisive(tokens):
    """Without static_assert(...), KEL_...(...), [[...]] and what templates take."""
    result, i = [], 0
    while i < len(tokens):
        token = tokens[i]
        annotated = token.text == "static_assert" or token.text.startswith("KEL_")
        if annotated and i + 1 < len(tokens) and tokens[i + 1].text == "(":
            i = closing(tokens, i + 1) + 1
        elif token.text == "extern":
            result.append(token._replace(text="namespace"))
            i += 2
        else:
            result.append(token)
            i += 1
    return result


def token_texts(tokens, begin, end):
    return [token.text for token in tokens[begin:end]]


def closing(tokens, opening):
    pairs = {"(": ")", "{": "}", "[": "]"}
    depth = 0
    for i in range(opening, len(tokens)):
        if tokens[i].text in pairs:
            depth += 1
        elif tokens[i].text in pairs.values():
            depth -= 1
            if depth == 0:
                return i
    return len(tokens) - 1


# --- one kind of mutant after the other


def mutants_of(file, text):
    """Every mutant of one file, in the order of the text."""
    tokens = decisive(tokens_of(text))
    found = []

    def add(start, end, replacement, kind):
        mutant = Mutant(file, text, start, end, replacement, kind)
        if not UNREAD.search(mutant.old):
            found.append(mutant)

    for i, token in enumerate(tokens):
        for kind, replacement in flips(tokens, i):
            add(token.start, token.end, replacement, kind)
    statements = statements_of(tokens)
    for first, last in statements:
        add(tokens[first].start, tokens[last].end, "{}", "dropped call")
    for (first, middle), (second, last) in zip(statements, statements[1:]):
        if second == middle + 1 and tokens[first - 1].text not in (")", "else") and notice(tokens, first, last):
            one = text[tokens[first].start : tokens[middle].end]
            between = text[tokens[middle].end : tokens[second].start]
            other = text[tokens[second].start : tokens[last].end]
            add(tokens[first].start, tokens[last].end, other + between + one, "swapped order")
    for first, last in returns_of(tokens):
        add(tokens[first].start, tokens[last].end, "{}", "returned value")
    return found


def flips(tokens, i):
    """(kind, replacement) of the changes of one token."""
    token = tokens[i]
    before = tokens[i - 1].text if i > 0 else ""
    if token.kind == "mark":
        if token.spaced and token.text in COMPARISONS:
            yield "comparison", COMPARISONS[token.text]
        elif token.spaced and token.text in LOGIC:
            yield "logic", LOGIC[token.text]
        elif token.spaced and token.text in ARITHMETIC and not joins_texts(tokens, i):
            yield "arithmetic", ARITHMETIC[token.text]
        elif token.text in STEPS and before != "operator" and not steps_loop(tokens, i):
            yield "arithmetic", STEPS[token.text]
        elif token.text == "!":
            yield "logic", ""
    elif token.kind == "word" and token.text in TRUTH:
        yield "truth", TRUTH[token.text]
    elif token.kind == "number" and not (before == "=" and tokens[i - 2].text in (")", "const", "noexcept")):
        if is_time(tokens, i):
            yield "constant", str(int(token.text) // 2)
        else:
            yield "constant", next_number(token.text)
    elif token.kind == "string":
        yield "text", token.text[:-1] + '?"'
    elif token.kind == "character":
        yield "text", ("L" if token.text.startswith("L") else "") + ("'!'" if "!" not in token.text else "'?'")


def joins_texts(tokens, i):
    """Texts can be added and nothing else. A line's are told by their literals, and by what a message's title begins with."""
    return any(token.kind == "string" or token.text == "Prefix" for token in tokens[max(0, i - 5) : i + 5])


def is_time(tokens, i):
    """Of milliseconds: one more is what a busy machine makes of them anyway, half of them is not."""
    named = tokens[i - 2].text if tokens[i - 1].text == "(" else tokens[i - 3].text if tokens[i - 1].text == "{" else ""
    return named == "milliseconds" and tokens[i].text != "0"


def steps_loop(tokens, i):
    """As in `for (...; ...; ++i)`: turned round, it would only run into its time limit."""
    return tokens[i - 1].text == ";" and tokens[i + 2].text == ")"


def next_number(text):
    """One more, in the same notation."""
    digits, suffix = re.fullmatch(r"(0[xX][0-9a-fA-F']+|[\d.'eE+-]+?)([uUlLfFzZ]*)", text).groups()
    digits = digits.replace("'", "")
    if digits.lower().startswith("0x"):
        return hex(int(digits, 16) + 1) + suffix
    if "." in digits or "e" in digits.lower():
        return repr(float(digits) + 1.0) + suffix
    return str(int(digits) + 1) + suffix


def statements_of(tokens):
    """(first, last) token of every call, assignment or step that is a statement of its own."""
    result, scopes = [], []
    begins = True
    i = 0
    while i < len(tokens):
        runs = bool(scopes) and scopes[-1]
        if begins and runs and (end := end_of_statement(tokens, i)) is not None and acts(tokens[i : end + 1]):
            result.append((i, end))
            i = end
        token = tokens[i].text
        if token == "{":
            scopes.append(runs or not opens_type(tokens, i))
        elif token == "}":
            scopes.pop()
        begins = token in ("{", "}", ";", "else") or (token == ")" and closes_condition(tokens, i))
        begins = begins or (token == ":" and i >= 2 and not tokens[i].spaced)
        i += 1
    return result


def opens_type(tokens, brace):
    """Whether a brace opens a class, an enumeration or a namespace, where nothing runs."""
    for i in range(brace - 1, -1, -1):
        if tokens[i].text in (";", "{", "}", ")"):
            return False
        if tokens[i].text in ("class", "struct", "union", "enum", "namespace"):
            return True
    return False


def notice(tokens, first, last):
    """Whether the order of two statements shows: two calls, or what one sets is named in the other. One that writes into a
    message, which is shown at its end, shows only with what it has a name in common with."""
    middle = next(i for i in range(first, last) if tokens[i].text == ";")
    one, other = tokens[first:middle], tokens[middle + 1 : last]
    common = words_of(one) & words_of(other)
    sets = {assigned(one), assigned(other)} - {None}
    logs = [statement[0].text == "log" for statement in (one, other)]
    if sets:
        return bool(sets & common)
    return logs[0] == logs[1] or bool(common)


def words_of(statement):
    return {token.text for token in statement if token.kind == "word"}


def assigned(statement):
    """What an assignment or a step sets; None for a call, also one whose result is ignored."""
    name, depth = None, 0
    steps = statement[0].text in STEPS
    for token in statement:
        depth += (token.text == "[") - (token.text == "]")
        if token.text in ("=", "+=", "-="):
            return name if name != "ignore" else None
        if token.text in ("(", "<<"):
            return name if steps else None
        if token.kind == "word" and depth == 0:
            name = token.text
    return name if steps else None


def end_of_statement(tokens, first):
    depth = 0
    for i in range(first, len(tokens)):
        if tokens[i].text in "([{":
            depth += 1
        elif tokens[i].text in ")]}":
            depth -= 1
            if depth < 0:
                return None
        elif tokens[i].text == ";" and depth == 0:
            return i
    return None


def closes_condition(tokens, end):
    depth = 0
    for i in range(end, -1, -1):
        if tokens[i].text == ")":
            depth += 1
        elif tokens[i].text == "(":
            depth -= 1
            if depth == 0:
                return i > 0 and tokens[i - 1].text in ("if", "for", "while")
    return False


def acts(statement):
    """Neither a declaration nor one of the keywords' statements."""
    first = statement[0]
    if first.text in KEYWORDS or not (first.kind == "word" or first.text in ("++", "--", "*")):
        return False
    if any(token.text in ("delete", "default", "operator") for token in statement):
        return False
    depth = 0
    for before, token in zip(statement, statement[1:]):
        if before.text in "([{":
            depth += 1
        elif before.text in ")]}":
            depth -= 1
        if depth == 0 and token.kind == "word" and (before.kind == "word" or before.text in (">", "&")):
            return False
        if depth == 0 and token.text in ("=", "+=", "-=", "<<"):
            return True
    return any(token.text in ("(", "++", "--") for token in statement)


def returns_of(tokens):
    """(first, last) token of what each return hands over, except of truth values and *this."""
    for i, token in enumerate(tokens):
        if token.text != "return" or tokens[i + 1].text in (";", "true", "false", "*", "{", "nullptr"):
            continue
        if "nullopt" in token_texts(tokens, i + 1, i + 4):
            continue
        end = end_of_statement(tokens, i)
        if end is not None:
            yield i + 1, end - 1


# --- the choice


def chosen(texts, wanted, seed, left_out=frozenset()):
    """`wanted` mutants out of {file: text}: each file in turn, and in each file every kind in turn. Headers decide little and
    take long to compile: one of theirs comes for every eight of a source. What a change elsewhere in a file does not touch
    is chosen again. `left_out`: changes that are none.
    """
    queues = []
    for file, text in sorted(texts.items()):
        kinds = collections.defaultdict(list)
        for mutant in mutants_of(file, text):
            if mutant.change() not in left_out:
                kinds[mutant.kind].append(mutant)
        for of_kind in kinds.values():
            of_kind.sort(key=lambda mutant: hashlib.sha1(f"{seed} {mutant.id}".encode()).digest())
        of_file = in_turn([kinds[kind] for kind in sorted(kinds)])
        if file.endswith(".h"):
            of_file = [mutant for one in of_file for mutant in [None] * 3 + [one] + [None] * 4]
        queues.append(of_file)
    return [mutant for mutant in in_turn(queues) if mutant][:wanted]


def in_turn(lists):
    """The first of each, the second of each, and so on."""
    longest = max(map(len, lists), default=0)
    return [one[i] for i in range(longest) for one in lists if i < len(one)]


# --- lists of changes, kept by hand


class Unreadable(Exception):
    """A list that does not say what it has to."""


Change = collections.namedtuple("Change", "note file old new number")


def changes_of(listing):
    """The changes of a list: for each `# note` lines, `@ file [number of several alike]`, and the lines as `- ` and `+ `."""
    result = []
    for block in re.split(r"\n\s*\n", listing):
        lines = [line for line in block.split("\n") if line.strip()]
        if not lines or all(line.startswith("#") for line in lines):
            continue
        of = {mark: [line[2:] for line in lines if line.startswith(mark)] for mark in "#@-+"}
        if len(of["@"]) != 1 or not of["#"] or not of["-"] or sum(map(len, of.values())) != len(lines):
            raise Unreadable(f"not a change: {block}")
        file, _, number = of["@"][0].partition(" ")
        result.append(Change(" ".join(of["#"]), file, "\n".join(of["-"]), "\n".join(of["+"]), int(number or 1)))
    return result


def named(change, text):
    """The mutant that a change of the hand-written list describes, in the text of its file as it is now."""
    pattern = r"\s+".join(re.escape(word) for word in change.old.split())
    places = list(re.finditer(pattern, text))
    if len(places) < change.number:
        raise Unreadable(f"{change.file} no longer has the lines of: {change.note}")
    place = places[change.number - 1]
    return Mutant(change.file, text, place.start(), place.end(), change.new, "by hand", change.note)

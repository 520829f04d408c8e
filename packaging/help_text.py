"""help_text: what a program's --help names, with the help of its commands: options, their values, commands, other text."""

import dataclasses
import re
import subprocess

DEADLINE_S = 60
ENTRY = re.compile(r"^  (\S(?:.*?\S)?)(?:  +(\S.*))?$")
CONTINUED = re.compile(r"^ {8,}(\S.*)$")


@dataclasses.dataclass
class Option:
    """An option of the command line: `-n N`, or `--mode single|continuous`."""

    term: str
    description: str

    @property
    def names(self):
        return re.findall(r"(?:^|,)(--?[\w-]+)", self.term.split()[0])

    @property
    def value(self):
        """How the help writes its value; empty for a switch."""
        return re.sub(r"^[\w,-]+", "", self.term).strip(" =[]")

    @property
    def value_is_optional(self):
        return "[=" in self.term

    @property
    def choices(self):
        return self.value.split("|") if re.fullmatch(r"[\w.-]+(\|[\w.-]+)+", self.value) else []


@dataclasses.dataclass
class Help:
    """The help of the program, or of one of its commands; `path` are the command's words."""

    path: tuple
    purpose: str = ""
    usage: str = ""
    options: list = dataclasses.field(default_factory=list)
    positionals: list = dataclasses.field(default_factory=list)
    commands: list = dataclasses.field(default_factory=list)  # (name, description)
    footer: list = dataclasses.field(default_factory=list)
    children: list = dataclasses.field(default_factory=list)

    def every(self):
        yield self
        for child in self.children:
            yield from child.every()


def entries(lines):
    """Pairs of term and description; a description may go on in the lines below."""
    found = []
    for line in lines:
        entry, continued = ENTRY.match(line), CONTINUED.match(line)
        if continued and found:
            found[-1][1] = f"{found[-1][1]} {continued[1]}".strip()
        elif entry:
            found.append([entry[1], entry[2] or ""])
    return found


def parse(path, text):
    """The parts of one help text."""
    page = Help(path)
    blocks = [block.splitlines() for block in re.split(r"\n{2,}", text.strip())]
    for lines in blocks:
        usage = [line for line in lines if line.startswith("Usage: ")]
        if usage:
            page.usage = usage[0].removeprefix("Usage: ")
        if usage or not page.usage:
            page.purpose = " ".join([page.purpose, *(line.strip() for line in lines if line not in usage)]).strip()
        elif lines[0] in ("Options:", "[Options]"):
            page.options += [Option(*entry) for entry in entries(lines[1:])]
        elif lines[0] == "Positionals:":
            page.positionals += entries(lines[1:])
        elif lines[0] in ("Subcommands:", "Commands:"):
            page.commands += [(name.split(",")[0], description) for name, description in entries(lines[1:])]
        else:
            page.footer.append(lines)
    return page


def read(program, path=()):
    """The help of the program with that of its commands, and of theirs."""
    done = subprocess.run(
        [program, *path, "--help"], capture_output=True, encoding="utf-8", timeout=DEADLINE_S, check=True
    )
    page = parse(path, done.stdout)
    page.children = [read(program, (*path, name)) for name, _ in page.commands]
    return page

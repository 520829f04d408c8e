"""man_page: the manual page of a program, made from its help."""


def escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return f"\\&{text}" if text.startswith((".", "'")) else text


def quoted(text):
    return '"' + escaped(text).replace('"', "\\(dq") + '"'


def entry(term, description):
    return [".TP", f"\\fB{escaped(term)}\\fR", escaped(description) or "\\&"]


def entries_of(page):
    lines = []
    for term, description in [*page.positionals, *((option.term, option.description) for option in page.options)]:
        lines += entry(term, description)
    return lines


def plain(lines):
    return [".nf", *map(escaped, lines), ".fi"]


def footer(blocks, skipped):
    """Blocks as they are; one that begins with a line `Word:` becomes a section. The commands' common one is said once."""
    lines = []
    for block in blocks:
        if block == skipped:
            continue
        has_heading = block[0].endswith(":") and " " not in block[0]
        lines += [f".SH {quoted(block[0][:-1].upper())}"] if has_heading else [".PP"]
        lines += plain(block[1:] if has_heading else block)
    return lines


def man_page(name, version, page, see_also):
    common = page.children[0].footer[-1] if page.children and page.children[0].footer else None
    lines = [
        f'.TH {quoted(name.upper())} 1 "" {quoted(f"{name} {version}")} "User Commands"',
        ".SH NAME", escaped(name) + " \\- " + escaped(page.purpose.removeprefix(f"{name} ").rstrip(".")),
        ".SH SYNOPSIS", f"\\fB{escaped(page.usage)}\\fR",
        ".SH DESCRIPTION", escaped(page.purpose),
        ".SH OPTIONS", *entries_of(page),
        ".SH COMMANDS",
    ]  # fmt: skip
    for child in list(page.every())[1:]:
        lines += [f".SS {quoted(' '.join(child.path))}", escaped(child.purpose), ".PP", f"\\fB{escaped(child.usage)}\\fR"]
        lines += entries_of(child) + footer(child.footer, skipped=common)
    lines += footer(page.footer, skipped=None)
    lines += ['.SH "SEE ALSO"', *(escaped(line) for line in see_also)]
    return "\n".join(lines) + "\n"

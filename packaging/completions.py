"""completions: what bash and zsh complete on a program's command line, made from its help."""

import re

FILES = re.compile(r"FILE|PATTERN|FOLDER|PATH|\.\w+$")


def takes_file(option):
    return bool(FILES.search(option.value)) and not option.choices


def has_value(option):
    return bool(option.value) and not option.value_is_optional


# bash

BASH = r"""# bash completion of @NAME@, made from its help.
_@NAME@() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=@NAME@ word is_value='' i
  if [[ $current == '=' ]]; then
    current=''
  elif [[ $previous == '=' ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for ((i = 1; i < COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    if [[ -n $is_value ]]; then
      is_value=''
      continue
    fi
    case "$command $word" in
@DESCEND@
    esac
    case $word in
@VALUES@) is_value=yes ;;
    esac
  done
  COMPREPLY=()
  case "$command $previous" in
@CHOICES@
  esac
  case $command in
@WORDS@
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _@NAME@ @NAME@
"""


def bash(name, page):
    pages = list(page.every())
    every = [option for each in pages for option in each.options]
    descend, choices, words = [], [], []
    for each in pages:
        command = " ".join((name, *each.path))
        if each.path:
            descend.append(f"      {quoted(command)}) command={quoted(command)} ;;")
        options = [*each.options, *(page.options if each is not page else [])]
        for option in options:
            patterns = " | ".join(quoted(f"{command} {spelling}") for spelling in option.names)
            if option.choices:
                reply = f'mapfile -t COMPREPLY < <(compgen -W {quoted(" ".join(option.choices))} -- "$current")'
            elif takes_file(option):
                reply = 'compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- "$current")'
            elif has_value(option):
                reply = ":"
            else:
                continue
            choices.append(f"    {patterns}) {reply}; return ;;")
        spellings = [spelling for option in options for spelling in option.names]
        offered = [*(child for child, _ in each.commands), *dict.fromkeys(spellings)]
        words.append(f'    {quoted(command)}) local words={quoted(" ".join(offered))} ;;')
    values = sorted({spelling for option in every if has_value(option) for spelling in option.names})
    parts = {"DESCEND": "\n".join(descend), "VALUES": "      " + " | ".join(values), "CHOICES": "\n".join(choices),
             "WORDS": "\n".join(words), "NAME": name}  # fmt: skip
    return re.sub(r"@(\w+)@", lambda match: parts[match[1]], BASH)


def quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"


# zsh


def described(text):
    """A description inside of an argument of _arguments, where colons and brackets have a meaning."""
    return re.sub(r"([\[\]:\\])", r"\\\1", text)


def zsh_value(option):
    if not option.value:
        return ""
    action = f"({' '.join(option.choices)})" if option.choices else "_files" if takes_file(option) else " "
    # Two colons: the value may be left out.
    return f"{'::' if option.value_is_optional else ':'}{described(option.value)}:{action}"


def zsh_specifications(option):
    for spelling in option.names:
        sign = ""
        if option.value:
            sign = ("=-" if option.value_is_optional else "=") if spelling.startswith("--") else "+"
        others = f"({' '.join(option.names)})" if len(option.names) > 1 else ""
        # What may be given several times excludes nothing, itself included.
        repeated = "*" if "several times" in option.description else ""
        yield quoted(f"{repeated or others}{spelling}{sign}[{described(option.description)}]{zsh_value(option)}")


def zsh_function(name, page, top):
    function = "_".join((f"_{name}", *page.path))
    options = [*page.options, *(top.options if page is not top else [])]
    known = {}
    for option in options:
        known.setdefault(tuple(option.names), option)
    lines = [*(line for option in known.values() for line in zsh_specifications(option))]
    if not page.commands:
        # A plain word is a file, where one is taken.
        lines += ["'*:file:_files'"] if page.positionals else []
        return f"{function}() {{\n  _arguments \\\n    " + " \\\n    ".join(lines) + "\n}\n"
    commands = " ".join(f"{child}\\:{quoted_in_list(description)}" for child, description in page.commands)
    lines += [quoted(f"1:command:(({commands}))"), "'*::argument:->command'"]
    calls = "\n".join(f"    {child}) {function}_{child} ;;" for child, _ in page.commands)
    return (f"{function}() {{\n  local curcontext=$curcontext state line\n  typeset -A opt_args\n  _arguments -C \\\n    "
            + " \\\n    ".join(lines) + f"\n  [[ $state == command ]] || return\n  case $line[1] in\n{calls}\n  esac\n}}\n")  # fmt: skip


def quoted_in_list(text):
    return '"' + re.sub(r'(["\\:$`])', r"\\\1", text) + '"'


def zsh(name, page):
    functions = [zsh_function(name, each, page) for each in page.every()]
    return f"#compdef {name}\n# zsh completion of {name}, made from its help.\n" + "\n".join(functions) + f"\n_{name} \"$@\"\n"

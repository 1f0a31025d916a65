#!/usr/bin/env python3
"""check_options.py KORVEL: compares the options of every subcommand, as its help lists them, with the
manual page, the completions of bash, zsh and fish, docs/command.md and the tests. Prints what is
missing; the exit status is then 1. The manual page is left out where help2man is not installed."""

import pathlib
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
KORVEL = str(pathlib.Path(sys.argv[1]).resolve())
SHARED_SECTIONS = ["Reports", "Pictures", "Coordinates", "Meshes"]  # of options that several subcommands have
UNLISTED = {"--help", "--version", "--completion"}  # of the program itself
ALIASES = {"--x", "--y"}  # which the help leaves out


def output_of(*arguments):
    return subprocess.run(arguments, check=True, capture_output=True, text=True).stdout


def sections_of(text, heading):
    """The parts of a text behind each line that matches, by the first group of the match."""
    parts = re.split(heading, text, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


def words_in(text):
    return set(re.findall(r"(?<![\w-])--?[a-z][a-z-]*", text))


def options_in_help(command):
    """For each option the list of its names."""
    lines = output_of(KORVEL, "help", command).splitlines()
    matches = [re.match(r" +(--?\w[\w,-]*)", line) for line in lines]
    names = [match[1].split(",") for match in matches if match]
    return [name for name in names if "--help" not in name]


def literals_by_test():
    """Of each test the text of its string literals, of each sample its line."""
    texts = []
    for file in sorted((ROOT / "tests/command").glob("*.cpp")):
        for body in re.split(r"^TEST", file.read_text(), flags=re.MULTILINE):
            texts.append(" ".join(re.findall(r'"((?:[^"\\]|\\.)*)"', body)))
    for file in ("docs/command.md", "tests/command/bad_inputs/cases"):
        texts += re.findall(r"^\$ (.*)$", (ROOT / file).read_text(), flags=re.MULTILINE)
    return texts


problems = []
listing = re.search(r"^Commands:\n((?:  .*\n)+)", output_of(KORVEL, "--help"), re.MULTILINE)[1]
commands = re.findall(r"^  (\w+)", listing, re.MULTILINE)
options = {command: options_in_help(command) for command in commands}

document = (ROOT / "docs/command.md").read_text()
chapters = sections_of(document, r"^## (.*)\n")
shared = "\n".join(chapters.get(title, "") for title in SHARED_SECTIONS)
if re.findall(r"^korvel (\w+) +[A-Z\w|]", document, re.MULTILINE)[: len(commands)] != commands:
    problems.append("docs/command.md: the list at its beginning is not that of the help")

places = {
    "docs/command.md": {name: words_in(chapters.get(name, "") + shared) for name in commands},
    "the tests": {
        name: words_in("\n".join(text for text in TEXTS if re.search(rf"\b{name}\b", text)))
        for TEXTS in [literals_by_test()]
        for name in commands
    },
}
bash, zsh, fish = (output_of(KORVEL, "--completion", shell) for shell in ("bash", "zsh", "fish"))
places["the completion of bash"] = {
    name: words_in(re.search(rf"^    {name}:-\*\) compgen -W '(.*?)'", bash, re.MULTILINE)[1])
    for name in commands
}
in_zsh = sections_of(zsh, r"^        (\w+)\) _arguments")
places["the completion of zsh"] = {name: words_in(in_zsh.get(name, "")) for name in commands}
places["the completion of fish"] = {
    name: {
        ("--" if kind == "l" else "-") + option
        for line in fish.splitlines()
        if f"__fish_seen_subcommand_from {name}'" in line
        for kind, option in re.findall(r" -([ls]) ([a-z-]+)", line)
    }
    for name in commands
}
if shutil.which("help2man"):
    page = output_of(str(ROOT / "apps/command/man_page.sh"), KORVEL).replace("\\-", "-")
    in_page = sections_of(page, r'^\.SH "?KORVEL (\w+)"?\n')
    in_page = {name.lower(): text for name, text in in_page.items()}
    places["the manual page"] = {
        name: words_in(re.sub(r"\\f[BIR]", " ", in_page.get(name, ""))) for name in commands
    }

for place, found in places.items():
    # A text may use any of the names of an option.
    enough = any if place in ("docs/command.md", "the tests") else all
    for command in commands:
        for names in options[command]:
            if not enough(name in found[command] for name in names):
                problems.append(f"{place}: {command} {names[-1]} is missing")

known = UNLISTED | ALIASES
known |= {name for command in commands for names in options[command] for name in names}
for word in sorted(words_in(document)):
    if word.startswith("--") and word not in known and f"cmake {word}" not in document:
        problems.append(f"docs/command.md: no subcommand has {word}")

print(*problems, sep="\n")
print(f"{sum(map(len, options.values()))} options of {len(commands)} subcommands checked")
sys.exit(1 if problems else 0)

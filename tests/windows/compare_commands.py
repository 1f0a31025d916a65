#!/usr/bin/env python3
"""compare_commands.py KORVEL KORVEL_EXE [--all]: runs commands with the korvel of this system and, under
Wine, with the one for Windows. What they print, their exit statuses and the files that they write have to
be the same, byte by byte, except for times and the pixels of pictures.

The commands are those of the file "commands" beside this one, and every third one of
tests/command/bad_inputs/cases; with --all every one. Prints what differs; the exit status is then 1.
"""

import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

here = pathlib.Path(__file__).resolve().parent
project = here.parent.parent
bad_inputs = project / "tests/command/bad_inputs"
# Wine takes names and arguments in the character set of the locale.
environment = dict(os.environ, LC_ALL="C.UTF-8")


def without_times(text):
    text = re.sub(rb"\d+\.\d ms", b"TIME ms", text)
    return re.sub(rb'("milliseconds": ){[^}]*}', rb"\1{}", text)


def run(program, directory, line):
    """The status and the outputs of a command, whose standard input "< FILE" names."""
    arguments, _, source = line.partition(" <")
    with open(directory / source.strip() if source else os.devnull, "rb") as standard_input:
        result = subprocess.run(
            [*program, *shlex.split(arguments)], cwd=directory, env=environment,
            stdin=standard_input, capture_output=True, check=False, timeout=100)
    return {
        "exit status": result.returncode,
        "standard output": without_times(result.stdout),
        "standard error": without_times(result.stderr),
    }


def first_difference(linux, windows):
    if isinstance(linux, int):
        return f"{windows} instead of {linux}"
    for ours, theirs in zip(linux.splitlines(True) + [b"(end)"], windows.splitlines(True) + [b"(end)"]):
        if ours != theirs:
            return f"{theirs[:150]!r} instead of {ours[:150]!r}"
    return "nothing"


def written(directory):
    """The files, pictures without their contents."""
    files = {}
    for file in sorted(directory.rglob("*")):
        if file.is_file():
            name = str(file.relative_to(directory))
            files[name] = b"" if file.suffix.lower() == ".png" else file.read_bytes()
    return files


class Comparison:
    """Groups of commands that are run one after another, each program in a directory of its own."""

    attempts = 3

    def __init__(self, linux, windows):
        self.programs = {"linux": [linux], "windows": ["wine", windows]}
        self.differences = 0

    def run(self, commands, prepare):
        """Compares a group. Under load Wine sometimes ends a program that has a window before it has
        begun, or kills it at its end, so a group that differs runs again."""
        linux = self.results("linux", commands, prepare)
        for attempt in range(1, self.attempts + 1):
            found = self.compare(commands, linux, self.results("windows", commands, prepare))
            if not found:
                break
            again = ", once more:" if attempt < self.attempts else ":"
            print(f"attempt {attempt} differs{again}", *found, sep="\n", flush=True)
        self.differences += len(found)

    def results(self, system, commands, prepare):
        """Of each command what `run` returns, and the files that there are at the end."""
        with tempfile.TemporaryDirectory(prefix="korvel-") as scratch:
            directory = pathlib.Path(scratch) / system
            prepare(directory)
            runs = [run(self.programs[system], directory, line) for line in commands]
            return runs, written(directory)

    @staticmethod
    def compare(commands, linux, windows):
        """A line for each difference."""
        found = []

        def note(what, ours, theirs):
            if ours != theirs:
                found.append(f"{what}: {first_difference(ours, theirs)}")

        for line, ours, theirs in zip(commands, linux[0], windows[0]):
            for what in ours:
                note(f"$ {line}\n  {what}", ours[what], theirs[what])
        ours, theirs = linux[1], windows[1]
        note("names of files", "\n".join(ours).encode(), "\n".join(theirs).encode())
        for name in ours.keys() & theirs.keys():
            note(name, ours[name], theirs[name])
        return found


def groups_of_commands():
    """Groups of lines, which blank lines separate. Each starts without files of the others."""
    text = (here / "commands").read_text(encoding="utf-8")
    lines = [line for line in text.split("\n") if not line.startswith("#")]
    return [group.split("\n") for group in re.split(r"\n{2,}", "\n".join(lines).strip("\n"))]


def prepare_samples(directory):
    """The samples, and the same with the line ends of Windows."""
    directory.mkdir()
    for sample in (project / "data").glob("*.curves"):
        shutil.copy(sample, directory)
    states = (directory / "us-states.curves").read_bytes()
    (directory / "crlf.curves").write_bytes(b"# states\r\n" + states.replace(b"\n", b"\r\n"))
    (directory / "bad crlf.curves").write_bytes(b"1 # one\r\n2\r\n1 2 # first\r\nx 3\r\n")
    (directory / "Länder ß.curves").write_bytes(states)
    (directory / "lands.geojson").write_bytes(
        b'{"type": "FeatureCollection", "features": [\r\n{"type": "Feature", "id": 7, "properties":'
        b'{"name": "L\xc3\xa4nder", "part": 0.1}, "geometry": {"type": "Polygon", "coordinates":'
        b'[[[7.5, 46.123456], [7.25, 47], [8, 46, 612], [7.5, 46.123456]]]}}]}')
    (directory / "small.curves").write_bytes(b"1\n6\n0 0\n60 1\n59 20\n21 22\n20 51\n0 0\n")
    points = b"# places\r\n50000 50000\r\n\r\n-1 , 7\r\n"
    (directory / "points").write_bytes(points)


def main():
    linux, windows = (str(pathlib.Path(name).resolve()) for name in sys.argv[1:3])
    comparison = Comparison(linux, windows)
    cases = [line[2:] for line in (bad_inputs / "cases").read_text().split("\n")
             if line.startswith("$ ")]
    step = 1 if "--all" in sys.argv else 3
    jobs = [(group, prepare_samples) for group in groups_of_commands()]
    jobs.append((cases[::step], lambda directory: shutil.copytree(bad_inputs, directory)))
    with ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        for done in [pool.submit(comparison.run, *job) for job in jobs]:
            done.result()
    commands = sum(len(group) for group, _ in jobs)
    print(f"{commands} commands, {comparison.differences} differences")
    return 1 if comparison.differences else 0


sys.exit(main())

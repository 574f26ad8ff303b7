"""Runs clang-tidy for script/check, in as few and as short runs as possible.

    tidy.py naming FOLDER...    only the naming check
    tidy.py all FOLDER...       every check of .clang-tidy

Parsing and matching the headers is what takes the time: sources with the same compile flags are
checked together, as one unit that includes them. A source that cannot be compiled after the others
(a name of an unnamed namespace is there twice) is checked alone. A unit is checked again only when its
sources, the headers of this tree that they reach, its flags or the configuration have changed."""

import hashlib
import json
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from functools import lru_cache
from os import cpu_count
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
TREE = ROOT / "build" / "lint"
MOST = 24  # sources per unit: about ten seconds for all checks
NAMING = "readability-identifier-naming"
TOPS = ["include", "platform", "src", "simulator", "host", "tests", "bench"]
INCLUDE = re.compile(r'^\s*#\s*include\s*["<]([^">]+)[">]', re.MULTILINE)


def compile_commands(folders):
    """Pairs of source and compile flags."""
    for entry in json.loads((TREE / "compile_commands.json").read_text()):
        source = Path(entry["file"])
        if not any(source.is_relative_to(ROOT / folder) for folder in folders):
            continue
        words = shlex.split(entry["command"])
        out = words.index("-o")
        flags = [*words[1:out], *words[out + 2:]]
        unwanted = ("-c", str(source), "-fno-gnu-unique")  # GCC's own is an error with clang
        yield source, tuple(flag for flag in flags if flag not in unwanted)


def units(folders):
    """Lists of sources with one set of flags, and the flags."""
    by_flags = {}
    for source, flags in compile_commands(folders):
        by_flags.setdefault((source.relative_to(ROOT).parts[0], flags), []).append(source)
    for (_, flags), sources in by_flags.items():
        sources.sort()
        count = -(-len(sources) // MOST)
        size = -(-len(sources) // count)
        for first in range(0, len(sources), size):
            yield sources[first:first + size], flags


@lru_cache(maxsize=None)
def headers():
    """The headers of this tree by file name."""
    found = {}
    for top in TOPS:
        for header in (ROOT / top).rglob("*.h"):
            found.setdefault(header.name, []).append(header)
    return found


@lru_cache(maxsize=None)
def included(file):
    """The headers that a file may include: all of this tree that match an included name."""
    names = INCLUDE.findall(file.read_text())
    return [h for name in names for h in headers().get(Path(name).name, []) if str(h).endswith("/" + name)]


def reached(sources):
    """The sources and all headers of this tree that they reach, in order."""
    files, waiting = set(), list(sources)
    while waiting:
        file = waiting.pop()
        if file not in files:
            files.add(file)
            waiting += included(file)
    return sorted(files)


@lru_cache(maxsize=None)
def configuration():
    """What the result of every unit depends on: the tool, this program, the .clang-tidy files."""
    version = subprocess.run(["clang-tidy", "--version"], check=True, capture_output=True).stdout
    files = [Path(__file__), ROOT / ".clang-tidy", *sorted(ROOT.glob("[a-z]*/.clang-tidy"))]
    return version + b"".join(file.read_bytes() for file in files)


def key(mode, sources, flags):
    digest = hashlib.sha256(configuration())
    digest.update(repr((mode, flags)).encode())
    for file in reached(sources):
        digest.update(str(file.relative_to(ROOT)).encode() + b"\0" + file.read_bytes() + b"\0")
    return digest.hexdigest()


def write_configuration(mode):
    """The units stand in build/, with the configuration of the folders that their sources are in.
    (What holds for a name in an included file is looked up where that file is.)"""
    for config in [ROOT / ".clang-tidy", *ROOT.glob("[a-z]*/.clang-tidy")]:
        text = config.read_text()
        if mode == "naming":
            text = re.sub(r"(?m)^Checks:.*", f"Checks: '-*,{NAMING}'", text)
        copy = TREE / mode / config.relative_to(ROOT)
        copy.parent.mkdir(parents=True, exist_ok=True)
        copy.write_text(text)


def check(mode, sources, flags, name):
    """The findings of the sources; empty when they are clean."""
    unit = TREE / mode / sources[0].relative_to(ROOT).parts[0] / f"{name[:16]}.cpp"
    unit.parent.mkdir(parents=True, exist_ok=True)
    unit.write_text("".join(f'#include "{source}"\n' for source in sources))
    run = subprocess.run(["clang-tidy", "--quiet", str(unit), "--", *flags], cwd=TREE,
                         capture_output=True, text=True, check=False)
    unit.unlink()
    lines = [line for line in run.stdout.splitlines() if re.search(r": (warning|error): ", line)]
    errors = [line.split(":")[0] for line in lines if "[clang-diagnostic-error" in line]
    if errors and len(sources) > 1:
        alone = [source for source in sources if str(source) in errors] or sources
        rest = [source for source in sources if source not in alone]
        groups = [[source] for source in alone] + ([rest] if rest else [])
        return [line for group in groups for line in check(mode, group, flags, name)]
    if run.returncode < 0 or (run.returncode > 0 and not lines):
        return [f"clang-tidy failed: {run.stderr.strip()}"]
    return [line.removeprefix(f"{ROOT}/") for line in lines if not line.startswith(str(unit))]


def main():
    mode, folders = sys.argv[1], sys.argv[2:]
    clean = TREE / f"{mode}-clean"
    clean.mkdir(exist_ok=True)
    write_configuration(mode)
    jobs = {key(mode, sources, flags): (sources, flags) for sources, flags in units(folders)}
    for old in clean.iterdir():
        if old.name not in jobs:
            old.unlink()
    waiting = [name for name in jobs if not (clean / name).exists()]
    waiting.sort(key=lambda name: -sum(s.stat().st_size for s in jobs[name][0]))

    def work(name):
        lines = check(mode, *jobs[name], name)
        if not lines:
            (clean / name).touch()
        return lines

    with ThreadPoolExecutor(cpu_count()) as pool:
        findings = {line for lines in pool.map(work, waiting) for line in lines}
    print(*sorted(findings), sep="\n", end="\n" if findings else "")
    sys.exit(bool(findings))


if __name__ == "__main__":
    main()

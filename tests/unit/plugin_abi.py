#!/usr/bin/python3
"""The plug-in's binary interface is the recorded one: what it exports, and the tables of virtual operations that it
shares with the libraries it is linked with. A change has to be meant, and is recorded with script/abi --record.

Usage: plugin_abi.py [--record] PLUGIN INTERFACES RECORD SOURCES

PLUGIN is the library, INTERFACES one that names every class with virtual operations (abi/Interfaces.cpp), RECORD the
folder of the recorded descriptions, SOURCES the tree's root, whose headers are looked through for classes that nobody
has named. Status 77: the tools are missing.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys

# What depends on the machine and says nothing of the interface.
QUIET = ["--no-elf-needed", "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--exported-interfaces-only"]
# The standard library's classes may grow within; a class that holds one still tells its own size.
SUPPRESSED = "[suppress_type]\n  name_regexp = ^(std|__gnu_cxx)::\n"


def describe(library):
    described = subprocess.run(["abidw", *QUIET, library], check=True, capture_output=True, text=True).stdout
    # By a relative or by a whole name, as the build has it.
    return re.sub(r"path='[^']*?([^/']+)'", r"path='\1'", described)


def has_virtual(body):
    return re.search(r"\b(virtual|override)\b", body) is not None


def unnamed_classes(sources):
    named = set(re.findall(r"const (\w+)&", (sources / "tests/unit/abi/Interfaces.cpp").read_text()))
    found = set()
    for folder in ("include", "platform"):
        for header in sorted((sources / folder).rglob("*.h")):
            for name, body in re.findall(r"^(?:class|struct)(?: NORVEX_API)? (\w+)[^;{]*\{(.*?)^\};", header.read_text(),
                                         re.MULTILINE | re.DOTALL):
                if has_virtual(body):
                    found.add(name)
    return sorted(found - named)


def compare(recorded, library):
    """What changed, empty when nothing did."""
    suppressions = pathlib.Path(os.environ.get("TMPDIR", "/tmp")) / f"plugin-abi-{os.getpid()}"
    suppressions.write_text(SUPPRESSED)
    try:
        result = subprocess.run(["abidiff", "--suppressions", suppressions, recorded, library],
                                capture_output=True, text=True)
    finally:
        suppressions.unlink()
    return result.stdout + result.stderr if result.returncode != 0 else ""


def main(words):
    record = words[:1] == ["--record"]
    plugin, interfaces, folder, sources = map(pathlib.Path, words[1 if record else 0:])
    if not shutil.which("abidw") or not shutil.which("abidiff"):
        print("abidw and abidiff are not installed (abigail-tools)")
        return 77
    status = 0
    for name in unnamed_classes(sources):
        print(f"{name} has virtual operations and is not named in tests/unit/abi/Interfaces.cpp")
        status = 1
    for library, recorded in ((plugin, folder / "plugin.abi"), (interfaces, folder / "interfaces.abi")):
        if record:
            recorded.write_text(describe(library))
            continue
        changes = compare(recorded, library)
        if changes:
            print(f"{library.name} is no longer what {recorded.name} records:\n\n{changes}")
            status = 1
    if status != 0 and not record:
        print("If that is meant: script/abi --record, and commit what it writes with the change.")
    return status


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

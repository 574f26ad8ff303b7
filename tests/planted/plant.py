"""Plants one fault after the other into a copy of the sources and tells which tests notice it.

    plant.py ROOT FOLDER [NUMBER...]

ROOT is the checkout, FOLDER gets the copy and its build."""

import filecmp
import os
import re
import shutil
import subprocess
import sys

from faults import FAULTS

PROGRAMS = ["zarn_unit_tests", "zarn_driver_tests", "zarn_tpms_tests", "zarn_console_tests"]
# Seconds that a program may take; a fault may keep one waiting for ever.
LIMIT = 120


def say(text):
    print(f"planted-faults: {text}", file=sys.stderr, flush=True)


def copy(root, source):
    """The checkout's files as they stand, committed or not. One that is the same keeps its time: what was built from it
    stands."""
    names = subprocess.run(["git", "-C", root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                           stdout=subprocess.PIPE, text=True, check=True).stdout
    for name in filter(None, names.split("\0")):
        here, there = os.path.join(root, name), os.path.join(source, name)
        if os.path.exists(here) and not (os.path.exists(there) and filecmp.cmp(here, there, shallow=False)):
            os.makedirs(os.path.dirname(there), exist_ok=True)
            shutil.copy(here, there)


def build(source, tree):
    if not os.path.exists(os.path.join(tree, "build.ninja")):
        subprocess.run(["cmake", "-S", source, "-B", tree, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                        "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"],
                       stdout=subprocess.DEVNULL, check=True)
    result = subprocess.run(["ninja", "-C", tree, *PROGRAMS], stdout=subprocess.PIPE, text=True, check=False)
    return result.returncode == 0, result.stdout


def run_tests(tree):
    """The tests that fail, in the programs' order; a program that ends or hangs counts as its last test."""
    failed = []
    for name in PROGRAMS:
        try:
            result = subprocess.run([os.path.join(tree, "bin", name)], stdin=subprocess.DEVNULL, timeout=LIMIT,
                                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
            output, status = result.stdout.decode(errors="replace"), result.returncode
        except subprocess.TimeoutExpired as late:
            output, status = (late.stdout or b"").decode(errors="replace"), "hangs"
        found = list(dict.fromkeys(re.findall(r"^\[  FAILED  \] ([\w/]+\.[\w/]+)", output, re.M)))
        if not found and status != 0:
            begun = re.findall(r"^\[ RUN      \] (\S+)", output, re.M)
            found = [begun[-1] if begun else name]
        failed += found
    return failed


def main():
    root, folder = map(os.path.abspath, sys.argv[1:3])
    numbers = [int(word) for word in sys.argv[3:]] or range(1, len(FAULTS) + 1)
    if not all(1 <= number <= len(FAULTS) for number in numbers):
        say(f"a fault's number is 1 to {len(FAULTS)}")
        return 2
    source, tree = os.path.join(folder, "source"), os.path.join(folder, "build")
    copy(root, source)
    say("building without a fault")
    built, output = build(source, tree)
    if not built:
        sys.stderr.write(output)
        return 1
    if failed := run_tests(tree):
        say(f"the tests fail without a fault: {', '.join(failed)}")
        return 1
    missed = 0
    for number in numbers:
        what, name, piece, fault = FAULTS[number - 1]
        path = os.path.join(source, "src", name)
        with open(path, encoding="utf-8") as file:
            text = file.read()
        if text.count(piece) != 1:
            say(f"fault {number} ({what}): expected its piece of text once in src/{name}, found {text.count(piece)}")
            return 1
        try:
            with open(path, "w", encoding="utf-8") as file:
                file.write(text.replace(piece, fault))
            built, output = build(source, tree)
            if not built:
                say(f"fault {number} ({what}) does not build:\n{output}")
                return 1
            failed = run_tests(tree)
        finally:
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)
        missed += not failed
        noticed = f"{len(failed)} tests, first {failed[0]}" if failed else "NOT NOTICED"
        print(f"{number:2} src/{name}: {what}: {noticed}", flush=True)
    print(f"planted-faults: {len(numbers)} planted, {missed} not noticed")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())

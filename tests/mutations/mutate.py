"""Makes one mistake after the other in a copy of the sources, and tells which test notices it.

    mutate.py ROOT FOLDER [--check] [--room ROOM] [--only NUMBER]

ROOT is the checkout, FOLDER gets the copy and its build (preset debug). What a mutation is: mutations.py."""

import argparse
import filecmp
import os
import pathlib
import re
import shutil
import subprocess
import sys

from mutations import MUTATIONS

# What the Python tests start.
PROGRAMS = ["norvex-sim", "norvex-simctl", "dlogutil", "lumo-debugmenu", "zarn-debughost", "zarn-debugmenu",
            "host-example-console", "failing-calls"]
# Seconds for one entry of a mutation's tests; a mutation may keep one waiting for ever.
LIMIT = 120


def say(text):
    print(f"mutations: {text}", file=sys.stderr, flush=True)


def find_old(text, mutation):
    """Where the mutation's text stands; how a formatter breaks its lines makes no difference."""
    return list(re.finditer(r"\s*".join(map(re.escape, mutation.old.split())), text))


def find_stale(root, mutations):
    """Lines about those whose text does not stand in its file exactly once."""
    stale = []
    for number, mutation in mutations:
        path = root / mutation.file
        count = len(find_old(path.read_text(encoding="utf-8"), mutation)) if path.exists() else 0
        if count != 1:
            stale.append(f"{number} ({mutation.wrong}): stale, its text stands {count} times in {mutation.file}")
    return stale


def copy_sources(root, folder):
    """The checkout's files as they stand, committed or not. One that is the same keeps its time, and what was built from
    it stands."""
    names = subprocess.run(["git", "-C", root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                           stdout=subprocess.PIPE, text=True, check=True).stdout
    for name in filter(None, names.split("\0")):
        here, there = root / name, folder / name
        if here.is_file() and not (there.exists() and filecmp.cmp(here, there, shallow=False)):
            there.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(here, there)


def get_targets(mutations):
    """What has to be built for the tests of these mutations."""
    tests = {test for _, mutation in mutations for test in mutation.tests}
    return sorted({name for test in tests for name in (PROGRAMS if ".py" in test else [test.partition(":")[0]])})


def build(folder, targets):
    """Empty, or what the compiler said."""
    tree = folder / "build/debug"
    if not (tree / "build.ninja").exists():
        launcher = [f"-DCMAKE_{language}_COMPILER_LAUNCHER=ccache" for language in ("C", "CXX") if shutil.which("ccache")]
        subprocess.run(["cmake", "--preset", "debug", *launcher], cwd=folder, stdout=subprocess.DEVNULL, check=True)
    result = subprocess.run(["ninja", "-C", tree, *targets], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                            errors="replace", check=False)
    return result.stdout if result.returncode != 0 else ""


def run_test(folder, test):
    """The first test that fails, empty when none does. A program that ends or hangs counts as the test it was at."""
    tree = folder / "build/debug"
    if ".py" in test:
        command = ["/usr/bin/python3", "-B", "-m", "pytest", "-q", "-x", "--tb=no", folder / test]
        name = r"^FAILED \S*?([\w/]+\.py::\w+)|^ERROR \S*?([\w/]+\.py\S*)"
    else:
        program, _, tests = test.partition(":")
        command = [tree / "bin" / program, "--gtest_fail_fast", f"--gtest_filter={tests or '*'}"]
        name = r"^\[  FAILED  \] ([\w/]+\.[\w/]+)"
    try:
        result = subprocess.run(command, cwd=folder / "tests", env={**os.environ, "ZARN_BUILD": str(tree)}, timeout=LIMIT,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
        output, status = result.stdout, result.returncode
    except subprocess.TimeoutExpired as late:
        output, status = late.stdout or b"", "hangs"
    output = output.decode(errors="replace")
    if status == 0:
        return ""
    failed = re.search(name, output, re.M) or re.search(r".*^\[ RUN      \] (\S+)", output, re.M | re.S)
    return next(filter(None, failed.groups())) if failed else test


def find_notice(folder, tests):
    return next(filter(None, (run_test(folder, test) for test in tests)), "")


def try_mutation(folder, mutation):
    """What notices it; empty when nothing does. RuntimeError when it does not build."""
    path = folder / mutation.file
    text = path.read_text(encoding="utf-8")
    try:
        old = find_old(text, mutation)[0]
        path.write_text(text[:old.start()] + mutation.new.strip() + text[old.end():], encoding="utf-8")
        if output := build(folder, get_targets([(0, mutation)])):
            raise RuntimeError(output)
        return find_notice(folder, mutation.tests)
    finally:
        path.write_text(text, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root", type=pathlib.Path)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--room", default="")
    parser.add_argument("--only", type=int)
    given = parser.parse_args()
    mutations = [(number, mutation) for number, mutation in enumerate(MUTATIONS, 1)
                 if given.only in (None, number) and f"{mutation.room}/".startswith(given.room and f"{given.room}/")]
    if not mutations:
        say(f"no such mutation; rooms: {', '.join(sorted({mutation.room for mutation in MUTATIONS}))}")
        return 2
    if stale := find_stale(given.root, mutations):
        say("\n".join(stale))
        return 1
    if given.check:
        print(f"mutations: {len(mutations)}, none stale")
        return 0
    copy_sources(given.root, given.folder)
    say("building without a mutation")
    if output := build(given.folder, get_targets(mutations)):
        say(output)
        return 1
    tests = sorted({test for _, mutation in mutations for test in mutation.tests})
    if failed := find_notice(given.folder, tests):
        say(f"a test fails without a mutation: {failed}")
        return 1
    missed = 0
    for number, mutation in mutations:
        try:
            noticed = try_mutation(given.folder, mutation)
        except RuntimeError as error:
            say(f"{number} ({mutation.wrong}) does not build:\n{error}")
            return 1
        missed += not noticed
        print(f"{number:3} {mutation.file}: {mutation.wrong}: {noticed or 'NOT NOTICED'}", flush=True)
    print(f"mutations: {len(mutations)}, {missed} not noticed")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())

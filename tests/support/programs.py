"""The programs under test, and how they are run. ZARN_BUILD names the build's folder (build/debug without it)."""

import functools
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("ZARN_BUILD", ROOT / "build/debug")).resolve()
if not (BUILD / "CMakeCache.txt").exists():
    sys.exit(f"{BUILD} is not a build: ZARN_BUILD has to name one")
_CACHE = dict(line.split("=", 1) for line in (BUILD / "CMakeCache.txt").read_text().splitlines() if "=" in line)
# Empty, or the sanitizers of the build: "address,undefined", "thread".
SANITIZE = _CACHE["ZARN_SANITIZE:STRING"]
COVERAGE = _CACHE["ZARN_COVERAGE:BOOL"] == "ON"

# In seconds; never reached in a run that goes well.
LIMIT = 120


def program(name):
    return str(BUILD / "bin" / name)


HOST = program("zarn-debughost")
SIM = program("norvex-sim")
SIMCTL = program("norvex-simctl")
PLUGIN = str(BUILD / "lib/libzarn-debugmenu.so")


def run(*command, status=0, **options):
    """A program's run to its end, which must be with this status (None: any). Its output and errors are texts."""
    if "stdin" not in options:
        options.setdefault("input", "")
    result = subprocess.run([str(word) for word in command],
                            **{"capture_output": True, "text": True, "timeout": LIMIT, "check": False, **options})
    assert status in (None, result.returncode), result
    return result


def refusal(*command, status=1, **options):
    """Of a program that must refuse: its one line on standard error, which names the program."""
    result = run(*command, status=status, **options)
    assert not result.stdout and result.stderr.count("\n") == 1, result
    assert result.stderr.startswith(os.path.basename(command[0]) + ": "), result
    return result.stderr


@functools.cache
def can_mount():
    """Whether this machine lets its user mount in a view of their own. Not asked of the script, which is what is tested."""
    view = ["unshare", "--mount"]
    if os.geteuid() != 0:
        view = ["unshare", "--user", "--map-current-user", "--keep-caps", "--mount"]
    overlay = "mount -t overlay overlay -o lowerdir=/usr/lib:/usr/bin /usr/bin"
    return run(*view, "sh", "-c", overlay, status=None).returncode == 0

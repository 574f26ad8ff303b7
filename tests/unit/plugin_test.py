"""The plug-in's binary interface is the recorded one: what it exports, and the tables of virtual operations that it
shares with the libraries it is linked with. A change has to be meant, and is recorded with script/abi --record, which
sets ZARN_RECORD_ABI."""

import os
import re
import shutil

import pytest

from programs import BUILD, PLUGIN, ROOT, run

RECORDS = ROOT / "tests/unit/abi"
# Names every class with virtual operations.
INTERFACES = str(BUILD / "lib/libabi-interfaces.so")
# What depends on the machine and says nothing of the interface.
QUIET = ["--no-elf-needed", "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--exported-interfaces-only"]
# The standard library's classes may grow within; a class that holds one still tells its own size.
SUPPRESSED = "[suppress_type]\n  name_regexp = ^(std|__gnu_cxx)::\n"


def test_the_plug_in_exports_its_entry_alone():
    table = run("nm", "-D", "--defined-only", PLUGIN).stdout
    assert [line.split()[-1] for line in table.splitlines()] == ["zarn_startmaindebug"]


def test_every_class_with_virtual_operations_is_recorded():
    named = set(re.findall(r"const (\w+)&", (RECORDS / "Interfaces.cpp").read_text()))
    for header in [*(ROOT / "include").rglob("*.h"), *(ROOT / "platform").rglob("*.h")]:
        for name, body in re.findall(r"^(?:class|struct)(?: NORVEX_API)? (\w+)[^;{]*\{(.*?)^\};", header.read_text(),
                                     re.MULTILINE | re.DOTALL):
            assert name in named or not re.search(r"\b(virtual|override)\b", body), \
                f"{name} is not named in tests/unit/abi/Interfaces.cpp"


@pytest.mark.skipif(not shutil.which("abidiff"), reason="abigail-tools are not installed")
@pytest.mark.skipif(not os.path.exists(INTERFACES), reason="recorded for GCC on x86-64 only")
@pytest.mark.parametrize("library, name", [(PLUGIN, "plugin.abi"), (INTERFACES, "interfaces.abi")])
def test_the_binary_interface_is_the_recorded_one(folder, library, name):
    if os.environ.get("ZARN_RECORD_ABI"):
        description = run("abidw", *QUIET, library).stdout
        # Sources by their last name: the build has them by a relative or by a whole one.
        (RECORDS / name).write_text(re.sub(r"path='[^']*?([^/']+)'", r"path='\1'", description))
    (folder / "suppressions").write_text(SUPPRESSED)
    result = run("abidiff", "--suppressions", folder / "suppressions", RECORDS / name, library, status=None)
    assert result.returncode == 0, result.stdout + result.stderr + "If that is meant: script/abi --record"

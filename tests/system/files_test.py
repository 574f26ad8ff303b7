"""Every file that a program writes because the user names it: what is there already, and what is beside it."""

import os
import stat

import pytest

from norvex_tv import start_sims
from programs import HOST, LIMIT, SIM, SIMCTL, run


def run_tv(option, path, tv, status):
    """A TV that writes the file, from its start to its end."""
    if status:
        return run(SIM, "--socket", f"{tv.socket}2", option, path, status=status, env=tv.environment)
    [process], ready = start_sims(1, "--socket", f"{tv.socket}2", option, path, env=tv.environment)
    process.terminate()
    assert process.wait(LIMIT) == 0 and ready
    return None


# By name: writes the file, and ends with the status. Whether the file is a stream: written where it is, rather than
# replaced as a whole.
WRITERS = {
    "saved line-up": lambda path, tv, status: run(SIMCTL, "lineup", "save", path, status=status, env=tv.environment),
    "transcript": lambda path, tv, status: run(HOST, "-c", "99", "--transcript", path, status=status,
                                               env=tv.environment),
    "log": lambda path, tv, status: run_tv("--log", path, tv, status),
    "database": lambda path, tv, status: run_tv("--database", path, tv, status),
}
REPLACED = "saved line-up"
EACH_FILE = pytest.mark.parametrize("name", WRITERS)


@EACH_FILE
def test_a_new_file_is_the_only_one_that_is_left(shared_tv, folder, name):
    WRITERS[name](folder / "new", shared_tv, 0)
    assert os.listdir(folder) == ["new"] and (folder / "new").stat().st_size > 0


@EACH_FILE
@pytest.mark.parametrize("path", ["", "none/file"], ids=["a folder", "in a missing folder"])
def test_a_file_that_cannot_be_is_named_in_one_line(shared_tv, folder, name, path):
    told = WRITERS[name](f"{folder}/{path}", shared_tv, 1).stderr
    assert told.count("\n") == 1 and str(folder) in told
    assert os.listdir(folder) == []


@EACH_FILE
def test_the_mode_of_a_file_stays_and_so_does_every_file_beside_it(shared_tv, folder, name):
    # One that this writer has made.
    WRITERS[name](folder / "file", shared_tv, 0)
    (folder / "file").chmod(0o640)
    if os.geteuid() == 0:
        os.chown(folder / "file", 65534, 65534)
    owner = (folder / "file").stat().st_uid
    others = [f"file{end}" for end in (".part", ".tmp", ".new", ".bak", "~", ".1")]
    for other in others:
        (folder / other).symlink_to("kept")
    (folder / "kept").write_text("kept")
    WRITERS[name](folder / "file", shared_tv, 0)
    after = (folder / "file").stat()
    assert (stat.S_IMODE(after.st_mode), after.st_uid) == (0o640, owner)
    assert sorted(os.listdir(folder)) == sorted(["file", "kept", *others])
    assert (folder / "kept").read_text() == "kept"


@EACH_FILE
def test_a_symbolic_link_stays_one(shared_tv, folder, name):
    (folder / "link").symlink_to("file")
    WRITERS[name](folder / "link", shared_tv, 1 if name == REPLACED else 0)
    assert (folder / "link").is_symlink() and (folder / "file").exists() == (name != REPLACED)


@EACH_FILE
def test_a_device_stays_one(shared_tv, name):
    before = os.stat("/dev/null")
    WRITERS[name]("/dev/null", shared_tv, 0 if name in ("transcript", "log") else 1)
    after = os.stat("/dev/null")
    assert (after.st_ino, after.st_mode, after.st_rdev) == (before.st_ino, before.st_mode, before.st_rdev)


@pytest.mark.parametrize("name", ["saved line-up", "log", "database"])
def test_a_pipe_that_nobody_reads_stays_one_and_delays_nobody(shared_tv, folder, name):
    os.mkfifo(folder / "pipe")
    WRITERS[name](folder / "pipe", shared_tv, 0 if name == "log" else 1)
    assert stat.S_ISFIFO((folder / "pipe").stat().st_mode) and os.listdir(folder) == ["pipe"]


@pytest.mark.skipif(os.geteuid() == 0, reason="root may write every file")
@EACH_FILE
def test_a_file_that_the_user_has_protected_stays(shared_tv, folder, name):
    (folder / "file").touch(0o400)
    assert "Permission denied" in WRITERS[name](folder / "file", shared_tv, 1).stderr
    assert (folder / "file").stat().st_size == 0

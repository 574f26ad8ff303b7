"""The provider log switch, the media log viewers and the sibling library, at the device's fixed paths."""

import contextlib
import os
import pathlib
import signal
import subprocess

import pytest

from norvex_tv import PROCESS_PROMPT
from programs import BUILD, LIMIT, ROOT, SIM, can_mount, program, refusal

GST_PROMPT = " 11. GST_FPA_PARSER\r\n------------------------------------\r\n" + PROCESS_PROMPT
VIEWER = program("dlogutil")
MARKER = "device/quarle-provider/data/FCdebug.conf"


@pytest.fixture
def open_on_device(tv):
    """Opens a console that finds the viewer and the sibling library where a TV has them."""
    if not can_mount():
        pytest.skip("nothing can be mounted here, as in a container without the right to")
    return lambda: tv.open_console(through=[str(ROOT / "script/in-device"), "--build", str(BUILD)])


def switch_provider_log(tv, before, word, after):
    """Enters the provider's log menu again and switches it."""
    console = tv.open_console()
    console.type("4", f" 0: [{before}] QUARLE_PROVIDER", "cmd> ")
    console.answer(("0", "QUARLE_DAEMON ==> ON[1]/OFF[0]: "), (word, f" 0: [{after}] QUARLE_PROVIDER"))
    console.leave("99 99")


def test_the_provider_log_switched_on_is_on_when_the_console_is_entered_again(tv):
    marker = tv.folder / MARKER
    for change, on in ((("OFF", "1", "ON "), True), (("ON ", "0", "OFF"), False)):
        switch_provider_log(tv, *change)
        assert marker.exists() is on
        assert provider_tags(tv) == (on, on)


def provider_tags(tv):
    tags = tv.state("/device/logTags")
    return tags["quarle-daemon"], tags["quarle-provider"]


@pytest.mark.parametrize("options", [(), ("--database", "base")], ids=["in memory", "database"])
def test_the_provider_log_is_as_its_menu_shows_it_after_the_tv_was_started_again(tv_off, options):
    options = [tv_off.folder / word if word == "base" else word for word in options]
    tv_off.start(*options)
    switch_provider_log(tv_off, "OFF", "1", "ON ")
    tv_off.end()
    tv_off.start()
    assert provider_tags(tv_off) == (True, True)
    tv_off.end()
    # While no TV runs.
    switch_provider_log(tv_off, "ON ", "0", "OFF")
    tv_off.start()
    assert provider_tags(tv_off) == (False, False)
    tv_off.end()
    switch_provider_log(tv_off, "OFF", "1", "ON ")
    tv_off.start()
    assert provider_tags(tv_off) == (True, True)
    # Back to a new TV's state: off, for the menu as well.
    tv_off.reset()
    assert provider_tags(tv_off) == (False, False)
    switch_provider_log(tv_off, "OFF", "0", "OFF")


def test_the_provider_log_is_as_its_menu_shows_it_when_a_console_begins(tv):
    marker = tv.folder / MARKER
    marker.touch()
    tv.run_words("5 12 1 99 99 99\n")
    assert "quarle-daemon: " in tv.log() and "registered for changes" in tv.log()
    marker.unlink()
    assert " 0: [OFF] QUARLE_PROVIDER" in tv.run_words("4 99 99\n")
    assert provider_tags(tv) == (False, False)


def test_looking_at_the_provider_log_makes_no_folder(tv_off):
    assert " 0: [OFF] QUARLE_PROVIDER" in tv_off.run_words("4 99 99\n")
    assert not (tv_off.folder / "device").exists()


def test_a_tv_without_a_folder_for_its_files_says_so_and_runs(tv_off):
    (tv_off.folder / "device").write_text("a file")
    tv_off.start()
    assert f"cannot create the directory {tv_off.folder}/device/quarle-provider/data" in tv_off.log()
    tv_off.reset()
    assert provider_tags(tv_off) == (False, False)


def test_a_relative_folder_of_the_device_is_refused(tv_off):
    assert refusal(SIM, env={**tv_off.environment, "NORVEX_DEVICE_DIR": "device"}) == \
        "norvex-sim: NORVEX_DEVICE_DIR: expected an absolute path, not device\n"


def start_viewer(tv, console, row, tag):
    followed = tv.state("/daemon/viewers")
    console.type(row, f"[GST Debug Log ON] ExecuteLogOn : {tag}\r\n", GST_PROMPT)
    tv.wait(f"/daemon/viewers > {followed}")


def test_two_viewers_show_the_lines_of_their_tags_and_none_of_a_third(tv, open_on_device):
    console = open_on_device()
    console.type("3", GST_PROMPT)
    start_viewer(tv, console, "0", "tvvideosink")
    start_viewer(tv, console, "4", "tvaudiosink")
    # In another console: mutes, which are logged under the two tags, and a decoder restart, which is under a third.
    tv.run_words("5 8 2 0 1 1 2 1 99 0 99 99\n")
    lines = ["tvvideosink[^\r\n]*\r\n", "tvaudiosink[^\r\n]*\r\n"]
    first = console.expect(lines)
    console.expect(lines[1 - first])
    assert "tvvideodec" not in console.before
    console.type("99", "Command not implemented\r\n")
    console.leave("99")
    # They were ended from outside, with the console.
    tv.wait("/daemon/viewers == 0")


def is_viewer_on(tv, process):
    try:
        return (process / "comm").read_text() == "dlogutil\n" and \
            tv.socket.encode() in (process / "environ").read_bytes()
    except OSError:
        return False


def test_viewers_get_the_consoles_first_three_descriptors_and_no_other(tv, open_on_device):
    console = open_on_device()
    console.answer(("1", "> "), ("99", PROCESS_PROMPT), ("3", GST_PROMPT))
    start_viewer(tv, console, "0", "tvvideosink")
    [viewer] = [process for process in pathlib.Path("/proc").glob("[0-9]*") if is_viewer_on(tv, process)]
    targets = [os.readlink(viewer / "fd" / name) for name in sorted(os.listdir(viewer / "fd"), key=int)]
    assert all(target.startswith("/dev/pts/") for target in targets[:3])
    # Its own connection to the TV, and nothing that the console had open.
    assert len(targets) == 4 and targets[3].startswith("socket:"), targets
    console.leave("99 99")


def test_a_stopped_tag_shows_nothing_until_it_is_started(tv):
    viewer = tv.open_terminal(VIEWER, "quarle-daemon")
    tv.wait("/daemon/viewers == 1")
    for words in ("5 12 1 2 99 99 99\n", "4 0 1 99 99\n", "5 12 1 99 99 99\n"):
        tv.run_words(words)
    # What came first is the line of the last visit.
    viewer.expect_exact("registered for changes")
    assert "\n" not in viewer.before and "unregistered from" not in viewer.before


def test_a_missing_viewer_leaves_the_menu_going_on(tv_off):
    assert not os.path.exists("/usr/bin/dlogutil"), "this test needs a machine that has no viewer installed"
    console = tv_off.open_console()
    console.type("3", GST_PROMPT)
    console.type("0", "[GST Debug Log ON] ExecuteLogOn : tvvideosink\r\n", GST_PROMPT)
    console.leave("99 99")


def test_a_viewer_ends_with_the_tv_that_it_follows(tv):
    viewer = tv.open_terminal(VIEWER, "tvvideosink")
    tv.wait("/daemon/viewers == 1")
    tv.kill()
    assert viewer.end() == (0, None)


@contextlib.contextmanager
def started_viewer(tv, **options):
    """One that follows the TV."""
    with subprocess.Popen([VIEWER, "tvvideosink"], env=tv.environment, **options) as viewer:
        try:
            tv.wait("/daemon/viewers == 1")
            yield viewer
        finally:
            viewer.kill()


def test_a_viewer_ends_with_its_reader_although_nothing_is_logged(tv):
    with started_viewer(tv, stdout=subprocess.PIPE) as viewer:
        viewer.stdout.close()
        assert viewer.wait(LIMIT) == 0
    tv.wait("/daemon/viewers == 0")


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
def test_a_viewer_ends_by_the_usual_signals_also_where_its_starter_blocks_and_ignores_them(tv, number):
    def shield():
        signal.signal(number, signal.SIG_IGN)
        signal.pthread_sigmask(signal.SIG_BLOCK, [number])

    with started_viewer(tv, preexec_fn=shield) as viewer:
        viewer.send_signal(number)
        assert viewer.wait(LIMIT) == -number


@pytest.mark.parametrize("tags, status", [(["tvvideosink"], 1), ([], 2)])
def test_a_viewer_without_a_tv_or_a_tag_says_so_in_one_line(tv_off, tags, status):
    refusal(VIEWER, *tags, status=status, env=tv_off.environment)


def test_choice_6_runs_the_siblings_menu_and_comes_back(open_on_device):
    console = open_on_device()
    console.type("6", "[LUMO Debug]", "lumo> ")
    console.type("99", PROCESS_PROMPT)
    console.leave("99")


def test_a_missing_sibling_is_a_line_in_the_log_and_the_menu_goes_on(tv_off):
    assert not os.path.exists("/usr/lib64/liblumo-debugmenu.so"), "this test needs a machine without the library"
    console = tv_off.open_console()
    console.type("6", PROCESS_PROMPT)
    console.leave("99")
    assert sum("liblumo-debugmenu.so" in line for line in tv_off.client_log().splitlines()) == 1

"""The pipeline test console against the simulated TV."""

import os

import pytest

from norvex_tv import PROCESS_PROMPT
from programs import HOST, run

MAIN_PROMPT = " 21. Set boot up service\r\n------------------------------------\r\n" + PROCESS_PROMPT
SIGNAL_ID = 0xFA0000000002002D


def enter(tv):
    console = tv.open_console()
    console.type("5", MAIN_PROMPT)
    return console


def test_mutes_are_seen_in_the_state_and_in_the_log(tv):
    console = enter(tv)
    console.answer(("2", "> "), ("0", "cmd> "), ("1", "On:1 "), ("1", "cmd> "))
    assert tv.state("/pipelines/1:0/sessions") == 1
    assert (tv.state("/pipelines/1:0/videoMute"), tv.state("/pipelines/1:0/audioMute")) == (1, 0)
    console.answer(("2", "On:1 "), ("1", "cmd> "), ("1", "On:1 "), ("0", "cmd> "))
    assert (tv.state("/pipelines/1:0/videoMute"), tv.state("/pipelines/1:0/audioMute")) == (0, 1)
    assert "pipeline 1:0: mute 1" in tv.log()
    console.leave("99 0 99 99")


def test_a_zoom_window_is_made_shown_and_gone_with_its_console(tv_off):
    tv_off.start("--client-grace", 100)
    console = enter(tv_off)
    console.type("19", PROCESS_PROMPT)
    console.type("3")
    for value in "0 0 960 540 0 0 480 270 0 0 1920".split():
        console.expect_exact(" = ")
        console.type(value)
    console.expect_exact("MainHeight = ")
    console.type("1080", "Created window handle[1] API ret[1]")
    assert tv_off.state("/zoom/windows/1/destination") == {"x": 0, "y": 0, "width": 480, "height": 270}
    console.type("5 1 1", "Window set! API ret[1]")
    assert tv_off.state("/zoom/windows/1/started") is True
    # Left and entered again: it is the client's.
    console.type("99 19 10", "Connected window ids = [1, ]")
    console.kill(9)
    tv_off.wait("/zoom/windows == {}")
    tv_off.wait("/pipelines/1:0/sessions == 0")


def test_a_receiver_is_registered_and_taken_back(tv):
    console = enter(tv)
    console.answer(("12", PROCESS_PROMPT), ("1", PROCESS_PROMPT))
    receivers = tv.state("/preparation/pipelines/1:0/receivers")
    assert [(each["name"], each["kind"]) for each in receivers] == [("DebugMenuTPMS", "service")]
    console.type("2", PROCESS_PROMPT)
    assert not tv.state("/preparation/pipelines/1:0/receivers")
    console.leave("0 99 99")


def test_signals_of_every_kind_are_printed_while_the_menu_waits_for_a_word(tv):
    console = enter(tv)
    tv.wait("/subscribers/0/connected == true")
    for words, line in (
            ("81 chType=-1 srvProfile=-32768 chNumber=32767 profile=101",
             "SIGNAL_SI_STARTED -> profile:101, screenId: 0, chType:-1, srvProfile:-32768, chNumber:32767"),
            ("81 data=0xffff00020001",
             "SIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:1, srvProfile:2, chNumber:-1"),
            ("193 serviceId=0xffffffffffffffff screen=1",
             "SIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 1, serviceId: 18446744073709551615"),
            ("194 flag=1", "SIGNAL_TUNE_AROUND_FINISHED -> profile:1, screenId: 0, completed: false"),
            ("194 data=0xffffffffffff0000", "SIGNAL_TUNE_AROUND_FINISHED -> profile:1, screenId: 0, completed: true"),
            ("195 success=255", "SIGNAL_BARKER_CHANNEL_TUNE -> profile:1, screenId: 0, is success:true"),
            ("195 data=0xffffffffffffff00", "SIGNAL_BARKER_CHANNEL_TUNE -> profile:1, screenId: 0, is success:false")):
        assert tv.simctl("signal", *words.split()) == "1\n"
        assert console.expect_all(f"\t{line}\r\n") == ""
    # One of no known type is not printed.
    console.type("9", MAIN_PROMPT)
    tv.signal(12345, "data=1")
    tv.signal(195, "success=1")
    assert console.expect_all("\tSIGNAL_BARKER_CHANNEL_TUNE") == ""
    console.leave("99 99")


def test_ten_thousand_signals_arrive_whole_during_menu_work_with_a_transcript(tv, folder):
    console = tv.open_console("--transcript", str(folder / "transcript"))
    console.type("5", MAIN_PROMPT)
    for _ in range(10):
        tv.signal(193, f"serviceId={SIGNAL_ID:#x}", "count=1000")
        console.sendline("2 0 1 1 99 0 9 10")
        console.expect_exact(" CheckTunerSignalState Success!")
    # Signals come in order: with this one, all others are there.
    tv.signal(195, "success=1")
    console.expect_exact("SIGNAL_BARKER_CHANNEL_TUNE")
    console.leave("99 99")
    line = f"\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 0, serviceId: {SIGNAL_ID}\n"
    assert (folder / "transcript").read_text().count(line) == 10000


def test_sessions_and_signals_come_back_when_the_tv_is_killed_and_started_again(tv):
    console = enter(tv)
    console.type("12", PROCESS_PROMPT)
    tv.kill()
    console.type("1", PROCESS_PROMPT)
    tv.start()
    # The subscriber finds the new run by itself.
    tv.wait("/subscribers/0/connected == true")
    tv.signal(193, f"serviceId={SIGNAL_ID:#x}")
    console.expect_exact(f"serviceId: {SIGNAL_ID}\r\n")
    # The session that the test has held all the while, too.
    console.type("1", PROCESS_PROMPT)
    assert len(tv.state("/preparation/pipelines/1:0/receivers")) == 1
    console.leave("99 99 99")


def test_the_tvs_environment_changes_what_a_console_sees(tv):
    console = enter(tv)
    console.type("10", " CheckTunerSignalState Success!")
    tv.set("tuner", "air", "off")
    console.type("10", " CheckTunerSignalState failed!")
    console.type("15", "Caption exist:0")
    tv.set("captions", "on")
    console.type("15", "Caption exist:1")
    tv.reset()
    console.type("10", " CheckTunerSignalState Success!")
    console.leave("99 99")


def test_the_window_id_of_the_key_value_store_is_bound_to_the_picture(tv):
    tv.set("key", "db/tv-viewer/window_id", 4711)
    tv.run_words("5 7 7 99 99 99\n")
    assert tv.state("/pipelines/1:0/windowId") == 4711


def test_a_thousand_words_of_entering_and_leaving_end(tv_off):
    tv_off.start("--client-grace", 0)
    tv_off.run_words("5 99 " * 500 + "99\n")
    tv_off.wait("/daemon/clients == []")


def test_a_console_that_keeps_thousands_of_objects_goes_on(tv):
    printed = tv.run_words("5 " + "21 65535 " * 4200 + "99 99\n")
    assert printed.count("major> ") == 4200
    assert "has more than 4096 sessions" in tv.log()


def test_two_consoles_at_once_count_each_others_sessions(tv):
    def count(console):
        console.type("1", "Reference count value is: ")
        number = int(console.readline())
        console.expect_exact("cmd> ")
        return number

    first, second = enter(tv), enter(tv)
    for console in (first, second):
        console.answer(("1", "MLS:1 > "), ("0", "cmd> "))
    with_both = count(first)
    second.leave("99 99 99")
    assert count(first) == with_both - 1
    first.leave("99 99 99")


@pytest.mark.parametrize("text, status", [("Caption exist:", 0), ("Caption is lost", 3)])
def test_a_script_of_the_host_judges_a_run(tv, folder, text, status):
    (folder / "script").write_text(f"5\n15\nexpect {text} within 0.5\n99\n99\n" if status else
                                   f"5\n15\nexpect {text}\n99\n99\n")
    run(HOST, "--script", folder / "script", status=status, env=tv.environment, cwd=os.sep)

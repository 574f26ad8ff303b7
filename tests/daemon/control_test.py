"""The control socket of norvex-sim, and norvex-simctl, which speaks to it."""

import json
import os
import re
import signal
import socket
import subprocess

import pytest

import norvex_wire as wire
from programs import LIMIT, SIMCTL

SMALL_LINE_UP = """transponder air 474000
service 0x11 7-1 "Seven"
programme 00:00 1440 "All day long"
"""
STOP = "IDebugPrintControl.Stop"
EXECUTE = "IDebugPrintControl.Execute"


def popen_simctl(tv, *words, **options):
    return subprocess.Popen([SIMCTL, *words], env=tv.environment, text=True, **options)


def test_the_state_is_shown_a_line_a_value_or_as_one_object(shared_tv):
    lines = shared_tv.simctl("state").splitlines()
    for line in ("/debug/qos false", '/debug/items/0/name "Tuner lock"', "/device/keys/db~1tv-viewer~1window_id 1"):
        assert line in lines
    assert json.loads(shared_tv.simctl("state", "--json"))["debug"]["items"][0]["name"] == "Tuner lock"


def test_the_operations_are_listed_with_their_arguments(shared_tv):
    lines = shared_tv.simctl("operations").splitlines()
    assert "IAVControl.MuteVideo(value: int) = status: int" in lines
    assert "IDebugPrintControl.Execute(command: text) = status: int, screen: text" in lines
    assert "IVideoControl.SetWindowId(windowId: int) = status: int" in lines


def test_the_journal_has_every_call_with_its_words(tv, client):
    client.start()
    client.execute("a\n\u00e4")
    client.send(wire.message(wire.CALL, wire.node(0, wire.VALUE, b"\1\2", wire.IN), "com.holvi.INone", "Do", 3))
    client.receive()
    calls = [json.loads(line) for line in tv.simctl("calls", "--json").splitlines()]
    assert [call["sequence"] for call in calls] == [1, 2, 3]
    assert calls[1]["method"] == "Execute"
    assert calls[1]["arguments"][1] == {"place": 1, "direction": "in", "name": "command", "type": "text",
                                        "value": "a\n\u00e4"}
    assert calls[1]["results"][0]["value"] == 1
    assert calls[2]["arguments"][0]["value"] == {"hex": "0102"}
    assert calls[2]["fault"] == "unknown operation"
    client.send(wire.message(wire.CALL, interface="com.holvi.I\x1b[31m", method="D\u009bo", serial=4))
    client.receive()
    lines = tv.simctl("calls").splitlines()
    assert lines[3] == r"#4 client 1 I\x1b[31m.D\xc2\x9bo() [unknown operation]"
    assert re.match(r'#2 client 1 IDebugPrintControl.Execute\(command="a\\n\\u00e4"\) = status 1, screen "',
                    lines[1])


def test_the_journal_is_never_invalid_json(tv, client):
    client.start()
    client.execute(b"\xff\xfe\x80")
    client.send(wire.message(wire.CALL, interface="com.holvi.I\u00ed\u00b3\u00bf", method="Do"))
    client.receive()
    assert tv.calls()[1]["arguments"][1]["value"] == "\ufffd\ufffd\ufffd"


def test_calls_are_followed_until_the_tv_ends(tv, client):
    with popen_simctl(tv, "calls", "--follow", "--json", stdout=subprocess.PIPE) as follower:
        for call, method in ((client.start, "Start"), (client.stop, "Stop")):
            call()
            assert json.loads(follower.stdout.readline())["method"] == method
        tv.end()
        assert follower.communicate(timeout=LIMIT)[0] == ""
        assert follower.returncode == 0


def test_a_follower_that_does_not_read_delays_no_client_and_loses_nothing(tv, client):
    with socket.socket(socket.AF_UNIX) as follower:
        follower.connect(tv.control_path)
        follower.send(tv.written("calls", "--follow", "--json"))
        client.start()
        for _ in range(3000):
            client.execute("items")
        assert client.execute("99")[0] == 0
        follower.settimeout(LIMIT)
        with follower.makefile() as lines:
            sequences = []
            while len(sequences) < 3002:
                printed = json.loads(lines.readline()).get("print", "")
                sequences += [json.loads(line)["sequence"] for line in printed.splitlines()]
        assert sequences == list(range(1, 3003))


@pytest.mark.parametrize("condition", [
    "/debug/qos == false", "/debug/qos != true", "/debug/items/0/name == Tuner lock", "/debug/none == null",
    "/debug/itemsOn < 1", "/debug/itemsOn <= 0", "/debug/itemsOn > -1", "/debug/itemsOn >= 0",
    "/daemon/injections == []"])
def test_a_condition_that_holds_is_not_waited_for(shared_tv, condition):
    shared_tv.simctl("wait", condition)
    shared_tv.simctl("wait", *condition.split())


@pytest.mark.parametrize("condition", ["/debug/itemsOn < 0", "/debug/itemsOn <= -1", "/debug/itemsOn > 0",
                                       "/debug/itemsOn >= 1", f"calls {STOP} 1"])
def test_waiting_for_a_condition_that_stays_false_times_out(shared_tv, condition):
    assert shared_tv.simctl_refusal("wait", condition, "--timeout", "0.01") == "norvex-simctl: timed out\n"


def test_waiting_for_calls_of_an_unknown_operation_is_refused(shared_tv):
    shared_tv.simctl_refusal("wait", "calls", "INone.Do", 1)


def test_a_wait_returns_when_its_condition_becomes_true(tv, client):
    client.start()
    client.execute("items")
    with popen_simctl(tv, "wait", "/debug/itemsOn >= 2") as items, popen_simctl(tv, "wait", f"calls {STOP} 1") as stop:
        client.execute("101")
        assert items.poll() is None
        client.execute("102")
        assert items.wait(LIMIT) == 0
        assert stop.poll() is None
        client.stop()
        assert stop.wait(LIMIT) == 0
    tv.reset()
    tv.simctl_refusal("wait", f"calls {STOP} 1", "--timeout", "0.01")


def test_ordered_failures_happen_and_are_noted(tv):
    with tv.connect() as client:
        tv.simctl("inject", STOP, "--result", "-7", "--count", 2)
        assert [client.stop(), client.stop(), client.stop()] == [-7, -7, 0]
        tv.simctl("inject", "com.holvi." + STOP, "--delay", 50)
        assert client.stop() == 0
        tv.simctl("inject", STOP, "--drop")
        client.ask(STOP)
        # The lost reply's place is taken by the next one's.
        assert client.stop() == 0
        tv.simctl("inject", STOP, "--close")
        client.ask(STOP)
        client.assert_closed()
    assert [call.get("injected") for call in tv.calls()] == ["result", "result", None, "delay", "drop", None, "close"]
    with tv.connect() as client:
        tv.simctl("inject", STOP, "--die")
        client.ask(STOP)
        client.assert_closed()
    assert tv.process.wait(LIMIT) == -signal.SIGKILL
    assert "no TV is running" in tv.simctl_refusal("state")


def test_what_is_ordered_is_shown_until_it_has_happened(tv, client):
    tv.inject(EXECUTE, "result", -7, count=2)
    tv.inject(EXECUTE, "delay", 50)
    tv.inject(EXECUTE, "die", with_text="x")
    client.start()
    client.execute("items")
    place = {"interface": "com.holvi.IDebugPrintControl", "method": "Execute", "calls": 1}
    assert tv.state("/daemon/injections") == [{**place, "kind": "result", "number": -7, "with": ""},
                                              {**place, "kind": "delay", "number": 50, "with": ""},
                                              {**place, "kind": "die", "number": 0, "with": "x"}]


@pytest.mark.parametrize("result, answer", [(1, b"\1"), (-5, b"\1"), (0, b"\0")])
def test_an_ordered_result_is_also_that_of_an_operation_that_says_yes_or_no(tv, client, result, answer):
    tv.inject("IDebugPrintControl.IsQoSEnabled", "result", result)
    assert client.call("IDebugPrintControl.IsQoSEnabled", status=wire.YES_OR_NO)[0] == answer


def test_a_failure_may_be_for_calls_with_a_text_only(tv, client):
    tv.simctl("inject", "INorvexSession.Open", "--result", "-7", "--with", "IAVControl")
    assert [client.open_session(name)[0] for name in ("ITunerControl", "IAVControl", "IAVControl")] == [0, -7, 0]
    tv.inject(EXECUTE, "result", -8, count=2, with_text="items")
    tv.inject(EXECUTE, "result", -9)
    client.start()
    # Each takes the first order that is for it.
    assert [client.execute(word)[0] for word in ("modes", "items", "qos", "items", "items")] == [-9, -8, 1, -8, 1]


@pytest.mark.parametrize("words, reason", [
    ("inject INone.Do --drop", "unknown operation 'INone.Do'"), ("set nonsense 1", "unknown setting 'nonsense'; available: captions, clock, hdmi, items, key"),
    ("set items x", ""), ("set items 1 2", ""), ("set items -1", ""), ("set items 1000001", ""), ("set items 1x", ""),
    ("set key a", ""), ("set key a x", ""), ("set key a 1x", ""), ("set key a 99999999999", ""),
    ("set hdmi hdmi9 plugged", ""), ("signal SI_STARTED", ""), ("signal 2147483648", ""), ("signal 81 chType", ""),
    ("signal 81 serviceId=1", ""), ("signal 81 chType=65536", ""), ("signal 81 chType=-32769", ""),
    ("signal 194 flag=1x", ""), ("signal 4711 flag=1", ""), ("signal 195 screen=65536", ""),
    ("signal 195 count=10001", ""), ("signal 195 successes=1", "success")])
def test_what_cannot_be_is_refused_and_changes_nothing(shared_tv, words, reason):
    def state():
        return {part: value for part, value in shared_tv.state().items() if part not in ("daemon", "clock")}

    before = state()
    assert reason in shared_tv.simctl_refusal(*words.split())
    assert state() == before
    assert (shared_tv.state("/daemon/injections"), shared_tv.state("/daemon/signals")) == ([], 0)


def test_reset_brings_everything_back_but_the_numbers(tv):
    new = tv.state()
    with tv.connect() as client:
        client.start()
        client.execute("items")
        client.execute("all")
        client.stop()
        tv.set("items", 5)
        tv.inject(STOP, "drop")
        tv.simctl("reset")
        assert client.stop() == 0
    state = tv.state()
    assert [call["method"] for call in tv.calls()] == ["Stop"]
    assert all(state[part] == new[part] for part in new if part not in ("daemon", "clock"))
    # What it shows goes on.
    assert not state["clock"]["set"]
    assert state["daemon"]["injections"] == []


NESTED = "[" * 20_000 + "]" * 20_000
COMMANDS = ("state", "reset", "set", "set key", "set scan-pace", "set clock", "signal", "inject", "calls", "operations",
            "wait", "lineup load", "lineup save", "lineup show")


@pytest.mark.parametrize("request_line", [
    b"", b"nonsense", b"[]", b"{}", b'{"arguments":1}', b'{"arguments":[1]}', b'{"arguments":[]}',
    b'{"arguments":["state","a\\u0000b"]}', b'{"arguments":["\xff"]}', b"\0" * 100, b"[" * (1 << 20),
    b'{"arguments":["state"],"directory":"relative"}', b'{"arguments":["state"],"command":"state"}',
    f'{{"arguments":{NESTED}}}'.encode(), NESTED.encode(), json.dumps({"arguments": ["x"] * 1001}).encode(),
    b'"' + b"x" * (1 << 20)], ids=lambda line: repr(line[:40]))
def test_a_malformed_request_is_refused_with_one_line(shared_tv, request_line):
    error, status = map(json.loads, shared_tv.exchange(request_line + b"\n").splitlines())
    assert error.keys() == {"error"} and len(error["error"]) < 600
    assert status == {"status": 2}
    assert shared_tv.state("/debug/qos") is False


def test_a_request_of_100_mib_is_taken_and_refused(shared_tv):
    error, status = map(json.loads, shared_tv.exchange(b"x" * (100 << 20)).splitlines())
    assert (error, status) == ({"error": "malformed request: longer than 1 MiB"}, {"status": 2})


def test_no_command_is_left_out_below(shared_tv):
    listed = re.findall(r"^  ([a-z]+(?: [a-z]+)?)  ", shared_tv.simctl("--help"), re.MULTILINE)
    assert {command for command in listed if command not in COMMANDS} == set()


@pytest.mark.parametrize("argument", [
    "", " ", "-", "--", "--help=1", "[]", "{}", "%s%n", "\n", "\u001b[2J", "\ufffe", "\U0001f4fa", "nan", "-inf", "1e999", "-0",
    "9" * 400, "x" * 100_000, "/" * 1_000, "/a" * 100_000, "../" * 2_000 + "x", NESTED, '{"a":' * 20_000 + "1" + "}" * 20_000,
    "[" * 500_000], ids=lambda argument: repr(argument[:10]))
def test_every_command_answers_any_argument_with_at_most_one_line_of_error(tv, folder, argument):
    for command in COMMANDS:
        for more in ([argument], [argument, "1"], ["/debug/qos", "==", argument, "--timeout", "0"], ["x", f"--{argument}"]):
            request = {"arguments": [*command.split(), *more], "directory": str(folder)}
            answers = [json.loads(line) for line in tv.exchange(json.dumps(request).encode() + b"\n").splitlines()]
            errors = [answer["error"] for answer in answers if "error" in answer]
            assert answers[-1]["status"] == (0 if not errors else answers[-1]["status"]) in (0, 1, 2)
            assert len(errors) <= 1 and all(len(error) < 600 for error in errors)
    assert tv.state("/debug/qos") is False


@pytest.mark.parametrize("arguments", [
    "nonsense", "lineup", "lineup sing", "inject IA.B", "inject IA.B --drop --die", "inject --drop",
    "inject IA.B --delay -1", "inject IA.B --count 0", "wait", "wait /debug/qos", "wait /debug/qos like 1",
    "wait calls IA.B many", "wait /debug/qos == 1 --timeout -1", "wait /debug/qos == 1 --timeout nan",
    "wait /debug/qos == " + "1" * 4096, "set", "state now", "reset --json"])
def test_bad_arguments_are_one_line_and_status_2(shared_tv, arguments):
    shared_tv.simctl_refusal(*arguments.split(), status=2)


def test_commands_and_what_they_take_are_described(shared_tv):
    listed = shared_tv.simctl("--help")
    assert "--socket PATH" in listed
    for command in ("state", "calls", "inject", "wait", "reset", "set", "signal"):
        assert f"\n  {command} " in listed
        assert f"Usage: norvex-simctl {command}" in shared_tv.simctl(command, "--help")
    assert shared_tv.simctl("lineup", "--help").count("\n  lineup ") == 3
    assert "FILE" in shared_tv.simctl("lineup", "save", "--help")


@pytest.mark.parametrize("path, value", [
    ("/debug/items/99999999999999999999999", "null"), ("/debug/items/18446744073709551615/name", "null"),
    ("/debug/items/-/name", "null"), ("/debug/items/x", "null"), ("/debug/qos/0", "null"), ("/daemon/clients", "[]")])
def test_a_path_that_is_not_there_compares_as_null_at_once_and_later(tv, path, value):
    tv.wait(f"{path} == {value}")
    tv.simctl_refusal("wait", f"{path} == 5", "--timeout", "0.01")
    with popen_simctl(tv, "wait", f"{path} == 5", stderr=subprocess.DEVNULL) as waiter:
        with tv.connect() as client:
            client.start()
        tv.set("items", 1)
        waiter.kill()
    assert tv.state("/debug/qos") is False


def test_a_path_or_a_value_that_is_malformed_is_refused(shared_tv):
    assert "malformed path" in shared_tv.simctl_refusal("wait", "/debug/~2", "==", "1")
    # What is not JSON is a text, however it is nested.
    nested = "[" * 2_000 + "]" * 2_000
    reason = shared_tv.simctl_refusal("wait", "/debug/qos", "==", nested, "--timeout", "0.01")
    assert reason == "norvex-simctl: timed out\n"


@pytest.mark.parametrize("answer, status, printed, reason", [
    (b'{"print":"a\\n"}\n{"status":0}\n', 0, "a\n", ""),
    (b'{"print":"a\\n"}\n', 1, "a\n", "the TV ended before its answer was complete"),
    (b'{"print":"a\\n"}\n{"stat', 1, "a\n", "the TV ended before its answer was complete"),
    (b"", 1, "", "the TV ended before its answer was complete"),
    (b'{"endless":true}\n{"print":"a\\n"}\n', 0, "a\n", ""),
    (b'{"error":"b\\n\\u001b[2J"}\n{"status":2}\n', 2, "", "b\\x0a\\x1b[2J"),
    (b'{"status":-1}\n', 1, "", "malformed answer"), (b'{"status":256}\n', 1, "", ""),
    (b"[" * 100_000 + b"]" * 100_000 + b"\n", 1, "", "malformed answer"), (b'{"print":1}\n', 1, "", "malformed answer"), (b"[[[[\n", 1, "", "malformed answer"),
    (b'{"limit":1e999}\n', 1, "", "malformed answer")], ids=lambda value: repr(value)[:40])
def test_an_answer_counts_once_it_is_complete(folder, answer, status, printed, reason):
    with socket.socket(socket.AF_UNIX) as listener:
        listener.bind(str(folder / "s.ctl"))
        listener.listen()
        with subprocess.Popen([SIMCTL, "--socket", folder / "s", "calls"], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True) as simctl:
            connection = listener.accept()[0]
            with connection, connection.makefile("rb") as lines:
                assert json.loads(lines.readline()) == {"arguments": ["calls"], "directory": os.getcwd()}
                connection.sendall(answer)
            output, errors = simctl.communicate(timeout=LIMIT)
    assert (simctl.returncode, output) == (status, printed)
    assert errors == (f"norvex-simctl: {reason}\n" if reason and "malformed" not in reason else errors)
    assert reason in errors


def test_a_saved_line_up_is_the_one_that_is_shown_and_loads_again(tv, folder):
    (folder / "small").write_text(SMALL_LINE_UP)
    tv.simctl("lineup", "load", folder / "small")
    tv.simctl("lineup", "save", folder / "saved")
    saved = (folder / "saved").read_text()
    assert saved == tv.simctl("lineup", "show")
    assert all(piece in saved for piece in ("474000", "7-1", "Seven", "All day long"))
    tv.reset()
    tv.simctl("lineup", "load", folder / "saved")
    assert tv.simctl("lineup", "show") == saved


def test_a_relative_line_up_is_one_of_the_users_folder(tv, folder):
    (folder / "sub").mkdir()
    (folder / "sub/small").write_text(SMALL_LINE_UP)
    for words in (["load", "small"], ["save", "saved"]):
        subprocess.run([SIMCTL, "lineup", *words], cwd=folder / "sub", env=tv.environment, check=True)
    assert tv.state("/lineUp/services") == 1
    assert (folder / "sub/saved").read_text() == tv.show_lineup()


def test_saving_a_line_up_replaces_a_file_as_a_whole_or_not_at_all(tv, folder):
    (folder / "saved").write_text("before")
    tv.kill()
    tv.simctl_refusal("lineup", "save", folder / "saved")
    assert (folder / "saved").read_text() == "before"


def test_a_line_up_is_written_to_a_regular_file_only(shared_tv, folder):
    os.mkfifo(folder / "fifo")
    (folder / "link").symlink_to("kept")
    (folder / "kept").write_text("kept")
    before = sorted(os.listdir(folder))
    for name, reason in (("none/saved", "No such file or directory"), (".", "expected a regular file"),
                         ("fifo", "expected a regular file"), ("link", "expected a regular file")):
        assert reason in shared_tv.simctl_refusal("lineup", "save", f"{folder}/{name}")
    assert "/dev/null: expected a regular file" in shared_tv.simctl_refusal("lineup", "save", "/dev/null")
    assert sorted(os.listdir(folder)) == before
    assert (folder / "kept").read_text() == "kept"


def test_a_line_up_whose_tv_dies_in_the_middle_is_not_taken_for_the_whole(tv, folder):
    # More than the buffers between the TV and the reader hold.
    services = "".join(f'service {number:#x} 7-{number} "Service {number}"\n' for number in range(1, 30_000))
    (folder / "large").write_text("transponder air 474000\n" + services)
    tv.load_lineup(folder / "large")
    with popen_simctl(tv, "lineup", "show", stdout=subprocess.PIPE, stderr=subprocess.PIPE) as simctl:
        assert simctl.stdout.readline()
        tv.kill()
        assert simctl.communicate(timeout=LIMIT)[1] == "norvex-simctl: the TV ended before its answer was complete\n"
        assert simctl.returncode == 1


def test_what_cannot_be_loaded_is_said_and_leaves_the_line_up(shared_tv, folder):
    shown = shared_tv.show_lineup()
    (folder / "bad").write_text(SMALL_LINE_UP + "nonsense\n")
    with open(folder / "huge", "wb") as file:
        file.truncate((512 << 20) + 1)
    for name, reason in (("none", "No such file or directory"), (".", "expected a regular file"),
                         ("huge", "expected at most 512 MiB"), ("bad", "bad:4:")):
        assert reason in shared_tv.simctl_refusal("lineup", "load", folder / name)
    assert shared_tv.show_lineup() == shown

"""The console while what its client library needs fails: sockets, descriptors, its log, processes and threads. Each
call of each kind in turn, with a simulated TV that is well."""

import shutil

import pytest

import failing
from programs import HOST, run

# Commands that ask for no further word: a refusal moves none of those that follow.
COMMANDS = "5 10 4 5 8 11 14 15 10 10 99 99"
SUCCESS = " CheckTunerSignalState Success!\n"
REFUSAL = " CheckTunerSignalState failed!\n"
# Dialogues, in which a refusal moves the words that follow; they end in any case.
DIALOGUES = ("1 help items 101 99 7 0 99 4 0 1 0 0 99 3 0 99 6 5 1 0 1 99 2 0 1 1 99 0 21 7 "
             "18 1 2 5 99 19 10 99 12 1 2 99 17 1 3 99 20 1 99 16 1 0 99 13 1 7 99 7 99 99 99")


def judge_commands(output, order, told, _):
    successes, refusals = output.count(SUCCESS), output.count(REFUSAL)
    assert successes + refusals == 3, output
    # The menu was there for each word, and once more after the test console.
    assert output.count("\n\ncmd> ") == len(COMMANDS.split()), output
    # One call fails once; then it goes on as if nothing had been.
    assert refusals < 3, output
    assert told or not refusals or order.kind == "open"


def judge_dialogues(output, _, told, has_failed):
    assert output.startswith("DebugUtil\n")
    assert has_failed or "failed" not in output.replace("SetTVMode failed", ""), told


def fail_in_turn(tv, kind, arguments, judge):
    folder = tv.folder / "run"

    def run_one(order):
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        result = run(HOST, *arguments, status=None, env={
            **tv.environment, **failing.environment(order, folder / "note"), "NORVEX_LOG": str(folder / "log"),
            "NORVEX_DEVICE_DIR": str(folder / "device"), "NORVEX_CONNECT_LIMIT_MS": "2000",
            "NORVEX_CALL_LIMIT_MS": "2000"})
        has_failed = (folder / "note").exists()
        # A failed call that the client has made good is told to nobody.
        told = (folder / "log").exists() and "norvex-client: " in (folder / "log").read_text()
        errors = [line for line in result.stderr.splitlines() if line and "GLib-WARNING" not in line]
        if result.returncode == 0:
            assert errors == []
            judge(result.stdout, order, told, has_failed)
        else:
            assert result.returncode == 1 and len(errors) == 1 and errors[0].startswith("zarn-debughost: "), errors
        assert has_failed or result.returncode == 0 and not told
        return ("clean end" if result.returncode else "refusal" if told else "made good") if has_failed else None

    failing.fail_in_turn(kind, run_one)
    # Nobody has been harmed but the console itself.
    assert tv.state()


@pytest.mark.slow
@pytest.mark.parametrize("kind", ["socket", "connect", "send", "receive", "option", "stat", "poll", "eventfd", "random",
                                  "thread"])
def test_a_command_is_refused_or_done(tv, kind):
    fail_in_turn(tv, kind, ["-c", COMMANDS], judge_commands)


@pytest.mark.slow
@pytest.mark.parametrize("kind", ["socket", "connect", "send", "receive", "open", "write", "stat", "thread", "fork"])
def test_a_dialogue_ends(tv, kind):
    fail_in_turn(tv, kind, ["-c", DIALOGUES], judge_dialogues)


@pytest.mark.parametrize("kind", ["open", "read", "thread"])
def test_a_script_that_cannot_be_read_is_named(tv, folder, kind):
    (folder / "script").write_text("expect cmd>\n" + "\n".join(COMMANDS.split()) + "\n")
    fail_in_turn(tv, kind, ["--script", folder / "script"], judge_commands)

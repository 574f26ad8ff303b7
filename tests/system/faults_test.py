"""Some of the faults of faults.py; all of them: script/faults --all."""

import pytest

import faults
from programs import LIMIT, SANITIZE

# A machine may be busy with other tests: what is slow fails in script/faults only. A stopped TV costs this limit.
CALL_LIMIT = 2.5
# A console with a sanitizer takes its time to end.
STEP = 3 if SANITIZE else 1


def try_some(kind, every):
    for name, step in (("run", STEP), ("long lists", 4 * STEP)):
        recording = faults.Recording(name, CALL_LIMIT, command_slack=LIMIT, first_success=LIMIT)
        for what in recording.sample(kind, every)[::step]:
            assert faults.FaultyRun(recording, *what[1:]).figures.problems == []


@pytest.mark.slow
def test_the_console_goes_on_and_nothing_is_lost_when_the_tv_is_killed_at_a_boundary():
    try_some("kill", 100)


@pytest.mark.slow
def test_the_console_goes_on_when_the_tv_is_stopped_at_a_boundary():
    try_some("stop", 200)


@pytest.mark.slow
def test_the_console_goes_on_after_a_malformed_answer():
    try_some("bad answer", 80)

"""What clients of norvex-sim call: the debug print control, the device, sessions."""

import re

import pytest

import norvex_wire as wire
from norvex_wire import IN


def test_a_dialogue_goes_from_start_to_stop(client):
    status, screen = client.start()
    assert status == 1 and screen.endswith("norvex> ")
    status, screen = client.execute("nonsense")
    assert status == 1 and 'Unknown word "nonsense"' in screen
    assert client.execute("99")[0] == 0
    assert [client.stop(), client.stop()] == [1, 0]


def test_a_word_without_a_dialogue_is_refused(tv, client):
    assert client.execute("help") == (-1, "")
    client.start()
    client.execute("99")
    assert client.execute("help") == (-1, "")
    assert "#1 client 1 has no dialogue open" in tv.log()


def test_each_client_has_a_dialogue_of_its_own(tv, client):
    with tv.connect() as other:
        client.start()
        client.execute("items")
        assert other.execute("101")[0] == -1
        other.start()
        assert "Unknown word" in other.execute("101")[1]
        assert "Tuner lock is ON" in client.execute("101")[1]
        assert " items on : 1 of 16" in other.execute("status")[1]
        # A second connection of the same client goes on where the first one is.
        with tv.connect(token=client.token) as again:
            assert "Tuner lock is OFF" in again.execute("101")[1]


def test_the_screen_of_a_dialogue_is_shown(tv, client):
    client.start()
    for word, screen in (("nonsense", "main"), *((name, name) for name in ("status", "items", "modes", "qos"))):
        client.execute(word)
        assert list(tv.state("/debug/dialogues").values()) == [{"open": True, "screen": screen}]


def set_items(client, *items):
    return client.status("IDebugPrintControl.SetMenuItems",
                         wire.branch(1, [wire.menu_item(place, "", *item) for place, item in enumerate(items)], IN))


def test_items_are_listed_and_set_all_or_none(client):
    assert client.menu_items()[:2] == [("Tuner lock", 0, 101), ("Section filter", 0, 102)]
    for item, result in ((wire.menu_item(1, "any name", 1, 102, IN), 1),
                         (wire.menu_item(1, "Tuner lock", 1, 7, IN), -2)):
        assert client.status("IDebugPrintControl.SetMenuItem", item) == result
    assert client.menu_items()[1] == ("Section filter", 1, 102)
    assert set_items(client, (1, 101), (0, 102)) == 1
    assert set_items(client, (0, 101), (1, 7)) == -2
    assert [state for _, state, _ in client.menu_items()[:3]] == [1, 0, 0]
    answer = client.call("IDebugPrintControl.Check", wire.value(1, "i", 0))
    assert (wire.read(answer[0], "i"), wire.read(answer[1], "i")) == (1, 1)


def test_an_answer_that_would_be_too_long_is_empty_and_said(tv, client):
    tv.set("items", 1000000)
    assert client.call("IDebugPrintControl.GetMenuItems", wire.branch(1, [])) == {}
    assert tv.calls()[-1]["fault"] == "the reply is too long"
    tv.set("items", 0)
    assert len(client.menu_items()) == 16


def asks(client, operation, *arguments):
    return client.call(operation, *arguments, status=wire.YES_OR_NO)[0]


def test_qos_is_switched(client):
    assert asks(client, "IDebugPrintControl.IsQoSEnabled") == b"\0"
    assert client.status("IDebugPrintControl.SetQoSEnabled", wire.value(1, "B", 1, IN)) == 1
    assert asks(client, "IDebugPrintControl.IsQoSEnabled") == b"\1"


@pytest.mark.parametrize("mode, result, enabled", [(1, 1, b"\1"), (9, -2, b"\0")])
def test_modes_that_there_are_are_switched(client, mode, result, enabled):
    assert client.status("IDebugPrintControl.SetDebugMode", wire.value(1, "i", mode, IN),
                         wire.value(2, "B", 1, IN)) == result
    assert asks(client, "IDebugPrintControl.IsDebugModeEnabled", wire.value(1, "i", mode, IN)) == enabled


def test_keys_are_read(tv, client):
    def get(key):
        answer = client.call("IDevice.GetInt", wire.text(1, key, IN), wire.value(2, "i", 77))
        return [wire.read(answer[place], "i") for place in sorted(answer)]

    assert get("db/tv-viewer/window_id") == [1, 1]
    tv.set("key", "db/tv-viewer/window_id", -3)
    assert get("db/tv-viewer/window_id") == [1, -3]
    assert get("db/none") == [-2]
    tv.reset()
    assert get("db/tv-viewer/window_id") == [1, 1]


def switch(client, method, tag):
    return client.status("IDevice." + method, wire.text(1, tag, IN))


@pytest.mark.parametrize("method, tag, result", [
    ("StartLogTag", "quarle-daemon", 1), ("StopLogTag", "tvvideosink", 1), ("StopLogTag", "norvex", -3),
    ("StartLogTag", "", -3), ("StartLogTag", "two words", -3)])
def test_tags_but_the_daemons_own_are_started_and_stopped(tv, client, method, tag, result):
    before = tv.state("/device/logTags")
    assert switch(client, method, tag) == result
    assert (tv.state("/device/logTags") != before) == (result > 0)


def test_a_follower_gets_the_lines_of_its_tag_until_the_tv_ends(tv, client):
    with tv.connect(role=wire.ROLE_LOG, tag="norvex") as follower, \
            tv.connect(role=wire.ROLE_LOG, tag="quarle-daemon") as other:
        client.execute("x")
        kind, _, _, tree = follower.receive()
        assert kind == wire.LOG
        assert re.match(r"[-0-9]{10}T[:.0-9]{12} \d+ norvex: #1 client 1 has no dialogue",
                        wire.read_text(wire.by_tag(tree)[0]))
        tv.end()
        # Of its own tag nothing was written.
        other.assert_closed()


def test_sessions_are_opened_of_what_has_them(client):
    assert client.open_session("IDebugPrintControl") == (-2, 0)
    assert client.open_session("INone") == (-2, 0)
    assert client.open_session("IAVControl", 1, -1) == (-3, 0)
    assert client.open_session("IAVControl")[0] == 0


def test_a_client_that_reconnects_keeps_its_sessions_and_no_other_client_gets_them(tv_off):
    tv_off.start("--client-grace", 3600000)
    with tv_off.connect() as client:
        _, session = client.open_session("IAVControl")
    with tv_off.connect(token=client.token) as again, tv_off.connect() as other:
        assert other.close_session(session) == -2
        assert again.close_session(session) == 1
        assert again.close_session(session) == -2


def test_a_client_that_is_gone_loses_sessions_and_dialogue(tv_off):
    tv_off.start("--client-grace", 0)
    with tv_off.connect() as client:
        client.start()
        client.open_session("IAVControl")
        client.open_session("IAVControl", 101)
        assert len(tv_off.state("/daemon/sessions")) == 2
    for path, nothing in (("sessions", "[]"), ("clients", "[]")):
        tv_off.wait(f"/daemon/{path} == {nothing}")
    assert tv_off.state("/debug/dialogues") == {}
    assert "client 1 released" in tv_off.log()

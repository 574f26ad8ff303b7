"""The pipeline test console against the simulated TV."""

import pexpect

from tv import PROCESS_PROMPT, SystemTestCase, program

MAIN_PROMPT = " 21. Set boot up service\r\n------------------------------------\r\n" + PROCESS_PROMPT
MENU_PROMPT = PROCESS_PROMPT


class TestConsoleTestCase(SystemTestCase):
    def enter(self):
        console = self.open_console()
        console.sendline("5")
        console.expect_exact(MAIN_PROMPT)
        return console

    def test_a_mute_is_seen_in_the_state(self):
        self.start_tv()
        console = self.enter()
        for word, prompt in (("2", "> "), ("0", "cmd> "), ("1", "On:1 "), ("1", "cmd> ")):
            console.sendline(word)
            console.expect_exact(prompt)
        self.assertEqual(self.state("/pipelines/1:0/videoMute"), 1)
        self.assertEqual(self.state("/pipelines/1:0/audioMute"), 0)
        for word, prompt in (("2", "On:1 "), ("1", "cmd> "), ("1", "On:1 "), ("0", "cmd> ")):
            console.sendline(word)
            console.expect_exact(prompt)
        self.assertEqual(self.state("/pipelines/1:0/videoMute"), 0)
        self.assertEqual(self.state("/pipelines/1:0/audioMute"), 1)
        self.leave(console, "99", "0", "99", "99")

    def test_a_zoom_window_is_made_shown_and_gone_with_its_console(self):
        self.start_tv()
        console = self.enter()
        console.sendline("19")
        console.expect_exact(MENU_PROMPT)
        console.sendline("3")
        for value in "0 0 960 540 0 0 480 270 0 0 1920".split():
            console.expect_exact(" = ")
            console.sendline(value)
        console.expect_exact("MainHeight = ")
        console.sendline("1080")
        console.expect(r"Created window handle\[(\d+)\] API ret\[1\]")
        window = console.match.group(1)
        self.assertEqual(
            self.state(f"/zoom/windows/{window}/destination"),
            {"x": 0, "y": 0, "width": 480, "height": 270},
        )
        console.sendline("10")
        console.expect_exact(f"Connected window ids = [{window}, ]")
        console.kill(9)
        self.wait_for("/zoom/windows", "==", "{}")

    def test_a_receiver_is_registered_and_taken_back(self):
        self.start_tv()
        console = self.enter()
        console.sendline("12")
        console.expect_exact(MENU_PROMPT)
        console.sendline("1")
        console.expect_exact(MENU_PROMPT)
        receivers = self.state("/preparation/pipelines/1:0/receivers")
        self.assertEqual([(each["name"], each["kind"]) for each in receivers], [("DebugMenuTPMS", "service")])
        console.sendline("2")
        console.expect_exact(MENU_PROMPT)
        self.assertNotIn("DebugMenuTPMS", self.simctl("state", "--json"))
        self.leave(console, "0", "99", "99")

    def test_signals_are_printed_while_the_menu_waits_for_a_word(self):
        self.start_tv()
        console = self.enter()
        self.wait_for("/subscribers/0/client", ">=", "1")
        self.simctl("signal", "81", "data=0xffff00020001")
        console.expect_exact(
            "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:1, srvProfile:2, chNumber:-1\r\n"
        )
        self.simctl("signal", "194", "data=1")
        console.expect_exact("\tSIGNAL_TUNE_AROUND_FINISHED -> profile:1, screenId: 0, completed: false\r\n")
        console.sendline("9")
        console.expect_exact(MAIN_PROMPT)
        self.simctl("signal", "12345", "data=1")
        self.simctl("signal", "195", "data=1")
        console.expect_exact("\tSIGNAL_BARKER_CHANNEL_TUNE")
        self.assertEqual(console.before, "")
        self.leave(console, "99", "99")

    def test_ten_thousand_signals_arrive_whole_during_menu_work_with_a_transcript(self):
        self.start_tv()
        transcript = self.path("transcript")
        console = self.open_console("--transcript", transcript)
        console.sendline("5")
        console.expect_exact(MAIN_PROMPT)
        for _ in range(10):
            self.simctl("signal", "193", "serviceId=0xfa0000000002002d", "count=1000")
            console.sendline("2 0 1 1 99 0 9 10")
            console.expect_exact(" CheckTunerSignalState Success!")
        # Signals come in order: with this one, all others are there.
        self.simctl("signal", "195", "success=1")
        console.expect_exact("SIGNAL_BARKER_CHANNEL_TUNE")
        self.leave(console, "99", "99")
        line = f"\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 0, serviceId: {0xFA0000000002002D}\n"
        with open(transcript, encoding="utf-8") as file:
            self.assertEqual(file.read().count(line), 10000)

    def test_sessions_and_signals_come_back_when_the_tv_is_killed_and_started_again(self):
        self.start_tv()
        console = self.enter()
        console.sendline("12")
        console.expect_exact(MENU_PROMPT)
        self.kill_tv()
        console.sendline("1")
        console.expect_exact(MENU_PROMPT)
        self.start_tv()
        # The subscriber finds the new run by itself.
        self.wait_for("/subscribers/0/client", ">=", "1")
        self.simctl("signal", "193", "data=0xfa0000000002002d")
        console.expect_exact(f"serviceId: {0xFA0000000002002D}\r\n")
        # The session that the test has held all the while, too.
        console.sendline("1")
        console.expect_exact(MENU_PROMPT)
        self.assertEqual(len(self.state("/preparation/pipelines/1:0/receivers")), 1)
        self.leave(console, "99", "99", "99")

    def test_the_window_id_of_the_key_value_store_is_bound_to_the_picture(self):
        self.start_tv()
        self.simctl("set", "key", "db/tv-viewer/window_id", "4711")
        result = self.run_words("5 7 7 99 99 99\n")
        self.assertEqual(result.returncode, 0)
        self.assertEqual(self.state("/pipelines/1:0/windowId"), 4711)

    def test_a_thousand_words_of_entering_and_leaving_end(self):
        self.start_tv()
        result = self.run_words("5 99 " * 500 + "99\n")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.wait_for("/daemon/clients", "==", "[]")

    def test_a_piped_visit_ends_at_once_each_time(self):
        for _ in range(20):
            self.assertEqual(self.run_words("5 99 99\n").returncode, 0)

    def test_two_consoles_at_once_count_each_others_sessions(self):
        self.start_tv()
        first = self.enter()
        second = self.enter()
        for console in (first, second):
            console.sendline("1")
            console.expect_exact("MLS:1 > ")
            console.sendline("0")
            console.expect_exact("cmd> ")
        first.sendline("1")
        first.expect_exact("Reference count value is: ")
        with_both = int(first.readline())
        self.leave(second, "99", "99", "99")
        first.expect_exact("cmd> ")
        first.sendline("1")
        first.expect_exact("Reference count value is: ")
        self.assertEqual(int(first.readline()), with_both - 1)
        self.leave(first, "99", "99", "99")

    def test_a_script_of_the_host_judges_a_run(self):
        self.start_tv()
        script = self.path("judge.txt")
        with open(script, "w", encoding="utf-8") as file:
            file.write("5\n15\nexpect Caption exist:\n99\n99\n")
        _, status = pexpect.run(
            f"{program('zarn-debughost')} --script {script}", env=self.environment, withexitstatus=True
        )
        self.assertEqual(status, 0)

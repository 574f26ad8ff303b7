"""The console's tests against the running TV, seen through norvex-simctl."""

import json
import os
import subprocess
import tempfile
import unittest

import pexpect

HOST = os.environ["ZARN_HOST"]
PLUGIN = os.environ["ZARN_PLUGIN"]
SIM = os.environ["NORVEX_SIM"]
SIMCTL = os.environ["NORVEX_SIMCTL"]

# Never reached in a run that goes well.
LIMIT = 60

AIR_SERVICE = "0xfa0000000002002d"


class TvTestCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.log = os.path.join(folder.name, "tv.log")
        self.environment = dict(
            os.environ,
            NORVEX_SOCKET=os.path.join(folder.name, "tv.sock"),
            NORVEX_LOG=os.path.join(folder.name, "device.log"),
        )
        ready, told = os.pipe()
        tv = subprocess.Popen(
            [SIM, "--log", self.log, "--ready-fd", str(told)],
            env=self.environment,
            pass_fds=[told],
        )
        os.close(told)
        self.addCleanup(tv.wait, LIMIT)
        self.addCleanup(tv.terminate)
        with os.fdopen(ready) as end:
            self.assertEqual(end.read(), "ready\n")

    def simctl(self, *words):
        return subprocess.run(
            [SIMCTL, *words],
            env=self.environment,
            stdout=subprocess.PIPE,
            text=True,
            timeout=LIMIT,
            check=True,
        ).stdout

    def simctl_fails(self, *words):
        """Its status and its line of error."""
        done = subprocess.run(
            [SIMCTL, *words],
            env=self.environment,
            stderr=subprocess.PIPE,
            text=True,
            timeout=LIMIT,
            check=False,
        )
        return done.returncode, done.stderr

    def state(self):
        return json.loads(self.simctl("state", "--json"))

    def wait(self, path, value):
        self.simctl("wait", "--timeout", str(LIMIT), path, "==", value)

    def console(self):
        """A console in its pipeline test menu."""
        console = pexpect.spawn(
            HOST, [PLUGIN], env=self.environment, encoding="utf-8", echo=False, timeout=LIMIT
        )
        self.addCleanup(console.close, force=True)
        console.sendline("5")
        console.expect_exact(" 21. Set boot up service")
        return console


class PipelineTest(TvTestCase):
    def test_mutes_are_seen_by_who_looks(self):
        console = self.console()
        # AV mute, on screen 0: video 5, then audio 1.
        for word in ("2", "0", "1", "5", "2", "1"):
            console.sendline(word)
        self.wait("/pipelines/1:0/videoMute", "5")
        self.wait("/pipelines/1:0/audioMute", "1")
        self.assertEqual(self.state()["pipelines"]["1:0"]["sessions"], 1)
        with open(self.log, encoding="utf-8") as log:
            self.assertIn("pipeline 1:0: mute 5", log.read())

    def test_a_zoom_window_vanishes_with_its_console(self):
        console = self.console()
        for word in ("19", "3", *"0 0 200 200 1500 50 400 300 0 0 1920 1080".split()):
            console.sendline(word)
        console.expect_exact("Created window handle[1] API ret[1]")
        for word in ("5", "1", "1"):
            console.sendline(word)
        console.expect_exact("Window set! API ret[1]")
        self.assertIs(self.state()["zoom"]["windows"]["1"]["started"], True)
        # Left and entered again: it is the client's.
        for word in ("99", "19", "10"):
            console.sendline(word)
        console.expect_exact("Connected window ids = [1, ]")
        console.close(force=True)
        self.wait("/zoom/windows", "{}")
        self.wait("/pipelines/1:0/sessions", "0")

    def test_a_receiver_holds_what_another_console_asks_for(self):
        receiver = self.console()
        for word in ("12", "1"):
            receiver.sendline(word)
        self.wait("/preparation/pipelines/1:0/receivers/0/name", '"DebugMenuTPMS"')
        other = self.console()
        for word in ("7", "5"):
            other.sendline(word)
        self.wait("/preparation/pipelines/1:0/pending/service", f'"{AIR_SERVICE}"')
        self.assertIsNone(self.state()["pipelines"]["1:0"]["service"])
        receiver.sendline("3")
        self.wait("/pipelines/1:0/service", f'"{AIR_SERVICE}"')
        # What it left registered goes with it.
        receiver.close(force=True)
        self.wait("/preparation/pipelines", "{}")

    def test_signals_of_every_kind_reach_a_console_that_has_not_subscribed(self):
        console = self.console()
        self.wait("/subscribers/0/session", "1")
        for words, line in (
            (
                ("81", "chType=-1", "srvProfile=-32768", "chNumber=32767", "profile=101"),
                "SIGNAL_SI_STARTED -> profile:101, screenId: 0, "
                "chType:-1, srvProfile:-32768, chNumber:32767\r\n",
            ),
            (
                ("193", "serviceId=0xffffffffffffffff", "screen=1"),
                "SERVICE_DONE -> profile:1, screenId: 1, serviceId: 18446744073709551615\r\n",
            ),
            (("194", "flag=1"), "FINISHED -> profile:1, screenId: 0, completed: false\r\n"),
            (("194", "data=0xffffffffffff0000"), "completed: true\r\n"),
            (("195", "success=255"), "TUNE -> profile:1, screenId: 0, is success:true\r\n"),
            (("195", "data=0xffffffffffffff00"), "is success:false\r\n"),
        ):
            self.assertEqual(self.simctl("signal", *words), "1\n")
            console.expect_exact(line)
        self.assertEqual(self.simctl("signal", "4711"), "1\n")
        self.assertEqual(self.simctl("signal", "193", "serviceId=7", "count=100"), "100\n")
        for _ in range(100):
            console.expect_exact("serviceId: 7\r\n")

    def test_signals_and_settings_that_make_no_sense_are_refused(self):
        for words in (
            ("signal", "SI_STARTED"),
            ("signal", "2147483648"),
            ("signal", "81", "chType"),
            ("signal", "81", "serviceId=1"),
            ("signal", "81", "chType=65536"),
            ("signal", "81", "chType=-32769"),
            ("signal", "194", "flag=1x"),
            ("signal", "4711", "flag=1"),
            ("signal", "195", "screen=65536"),
            ("signal", "195", "count=10001"),
            ("set", "hdmi", "hdmi9", "plugged"),
            ("set", "nothing", "1"),
        ):
            self.assertEqual(self.simctl_fails(*words)[0], 1, words)
        self.assertEqual(self.state()["daemon"]["signals"], 0)
        self.assertIn("success", self.simctl_fails("signal", "195", "successes=1")[1])

    def test_surroundings_change_what_a_console_is_told(self):
        console = self.console()
        console.sendline("10")
        console.expect_exact(" CheckTunerSignalState Success!")
        self.simctl("set", "tuner", "air", "off")
        console.sendline("10")
        console.expect_exact(" CheckTunerSignalState failed!")
        console.sendline("15")
        console.expect_exact("Caption exist:0")
        self.simctl("set", "captions", "on")
        console.sendline("15")
        console.expect_exact("Caption exist:1")
        self.simctl("reset")
        console.sendline("10")
        console.expect_exact(" CheckTunerSignalState Success!")


if __name__ == "__main__":
    unittest.main()

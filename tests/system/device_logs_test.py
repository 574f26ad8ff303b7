"""The provider log switch and the media log viewers, on a machine with the device's fixed paths."""

import os
import subprocess

import pexpect

from tv import BIN, LIMIT, PROCESS_PROMPT, SystemTestCase, program

IN_DEVICE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "script", "in-device")
GST_PROMPT = " 11. GST_FPA_PARSER\r\n------------------------------------\r\n" + PROCESS_PROMPT


def can_mount():
    """Whether this machine lets its user mount in a view of their own. Not asked of the script,
    which is what is tested."""
    view = ["unshare", "--mount"]
    if os.geteuid() != 0:
        view = ["unshare", "--user", "--map-current-user", "--keep-caps", "--mount"]
    overlay = "mount -t overlay overlay -o lowerdir=/usr/lib:/usr/bin /usr/bin"
    return subprocess.run([*view, "sh", "-c", overlay], stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=LIMIT, check=False).returncode == 0


class DeviceLogsTestCase(SystemTestCase):
    def open_on_device(self):
        if not can_mount():
            self.skipTest("nothing can be mounted here, as in a container without the right to")
        return self.open_console(
            command=[IN_DEVICE, "--build", os.path.dirname(BIN), program("zarn-debughost")]
        )

    def marker(self):
        return self.path("device/quarle-provider/data/FCdebug.conf")


class ProviderLogTestCase(DeviceLogsTestCase):
    def test_the_log_switched_on_is_on_when_the_menu_and_the_console_are_entered_again(self):
        self.start_tv()
        console = self.open_console()
        console.sendline("4")
        console.expect_exact(" 0: [OFF] QUARLE_PROVIDER")
        console.expect_exact("cmd> ")
        console.sendline("0")
        console.expect_exact("QUARLE_DAEMON ==> ON[1]/OFF[0]: ")
        console.sendline("1")
        console.expect_exact(" 0: [ON ] QUARLE_PROVIDER")
        console.expect_exact("cmd> ")
        self.assertTrue(os.path.exists(self.marker()))
        tags = self.state("/device/logTags")
        self.assertEqual((tags["quarle-daemon"], tags["quarle-provider"]), (True, True))
        self.leave(console, "99", "99")
        console = self.open_console()
        console.sendline("4")
        console.expect_exact(" 0: [ON ] QUARLE_PROVIDER")
        console.expect_exact("cmd> ")
        console.sendline("0")
        console.expect_exact("]: ")
        console.sendline("0")
        console.expect_exact(" 0: [OFF] QUARLE_PROVIDER")
        self.assertFalse(os.path.exists(self.marker()))
        tags = self.state("/device/logTags")
        self.assertEqual((tags["quarle-daemon"], tags["quarle-provider"]), (False, False))
        self.leave(console, "99", "99")


class ViewerTestCase(DeviceLogsTestCase):
    def start_viewer(self, console, row, tag):
        followed = self.state("/daemon/viewers") if "viewers" in self.state("/daemon") else 0
        console.sendline(row)
        console.expect_exact(f"[GST Debug Log ON] ExecuteLogOn : {tag}\r\n")
        console.expect_exact(GST_PROMPT)
        self.wait_for("/daemon/viewers", ">", str(followed))

    def test_two_viewers_show_the_lines_of_their_tags_and_none_of_a_third(self):
        self.start_tv()
        console = self.open_on_device()
        console.sendline("3")
        console.expect_exact(GST_PROMPT)
        self.start_viewer(console, "0", "tvvideosink")
        self.start_viewer(console, "4", "tvaudiosink")
        # In another console: mutes, which tell of themselves under the two, and a decoder restart,
        # which does under a third.
        self.run_words("5 8 2 0 1 1 2 1 99 0 99 99\n")
        first = console.expect(["tvvideosink[^\r\n]*\r\n", "tvaudiosink[^\r\n]*\r\n"])
        console.expect(["tvvideosink[^\r\n]*\r\n", "tvaudiosink[^\r\n]*\r\n"][1 - first])
        self.assertNotIn("tvvideodec", console.before)
        console.sendline("99")
        console.expect_exact("Command not implemented\r\n")
        self.leave(console, "99")
        # They were ended from outside, with the console.
        self.wait_for("/daemon/viewers", "==", "0")

    def test_a_stopped_tag_shows_nothing_until_it_is_started(self):
        self.start_tv()
        viewer = pexpect.spawn(
            program("dlogutil"), ["quarle-daemon"], env=self.environment, encoding="utf-8", timeout=60
        )
        self.addCleanup(viewer.close, force=True)
        self.wait_for("/daemon/viewers", "==", "1")
        self.run_words("5 12 1 2 99 99 99\n")
        self.run_words("4 0 1 99 99\n")
        self.run_words("5 12 1 99 99 99\n")
        # What came first is the line of the second visit.
        viewer.expect_exact("receives changes")
        self.assertNotIn("\n", viewer.before)
        self.assertNotIn("receives no changes", viewer.before)

    def test_viewers_get_the_consoles_first_three_descriptors_and_no_other(self):
        self.start_tv()
        console = self.open_on_device()
        console.sendline("1")
        console.expect_exact("> ")
        console.sendline("99")
        console.expect_exact(PROCESS_PROMPT)
        console.sendline("3")
        console.expect_exact(GST_PROMPT)
        self.start_viewer(console, "0", "tvvideosink")
        viewers = [
            process
            for process in os.listdir("/proc")
            if process.isdigit() and self.is_viewer_of_this_test(process)
        ]
        self.assertEqual(len(viewers), 1)
        targets = {
            descriptor: os.readlink(f"/proc/{viewers[0]}/fd/{descriptor}")
            for descriptor in os.listdir(f"/proc/{viewers[0]}/fd")
        }
        for number in "012":
            self.assertTrue(targets.pop(number).startswith("/dev/pts/"))
        # Its own connection to the TV, and nothing that the console had open.
        self.assertEqual(len(targets), 1, targets)
        self.assertTrue(next(iter(targets.values())).startswith("socket:"), targets)
        self.leave(console, "99", "99")

    def is_viewer_of_this_test(self, process):
        try:
            with open(f"/proc/{process}/environ", "rb") as file:
                environment = file.read()
            with open(f"/proc/{process}/comm", encoding="utf-8") as file:
                return file.read() == "dlogutil\n" and self.socket.encode() in environment
        except OSError:
            return False

    def test_a_missing_viewer_leaves_the_menu_going_on(self):
        if os.path.exists("/usr/bin/dlogutil"):
            self.fail("this machine has a viewer installed; the test needs one that has none")
        console = self.open_console()
        console.sendline("3")
        console.expect_exact(GST_PROMPT)
        console.sendline("0")
        console.expect_exact("[GST Debug Log ON] ExecuteLogOn : tvvideosink\r\n")
        console.expect_exact(GST_PROMPT)
        self.leave(console, "99", "99")

    def test_a_viewer_ends_with_the_tv_that_it_follows(self):
        self.start_tv()
        viewer = pexpect.spawn(program("dlogutil"), ["tvvideosink"], env=self.environment, timeout=60)
        self.addCleanup(viewer.close, force=True)
        self.wait_for("/daemon/viewers", "==", "1")
        self.kill_tv()
        viewer.expect_exact(pexpect.EOF)
        viewer.wait()
        self.assertEqual((viewer.exitstatus, viewer.signalstatus), (0, None))

    def test_a_viewer_without_a_tv_says_so_in_one_line(self):
        output, status = pexpect.run(
            f"{program('dlogutil')} tvvideosink", env=self.environment, withexitstatus=True
        )
        self.assertEqual((output.count(b"\n"), status), (1, 1), output)
        output, status = pexpect.run(program("dlogutil"), env=self.environment, withexitstatus=True)
        self.assertEqual((output.count(b"\n"), status), (1, 2), output)


class SiblingLibraryTestCase(DeviceLogsTestCase):
    def test_choice_6_runs_the_siblings_menu_and_comes_back(self):
        console = self.open_on_device()
        console.sendline("6")
        console.expect_exact("[LUMO Debug]")
        console.expect_exact("lumo> ")
        console.sendline("99")
        console.expect_exact(PROCESS_PROMPT)
        self.leave(console, "99")

    def test_a_missing_sibling_is_a_line_in_the_log_and_the_menu_goes_on(self):
        if os.path.exists("/usr/lib64/liblumo-debugmenu.so"):
            self.fail("this machine has the sibling library installed; the test needs one that has none")
        console = self.open_console()
        console.sendline("6")
        console.expect_exact(PROCESS_PROMPT)
        self.leave(console, "99")
        with open(self.path("client.log"), encoding="utf-8") as log:
            lines = [line for line in log if "liblumo-debugmenu.so" in line]
        self.assertEqual(len(lines), 1)

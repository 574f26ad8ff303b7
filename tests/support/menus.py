"""The test console's tests: words that go through all commands of each and back to its main menu, with a TV and
without one."""

AREA = "0 0 960 540 0 0 480 270 0 0 1920 1080"
TESTS = {
    "reference-count": "1 0 1 99",
    "mute": "2 0 1 1 2 0 1 0 99 0",
    "hdmi-analysis": "3 1 1 2 2 1 99",
    "status": "4",
    "air": "5",
    "dtv-mode": "6 1 2 3 4 5 6 7 8 99",
    "source": "7 1 2 3 5 4 5 6 7 7 99",
    "video-decoder": "8",
    "av-mode": "9",
    "tuner": "10",
    "latest-channel": "11",
    "preparation": "12 1 2 3 4 5 6 7 8 99",
    "tv-mode": "13 1 7 2 5 3 5 4 5 5 5 6 5 99 1",
    "crop-video": "14",
    "caption": "15",
    "preview-source": "16 1 0 2 0 7 99",
    "signal-tune-preparation": "17 1 4 7 2 7 5 7 3 6 7 99",
    "programme-guide": "18 1 2 3 4 5 6 7 99",
    "zoom": f"19 1 2 3 {AREA} 10 5 1 1 7 1 6 1 1 8 1 9 1 {AREA} 4 1 0 0 1920 1080 10 99",
    "invalid-service": "20 1 2 99",
    "boot-up-service": "21 7",
}

"""The rooms of docs/architecture.md are those that the compiler keeps: a header of a room that is not named does not
compile, and a library is included where the table says so."""

import json
import os
import pathlib
import re
import shlex
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("ZARN_BUILD", "build/debug"))

LIBRARIES = {
    "GLib": r"glib[.-]|glib/|gio/",
    "SQLite": r"sqlite3\.h",
    "JSON": r"nlohmann/json\.hpp",
    "CLI11": r"CLI/",
}
SOURCES = [".cpp", ".h"]


def read_table():
    """For each room what it may include itself: rooms and libraries."""
    rooms = {}
    for line in (ROOT / "docs/architecture.md").read_text().splitlines():
        row = re.match(r"\| `([a-z/]+)/` \| .* \| ([^|]*) \|$", line)
        if row:
            named = re.findall(r"`([a-z/]+)/`", row.group(2))
            rooms[row.group(1)] = (named, [name for name in LIBRARIES if name in row.group(2)])
    return rooms


ROOMS = read_table()


def room_of(path):
    """The innermost room that a file or folder is in, None outside of all."""
    inside = [room for room in ROOMS if pathlib.PurePath(path).is_relative_to(room)]
    return max(inside, key=len, default=None)


def visible_rooms(room):
    """A room sees what it names and what those see."""
    seen = set()
    left = [room]
    while left:
        room = left.pop()
        if room not in seen:
            seen.add(room)
            left += ROOMS[room][0]
    return seen


def files_of(room):
    return [path for path in sorted((ROOT / room).rglob("*"))
            if path.suffix in SOURCES and room_of(path.relative_to(ROOT)) == room]


def read_flags():
    """For each room with sources: the include folders and settings that they are compiled with."""
    flags = {}
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        source = pathlib.Path(entry["directory"], entry["file"]).resolve()
        if source.is_relative_to(BUILD.resolve()):
            # Sources that are compiled together: .../simulator/wire/CMakeFiles/TARGET/Unity/unity_0_cxx.cxx
            source = ROOT / str(source.relative_to(BUILD.resolve())).split("/CMakeFiles/")[0]
        room = room_of(source.relative_to(ROOT)) if source.is_relative_to(ROOT) else None
        words = shlex.split(entry["command"])
        kept = [word for place, word in enumerate(words)
                if word.startswith(("-I", "-D", "-std=")) or words[place - 1] == "-isystem"
                or word == "-isystem"]
        if room:
            flags.setdefault(room, (entry["directory"], kept))
    return flags


FLAGS = read_flags()


def includes_of(flags):
    directory, words = flags
    return [pathlib.Path(directory, word[2:]).resolve() for word in words if word.startswith("-I")]


def spellings(room):
    """How headers of a room are named by those who see it."""
    headers = [path for path in files_of(room) if path.suffix == ".h"]
    public = [path for path in headers if "include" in path.relative_to(ROOT / room).parts]
    for path in public or headers:
        parts = path.relative_to(ROOT / room).parts
        yield "/".join(parts[1:]) if public and room != "include" else path.name if room not in ("include", "platform") \
            else "/".join(parts)


def compile_text(room, text):
    directory, words = FLAGS[room]
    return subprocess.run(["g++", *words, "-fsyntax-only", "-x", "c++", "-"], cwd=directory, input=text, text=True,
                          capture_output=True, check=False)


def forbidden_headers(room):
    """A header of each room that this one may not see, by a name that no room that it may see has."""
    own = [folder for folder in includes_of(FLAGS[room]) if folder.is_relative_to(ROOT)]
    for other in sorted(set(ROOMS) - visible_rooms(room)):
        for name in spellings(other):
            rooms = {room_of((folder / name).relative_to(ROOT)) for folder in own if (folder / name).exists()}
            if rooms <= {other}:
                yield name
                break


@pytest.mark.parametrize("room", sorted(FLAGS))
def test_a_header_of_another_room_does_not_compile(room):
    names = list(forbidden_headers(room))
    planted = compile_text(room, f"#include <{names[0]}>\n")
    assert planted.returncode != 0 and "No such file" in planted.stderr
    looks = "".join(f"#if __has_include(<{name}>)\n#error {room} sees {name}\n#endif\n" for name in names)
    assert compile_text(room, looks).stderr == ""


@pytest.mark.parametrize("room", sorted(ROOMS))
def test_what_a_room_includes_is_in_the_table(room):
    rooms, libraries = ROOMS[room]
    for path in files_of(room):
        for name in re.findall(r'^\s*#\s*include\s*[<"]([^>"]+)', path.read_text(), re.MULTILINE):
            assert ".." not in name, f"{path}: {name}"
            used = [library for library, pattern in LIBRARIES.items() if re.match(pattern, name)]
            assert not used or used[0] in libraries, f"{path.relative_to(ROOT)} includes {name}"
    seen = {room_of(folder.relative_to(ROOT)) for folder in includes_of(FLAGS[room])
            if folder.is_relative_to(ROOT) and folder != ROOT} - {None} if room in FLAGS else set(rooms)
    assert set(rooms) <= seen | {room}, "the table names a room that this one does not link"

#!/usr/bin/env python3
"""A jar of sweets that scripts can tell. Usage: jar.py [RUNTIME_DIRECTORY]

    tell application "Jar"
        put sweets 3 of colour "red"
        set label text to "Mine"
    end tell

Jar.sdef, beside this file, holds its words; docs/scriptable-applications.md tells what is sent.
"""
import os
import pathlib
import shutil
import socket
import struct
import sys

TEXT, INTEGER = b"utxt", b"long"


def read_record(data):
    """The fields of a flattened record: {keyword: value}. Texts, whole numbers, codes and records are read."""
    if data[:4] != b"dle2" or data[8:12] not in (b"reco", b"obj "):
        raise ValueError("no record")
    return read_fields(data[32:] if data[8:12] == b"reco" else data[16:])


def read_fields(data):
    (count,), at, fields = struct.unpack(">I", data[:4]), 8, {}
    for _ in range(count):
        keyword, kind, length = struct.unpack(">4s4sI", data[at:at + 12])
        value = data[at + 12:at + 12 + length]
        at += 12 + length + length % 2
        if kind == TEXT:
            value = value.decode("utf-16-be")
        elif kind == INTEGER:
            (value,) = struct.unpack(">i", value)
        elif kind in (b"reco", b"obj "):
            value = read_fields(value)
        fields[keyword] = value
    return fields


def record(fields):
    """A flattened record of texts and whole numbers."""
    items = b""
    for keyword, value in fields.items():
        kind, body = (TEXT, value.encode("utf-16-be")) if isinstance(value, str) else (INTEGER, struct.pack(">i", value))
        items += keyword + kind + struct.pack(">I", len(body)) + body
    inner = struct.pack(">III4sII", 0, 0, 24, b"reco", len(fields), 0) + items
    return b"dle2" + bytes(4) + b"reco" + struct.pack(">I", len(inner)) + inner


class Jar:
    def __init__(self):
        self.sweets, self.label = 0, "Sweets"

    def answer(self, event):
        command = event[b"evcl"] + event[b"evid"]
        direct = event.get(b"----")
        if command == b"jarsputs":
            self.sweets += direct
            return {b"----": self.sweets}
        if command in (b"coregetd", b"coresetd") and direct[b"form"] == b"prop" and direct[b"seld"] == b"labl":
            self.label = event.get(b"data", self.label)
            return {b"----": self.label}
        return {b"errn": -1708, b"errs": "The jar doesn’t understand."}


def main():
    runtime = sys.argv[1] if len(sys.argv) > 1 else os.environ.get("CADDIS_RUNTIME_DIR") \
        or os.path.join(os.environ.get("XDG_RUNTIME_DIR", "/tmp/caddis-%d" % os.getuid()), "caddis")
    folder = pathlib.Path(runtime) / "applications"
    folder.mkdir(mode=0o700, parents=True, exist_ok=True)
    shutil.copy(pathlib.Path(__file__).with_name("Jar.sdef"), folder)
    place = folder / "Jar"
    place.unlink(missing_ok=True)
    jar, listener = Jar(), socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
    listener.bind(str(place))
    listener.listen()
    while True:
        caller, _ = listener.accept()
        with caller, caller.makefile("rb") as asked:
            try:
                caller.sendall(record(jar.answer(read_record(asked.read()))))
            except (ValueError, KeyError, TypeError, struct.error, OSError):
                pass  # Nobody asked anything that can be answered.


if __name__ == "__main__":
    main()

#!/usr/bin/python3 -SE
"""Plays Solo's command line and its MCP server, and misbehaves on request.

It acts the script that lies in the directory $FAKE_SOLO under its role: for the command line the words after --json that
are no options or values, joined by a dot ("agents.list"), for a server "mcp". What it was given - arguments, or lines on
its input - goes to ROLE.log beside the script, one line each. A script has one step a line:

    out TEXT        writes TEXT and a line end          raw TEXT       writes TEXT with \\n, \\0 and the like decoded
    big BYTES       writes that many bytes              errors BYTES   writes that many bytes to the standard error
    read            takes a line from the input         sleep SECONDS  waits
    ignore-term     lets requests to end pass           hang           waits for ever
    close-output    ends its output and goes on         hold-output    leaves a process behind that keeps it open
    crash           ends by a signal                    exit CODE      ends
    chatter         writes empty objects for ever
"""

import os
import signal
import sys
import time

play = os.environ["FAKE_SOLO"]
arguments = sys.argv[1:]
role = "mcp"
if arguments:
    words = []
    for word in arguments[1:]:
        if word.startswith("--"):
            break
        words.append(word)
    role = ".".join(words)


def log(line):
    with open(os.path.join(play, role + ".log"), "ab") as file:
        file.write(line + b"\n")


if arguments:
    log("\x1f".join(arguments).encode("utf-8", "surrogateescape"))
output = sys.stdout.buffer
with open(os.path.join(play, role), encoding="utf-8") as file:
    steps = file.read().splitlines()
for step in steps:
    action, _, value = step.partition(" ")
    if action == "out":
        output.write(value.encode() + b"\n")
        output.flush()
    elif action == "raw":
        output.write(value.encode("latin-1", "backslashreplace").decode("unicode_escape").encode("latin-1"))
        output.flush()
    elif action == "big":
        output.write(b"x" * int(value))
        output.flush()
    elif action == "errors":
        sys.stderr.write("x" * int(value))
        sys.stderr.flush()
    elif action == "read":
        line = sys.stdin.buffer.readline()
        if not line:
            log(b"(end)")
            sys.exit(0)
        log(line.rstrip(b"\n"))
    elif action == "sleep":
        time.sleep(float(value))
    elif action == "ignore-term":
        signal.signal(signal.SIGTERM, signal.SIG_IGN)
    elif action == "hang":
        log(b"(hangs)")
        while True:
            signal.pause()
    elif action == "chatter":
        while True:
            output.write(b"{}\n" * 10000)
    elif action == "close-output":
        os.close(1)
    elif action == "hold-output":
        if os.fork() == 0:
            signal.alarm(60)
            signal.pause()
    elif action == "crash":
        os.kill(os.getpid(), signal.SIGKILL)
    elif action == "exit":
        os._exit(int(value))

#!/usr/bin/env python3
"""Runs the commands of a transcript and compares what they print: replay.py [--update] SOKRUN TRANSCRIPT...

A transcript is lines that begin with "$ ", commands of the shell, each with what it prints, on both streams, behind it and,
where it is not 0, its exit code in square brackets. They run in a folder of their own with the scores that stand beside
the transcript. --update writes what is printed now into the transcripts.
"""
import difflib
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile


def replayed(commands, sokrun, scores):
    lines = []
    environment = {**os.environ, "LANGUAGE": "en", "PATH": f"{sokrun.parent}:{os.environ['PATH']}"}
    with tempfile.TemporaryDirectory() as folder:
        for score in scores:
            shutil.copy(score, folder)
        for command in commands:
            run = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
            lines += ["$ " + command, *run.stdout.decode("utf-8").splitlines()]
            lines += [f"[{run.returncode}]"] if run.returncode != 0 else []
    return lines


def main(arguments):
    update = arguments[0] == "--update"
    sokrun, *transcripts = (pathlib.Path(argument).resolve() for argument in arguments[update:])
    different = False
    for transcript in transcripts:
        expected = transcript.read_text(encoding="utf-8").splitlines()
        commands = [line[2:] for line in expected if line.startswith("$ ")]
        actual = replayed(commands, sokrun, transcript.parent.glob("*.musicxml"))
        if update:
            transcript.write_text("\n".join(actual) + "\n", encoding="utf-8")
        difference = difflib.unified_diff(expected, actual, transcript.name, "printed now", lineterm="")
        for line in difference if not update else ():
            different = True
            sys.stdout.buffer.write((line + "\n").encode("utf-8"))
        different |= not commands
    return 1 if different else 0


sys.exit(main(sys.argv[1:]))

#!/usr/bin/env python3
"""Fills and clears scores and checks the results against the MusicXML schema: no message that the input has not as well.

Scores that use what is newer than the schema have messages before and after; a valid one must stay valid.
Usage: scripts/validate-scores.py [--sokrun build/release/bin/sokrun] [--run BUNDLE:COMMAND...] [--verovio] [score or folder...]
With --run extensions' commands take the place of fill and clear; with --verovio that program reads the results, too
(scripts/install-verovio.sh installs it). What cannot be written is told, and no fault.
Without scores: the demo score and generated ones. Exit code 1: a result is worse than its input; 77: there is no schema
(scripts/install-musicxml-schema.sh installs it) or no xmllint.
"""
import argparse
import io
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
DATA = pathlib.Path(os.environ.get("XDG_DATA_HOME") or pathlib.Path.home() / ".local/share")

parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
parser.add_argument("--sokrun", type=pathlib.Path, default=ROOT / "build/release/bin/sokrun")
parser.add_argument("--schema", type=pathlib.Path, default=DATA / "sokrun/musicxml-schema/musicxml.xsd")
parser.add_argument("--run", action="append", default=[], metavar="BUNDLE:COMMAND")
parser.add_argument("--verovio", action="store_true")
parser.add_argument("scores", nargs="*", type=pathlib.Path)
options = parser.parse_args()


def text_of(path):
    """The score's XML: of a zip the first root file that its container names."""
    data = path.read_bytes()
    if not data.startswith(b"PK"):
        return data
    with zipfile.ZipFile(io.BytesIO(data)) as archive:
        container = xml.etree.ElementTree.fromstring(archive.read("META-INF/container.xml"))
        return archive.read(container.find(".//{*}rootfile").get("full-path"))


def messages(path):
    """What the schema says, without lines and file names."""
    command = ["xmllint", "--nonet", "--huge", "--noout", "--schema", str(options.schema), "-"]
    run = subprocess.run(command, input=text_of(path), stderr=subprocess.PIPE, check=False)
    if run.returncode not in (0, 3):  # 3: not valid
        return {"not XML: " + run.stderr.decode(errors="replace").splitlines()[0]}
    lines = run.stderr.decode(errors="replace").splitlines()
    found = {re.sub(r"^-:\d+: ", "", line) for line in lines if re.match(r"-:\d+: ", line)}
    return found | (verovio_messages(path) if options.verovio else set())


VEROVIO = """
const verovio = require(process.argv[1]);
const read = () => {
  const toolkit = new verovio.toolkit();
  const text = require('fs').readFileSync(0, 'utf8');
  if (!toolkit.loadData(text) || toolkit.getPageCount() === 0) return console.log('cannot read it');
  const left = text.split('<pitch>').length - toolkit.getMEI().split('<note ').length;
  if (left > 0) console.log(`leaves ${left} notes out`);
};
verovio.module.calledRun ? read() : verovio.module.onRuntimeInitialized = read;
"""


def verovio_messages(path):
    """Whether Verovio reads the score, every note of it. Its warnings are of slurs and hairpins that have lost an end."""
    command = ["node", "-e", VEROVIO, DATA / "sokrun/node_modules/verovio"]
    text = text_of(path)
    if text[:2] in (b"\xff\xfe", b"\xfe\xff"):
        text = text.decode("utf-16").encode()
    run = subprocess.run(command, input=text, capture_output=True, check=False)
    failed = ["cannot be run: " + run.stderr.decode(errors="replace")] if run.returncode else []
    return {"Verovio " + line for line in run.stdout.decode(errors="replace").splitlines() + failed}


def commands():
    """What is run, by name: the words behind sokrun."""
    if not options.run:
        return {"fill": ["fill"], "clear": ["clear"]}
    pairs = [each.rsplit(":", 1) for each in options.run]
    return {f"{pathlib.Path(bundle).stem} {number}": ["run", number, "--plugin", bundle] for bundle, number in pairs}


def check(score, folder):
    """One line for each command; how many results are worse than the score."""
    before = messages(score)
    worse = 0
    for command, words in commands().items():
        result = folder / ("result" + score.suffix)
        run = subprocess.run([options.sokrun, *words, "--quiet", score, "-o", result], capture_output=True, check=False)
        if run.returncode != 0:
            print(f"{score.name}: {command}: {run.stderr.decode(errors='replace').strip()}")
            worse += not options.run
            continue
        new = messages(result) - before
        worse += bool(new)
        state = "WORSE" if new else "valid" if not before else f"no worse ({len(before)} messages as before)"
        print(f"{score.name}: {command}: {state}")
        for line in sorted(new):
            print("  " + line)
        result.unlink()
    return worse


def generated(folder):
    for seed in ("1", "2"):
        path = folder / f"generated-{seed}.musicxml"
        command = [sys.executable, ROOT / "scripts/generate-score.py", "--measures", "60", "--staves", "5", "--seed", seed]
        path.write_bytes(subprocess.run(command, stdout=subprocess.PIPE, check=True).stdout)
        yield path


def main():
    for needed, there in (("xmllint (libxml2-utils)", shutil.which("xmllint")),
                          (f"{options.schema} (scripts/install-musicxml-schema.sh)", options.schema.exists())):
        if not there:
            print(f"skipped: there is no {needed}")
            return 77
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        scores = []
        for path in options.scores:
            scores += sorted(p for p in path.rglob("*") if p.suffix in (".xml", ".mxl", ".musicxml")) if path.is_dir() else [path]
        if not options.scores:
            scores = sorted((ROOT / "examples/scores").glob("*.musicxml")) + list(generated(folder))
        worse = sum(check(score, folder) for score in scores)
    print(f"{len(scores)} scores, {worse} results worse than their input")
    return 1 if worse or not scores else 0


sys.exit(main())

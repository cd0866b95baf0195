#!/usr/bin/env python3
"""Runs the benchmark programs and sokrun, and prints what they took beside their peers. Called by bench.sh."""
import itertools
import json
import os
import pathlib
import platform
import resource
import subprocess
import sys
import tempfile

# Programs whose benchmarks pair up by name: ours, the peer's, what the pair is called, the wanted ratio.
PAIRS = [
    ("binding_bench", "Kit_Wrapper", "Direct_Wrapper", "a wrapper / a direct call", 1.5),
    ("binding_bench", "Kit_Fill", "Bare_Fill", "the fill command / its host calls bare", 1.1),
    ("binding_bench", "Kit_Clear", "Bare_Clear", "the clear command / its host calls bare", 1.1),
    *[("records_bench", f"{tag}/{step}", f"{tag}/host_loads", f"{tag} {step.replace('_', ' ')} / bare loads", 1.2)
      for tag in "pfDP pfSI pfMS pfRP pfPB pfSS pfPL pfEX pfPF pf05".split() for step in ("load", "save_unchanged")],
    *[("strings_bench", f"Kit_{name}/{units}", f"Icu_{name}/{units}", f"sx_{name}, {units} units / ICU", 1.0)
      for name in "strlen strcmp strncmp strchr strstr".split() for units in (10, 100, 1000)],
    *[("text_bench", f"Kit_strip/{units}", f"Copy_strip/{units}", f"txt_strip_carets, {units} units / bare copy", 2.0)
      for units in (10, 100, 1000)],
    *[("text_bench", f"Kit_{name}/{units}", f"Icu_{name}/{units}", f"eu16string from {name}, {units} bytes / ICU", 1.0)
      for name in ("macroman", "utf8") for units in (10, 100, 1000)],
    *[("notation_bench", f"{kind}_FindOrCreate", f"{kind}_Bare", f"find or create, {kind} / bare loads", 1.2)
      for kind in ("Articulation", "ChordSuffix", "TopStaffList")],
]

# The cookbook's extension that doubles every duration.
DOUBLE = "tests/extension/Doublevalues.bundle"


def micro(build, program, quick):
    """The fastest CPU time in ns of each benchmark of a program."""
    command = [build / "bench" / program, "--benchmark_format=json", "--benchmark_enable_random_interleaving=true",
               f"--benchmark_repetitions={3 if quick else 40}", f"--benchmark_min_time={0.01 if quick else 0.02}"]
    runs = json.loads(subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True).stdout)
    scale = {"ns": 1, "us": 1e3, "ms": 1e6}
    times = {}
    for run in runs["benchmarks"]:
        if run["run_type"] == "iteration":
            name, time = run["run_name"], run["cpu_time"] * scale[run["time_unit"]]
            times[name] = min(time, times.get(name, time))
    return times


def cpu_seconds(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def peak_mb(command):
    # A child's peak counts from its fork: a small parent of its own, or Python's memory would be the least of all.
    timed = subprocess.run(["/usr/bin/time", "-f", "%M", *command], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                           text=True, check=True)
    return int(timed.stderr.splitlines()[-1]) / 1024


def whole(commands, runs):
    """Whole runs of processes, in turns: CPU seconds of the fastest of each command, and its peak memory in MB."""
    rounds = [[cpu_seconds(command) for command in commands] for _ in range(runs)]
    return [(min(seconds), peak_mb(command)) for command, seconds in zip(commands, zip(*rounds))]


def version(package):
    command = ["pkg-config", "--modversion", package]
    return f"{package} {subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout.strip()}"


def row(what, ours, peer, unit, wanted):
    verdict = "" if ours / peer <= wanted + 0.005 else " (missed)"
    print(f"| {what} | {ours:.4g} | {peer:.4g} {unit} | {ours / peer:.2f} | {wanted:g}{verdict} |", flush=True)


def main():
    build = pathlib.Path(sys.argv[1])
    arguments = sys.argv[2:]
    quick = "--quick" in arguments
    model = next((line.split(":")[1].strip() for line in open("/proc/cpuinfo") if "model name" in line), "?")
    compiler = subprocess.run(["g++", "--version"], stdout=subprocess.PIPE, text=True).stdout.splitlines()[0]
    peers = ", ".join(map(version, ("icu-uc", "pugixml")))
    print(f"{model}, {os.cpu_count()} cores, {platform.system()} {platform.release()}, {compiler}; peers: {peers}\n")
    print("| what / its peer | ours | peer | ratio | wanted at most |\n|---|---|---|---|---|")
    for program in dict.fromkeys(pair[0] for pair in PAIRS):
        times = micro(build, program, quick)
        for _, ours, peer, what, wanted in (pair for pair in PAIRS if pair[0] == program):
            row(what, times[ours], times[peer], "ns", wanted)

    with tempfile.TemporaryDirectory() as folder:
        out = pathlib.Path(folder) / "out.musicxml"
        scores = []
        for measures, staves in [(100, 10), (1000, 10), (1000, 40)] + ([] if quick else [(10000, 40)]):
            score = pathlib.Path(folder) / f"{measures}x{staves}.musicxml"
            generate = [sys.executable, "scripts/generate-score.py", "--measures", str(measures), "--staves", str(staves)]
            with open(score, "w", encoding="utf-8") as file:
                subprocess.run(generate, stdout=file, check=True)
            scores.append(score)
        scores += [pathlib.Path(name) for name in arguments if not name.startswith("--")]
        per_mb = {}
        for score in scores:
            size = score.stat().st_size
            runs = 3 if quick else 9 if size > 1e8 else 15
            name = f"{score.name}, {size / 1e6:.1f} MB"
            sokrun, ends = build / "bin" / "sokrun", [score, "-o", out, "--quiet"]
            commands = {"": [build / "bench" / "pugixml_peer", score, out], "fill": [sokrun, "fill", *ends]}
            if score.parent == pathlib.Path(folder):  # others may hold what cannot be doubled
                commands["run, every note edited"] = [sokrun, "run", "--plugin", build / DOUBLE, "0", *ends]
            peer, *ours = whole(commands.values(), runs)
            for what, wanted, (seconds, memory) in zip(list(commands)[1:], (1.15 if size > 9e6 else 1.3, 3), ours):
                row(f"sokrun {what}, {name}: CPU / pugixml load + save", seconds, peer[0], "s", wanted)
                row(f"sokrun {what}, {name}: memory / pugixml load + save", memory, peer[1], "MB", 2.0)
            per_mb[score.stem] = [part / size * 1e6 for part in ours[0]]
        for (smaller, base), (name, larger) in itertools.pairwise(per_mb.items()):  # no more of each for its size
            row(f"growth: CPU a MB, {name} / {smaller}", larger[0], base[0], "s", 1.1)
            row(f"growth: memory a MB, {name} / {smaller}", larger[1], base[1], "MB", 1.1)


if __name__ == "__main__":
    main()

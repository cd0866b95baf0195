#!/usr/bin/env python3
"""Plants one fault at a time in the kit and the commands and counts how many the tests catch.

Works in a copy of the repository below build/mutation. A mutant that does not compile, or that compiles to the same
machine code as the original, does not count; of the tests only those run whose program the fault has reached. Usage:

    scripts/mutation.py [--count N] [--seed S] [--path SUBSTRING] [--only KIND] [--list]
"""
import argparse
import collections
import hashlib
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
SOURCES = ["entry", "SokExtShared"]
# Tests that load a bundle instead of linking what it is built from.
BUNDLE_TESTS = {"MeasureRests": {"extension_test", "faults_test", "name_clash_test"},
                "StringProbe": {"string_resources_test"}, "BareStringProbe": {"string_resources_test"}}

# What a fault looks like: a pattern in a line of code and what takes its place.
REPLACEMENTS = [
    (r"(?<![<>=!\-])<(?![<=>])(?= )", "<="), (r"(?<![<>=!\-])>(?![>=])(?= )", ">="),
    (r"<=(?!>)", "<"), (r">=", ">"), (r"==", "!="), (r"!=", "=="),
    (r" && ", " || "), (r" \|\| ", " && "), (r" \+ ", " - "), (r" - ", " + "),
    (r"\+\+", "--"), (r"--(?=\w)", "++"), (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
    (r" & ", " | "), (r" >> ", " << "), (r"\bcontinue;", "break;"),
    (r"(?<![\w.\"'])(\d+)(?![\w.\"'])", lambda match: str(int(match.group(1)) + 1)),
    (r"0x([0-9A-F]+)", lambda match: "0x%X" % (int(match.group(1), 16) ^ 1)),
    (r"\bunsigned short\b(?=>)", "short"),
]
DROPPED_CALL = re.compile(r"^\s+(?:[\w:]+(?:\.|->))*[\w:]+\([^;{}]*\);(?:\s*//.*)?$")
GUARD = re.compile(r"^\s+(?:\} else )?if \(")
CALL = re.compile(r"(?<!\w)(?!if\b|for\b|while\b|switch\b|return\b|sizeof\b|alignof\b|decltype\b)[A-Za-z_]\w*\(")
CONSTANT = re.compile(r"-?(?!0$)(?:\d+|0x[0-9A-Fa-f]+|k[A-Z]\w*)")
DECLARATION = re.compile(r"\w[*&>]* +[*&]*\w")


def code_part(line):
    """The line without its comment and with its string literals blanked, so that faults go into code alone."""
    line = re.sub(r'"(?:[^"\\]|\\.)*"', lambda match: '"' + "\1" * (len(match.group(0)) - 2) + '"', line)
    return line.split("//")[0]


def parts_within(code, start):
    """Where the parts between the bracket that opens before `start` and its end begin and end; none without an end."""
    depth, parts, begin = 0, [], start
    for at in range(start, len(code)):
        if code[at] in "([{":
            depth += 1
        elif code[at] in ")]}" and depth > 0:
            depth -= 1
        elif code[at] in "),;" and depth == 0:
            parts.append((begin, at))
            if code[at] == ")":
                return parts
            begin = at + 1
    return []


def argument_faults(code, line):
    """Constants become 0, two neighbours change places. Parameters of a declaration stay."""
    if not code.startswith(" "):
        return
    for call in CALL.finditer(code):
        parts = [(start + len(code[start:end]) - len(code[start:end].lstrip()), end)
                 for start, end in parts_within(code, call.end())]
        texts = [line[start:end] for start, end in parts]
        if any(DECLARATION.search(text) for text in texts):
            continue
        for (start, end), text in zip(parts, texts):
            if CONSTANT.fullmatch(text):
                yield line[:start] + "0" + line[end:], f"argument {text} -> 0"
        for i in range(len(parts) - 1):
            (start, end), (next_start, next_end) = parts[i], parts[i + 1]
            if texts[i] != texts[i + 1]:
                swapped = line[:start] + texts[i + 1] + line[end:next_start] + texts[i] + line[next_end:]
                yield swapped, f"arguments {texts[i]} and {texts[i + 1]} swapped"


def guard_faults(code, line):
    """An early way out is never taken; what stands under another condition happens always."""
    guard = GUARD.match(code)
    parts = parts_within(code, guard.end()) if guard else []
    if len(parts) != 1 or DECLARATION.search(code[slice(*parts[0])].split("=")[0]):
        return
    start, end = parts[0]
    leaves = re.match(r"\) (\{$|return\b|continue;|break;)", code[end:])
    if leaves and leaves.group(1) != "{":
        yield line[:start] + "false" + line[end:], "guard dropped"
    else:
        yield line[:start] + "true" + line[end:], "condition dropped"


def mutants_of(path):
    lines = path.read_text(encoding="utf-8").splitlines(keepends=True)
    for number, line in enumerate(lines):
        code = code_part(line.rstrip("\n"))
        if not code.strip() or code.lstrip().startswith(("#", "namespace", "static_assert", "template")):
            continue
        for pattern, replacement in REPLACEMENTS:
            for match in re.finditer(pattern, code):
                changed = replacement(match) if callable(replacement) else replacement
                yield path, number, line[: match.start()] + changed + line[match.end():], f"{match.group(0).strip()} -> {changed.strip()}"
        for changed, what in [*argument_faults(code, line), *guard_faults(code, line)]:
            yield path, number, changed, what
        if DROPPED_CALL.match(code) and not code.strip().startswith(("return", "delete")):
            yield path, number, "\n", "call dropped"
            following = lines[number + 1] if number + 1 < len(lines) else ""
            if DROPPED_CALL.match(code_part(following.rstrip("\n"))):
                yield path, number, following.rstrip("\n") + "\n" + line, "order swapped"


def run(command, **options):
    # A copy at another path is the same to the compiler's cache, where there is one.
    environment = {**os.environ, "CCACHE_BASEDIR": str(WORK / "tree"), "CCACHE_NOHASHDIR": "1"}
    return subprocess.run(command, cwd=WORK / "tree", stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          env=environment, **options)


def build():
    return run(["cmake", "--build", "build", "--target", "unit_tests"]).returncode == 0


def tests_pass(programs):
    labels = "/(" + "|".join(sorted(programs)) + ")$"
    try:
        # A fault may make a loop endless, or hungry.
        ctest = f"ctest --test-dir build -j2 --stop-on-failure -Q -L '{labels}'"
        return run(["bash", "-c", f"ulimit -t 10 -v 4000000 && exec {ctest}"], timeout=300).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def built_code():
    """A digest of every test program and bundle, by its name."""
    binaries = [*WORK.glob("tree/build/bin/*_test"), *WORK.glob("tree/build/**/*.bundle/Contents/MacOS/*")]
    return {binary.name: hashlib.sha256(binary.read_bytes()).hexdigest() for binary in binaries}


def programs_reached(original):
    """The test programs that are other ones now, or load a bundle that is."""
    changed = {name for name, digest in built_code().items() if digest != original[name]}
    bundles = changed & BUNDLE_TESTS.keys()
    return {name for name in changed if name.endswith("_test")}.union(*(BUNDLE_TESTS[name] for name in bundles))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=60, help="how many faults to plant (0: all)")
    parser.add_argument("--seed", type=int, default=1, help="which of them")
    parser.add_argument("--path", default="", help="only files whose path contains this")
    parser.add_argument("--only", default="", help="only faults whose description contains this")
    parser.add_argument("--list", action="store_true", help="list the faults without planting them")
    arguments = parser.parse_args()

    files = sorted(path for source in SOURCES for path in (ROOT / source).rglob("*.cpp")
                   if arguments.path in str(path) and "darwin" not in path.name)
    mutants = [mutant for path in files for mutant in mutants_of(path) if arguments.only in mutant[3]]
    random.Random(arguments.seed).shuffle(mutants)
    if arguments.count:
        mutants = mutants[: arguments.count]
    if arguments.list:
        for path, number, _, what in mutants:
            print(f"{path.relative_to(ROOT)}:{number + 1}: {what}")
        return 0

    shutil.rmtree(WORK / "tree", ignore_errors=True)
    shutil.copytree(ROOT, WORK / "tree", ignore=shutil.ignore_patterns("build", "build-*", ".git", "node_modules"))
    if run(["cmake", "-G", "Ninja", "-B", "build", "-DCMAKE_BUILD_TYPE=Release", "-DSOK_WERROR=OFF",
            "-DSOK_BUILD_EXAMPLES=OFF"]
           + ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] * bool(shutil.which("ccache"))).returncode or not build():
        sys.exit("mutation: the unchanged tree does not build")
    original = built_code()
    if not tests_pass({name for name in original if name.endswith("_test")}):
        sys.exit("mutation: the tests of the unchanged tree fail")

    verdicts = collections.defaultdict(collections.Counter)  # by folder
    survivors = []
    for index, (path, number, replacement, what) in enumerate(mutants, 1):
        target = WORK / "tree" / path.relative_to(ROOT)
        text = target.read_text(encoding="utf-8")
        lines = text.splitlines(keepends=True)
        lines[number] = replacement
        if what == "order swapped":
            del lines[number + 1]
        target.write_text("".join(lines), encoding="utf-8")
        place = f"{path.relative_to(ROOT)}:{number + 1}: {what}"
        programs = programs_reached(original) if build() else ()
        if not programs:
            verdict = "does not count"
        elif tests_pass(programs):
            survivors.append(place)
            verdict = "SURVIVED"
        else:
            verdict = "caught"
        verdicts[path.parent.relative_to(ROOT)][verdict] += 1
        print(f"{index}/{len(mutants)} {verdict}: {place}", flush=True)
        target.write_text(text, encoding="utf-8")

    print()
    for folder, counts in sorted(verdicts.items()) + [("all", sum(verdicts.values(), collections.Counter()))]:
        caught, counted = counts["caught"], counts["caught"] + counts["SURVIVED"]
        print(f"{folder}: {caught} of {counted} faults caught ({100 * caught // max(counted, 1)} %), "
              f"{counts['does not count']} did not count")
    for place in survivors:
        print("survived:", place)
    return 0


if __name__ == "__main__":
    sys.exit(main())

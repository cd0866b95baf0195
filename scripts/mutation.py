#!/usr/bin/env python3
"""Plants one fault at a time in the kit and the commands and counts how many the tests catch.

Works in a copy of the repository below build/mutation. A mutant that does not compile, or that compiles to the same
machine code as the original, does not count. Usage:

    scripts/mutation.py [--count N] [--seed S] [--path SUBSTRING] [--list]
"""
import argparse
import hashlib
import pathlib
import random
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
SOURCES = ["entry", "SokExtShared"]
TARGETS = ["binding_test", "edit_nesting_test", "frame_access_test", "record_access_test", "string_resources_test",
           "preference_mapping_test", "typed_records_test", "record_runs_test", "preferences_test", "notation_test",
           "utf16_strings_test", "ansi_string_test", "eu16string_test", "caret_commands_test", "text_records_test",
           "score_texts_test", "extension_test", "faults_test"]

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


def code_part(line):
    """The line without its comment and with its string literals blanked, so that faults go into code alone."""
    line = re.sub(r'"(?:[^"\\]|\\.)*"', lambda match: '"' + "\1" * (len(match.group(0)) - 2) + '"', line)
    return line.split("//")[0]


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
        if DROPPED_CALL.match(code) and not code.strip().startswith(("return", "delete")):
            yield path, number, "\n", "call dropped"
            following = lines[number + 1] if number + 1 < len(lines) else ""
            if DROPPED_CALL.match(code_part(following.rstrip("\n"))):
                yield path, number, following.rstrip("\n") + "\n" + line, "order swapped"


def run(command, **options):
    return subprocess.run(command, cwd=WORK / "tree", stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)


def build():
    return run(["cmake", "--build", "build", "--target", *TARGETS]).returncode == 0


def tests_pass():
    try:
        # A fault may make a loop endless, or hungry.
        ctest = "ctest --test-dir build -j2 --stop-on-failure -Q -L unit -E Fuzz"
        return run(["bash", "-c", f"ulimit -t 10 -v 4000000 && exec {ctest}"], timeout=300).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def built_code():
    tree = WORK / "tree" / "build" / "lib"
    files = [tree / "libSokEDK.a", tree / "sok" / "MeasureRests.bundle" / "Contents" / "MacOS" / "MeasureRests"]
    return hashlib.sha256(b"".join(file.read_bytes() for file in files)).hexdigest()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=60, help="how many faults to plant (0: all)")
    parser.add_argument("--seed", type=int, default=1, help="which of them")
    parser.add_argument("--path", default="", help="only files whose path contains this")
    parser.add_argument("--list", action="store_true", help="list the faults without planting them")
    arguments = parser.parse_args()

    files = sorted(path for source in SOURCES for path in (ROOT / source).rglob("*.cpp")
                   if arguments.path in str(path) and "darwin" not in path.name)
    mutants = [mutant for path in files for mutant in mutants_of(path)]
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
            "-DSOK_BUILD_EXAMPLES=OFF"]).returncode or not build():
        sys.exit("mutation: the unchanged tree does not build")
    if not tests_pass():
        sys.exit("mutation: the tests of the unchanged tree fail")
    original = built_code()

    caught, survivors, void = 0, [], 0
    for index, (path, number, replacement, what) in enumerate(mutants, 1):
        target = WORK / "tree" / path.relative_to(ROOT)
        text = target.read_text(encoding="utf-8")
        lines = text.splitlines(keepends=True)
        lines[number] = replacement
        if what == "order swapped":
            del lines[number + 1]
        target.write_text("".join(lines), encoding="utf-8")
        place = f"{path.relative_to(ROOT)}:{number + 1}: {what}"
        if not build() or built_code() == original:
            void += 1
            verdict = "does not count"
        elif tests_pass():
            survivors.append(place)
            verdict = "SURVIVED"
        else:
            caught += 1
            verdict = "caught"
        print(f"{index}/{len(mutants)} {verdict}: {place}", flush=True)
        target.write_text(text, encoding="utf-8")

    counted = caught + len(survivors)
    print(f"\n{caught} of {counted} faults caught ({100 * caught // max(counted, 1)} %), {void} did not count")
    for place in survivors:
        print("survived:", place)
    return 0


if __name__ == "__main__":
    sys.exit(main())

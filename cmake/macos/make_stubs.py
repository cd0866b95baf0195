#!/usr/bin/env python3
"""Completes an SDK folder with what stands for the frameworks and for libc++ when linking for macOS on Linux.

Usage: make_stubs.py SDK_FOLDER

The names that may be used of the frameworks are those that platform/ declares; imports.txt beside this file has those
of libc++. They become text stubs (.tbd), which is all that a linker needs to know of a library. The headers of the
frameworks are platform's own, over the system's MacTypes.h.
"""
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
PLATFORM = HERE.parents[1] / "platform"
FRAMEWORKS = "System/Library/Frameworks"
TARGETS = "[ x86_64-macos, arm64-macos ]"
# Where string literals are made by the compiler, they refer to this.
CONSTANT_STRINGS = "___CFConstantStringClassReference"


def declared(header):
    """The names in a header's declarations that begin with CF_EXPORT, as linkers see them."""
    text = re.sub(r"//[^\n]*", "", header.read_text())
    declarations = re.findall(r"^CF_EXPORT ([^(;]+)", text, re.M)
    return ["_" + declaration.split()[-1].lstrip("*") for declaration in declarations]


def allowed(library):
    """The names of a library in imports.txt."""
    pairs = (line.split() for line in (HERE / "imports.txt").read_text().splitlines() if line[:1] not in ("", "#"))
    return [name for owner, name in pairs if owner == library]


def write(path, text):
    """Writes a file unless it holds the text: what depends on it is built again only when it changed."""
    path.parent.mkdir(parents=True, exist_ok=True)
    if not path.exists() or path.read_text() != text:
        path.write_text(text)


def stub(install_name, names):
    listed = ", ".join(f"'{name}'" for name in sorted(set(names)))
    return (f"--- !tapi-tbd\ntbd-version: 4\ntargets: {TARGETS}\ninstall-name: '{install_name}'\n"
            f"current-version: 1\nexports:\n  - targets: {TARGETS}\n    symbols: [ {listed} ]\n...\n")


def framework(sdk, name, names, prelude, postlude=""):
    folder = sdk / FRAMEWORKS / f"{name}.framework"
    header = PLATFORM / name / f"{name}.h"
    write(folder / f"{name}.tbd", stub(f"/{FRAMEWORKS}/{name}.framework/Versions/A/{name}", names))
    write(folder / "Headers" / f"{name}.h", f"{prelude}{header.read_text()}{postlude}")


def main():
    sdk = pathlib.Path(sys.argv[1])
    core = PLATFORM / "CoreFoundation" / "CoreFoundation.h"
    framework(sdk, "CoreFoundation", declared(core) + [CONSTANT_STRINGS],
              "#include <TargetConditionals.h>\n#include <MacTypes.h>\n#include <assert.h>\n#include <sys/types.h>\n",
              "#undef CFSTR\n#define CFSTR(literal) ((CFStringRef)__builtin___CFStringMakeConstantString(\"\" literal \"\"))\n")
    framework(sdk, "Carbon", declared(PLATFORM / "Carbon" / "Carbon.h"), "#include <AssertMacros.h>\n")
    write(sdk / "usr/lib/libc++.tbd", stub("/usr/lib/libc++.1.dylib", allowed("libc++")))


main()

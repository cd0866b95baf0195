#!/usr/bin/env python3
"""Doxygen's input filter: turns the kit's plain comments into the ones that Doxygen reads.

The comment at the head of a header documents the file. A comment above a declaration documents it and, as one comment
may serve a family, the declarations that follow without a blank line between. A comment behind a declaration documents
that one. Bytes that only the host understands are named for their place (`host6`) and need no comment, nor do the
functions that the compiler makes. The include of host_entry_points.def becomes the documented prototypes that its rows
expand to.
"""
import pathlib
import re
import sys

SCOPE = re.compile(r'^(typedef |template ?<.*> ?)?((struct|class|union|enum|namespace)\b|extern "C").*\{$')
NO_DECLARATION = re.compile(r"^(#|.*= default;|public:|private:|protected:|friend |template <.*>$|[{})]|$)")
HOST_BYTES = re.compile(r"\bhost\d*(\[\w+\])?;")
ROW = re.compile(r"SX_(ENTRY|CUSTOM) ?\( ?([^,]+?), +(\w+), +(\([^)]*\))(?:, +\([^)]*\), *(.*?))? *\) +// (.*)$")


def escaped(text):
    """Doxygen's special characters made plain, except in `code`."""
    parts = re.split(r"(`[^`]*`)", text)
    return "".join(part if part.startswith("`") else re.sub(r"([\\@<>#&%])", r"\\\1", part) for part in parts)


def entry_points(table):
    """The rows of the table as prototypes, in groups."""
    group_end = []
    for line in table.read_text(encoding="utf-8").splitlines():
        if heading := re.match(r"// -+ (.*?) -+$", line):
            yield from group_end + [f"/// @name {heading.group(1)}", "///@{", ""]
            group_end = ["///@}"]
        elif line.startswith("SX_"):
            row = ROW.match(line)
            if not row:
                sys.exit(f"{table}: a row without a comment: {line}")
            kind, result, name, parameters, missing, text = row.groups()
            if kind == "CUSTOM":  # the comment begins with the source that has the wrapper
                text = re.sub(r"^(\w+)(?:: )?", lambda source: f"See {source.group(1)}.h. ", text)
            text = text[0].upper() + escaped(text[1:]).rstrip(" .") + "."
            yield f"/// {text}" + (f" Without it: `{missing}`." if missing else "")
            yield f"{result} {name}{parameters};"
    yield from group_end


def filtered(path):
    lines = path.read_text(encoding="utf-8").splitlines()
    if lines[0] == "/// @file":  # written for Doxygen
        return "\n".join(lines) + "\n"
    out = ["/// @file"]
    while lines and lines[0].startswith("//"):
        out.append("///" + escaped(lines.pop(0)[2:]))

    above = []    # the comment that stands directly above
    family = []   # the comment that serves what follows directly
    inside = ""   # the declaration of several lines, or the function's body, that is going on
    for line in lines:
        code, _, behind = line.partition("//")
        code, bare = code.rstrip(), code.strip()
        if not bare and behind:
            above.append(behind)
            continue
        if not inside:
            is_macro = bare.startswith("#define") and (above or family)
            if NO_DECLARATION.match(bare) and not is_macro:
                family = []
                if "host_entry_points.def" in bare:
                    out.extend(entry_points(path.parent / "host_entry_points.def"))
                elif not bare.startswith("#define SX_") and not bare.endswith("= default;"):
                    out.extend(["///" + escaped(text) for text in above] if bare.startswith("template") else [])
                    out.append(code)
                above = []
                continue
            family = above or family
            if not behind and not bare.startswith("static_assert"):
                out.extend("///" + escaped(text) for text in family)
        above = []
        if behind:
            code += "  ///<" + escaped(behind)
        elif HOST_BYTES.search(bare) and not family and not inside:
            code += "  ///< Bytes that only the host understands."
        inside += bare
        is_assertion = inside.startswith("static_assert")
        if not is_assertion:
            out.append(code)
        if not is_assertion and SCOPE.match(inside):
            family, inside = [], ""
        elif code.endswith("\\"):
            pass  # a macro goes on
        elif inside.count("(") == inside.count(")") and inside.count("{") == inside.count("}"):
            if is_macro or inside.endswith((";", "}", ",")) or re.fullmatch(r"\w+( = [^;]*)?", inside):
                inside = ""
    return "\n".join(out) + "\n"


if __name__ == "__main__":
    sys.stdout.write(filtered(pathlib.Path(sys.argv[1])))

#!/usr/bin/env python3
"""Writes the C++ code of a page as one source, for the tests to compile: guide_code.py PAGE SOURCE [SECTION]"""
import pathlib
import re
import sys

path = pathlib.Path(sys.argv[1]).resolve()
text = path.read_text(encoding="utf-8")
first, last = 0, len(text)
if len(sys.argv) > 3:
    first = text.index(f"\n## {sys.argv[3]}\n")
    last = (text + "\n## ").index("\n## ", first + 1)
source = []
for block in re.compile(r"^```cpp\n(.*?)^```$", re.DOTALL | re.MULTILINE).finditer(text, first, last):
    line = text.count("\n", 0, block.start()) + 2
    source.append(f'#line {line} "{path}"\n{block.group(1)}')
pathlib.Path(sys.argv[2]).write_text("\n".join(source), encoding="utf-8")

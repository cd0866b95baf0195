#!/usr/bin/env python3
"""Writes the C++ code of the guide as one source, for the tests to compile: guide_code.py GUIDE SOURCE"""
import pathlib
import re
import sys

path = pathlib.Path(sys.argv[1]).resolve()
text = path.read_text(encoding="utf-8")
source = []
for block in re.finditer(r"^```cpp\n(.*?)^```$", text, re.DOTALL | re.MULTILINE):
    line = text.count("\n", 0, block.start()) + 2
    source.append(f'#line {line} "{path}"\n{block.group(1)}')
pathlib.Path(sys.argv[2]).write_text("\n".join(source), encoding="utf-8")

#!/usr/bin/env python3
"""Holds the code in the README against an example that a test compiles.

usage: readme_snippet.py README SOURCE
Every line of the README's C++ blocks must stand in the source, in the same order, whatever its indentation.
"""
import pathlib
import re
import sys

readme, source = (pathlib.Path(name).read_text(encoding="utf-8") for name in sys.argv[1:3])
blocks = re.findall(r"```cpp\n(.*?)```", readme, re.S)
lines = [line.strip() for line in source.splitlines()]
if not blocks:
    sys.exit("The README shows no C++.")
for block in blocks:
    wanted = [line.strip() for line in block.splitlines() if line.strip()]
    if not any(lines[at:at + len(wanted)] == wanted for at in range(len(lines))):
        sys.exit(f"These lines of the README are not in {sys.argv[2]}:\n{block}")

#!/usr/bin/env python3
"""Extracts the C++ programs from the pages, so that they are compiled: every block marked as cpp becomes a source file.
Prints the names of the files; unchanged files are not rewritten.

    snippets.py FOLDER PAGE.md...
"""

import os
import re
import sys


def blocks_of(path):
    text = open(path, encoding="utf-8").read()
    for number, block in enumerate(re.finditer(r"^```cpp\n(.*?)^```$", text, flags=re.M | re.S), start=1):
        line = text.count("\n", 0, block.start()) + 2
        if "#include" not in block[1]:
            sys.exit(f"{path}:{line}: a program without an #include cannot be compiled by itself")
        yield number, f'#line {line} "{os.path.basename(path)}"\n{block[1]}'


def write_unless_same(path, text):
    if not os.path.exists(path) or open(path, encoding="utf-8").read() != text:
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)


def main():
    folder, *pages = sys.argv[1:]
    os.makedirs(folder, exist_ok=True)
    for page in pages:
        stem = os.path.splitext(os.path.basename(page))[0].lower()
        for number, text in blocks_of(page):
            path = f"{folder}/{stem}_{number}.cpp"
            write_unless_same(path, text)
            print(path)


if __name__ == "__main__":
    main()

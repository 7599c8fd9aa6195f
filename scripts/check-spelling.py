#!/usr/bin/env python3
"""Checks the spelling of the Markdown files and of the comments in the interface definitions, in British English.

    scripts/check-spelling.py
Words that no dictionary has are listed in docs/words.txt.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "docs" / "generator"))
sys.dont_write_bytecode = True

from markdown import outside_code  # noqa: E402


def prose_of_markdown(text):
    kept = []
    outside_code(text, lambda part: kept.append(part) or part)
    text = re.sub(r"<!--.*?-->", " ", "".join(kept), flags=re.S)
    return re.sub(r"`[^`]*`|\]\([^)]*\)", " ", text)


def prose_of_comments(text):
    return re.sub(r"`[^`]*`|'\w{4}'", " ", " ".join(re.findall(r"/\*.*?\*/", text, re.S)))


def texts():
    for path in sorted(ROOT.rglob("*.md")):
        if path.relative_to(ROOT).parts[0] != "build":
            yield path, prose_of_markdown(path.read_text(encoding="utf-8"))
    for path in sorted(ROOT.glob("api/*.idl")):
        yield path, prose_of_comments(path.read_text(encoding="utf-8"))


def words_of(text):
    """Names of files, names in CamelCase and names with digits or underscores are code, wherever they stand."""
    text = re.sub(r"\b\w*(?:[a-z][A-Z]|[\d_]|\.\w)\w*\b", " ", text.replace("’", "'"))
    return set(re.findall(r"[A-Za-z][A-Za-z']*", text))


def unknown(words):
    checked = subprocess.run(["hunspell", "-d", "en_GB", "-p", ROOT / "docs" / "words.txt", "-l"],
                             input="\n".join(sorted(words)), check=True, text=True, stdout=subprocess.PIPE)
    return set(checked.stdout.split())


def main():
    words = {path: words_of(text) for path, text in texts()}
    wrong = unknown(set().union(*words.values()))
    print(f"  {'FAILED' if wrong else 'ok    '}  spelling in {len(words)} files")
    for path, found in words.items():
        for word in sorted(found & wrong):
            print(f"          {path.relative_to(ROOT)}: {word}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())

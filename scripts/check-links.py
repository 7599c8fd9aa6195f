#!/usr/bin/env python3
"""Checks every link between the Markdown files of the tree: that its file exists, and its heading. Links that leave the
tree are not followed.

    scripts/check-links.py
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "docs" / "generator"))
sys.dont_write_bytecode = True

from markdown import outside_code, slug  # noqa: E402

LINK = re.compile(r"\[[^]]*\]\(([^)\s#]*)(?:#([^)\s]*))?\)")


def markdown_files():
    return [path for path in sorted(ROOT.rglob("*.md")) if path.relative_to(ROOT).parts[0] != "build"]


def prose(path):
    """The text without the blocks between fences and without code."""
    text = path.read_text(encoding="utf-8")
    kept = []
    outside_code(text, lambda part: kept.append(part) or part)
    return "".join(kept)


def headings(path):
    return {slug(heading.replace("`", "")) for heading in re.findall(r"^#+ (.+)$", prose(path), re.M)}


def broken_links(path):
    for target, anchor in LINK.findall(re.sub(r"`[^`\n]*`", "", prose(path))):
        if re.match(r"\w+:", target):
            continue
        found = (path.parent / target) if target else path
        if not found.exists():
            yield f"{target}: no such file"
        elif anchor and found.suffix == ".md" and anchor not in headings(found):
            yield f"{target}#{anchor}: no such heading"


def main():
    files = markdown_files()
    wrong = [f"{path.relative_to(ROOT)}: {link}" for path in files for link in broken_links(path)]
    print(f"  {'FAILED' if wrong or not files else 'ok    '}  links in {len(files)} files")
    for line in wrong:
        print(f"          {line}")
    return 1 if wrong or not files else 0


if __name__ == "__main__":
    sys.exit(main())

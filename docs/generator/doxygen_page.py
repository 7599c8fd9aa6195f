#!/usr/bin/env python3
"""Prints a page, which is written for code hosting sites, in the form that Doxygen needs.

    doxygen_page.py PAGE.md

Mermaid diagrams become diagrams that Doxygen draws: flow charts dot, sequences mscgen. Only the parts of Mermaid that
the pages use are supported; any other line is an error. Headings get anchors made of their words, as on code hosting
sites, prefixed by the page's name, since all pages share one namespace in Doxygen.
"""

import os
import re
import sys


def quoted(text):
    return '"' + text.replace("<br>", "\\n") + '"'


def flowchart(lines):
    yield "\\dot"
    yield 'digraph { rankdir=TB; bgcolor=transparent; node [shape=box, style=rounded, fontname="sans", fontsize=10];'
    yield 'edge [fontname="sans", fontsize=9, arrowsize=0.7];'
    clusters = 0
    for line in lines:
        node = re.fullmatch(r'(\w+)\["([^"]+)"\]', line)
        arrow = re.fullmatch(r'(\w+) (-->|-\.->)(?:\|"([^"]+)"\|)? (\w+)', line)
        group = re.fullmatch(r'subgraph \w+ \["([^"]+)"\]', line)
        if node:
            yield f"{node[1]} [label={quoted(node[2])}];"
        elif arrow:
            style = "dashed" if arrow[2] == "-.->" else "solid"
            label = f", label={quoted(arrow[3])}" if arrow[3] else ""
            yield f"{arrow[1]} -> {arrow[4]} [style={style}{label}];"
        elif group:
            clusters += 1
            yield f"subgraph cluster_{clusters} {{ style=\"rounded,dashed\"; label={quoted(group[1])}; labeljust=l; fontname=\"sans\"; fontsize=10;"
        elif line == "end":
            yield "}"
        else:
            sys.exit(f"doxygen_page.py: unsupported line in a flow chart: {line}")
    yield "}"
    yield "\\enddot"


def sequence(lines):
    lines = list(lines)
    people = [re.fullmatch(r"participant (\w+) as (.+)", line) for line in lines]
    yield "\\msc"
    yield 'width="760";'
    yield ", ".join(f"{person[1]} [label={quoted(person[2])}]" for person in people if person) + ";"
    for line in (line for line, person in zip(lines, people) if not person):
        arrow = re.fullmatch(r"(\w+)(->>|-->>)(\w+): (.+)", line)
        note = re.fullmatch(r"Note over (\w+): (.+)", line)
        if arrow:
            kind = "=>" if arrow[2] == "->>" else ">>"
            # Empty lines keep the first one above the arrow.
            yield f"{arrow[1]} {kind} {arrow[3]} [label={quoted(arrow[4] + 2 * (chr(92) + 'n'))}];"
        elif note:
            yield f"{note[1]} note {note[1]} [label={quoted(note[2])}];"
        else:
            sys.exit(f"doxygen_page.py: unsupported line in a sequence: {line}")
    yield "\\endmsc"


def drawn(match):
    first, *lines = [line.strip() for line in match[1].strip().split("\n")]
    kinds = {"flowchart TB": flowchart, "sequenceDiagram": sequence}
    if first not in kinds:
        sys.exit(f"doxygen_page.py: unsupported kind of diagram: {first}")
    return "\n".join(kinds[first](line for line in lines if line))


def slug(heading):
    return re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")


def with_names(text, page):
    def named(match):
        marks, heading = match.groups()
        name = page if marks == "#" else f"{page}-{slug(heading)}"
        return match[0] if heading.endswith("}") else f"{marks} {heading} {{#{name}}}"
    # Code between fences has no headings.
    parts = re.split(r"(^```.*?^```$)", text, flags=re.M | re.S)
    return "".join(part if part.startswith("```") else re.sub(r"^(#+) (.+)$", named, part, flags=re.M)
                   for part in parts)


def with_links(text, page):
    """Links to other pages by name, without folders, and to headings by the anchors made above."""
    def in_page(match):
        # Blocks and vocabularies have their own anchors.
        name = match[1]
        return f"](#{name})" if name.startswith(("words-", "block-")) else f"](#{page}-{name})"

    text = re.sub(r"\]\(#([\w-]+)\)", in_page, text)
    text = re.sub(r"\]\((?:[\w.-]+/)+([\w-]+\.md)", r"](\1", text)
    return re.sub(r"\]\(([\w-]+)\.md#([\w-]+)\)", r"](#\1-\2)", text)


def main():
    page = os.path.splitext(os.path.basename(sys.argv[1]))[0].lower()
    text = open(sys.argv[1], encoding="utf-8").read()
    text = re.sub(r"^```mermaid\n(.*?)^```$", drawn, text, flags=re.M | re.S)
    sys.stdout.write(with_links(with_names(text, page), page))


if __name__ == "__main__":
    main()

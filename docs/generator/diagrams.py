"""Draws the diagrams of the pages. On code hosting sites they are Mermaid, which needs a script from the network; here
they become drawings in the page, in the colours of its text. Only what the pages use of Mermaid is supported; any other
line is an error.
"""

import html
import re
import subprocess
import sys


def escaped(text):
    return html.escape(text, quote=False)


# ---- Flow charts: drawn by Graphviz ---------------------------------------------------------------------------------

def quoted(text):
    return '"' + text.replace("<br>", "\\n") + '"'


def dot_lines(lines):
    yield 'digraph { rankdir=TB; bgcolor=transparent; fontname="sans-serif"; fontsize=10;'
    yield 'node [shape=box, style=rounded, fontname="sans-serif", fontsize=10];'
    yield 'edge [fontname="sans-serif", fontsize=9, arrowsize=0.7];'
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
            yield f'subgraph cluster_{clusters} {{ style="rounded,dashed"; label={quoted(group[1])}; labeljust=l;'
        elif line == "end":
            yield "}"
        else:
            sys.exit(f"diagrams.py: unsupported line in a flow chart: {line}")
    yield "}"


def flowchart(lines):
    drawn = subprocess.run(["dot", "-Tsvg"], input="\n".join(dot_lines(lines)), check=True, text=True,
                           stdout=subprocess.PIPE).stdout
    drawn = re.sub(r"^.*?(?=<svg)", "", drawn, flags=re.S)
    drawn = re.sub(r"<title>.*?</title>|<!--.*?-->", "", drawn, flags=re.S)
    drawn = drawn.replace('"black"', '"currentColor"').replace("<text ", '<text fill="currentColor" ')
    return re.sub(r"\n\s*\n+", "\n", drawn).strip()


# ---- Sequences ------------------------------------------------------------------------------------------------------

LANE, ROW, TOP = 230, 36, 44
ARROW_HEAD = ('<defs><marker id="arrow" markerWidth="9" markerHeight="8" refX="9" refY="4" orient="auto">'
              '<path d="M0,0 L9,4 L0,8 z" fill="currentColor"/></marker></defs>')


def centre(lane):
    return LANE * lane + LANE // 2


def label(x, y, text):
    return f'<text x="{x}" y="{y}" text-anchor="middle" fill="currentColor">{escaped(text)}</text>'


def box(x, y, width, height, style=""):
    return f'<rect x="{x}" y="{y}" width="{width}" height="{height}" rx="5" fill="none" stroke="currentColor"{style}/>'


def arrow_at(y, lanes, match):
    start, end = centre(lanes[match[1]]), centre(lanes[match[3]])
    dashes = "" if match[2] == "->>" else ' stroke-dasharray="5 4"'
    return (f'<line x1="{start}" y1="{y}" x2="{end}" y2="{y}" stroke="currentColor"{dashes} marker-end="url(#arrow)"/>'
            + label((start + end) // 2, y - 7, match[4]))


def note_at(y, lanes, match):
    middle = centre(lanes[match[1]])
    return box(middle - 88, y - 22, 176, 28, ' stroke-dasharray="2 3"') + label(middle, y - 4, match[2])


def sequence(lines):
    lines = list(lines)
    people = [match for match in (re.fullmatch(r"participant (\w+) as (.+)", line) for line in lines) if match]
    lanes = {person[1]: lane for lane, person in enumerate(people)}
    steps = [line for line in lines if not line.startswith("participant")]
    width, height = LANE * len(lanes), TOP + ROW * len(steps) + 12
    parts = [f'<svg viewBox="0 0 {width} {height}" width="{width}" height="{height}" font-family="sans-serif" '
             f'font-size="13" xmlns="http://www.w3.org/2000/svg">', ARROW_HEAD]
    for person in people:
        x = centre(lanes[person[1]])
        parts += [box(x - 75, 4, 150, 30), label(x, 24, person[2]),
                  f'<line x1="{x}" y1="34" x2="{x}" y2="{height}" stroke="currentColor" opacity="0.35"/>']
    for number, line in enumerate(steps, start=1):
        arrow = re.fullmatch(r"(\w+)(->>|-->>)(\w+): (.+)", line)
        note = re.fullmatch(r"Note over (\w+): (.+)", line)
        if not arrow and not note:
            sys.exit(f"diagrams.py: unsupported line in a sequence: {line}")
        y = TOP + ROW * number
        parts.append(arrow_at(y, lanes, arrow) if arrow else note_at(y, lanes, note))
    return "\n".join(parts + ["</svg>"])


def drawn(match):
    first, *lines = [line.strip() for line in match[1].strip().split("\n")]
    kinds = {"flowchart TB": flowchart, "sequenceDiagram": sequence}
    if first not in kinds:
        sys.exit(f"diagrams.py: unsupported kind of diagram: {first}")
    svg = kinds[first](line for line in lines if line)
    return f'```{{raw}} html\n<div class="diagram">\n{svg}\n</div>\n```'


def with_drawings(text):
    return re.sub(r"^```mermaid\n(.*?)^```$", drawn, text, flags=re.M | re.S)

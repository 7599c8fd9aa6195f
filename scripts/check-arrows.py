#!/usr/bin/env python3
"""Checks that includes between folders follow the arrows of the architecture, and that there is no cycle of folders.

    scripts/check-arrows.py [ROOT]
"""
import pathlib
import re
import sys

ROOTS = ("library", "tools")  # includes are relative to these

# A layer of the library and the layers that it may include.
ARROWS = {
    "core": set(),
    "platform": {"core"},
    "observers": {"core"},
    "protocol": {"platform"},
    "delivery": {"core"},
    "transport": {"core", "delivery", "platform", "protocol"},
    "features": {"core", "observers", "platform", "protocol", "transport"},
    "settings": {"core", "platform", "protocol", "transport"},
    "device": {"core", "delivery", "features", "observers", "platform", "protocol", "settings", "transport"},
    "module": {"core", "device", "platform"},
    "simulator": {"core", "platform", "protocol"},
    "properties": {"protocol"},
    "diagnosis": set(),
    "command": {"core", "diagnosis", "platform", "properties", "protocol"},
    "gateway": {"core", "properties"},
    "description": {"device", "features", "properties", "protocol", "simulator", "transport"},
}


def included_folders(path):
    names = re.findall(r'^#include "([\w/.-]+)"', path.read_text(encoding="utf-8"), re.MULTILINE)
    return {str(pathlib.PurePosixPath(name).parent) for name in names if name.split("/")[0] in ARROWS}


def read_graph(root):
    """Folder to {included folder: a file that includes it}."""
    graph = {}
    for base in ROOTS:
        for path in sorted((root / base).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                own = str(path.parent.relative_to(root / base))
                for folder in included_folders(path) - {own}:
                    graph.setdefault(own, {}).setdefault(folder, path.relative_to(root))
    return graph


def wrong_arrows(graph):
    for own, targets in graph.items():
        layer = own.split("/")[0]
        for folder, path in targets.items():
            target = folder.split("/")[0]
            if target != layer and target not in ARROWS.get(layer, set()):
                yield f"{path}: {layer} includes {target}"


def find_cycle(graph):
    """The folders of one cycle, or none."""
    done = set()

    def follow(folder, trail):
        if folder in trail:
            return trail[trail.index(folder):] + [folder]
        if folder in done:
            return None
        for target in graph.get(folder, {}):
            cycle = follow(target, trail + [folder])
            if cycle:
                return cycle
        done.add(folder)
        return None

    for folder in graph:
        cycle = follow(folder, [])
        if cycle:
            return cycle
    return None


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent.parent)
    graph = read_graph(root)
    if not graph:
        sys.exit(f"check-arrows.py: no sources under {root}")
    wrong = list(wrong_arrows(graph))
    cycle = find_cycle(graph)
    print(f"  {'FAILED' if wrong else 'ok    '}  includes follow the arrows between layers")
    for line in wrong:
        print(f"          {line}")
    print(f"  {'FAILED' if cycle else 'ok    '}  no cycle between folders")
    if cycle:
        print(f"          {' -> '.join(cycle)}")
    return 1 if wrong or cycle else 0


if __name__ == "__main__":
    sys.exit(main())

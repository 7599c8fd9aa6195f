#!/usr/bin/env python3
"""Writes the sources of the site, which Sphinx then builds: the written pages and the generated ones.

    sources.py DESCRIPTION.json INTERFACES.hpp DOXYGEN-XML FOLDER     the whole site
    sources.py FOLDER                                                 the pages of the tools, for the man pages
"""

import json
import sys

import cpp_layer
import interfaces
import outcomes
import pages
import properties
import protocol


def whole_site(description_path, layer_path, doxygen):
    description = json.load(open(description_path, encoding="utf-8"))
    layer = open(layer_path, encoding="utf-8").read()
    found = dict(pages.written(pages.source_pages()))
    found.update(properties.pages(description))
    found.update(protocol.pages(description))
    found.update(outcomes.pages(description))
    found.update(interfaces.pages(description, f"{pages.ROOT}/api", layer,
                                  found["reference/unusual-results.md"]))
    found.update(cpp_layer.pages(doxygen, f"{pages.ROOT}/bindings/cpp"))
    return pages.with_parts(found)


def tools_only():
    sources = {source: page for source, page in pages.source_pages().items() if page.startswith("tools/")}
    found = dict(pages.written(sources))
    found["index.md"] = "# Tools\n\n" + pages.tree([page.removesuffix(".md") for page in sorted(found)], "")
    return found


def main():
    arguments = sys.argv[1:]
    if len(arguments) not in (1, 4):
        sys.exit(__doc__)
    folder = arguments.pop()
    pages.write(folder, whole_site(*arguments) if arguments else tools_only())
    if arguments:
        pages.write_pictures(folder)


if __name__ == "__main__":
    main()

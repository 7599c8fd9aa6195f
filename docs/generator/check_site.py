#!/usr/bin/env python3
"""Checks the finished site as it will be opened, from files: every link inside it leads to a page and an anchor that
exist, nothing is loaded from the network, no markup is left in its text, and a search finds the words that readers
look for.

    check_site.py FOLDER
"""

import html.parser
import os
import pathlib
import re
import sys
import urllib.parse

MARKUP_LEFT = re.compile(r"\{\{|\}\}|\]\(|\{(?:ref|cpp:\w+)\}|:::")
# A search looks for the stems of words, and for the parts of one such as video-mode.
SEARCHED = ("echo", "reconnect", "e_fail", "video", "mode", "latenc", "backup")


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.path, self.ids, self.links, self.loaded, self.text, self.code = path, set(), [], [], [], 0
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        self.ids.add(attributes.get("id"))
        if tag == "a" and "href" in attributes:
            self.links.append(attributes["href"])
        if tag in ("script", "img", "iframe") and "src" in attributes or tag == "link":
            self.loaded.append(attributes.get("src") or attributes["href"])
        self.code += tag in ("code", "pre", "script", "style")

    def handle_endtag(self, tag):
        self.code -= tag in ("code", "pre", "script", "style")

    def handle_data(self, data):
        if not self.code:
            self.text.append(data)


def wrong_links(page, pages):
    for link in page.links + page.loaded:
        parts = urllib.parse.urlsplit(link)
        if parts.scheme:
            continue
        path = urllib.parse.unquote(parts.path)
        target = pathlib.Path(os.path.normpath(page.path.parent / path)) if path else page.path
        if not target.exists():
            yield f"no such file: {link}"
        elif parts.fragment and target in pages and urllib.parse.unquote(parts.fragment) not in pages[target].ids:
            yield f"no such anchor: {link}"


def findings(page, pages):
    yield from wrong_links(page, pages)
    yield from (f"loaded from the network: {link}" for link in page.loaded if urllib.parse.urlsplit(link).netloc)
    yield from (f"markup in the text: {text.strip()}" for text in page.text if MARKUP_LEFT.search(text))


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    pages = {path: Page(path) for path in sorted(root.rglob("*.html"))}
    wrong = [f"{path.relative_to(root)}: {finding}"
             for path, page in pages.items() for finding in findings(page, pages)]
    index = (root / "searchindex.js").read_text(encoding="utf-8")
    wrong += [f"a search does not find: {word}" for word in SEARCHED if f'"{word}": ' not in index]
    for line in wrong:
        print(line)
    return 1 if wrong or len(pages) < 50 else 0


if __name__ == "__main__":
    sys.exit(main())

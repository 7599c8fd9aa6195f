"""The written pages, taken from the tree: links between them are kept, links to files that the site does not have lose
their target, and a list of links in the index becomes the sidebar."""

import os
import re
import shutil

import diagrams
import markdown

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

# Pages that are elsewhere in the tree, and their places in the site.
ELSEWHERE = {
    "docs/README.md": "index.md",
    "SECURITY.md": "operators/security.md",
    "CHANGELOG.md": "changelog.md",
    "CONTRIBUTING.md": "internals/contributing.md",
    "bench/README.md": "internals/benchmarks.md",
    "examples/README.md": "guides/examples.md",
}


def source_pages():
    """Source path, relative to the root of the tree, to the page's path in the site."""
    found = dict(ELSEWHERE)
    for folder, _, files in os.walk(f"{ROOT}/docs"):
        for file in files:
            path = os.path.relpath(os.path.join(folder, file), ROOT)
            if file.endswith(".md") and path not in found:
                found[path] = path.removeprefix("docs/")
    for example in sorted(os.listdir(f"{ROOT}/examples")):
        if os.path.exists(f"{ROOT}/examples/{example}/README.md"):
            found[f"examples/{example}/README.md"] = f"guides/examples/{example}.md"
    return found


LINK = re.compile(r"(?<!!)\[([^]]*)\]\(([^)\s#]+)(#[^)\s]*)?\)")


def with_links(text, source, sources):
    """Links as the site needs them. A folder stands for its README."""
    own = sources[source]

    def changed(match):
        words, target, anchor = match[1], match[2], match[3] or ""
        if re.match(r"\w+:", target):
            return match[0]
        path = os.path.normpath(os.path.join(os.path.dirname(source), target))
        page = sources.get(path) or sources.get(path + "/README.md")
        if page is None:
            return words
        return f"[{words}]({os.path.relpath(page, os.path.dirname(own) or '.')}{anchor})"

    return markdown.outside_code(text, lambda part: LINK.sub(changed, part))


def contents(index):
    """A hidden table of contents for each list of links of the index; the heading above the list is its caption."""
    parts = []
    for heading, body in re.findall(r"^## ([^\n]+)\n(.*?)(?=^## |\Z)", index, flags=re.M | re.S):
        pages = re.findall(r"^- \[[^]]+\]\(([\w/.-]+)\.md\)", body, flags=re.M)
        if pages:
            parts.append(tree(pages, f":hidden:\n:caption: {heading}\n:maxdepth: 2"))
    return "\n\n".join(parts)


def tree(pages, options):
    return "```{toctree}\n" + options + "\n\n" + "\n".join(pages) + "\n```\n"


def written(sources):
    """Path and text of each page."""
    for source, page in sources.items():
        text = open(f"{ROOT}/{source}", encoding="utf-8").read()
        text = with_links(diagrams.with_drawings(text), source, sources)
        if page == "index.md":
            text += "\n" + contents(text)
        yield page, text


def with_parts(pages):
    """A page whose name is also a folder ends with a list of the pages in there."""
    for page in sorted(pages):
        stem = page.removesuffix(".md")
        parts = sorted(other for other in pages if os.path.dirname(other) == stem)
        if parts:
            pages[page] += "\n\n" + tree(["/" + part.removesuffix(".md") for part in parts], ":maxdepth: 1")
    return pages


def write_pictures(folder):
    """Pages find them at the same place as in the tree."""
    shutil.copytree(f"{ROOT}/docs/pictures", f"{folder}/pictures", dirs_exist_ok=True)


def write(folder, pages):
    for page, text in pages.items():
        path = f"{folder}/{page}"
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text.rstrip() + "\n")

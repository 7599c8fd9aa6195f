"""What the pages need beyond Sphinx: properties as objects that can be searched for and linked to, man pages made from
the pages of the tools, and a site that works as files."""

import os
import re

from docutils import nodes
from sphinx.transforms.post_transforms import SphinxPostTransform


class NoSecondSummary(SphinxPostTransform):
    """A man page begins with its description in the section "Name": it need not be repeated."""

    default_priority = 90
    builders = ("man",)

    def run(self, **kwargs):
        for title in self.document.findall(nodes.title):
            paragraph = title.next_node(nodes.paragraph, siblings=True)
            if paragraph is not None and isinstance(title.parent.parent, nodes.document):
                title.parent.remove(paragraph)


class OptionsOfManPages(SphinxPostTransform):
    """In man pages a table of two columns is a list of terms, as usual there."""

    default_priority = 100
    builders = ("man",)

    def run(self, **kwargs):
        for table in list(self.document.findall(nodes.table)):
            rows = [row.children for row in table.findall(nodes.row) if not isinstance(row.parent, nodes.thead)]
            if rows and all(len(row) == 2 for row in rows):
                table.replace_self(definitions(rows))


class HeadsOfCells(SphinxPostTransform):
    """In the site each cell has the head of its column with it, which is shown where a table becomes a list."""

    default_priority = 100
    formats = ("html",)

    def run(self, **kwargs):
        for table in self.document.findall(nodes.table):
            heads = [entry.astext() for head in table.findall(nodes.thead) for entry in head.findall(nodes.entry)]
            for row in (row for body in table.findall(nodes.tbody) for row in body.findall(nodes.row)):
                for head, entry in list(zip(heads, row.children))[1:]:
                    if len(heads) > 2 and entry.astext() and isinstance(entry.children[0], nodes.paragraph):
                        entry.children[0].insert(0, nodes.inline("", f"{head}: ", classes=["cell-head"]))


def definitions(rows):
    found = nodes.definition_list()
    for term, text in rows:
        words = term.children[0].children if term.children else []
        item = nodes.definition_list_item("", nodes.term("", "", *words), nodes.definition("", *text.children))
        found += item
    return found


def man_pages(app, config):
    """One for each page of the tools; its first paragraph is the description."""
    config.man_pages = []
    folder = f"{app.srcdir}/tools"
    for file in sorted(os.listdir(folder)):
        name, summary = re.match(r"# (.+)\n\n(.+?)\.\n", open(f"{folder}/{file}", encoding="utf-8").read()).groups()
        config.man_pages.append((f"tools/{name}", name, summary[0].lower() + summary[1:], "", 1))


# Nothing on the pages uses these; Sphinx adds them for old themes.
UNUSED_SCRIPTS = ("jquery.js", "underscore.js", "_sphinx_javascript_frameworks_compat.js")


def without_unused_scripts(app, page, template, context, tree):
    context["script_files"] = [file for file in context["script_files"] if not str(file).endswith(UNUSED_SCRIPTS)]


def complete_files(app, error):
    """Debian's theme imports a style sheet from a web server's folder; as a part of its own it needs no server."""
    static = f"{app.outdir}/_static"
    if error or app.builder.name != "html":
        return
    for script in UNUSED_SCRIPTS:
        os.remove(f"{static}/{script}")
    path = f"{static}/styles/furo.css"
    text = open(path, encoding="utf-8").read()
    with open(path, "w", encoding="utf-8") as file:
        file.write(re.sub(r"@import url\(/javascript/([\w./]+)\);", shared_style, text))


def shared_style(match):
    return open(f"/usr/share/javascript/{match[1]}", encoding="utf-8").read()


def setup(app):
    app.add_object_type("property", "property", objname="property", indextemplate="pair: %s; property")
    # A search shows them before the methods and constants of the same name.
    app.registry.domain_object_types["std"]["property"].attrs["searchprio"] = 0
    app.add_post_transform(NoSecondSummary)
    app.add_post_transform(OptionsOfManPages)
    app.add_post_transform(HeadsOfCells)
    app.connect("config-inited", man_pages)
    app.connect("html-page-context", without_unused_scripts)
    app.connect("build-finished", complete_files)
    return {"parallel_read_safe": True, "parallel_write_safe": True}

"""The pages of the C++ layer's own classes and functions, one for each header. Breathe fills them with what Doxygen has
read."""

import os
import re
import xml.etree.ElementTree as xml

import markdown

FOLDER = "reference/cpp"


def file_of(definition):
    return definition.find("location").get("file")


def text_of(element):
    return "".join(element.itertext())


def classes(folder):
    """The header and the name of each class of the namespace itself."""
    index = xml.parse(f"{folder}/index.xml")
    for compound in index.findall("compound"):
        name = compound.findtext("name")
        if compound.get("kind") in ("class", "struct") and name.count("::") == 1:
            definition = xml.parse(f"{folder}/{compound.get('refid')}.xml").find("compounddef")
            yield file_of(definition), markdown.directive(
                "doxygen" + compound.get("kind"), name, ":members:\n:undoc-members:")


def functions(folder):
    """The header and the signature of each function and type of the namespace."""
    for member in xml.parse(f"{folder}/namespacemorquil.xml").iter("memberdef"):
        name = "morquil::" + member.findtext("name")
        if member.get("kind") == "function":
            types = ", ".join(text_of(parameter.find("type")) for parameter in member.findall("param"))
            yield file_of(member), markdown.directive("doxygenfunction", f"{name}({types})")
        elif member.get("kind") == "typedef":
            yield file_of(member), markdown.directive("doxygentypedef", name)


def first_comment(path):
    """The first comment of a header says what it is about."""
    first = re.match(r"// (.*\.)\n", open(path, encoding="utf-8").read())
    return first[1] if first else ""


def pages(folder, sources):
    """Path and text of each page."""
    entries = {}
    for header, entry in [*classes(folder), *functions(folder)]:
        entries.setdefault(header, []).append(entry)
    for header, found in sorted(entries.items()):
        stem = os.path.splitext(os.path.basename(header))[0]
        about = first_comment(os.path.join(sources, header))
        yield f"{FOLDER}/{stem}.md", "\n\n".join([f"# {os.path.basename(header)}", about, *found])

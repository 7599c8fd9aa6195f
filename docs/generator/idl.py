"""Reads the interface definitions together with their comments."""

import re
from dataclasses import dataclass, field


@dataclass
class Method:
    name: str
    parameters: list  # (direction, type, name)
    comment: str


@dataclass
class Interface:
    name: str
    help: str
    comment: str
    methods: list = field(default_factory=list)


@dataclass
class Enumeration:
    name: str
    comment: str
    constants: list = field(default_factory=list)  # (name, value)


def comment_text(comment):
    """The text of a /* */ comment, a blank line between its paragraphs."""
    # What is indented after an asterisk stays so: it is an example.
    lines = [re.sub(r"^\s*\* ?", "", line).rstrip() if re.match(r"\s*\*", line) else line.strip()
             for line in comment[2:-2].strip("*\n ").split("\n")]
    return "\n".join(lines).strip()


def parameters_of(text):
    found = re.findall(r"\[(in|out)\]\s*([\w ]+?\**)\s*(\w+)\s*(?:,|$)", " ".join(text.split()))
    return [(direction, kind, name) for direction, kind, name in found]


METHOD = re.compile(r"(?P<comment>/\*.*?\*/)|HRESULT (?P<name>\w+)\((?P<parameters>.*?)\);", re.S)
PART = re.compile(
    r"(?P<comment>/\*.*?\*/)"
    r"|typedef \[v1_enum\] enum (?P<enumeration>\w+)\s*\{(?P<constants>.*?)\}"
    r"|helpstring\(\"(?P<help>[^\"]*)\"\) \]\s*interface (?P<interface>\w+) : IUnknown\s*\{(?P<body>.*?)\n *\};",
    re.S)


def read_methods(body):
    methods, comment = [], ""
    for part in METHOD.finditer(body):
        if part["comment"]:
            comment = comment_text(part["comment"])
        else:
            methods.append(Method(part["name"], parameters_of(part["parameters"]), comment))
            comment = ""
    return methods


def read_constants(body):
    return re.findall(r"(\w+)\s*=\s*(\w+)", re.sub(r"/\*.*?\*/", "", body, flags=re.S))


def read(path):
    """Returns the conventions at the top of the file, the enumerations and the interfaces."""
    text = open(path, encoding="utf-8").read()
    conventions, enumerations, interfaces, comment = "", [], [], ""
    for part in PART.finditer(text):
        if part["comment"]:
            comment = comment_text(part["comment"])
            conventions = conventions or comment
            # A comment that starts with a line of dashes is a section heading, not a comment on what follows.
            comment = "" if comment.startswith("---") else comment
            continue
        if part["enumeration"]:
            enumerations.append(Enumeration(part["enumeration"], comment, read_constants(part["constants"])))
        else:
            interfaces.append(Interface(part["interface"], part["help"], comment, read_methods(part["body"])))
        comment = ""
    return conventions, enumerations, interfaces

"""The pages of the COM interfaces and their enumerations, made from the IDL, its comments and the properties."""

import glob
import os
import re

import idl
import markdown
import properties

FOLDER = "reference/interfaces"


def signature(method):
    """As a host in C or C++ declares it."""
    def c_type(kind):
        return kind.replace("unsigned __int64", "UINT64").replace("long", "LONG")
    return ", ".join(f"{c_type(kind)} {name}" for _, kind, name in method.parameters)


def usual_comment(method):
    """The comment that follows from a method's name and parameters."""
    outs = [p for p in method.parameters if p[0] == "out"]
    if not outs and method.name.startswith(("Set", "Reset", "Start", "Save", "Recall")):
        return "Queues the change. The getter answers the new value once the device has reported it."
    if not outs:
        return ""
    if method.name.startswith("Is"):
        return "Whether the device offers it now: 0 until the device has reported it."
    if len(outs) == 2:
        return "The limits, as the device has reported them."
    return "The value, as the device has reported it."


class Layer:
    """How the C++ layer declares the method of an interface."""

    def __init__(self, header):
        self.declarations = {}
        interface = ""
        for line in header.split("\n"):
            opened = re.match(r"class \w+ : public Interface<(\w+)>", line)
            method = re.match(r"    ([\w:<> ]+ (\w+)\(.*\) const) \{$", line)
            interface = opened[1] if opened else "" if line.startswith("};") else interface
            if method and interface:
                self.declarations[interface, method[2]] = method[1].replace("morquil::", "")

    def of(self, interface, method):
        declaration = self.declarations.get((interface, method))
        return markdown.code(declaration) if declaration else ""


class Pages:
    def __init__(self, description, layer_header, unusual):
        self.description = description
        self.features = properties.features_by_interface(description)
        self.properties = properties.ByMethod(description)
        self.layer = Layer(layer_header)
        self.unusual = set(re.findall(r"\w+", " ".join(re.findall(r"`([^`]*)`", unusual))))

    def property_link(self, rows):
        first, last = rows[0]["name"], rows[-1]["name"]
        link = f"[`{first}`]({properties.anchor(first)})"
        return link + (f" to `{last}`" if last.rpartition(".")[0] == first.rpartition(".")[0] and last != first else "")

    def facts(self, interface, method):
        """What is to be known about a method, by name."""
        role, rows = self.properties.of(interface.name, method.name)
        layer = ("In C++", self.layer.of(interface.name, method.name))
        if not rows:
            return [("Property", "none") if interface.name in self.features else ("", ""), layer]
        row = rows[0]
        return [("Property", self.property_link(rows)),
                ("Values", properties.values(row)),
                ("Unit", properties.unit(row)),
                ("Range", properties.limits(row) if role != "range" else "what this method answers"),
                ("Device", properties.device_behaviour(row) if role == "setter" or not row["writable"] else
                    "reports it when a host connects, and after every change"),
                ("Notifies", properties.notification(row, self.features[interface.name])
                    if role == "getter" and interface.name in self.features else ""),
                layer]

    def method(self, interface, method):
        comment = method.comment or usual_comment(method)
        if method.name in self.unusual:
            comment += "\n\nSee also [Unusual results](../unusual-results.md)."
        body = f"\n{comment}\n\n{markdown.fields(self.facts(interface, method))}"
        return markdown.directive("cpp:function", f"HRESULT {method.name}({signature(method)})", body)

    def about(self, interface):
        feature = next((row for row in self.description["features"] if row["interface"] == interface.name), None)
        if not feature:
            return ""
        name = interface.name.removeprefix("IMorquil")
        return (f"Get it with `QueryInterface` on a device, or in C++ with `device.{name}()`. It reads and changes the "
                f"block [`{feature['block']}`](block-{markdown.file_name(feature['block'])}).")

    def interface(self, interface):
        methods = "\n".join(self.method(interface, method) for method in interface.methods)
        body = "\n\n".join(part for part in ("", interface.comment, self.about(interface), methods) if part)
        return (f"# {interface.name}\n\n{interface.help}.\n\n"
                + markdown.directive("cpp:class", f"{interface.name} : public IUnknown", "\n" + body, colons=6))

    def enumeration(self, enumeration, words):
        rows = "\n".join(markdown.directive("cpp:enumerator", f"{name} = {value}", meaning(name, value, words))
                         for name, value in enumeration.constants)
        body = "\n".join(part for part in ("", enumeration.comment, "", rows) if part is not None)
        return f"## {enumeration.name.removeprefix('_')}\n\n" + markdown.directive(
            "cpp:enum", enumeration.name, body, colons=6)

    def enumerations(self, enumerations):
        words = {word["constant"]: word["word"] for row in self.description["vocabularies"] for word in row["words"]
                 if "constant" in word}
        return "# Enumerations\n\n" + "\n\n".join(
            self.enumeration(enumeration, words) for enumeration in enumerations)


def meaning(name, value, words):
    """The word of a value, or the four characters of an identifier."""
    if name in words:
        return f"\nWord `{words[name]}`."
    number = int(value, 0)
    return f"\n'{number.to_bytes(4, 'big').decode()}'" if number > 0xFFFF else ""


def file_page(path, comment):
    """What the first comment of a file says. The first words of some of its paragraphs are their titles."""
    return f"# {os.path.basename(path)}\n\n" + re.sub(r"(?<=\n\n)(\w[\w ]{2,14}\.) ", r"**\1** ", comment)


def pages(description, folder, layer_header, unusual):
    """Path and text of each page."""
    result = Pages(description, layer_header, unusual)
    enumerations = []
    for path in sorted(glob.glob(f"{folder}/*.idl")):
        comment, of_file, interfaces = idl.read(path)
        enumerations += of_file
        yield f"{FOLDER}/{os.path.basename(path).removesuffix('.idl')}.md", file_page(path, comment)
        for interface in interfaces:
            yield f"{FOLDER}/{interface.name}.md", result.interface(interface)
    yield f"{FOLDER}/enumerations.md", result.enumerations(enumerations)

"""ES modules under hashed names: each imports the others by the names that they are served by."""
import hashlib
import pathlib
import re

_TYPE = re.compile(r"/\*\* @type [^*]*\*/ ?")
_IMPORT = re.compile(r"""(?P<before>\bfrom |\bimport |\bimport\()(?P<quote>['"])(?P<path>\.{1,2}/[^'"]+)(?P=quote)""")


def strip_comments(text):
    """The text without comments and indentation. Sources have comments only on lines of their own, and no template
    that goes over several lines."""
    kept = []
    inside = False
    for number, line in enumerate(text.splitlines(), 1):
        line = line.strip()
        if inside:
            inside = "*/" not in line
        elif line.startswith("/*") and not line.startswith("/*!"):
            inside = "*/" not in line
        elif line and not line.startswith("//"):
            if line.count("`") % 2:
                raise ValueError(f"line {number}: a template must end on the line on which it begins")
            kept.append(_TYPE.sub("", line))
    return "\n".join(kept) + "\n"


def hashed_name(path, content):
    digest = hashlib.sha256(content).hexdigest()[:12]
    return f"{path.stem}.{digest}{path.suffix}"


def imports_of(path, text):
    return [(path.parent / found["path"]).resolve() for found in _IMPORT.finditer(text)]


class Modules:
    """Gives every module its name, its imports first."""

    def __init__(self, sources):
        self._sources = {path.resolve(): text for path, text in sources.items()}
        self._names = {}
        self._under_way = []
        self.files = {}

    def name_of(self, path):
        path = path.resolve()
        if path in self._names:
            return self._names[path]
        if path in self._under_way:
            raise ValueError("modules import each other: " + ", ".join(file.name for file in self._under_way))
        if path not in self._sources:
            raise ValueError(f"{self._under_way[-1].name} imports {path.name}, which does not exist")
        self._under_way.append(path)
        content = self._rewrite(path).encode()
        self._under_way.pop()
        name = self._names[path] = hashed_name(path, content)
        self.files[name] = content
        return name

    def has(self, path):
        return path.resolve() in self._names

    def _rewrite(self, path):
        def replace(found):
            target = self.name_of(path.parent / found["path"])
            return f"{found['before']}'./{target}'"

        return _IMPORT.sub(replace, self._sources[path])


def read_modules(folder):
    return {path: strip_comments(path.read_text(encoding="utf-8")) for path in sorted(pathlib.Path(folder).rglob("*.js"))}

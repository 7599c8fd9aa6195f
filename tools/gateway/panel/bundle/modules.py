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


class Modules:
    """Gives every module its name, its imports first."""

    def __init__(self, sources):
        self._sources = {path.resolve(): text for path, text in sources.items()}
        self._names = {}
        self._under_way = []
        self._needs = {}  # a module to those without which it does not start
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

    def needed_by(self, path):
        """The names of all modules that a module needs to start, itself included."""
        found = set()
        waiting = [path.resolve()]
        while waiting:
            each = waiting.pop()
            if each not in found:
                found.add(each)
                waiting += self._needs[each]
        return {self._names[each] for each in found}

    def _rewrite(self, path):
        needs = self._needs.setdefault(path, [])

        def replace(found):
            target = (path.parent / found["path"]).resolve()
            name = self.name_of(target)
            if found["before"] != "import(":
                needs.append(target)
            return f"{found['before']}'./{name}'"

        return _IMPORT.sub(replace, self._sources[path])


def read_modules(folder):
    return {path: strip_comments(path.read_text(encoding="utf-8")) for path in sorted(pathlib.Path(folder).rglob("*.js"))}

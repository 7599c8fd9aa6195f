#!/usr/bin/env python3
"""Makes the panel's files as the gateway serves them: compressed, under names that contain their checksum.

    build_panel.py FOLDER [--without-plot]

FOLDER receives panel_files.cpp, which the gateway is linked with, and files/ with manifest.json, for tests. The styles
become one file; the scripts stay modules, without comments, and import each other by their hashed names.
"""
import argparse
import collections
import gzip
import hashlib
import json
import pathlib
import shutil

from bundle import embed, modules, plot_package

PANEL = pathlib.Path(__file__).resolve().parent
SOURCE = PANEL / "source"

PanelFile = collections.namedtuple("PanelFile", "path content_type encoding tag immutable content")

TYPES = {
    ".js": "text/javascript; charset=utf-8",
    ".css": "text/css; charset=utf-8",
    ".svg": "image/svg+xml",
    ".html": "text/html; charset=utf-8",
    ".txt": "text/plain; charset=utf-8",
}


def make_file(path, content, immutable=True):
    packed = gzip.compress(content, 9, mtime=0)
    tag = hashlib.sha256(content).hexdigest()[:16]
    return PanelFile(path, TYPES[pathlib.PurePath(path).suffix or ".html"], "gzip", tag, immutable, packed)


def make_styles(package):
    sheets = sorted((SOURCE / "styles").glob("*.css"))
    text = "".join(modules.strip_comments(sheet.read_text(encoding="utf-8")) for sheet in sheets)
    if package:
        text = (package / "dist" / "uPlot.min.css").read_text(encoding="utf-8") + text
    return text.encode()


def make_modules(package):
    sources = modules.read_modules(SOURCE)
    plot = SOURCE / "vendor" / "uplot.js"
    sources[plot] = plot_package.module_of(package) if package else plot_package.WITHOUT_PLOT
    made = modules.Modules(sources)
    main = SOURCE / "main.js"
    first = made.name_of(main)
    unused = [path.name for path in sources if not made.has(path)]
    if unused:
        raise ValueError("nothing imports " + ", ".join(unused))
    return made.files, first, made.needed_by(main)


def make_page(styles, icon, first, needed):
    preloads = "".join(f'<link rel="modulepreload" href="/{name}">\n' for name in sorted(needed - {first}))
    page = (SOURCE / "index.html").read_text(encoding="utf-8")
    for mark, text in (("@STYLES@", styles), ("@ICON@", icon), ("@MAIN@", first), ("@PRELOADS@\n", preloads)):
        page = page.replace(mark, text)
    return page.encode()


def make_files(package):
    icon = (SOURCE / "icon.svg").read_bytes()
    icon_name = modules.hashed_name(pathlib.PurePath("icon.svg"), icon)
    styles = make_styles(package)
    styles_name = modules.hashed_name(pathlib.PurePath("panel.css"), styles)
    scripts, first, needed = make_modules(package)
    files = [make_file(f"/{name}", content) for name, content in scripts.items()]
    files += [make_file(f"/{styles_name}", styles), make_file(f"/{icon_name}", icon),
              make_file("/", make_page(styles_name, icon_name, first, needed), immutable=False)]
    if package:
        files.append(make_file("/licences.txt", (package / "LICENSE").read_bytes(), immutable=False))
    return files


def write_for_tests(folder, files):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    manifest = {}
    for number, file in enumerate(files):
        (folder / str(number)).write_bytes(file.content)
        manifest[file.path] = file._replace(content=str(number))._asdict()
    (folder / "manifest.json").write_text(json.dumps(manifest, indent=1), encoding="utf-8")


def main():
    arguments = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    arguments.add_argument("folder", type=pathlib.Path)
    arguments.add_argument("--without-plot", action="store_true")
    options = arguments.parse_args()
    options.folder.mkdir(parents=True, exist_ok=True)
    package = None if options.without_plot else plot_package.install(PANEL, options.folder / "npm")
    files = make_files(package)
    write_for_tests(options.folder / "files", files)
    embed.write_source(options.folder / "panel_files.cpp", files)


if __name__ == "__main__":
    main()

"""Sphinx's settings for the site and the man pages. scripts/build-docs.sh builds both."""

import pathlib
import re
import sys

root = pathlib.Path(__file__).resolve().parent.parent
sys.path.append(str(root / "docs" / "generator"))

project = "MorquilAPI"
release = re.search(r"^project\(MorquilAPI VERSION ([\d.]+)", (root / "CMakeLists.txt").read_text(), re.M)[1]
version = release
language = "en"
root_doc = "index"

extensions = ["myst_parser", "breathe", "sphinx_additions"]
myst_heading_anchors = 4
myst_enable_extensions = ["colon_fence", "fieldlist"]
breathe_projects = {"MorquilAPI": str(root / "build" / "docs" / "doxygen" / "xml")}
breathe_default_project = "MorquilAPI"
cpp_id_attributes = ["inline"]
highlight_language = "none"
primary_domain = "cpp"

html_theme = "furo"
html_title = f"MorquilAPI {release}"
html_static_path = ["static"]
html_css_files = ["site.css"]
html_copy_source = False
html_use_index = False
# Pages that are opened as files cannot read other files: the script would only fail.
html_show_search_summary = False
html_show_sphinx = False
html_show_copyright = False
html_theme_options = {"top_of_page_button": None}

man_show_urls = False

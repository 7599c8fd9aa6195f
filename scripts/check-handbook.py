#!/usr/bin/env python3
"""Follows the operator's handbook, page by page, with a build's tools and simulated devices, and compares what is
printed with what the pages show.

    scripts/check-handbook.py BUILD-FOLDER
"""
import os
import pathlib
import sys
import tempfile

sys.dont_write_bytecode = True

from page_follower import Follower, Mismatch, blocks_of  # noqa: E402

PAGES = pathlib.Path(__file__).resolve().parent.parent / "docs" / "operators"


def in_shell(text):
    return ["bash", "-e", "-c", text]


def follow(page):
    with tempfile.TemporaryDirectory() as folder:
        follower = Follower(folder, in_shell)
        follower.follow_all(blocks_of(page.read_text(encoding="utf-8")))
        if follower.done == 0:
            raise Mismatch("the page has no step")
        return follower.done


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    tools = pathlib.Path(sys.argv[1]).resolve() / "tools"
    os.environ["PATH"] = ":".join([*(str(tools / tool) for tool in ("command", "simulator", "gateway")), os.environ["PATH"]])
    os.environ.pop("MORQUIL_DEVICE", None)
    failed = False
    for page in sorted(PAGES.glob("*.md")):
        try:
            print(f"  ok      {page.stem}: {follow(page)} blocks", flush=True)
        except Mismatch as mismatch:
            failed = True
            print(f"  FAILED  {page.stem}\n" + "\n".join("          " + line for line in str(mismatch).split("\n")))
    sys.exit(failed)


if __name__ == "__main__":
    main()

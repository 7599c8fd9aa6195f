#!/usr/bin/env python3
"""Compiles and runs every program of the guide, and follows the quick start to the letter, with Mono.

    check_pages.py BUILD FOLDER

As installed, less the installation: the package, the library and morquil-sim are those of the build, and the device has
an address that no other test uses. Prints "ok" or "FAILED" for each.
"""

import os
import pathlib
import shutil
import subprocess
import sys

from morquil.simulated_device import SimulatedDevice, unused_address
from page_follower import Follower, Mismatch, blocks_of

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = """using System;
using System.Collections.Generic;
using System.Threading.Tasks;
using Morquil;

static class Program
{
    static void Main(string[] arguments) => Run(arguments[0]).GetAwaiter().GetResult();

    static async Task Run(string address)
    {
#line 1
%s
    }
}
"""


def page(name):
    return (ROOT / "docs" / name).read_text(encoding="utf-8")


def run(*command):
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL, timeout=120, text=True, stdout=subprocess.PIPE,
                   stderr=subprocess.STDOUT)


def run_program(text, folder):
    folder.mkdir()
    shutil.copy(folder.parent / "Morquil.dll", folder)
    (folder / "program.cs").write_text(PROGRAM % text, encoding="utf-8")
    run("mcs", "-nologo", "-warnaserror", f"-r:{folder}/Morquil.dll", f"-out:{folder}/program.exe",
        str(folder / "program.cs"))
    with SimulatedDevice() as device:
        run("mono", str(folder / "program.exe"), device.address)


def follow_quick_start(build, folder):
    """Its 127.0.0.1 stands for any address."""
    folder.mkdir()
    (folder / "bin").mkdir()
    (folder / "bin" / "morquil-sim").symlink_to(os.environ["MORQUIL_SIM"])
    run(str(ROOT / "bindings/dotnet/pack.py"), str(build), str(folder))
    address = unused_address()
    blocks = blocks_of(page("getting-started/dotnet.md").replace("127.0.0.1", address))
    for block in blocks:
        if block.text.strip() == "morquil-sim":
            block.text = f"morquil-sim --address {address}"
    follower = Follower(str(folder), lambda text: ["bash", "-e", "-c", f"PATH='{folder}/bin':$PATH\n{text}"])
    follower.follow_all(blocks)
    assert follower.done == 4, f"{follower.done} blocks"


def check(name, action, *arguments):
    """Returns whether an action has succeeded."""
    try:
        action(*arguments)
    except (subprocess.SubprocessError, Mismatch, AssertionError) as error:
        print(f"{error}\n{getattr(error, 'stdout', '') or ''}\n  FAILED  {name}", flush=True)
        return False
    print(f"  ok      {name}", flush=True)
    return True


def main():
    build, folder = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    programs = [block.text for block in blocks_of(page("guides/dotnet.md")) if block.language == "csharp"]
    assert len(programs) == 4, f"{len(programs)} programs in the guide"
    good = [check(f"program {number} of the guide", run_program, text, folder / f"program_{number}")
            for number, text in enumerate(programs, start=1)]
    good.append(check("the quick start", follow_quick_start, build, folder / "quick_start"))
    return 0 if all(good) else 1


if __name__ == "__main__":
    sys.exit(main())

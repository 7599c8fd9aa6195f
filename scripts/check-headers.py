#!/usr/bin/env python3
"""Compiles the public headers as a host with strict compiler options does: none gives a warning, none needs another one
first, and none needs what only one compiler knows.

    scripts/check-headers.py BUILD-FOLDER

The headers are not system headers here, whose warnings compilers hide. Microsoft's compiler is represented by clang, with
its extensions and its target, and its standard library by MinGW's; tests/system/headers/microsoft stands in for what
differs. Exit status 0: all of them compile everywhere.
"""
import concurrent.futures
import glob
import os
import subprocess
import sys
import tempfile

WARNINGS = ("-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Werror").split()
CPP_WARNINGS = "-Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual -Wextra-semi".split()
MICROSOFT = "tests/system/headers/microsoft"


def mingw_includes(processor):
    """The C++ standard library and the headers of Windows, in the order in which MinGW's own compiler searches them."""
    system = f"{processor}-w64-mingw32"
    folder = os.path.dirname(subprocess.run([f"{system}-g++", "-print-libgcc-file-name"], check=True,
                                            capture_output=True, text=True).stdout)
    library = os.path.join(folder, "include", "c++")
    paths = (library, f"{library}/{system}", f"/usr/{system}/include")
    return [option for path in paths for option in ("-isystem", path)]


def modes():
    """Name -> (compiler, options, whether the target is Windows, whether each header is compiled alone)."""
    # MinGW's library wants a compiler that says it is GCC, and notices that the strict mode of this one is another.
    common = ["-fms-extensions", "-fms-compatibility", "-fms-compatibility-version=19.29", "-fgnuc-version=12.2",
              "-Wno-#warnings", "-isystem", MICROSOFT]
    microsoft = [*common, *mingw_includes("x86_64")]
    msvc = ["--target=x86_64-pc-windows-msvc", *microsoft]
    # Defined by Microsoft's <windows.h> itself.
    msvc_x86 = ["--target=i686-pc-windows-msvc", "-D_X86_", *common, *mingw_includes("i686")]
    return {
        "GCC": ("g++", ["-std=c++17"], False, True),
        "GCC, C++20": ("g++", ["-std=c++20"], False, False),
        "clang": ("clang++", ["-std=c++17"], False, False),
        "MinGW-w64": ("x86_64-w64-mingw32-g++", ["-std=c++17"], True, False),
        "MinGW-w64, 32 bit": ("i686-w64-mingw32-g++", ["-std=c++17"], True, False),
        "clang, MinGW's target with Microsoft's extensions":
            ("clang++", ["-std=c++17", "--target=x86_64-pc-windows-gnu", *microsoft], True, True),
        "clang, Microsoft's target": ("clang++", ["-std=c++17", *msvc], True, True),
        "clang, Microsoft's 32-bit target": ("clang++", ["-std=c++17", *msvc_x86], True, False),
        "clang, Microsoft's target and nothing of GCC":
            ("clang++", ["-std=c++17", *msvc, "-I.", "-include", f"{MICROSOFT}/only_microsoft.h"], True, False),
        "C, GCC": ("gcc", ["-std=c11"], False, True),
        "C99, GCC": ("gcc", ["-std=c99"], False, True),
        "C, clang": ("clang", ["-std=c11"], False, False),
        "C, MinGW-w64": ("x86_64-w64-mingw32-gcc", ["-std=c11"], True, False),
        "C, clang, Microsoft's target": ("clang", ["-std=c11", *msvc], True, True),
        "C, clang, Microsoft's 32-bit target": ("clang", ["-std=c11", *msvc_x86], True, False),
    }


def sources(build, folder, language):
    """One source that uses the public headers, one for each of them, and one that includes them in reverse order."""
    contract = ["MorquilAPI.h", "MorquilDelivery.h", "MorquilEntry.h", "MorquilWords.h"]
    layer = ["morquil.hpp", "morquil/interfaces.hpp", "morquil/property_table.hpp",
             *(os.path.relpath(path, "bindings/cpp") for path in glob.glob("bindings/cpp/morquil/*.hpp"))]
    assert os.path.exists(f"{build}/bindings/cpp/morquil/interfaces.hpp"), f"{build} has not been built"
    headers = contract + (layer if language == "cpp" else [])
    texts = {header.replace("/", "_"): [header] for header in headers}
    texts["in_reverse_order"] = sorted(headers, reverse=True)
    made = [f"tests/system/headers/use.{language}"]
    for name, included in texts.items():
        made.append(os.path.join(folder, f"{name}.{language}"))
        with open(made[-1], "w", encoding="utf-8") as file:
            file.writelines(f'#include "{header}"\n' for header in included)
    return made


def problems_of(command, files, pool):
    """What the compiler says about each file that it refuses."""
    def compile_one(file):
        result = subprocess.run([*command, "-fsyntax-only", file], capture_output=True, text=True)
        return "" if result.returncode == 0 else f"{os.path.basename(file)}:\n{result.stderr[:3000]}"
    return list(filter(None, pool.map(compile_one, files)))


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    build = sys.argv[1]
    own = [f"-I{build}/api", "-Iapi", "-Ibindings/cpp", f"-I{build}/bindings/cpp", f"-I{build}/bindings/c"]
    posix = ["-Ilibrary/platform/posix"]
    failed = False
    with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        files = {language: sources(build, folder, language) for language in ("c", "cpp")}
        for name, (compiler, options, is_windows, each_alone) in modes().items():
            language = "c" if name.startswith(("C,", "C99,")) else "cpp"
            warnings = WARNINGS + (CPP_WARNINGS if language == "cpp" else [])
            command = [compiler, *options, *warnings, *own, *([] if is_windows else posix)]
            problems = problems_of(command, files[language][: None if each_alone else 1], pool)
            print("\n".join([f"  {'FAILED' if problems else 'ok    '}  headers: {name}", *problems]), flush=True)
            failed = failed or bool(problems)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()

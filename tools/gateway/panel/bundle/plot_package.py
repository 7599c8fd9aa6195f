"""uPlot from its npm package, in the version and with the checksum that package-lock.json names."""
import pathlib
import shutil
import subprocess
import sys

MISSING = """build_panel.py: npm could not install uPlot, with which the panel plots values over time:
{reason}
Connect this machine to a package registry, or leave the curves out: cmake -DMORQUIL_PANEL_PLOT=OFF"""


def _run_npm(folder):
    command = ["npm", "ci", "--omit=dev", "--prefer-offline", "--ignore-scripts", "--no-audit", "--no-fund", "--loglevel=error"]
    try:
        done = subprocess.run(command, cwd=folder, capture_output=True, text=True, timeout=300, check=False)
    except FileNotFoundError:
        return "npm is not installed (scripts/install-dependencies.sh gateway installs it)"
    except subprocess.TimeoutExpired:
        return "npm has not finished within five minutes"
    return "" if done.returncode == 0 else (done.stderr or done.stdout).strip()


def install(panel, folder):
    """The folder of the installed package. Installs only when the lock file has changed."""
    folder = pathlib.Path(folder)
    lock = (panel / "package-lock.json").read_bytes()
    stamp = folder / "installed-lock.json"
    if not stamp.exists() or stamp.read_bytes() != lock:
        folder.mkdir(parents=True, exist_ok=True)
        for name in ("package.json", "package-lock.json", ".npmrc"):
            shutil.copy(panel / name, folder / name)
        reason = _run_npm(folder)
        if reason:
            sys.exit(MISSING.format(reason=reason))
        stamp.write_bytes(lock)
    return folder / "node_modules" / "uplot"


def module_of(package):
    """The package's smallest file sets a variable: as a module it exports it."""
    return (package / "dist" / "uPlot.iife.min.js").read_text(encoding="utf-8") + "\nexport default uPlot;\n"


WITHOUT_PLOT = "export default null;\n"

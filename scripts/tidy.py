#!/usr/bin/env python3
"""Runs clang-tidy over the program's sources, as many at a time as there are processors.

usage: scripts/tidy.py <build folder with a compile_commands.json>

A source that was found clean is not looked at again until it, or a header of it, has changed: a hash of what the
preprocessor makes of it is kept in $XDG_CACHE_HOME/sigvane-tidy. scripts/lint.sh calls this after building, as
generated headers must be there.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import shlex
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parent.parent
cache = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "sigvane-tidy"


def preprocessed(entry):
    """The source with its headers and comments (some of which tell clang-tidy something), without line numbers."""
    arguments = shlex.split(entry["command"])
    output = arguments.index("-o")
    del arguments[output : output + 2]
    arguments.remove("-c")
    run = subprocess.run(arguments + ["-E", "-P", "-C"], cwd=entry["directory"], capture_output=True)
    return run.stdout if run.returncode == 0 else None


def check(entry, build, rules):
    """What clang-tidy says against the source; nothing when that is nothing."""
    text = preprocessed(entry)
    known = text and cache / hashlib.sha256(rules + text).hexdigest()
    if known and known.exists():
        known.touch()
        return ""
    run = subprocess.run(
        ["clang-tidy", "-p", build, "--quiet", "--warnings-as-errors=*", entry["file"]],
        capture_output=True, text=True)
    if run.returncode == 0 and known:
        known.touch()
    return "" if run.returncode == 0 else run.stdout or run.stderr


def main():
    build = sys.argv[1]
    cache.mkdir(parents=True, exist_ok=True)
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    rules = version + (root / ".clang-tidy").read_bytes()
    with open(pathlib.Path(build) / "compile_commands.json", encoding="utf-8") as file:
        entries = json.load(file)
    # Each source once, without those that tools have made.
    sources = {e["file"]: e for e in entries
               if e["file"].endswith(".cpp") and not pathlib.Path(e["file"]).is_relative_to(root / "build")}
    found = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for said in pool.map(lambda entry: check(entry, build, rules), sources.values()):
            if said:
                found += 1
                print(said, flush=True)
    print(f"clang-tidy: {len(sources)} sources, {found} with findings")
    return 1 if found or not sources else 0


if __name__ == "__main__":
    sys.exit(main())

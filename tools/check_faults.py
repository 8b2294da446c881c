"""Runs clang-tidy over the library's sources that changed since they last passed, themselves or by a header of ours.

Usage: check_faults.py CLANG_TIDY BUILD_FOLDER
"""

import concurrent.futures
import json
import os
import re
import subprocess
import sys
from pathlib import Path

from passed import ROOT, Passed, digest

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
# clang cannot read what g++ precompiled, nor does it know these flags of g++.
PRECOMPILED = re.compile(r"\s-include\s+\S*cmake_pch\S*|\s-Winvalid-pch|\s-fpch-preprocess|\s-fno-gnu-unique")


def own_files(path, seen):
    """The file and the headers of ours that it includes, near and far."""
    if path in seen or not path.exists():
        return
    seen.add(path)
    for included in INCLUDE.findall(path.read_text()):
        own_files(ROOT / "src" / included, seen)


def commands(build):
    """The compile commands of the library, without the precompiled header: a source must stand on its own includes."""
    found = []
    for entry in json.loads((build / "compile_commands.json").read_text()):
        if Path(entry["file"]).is_relative_to(ROOT / "src"):
            entry["command"] = PRECOMPILED.sub("", entry["command"])
            found.append(entry)
    return found


def main():
    tidy, build = sys.argv[1], ROOT / sys.argv[2]
    entries = commands(build)
    database = build / "faults"
    database.mkdir(exist_ok=True)
    (database / "compile_commands.json").write_text(json.dumps(entries))

    settings = (ROOT / ".clang-tidy").read_bytes()
    passed = Passed("faults")
    todo = {}
    for entry in entries:
        path = Path(entry["file"])
        files = set()
        own_files(path, files)
        key = digest(settings, entry["command"], *(part for f in sorted(files) for part in (str(f.relative_to(ROOT)), f.read_bytes())))
        if path.exists() and not passed.holds(key):
            todo[path] = key

    def run(path):
        return path, subprocess.run([tidy, "--quiet", "-p", str(database), str(path)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    wrong = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for number, (path, result) in enumerate(pool.map(run, todo), 1):
            name = path.relative_to(ROOT)
            print(f"-- [{number}/{len(todo)}] {name}", file=sys.stderr)
            if result.returncode == 0:
                passed.add(todo[path])
            else:
                wrong += 1
                print(result.stdout.strip() or result.stderr.strip() or f"{name}: clang-tidy ended with status {result.returncode}")
    passed.save()
    return 1 if wrong else 0


sys.exit(main())

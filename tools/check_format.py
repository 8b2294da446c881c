"""Finds C++ files that clang-format would lay out in another way. Usage: check_format.py CLANG_FORMAT"""

import subprocess
import sys

from passed import ROOT, Passed, digest, sources


def main():
    formatter = sys.argv[1]
    style = (ROOT / ".clang-format").read_bytes()
    passed = Passed("format")
    todo = []
    for path in sources(["src", "bindings", "tests", "bench"], {".cpp", ".hpp"}):
        key = digest(style, path.read_bytes())
        if not passed.holds(key):
            todo.append((path, key))

    wrong = 0
    for path, key in todo:
        text = path.read_bytes()
        laid_out = subprocess.run([formatter, f"--assume-filename={path}"], input=text, stdout=subprocess.PIPE, check=True).stdout
        if laid_out == text:
            passed.add(key)
            continue
        wrong += 1
        pairs = enumerate(zip(text.split(b"\n"), laid_out.split(b"\n")), 1)
        line = next((number for number, (ours, theirs) in pairs if ours != theirs), 1)
        print(f"{path.relative_to(ROOT)}:{line}: not laid out as .clang-format says; clang-format -i mends it")
    passed.save()
    return 1 if wrong else 0


sys.exit(main())

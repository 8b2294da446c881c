"""Which engine classes the sources include, by reading their #include lines."""

import os
import re

SUFFIXES = (".cpp", ".hpp", ".h", ".cc", ".inc")
INCLUDE = re.compile(rb"^[ \t]*#[ \t]*include[ \t]*<godot_cpp/classes/(\w+)\.hpp>", re.MULTILINE)


def included_headers(folders):
    """Names of the class headers (without folder and suffix) that any source under the folders includes."""
    found = set()
    for folder in folders:
        for path, dirs, files in os.walk(folder):
            dirs[:] = [d for d in dirs if not d.startswith(".")]
            for name in files:
                if name.endswith(SUFFIXES):
                    with open(os.path.join(path, name), "rb") as file:
                        found.update(match.decode() for match in INCLUDE.findall(file.read()))
    return found

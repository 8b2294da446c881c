#!/usr/bin/env python3
"""Writes the generated half of the bindings from the description that the engine dumps of itself.

Runs when CMake configures and again before every build, because the sources decide which classes are wrapped; a run without news
ends before it parses the description.
"""

import argparse
import hashlib
import json
import os
import sys

sys.dont_write_bytecode = True

HERE = os.path.dirname(os.path.abspath(__file__))

from generator.builtins import emit_builtins
from generator.classes import BATCHES, ClassWriter, batch_path
from generator.globals import emit_globals
from generator.interface_loader import emit_interface_loader, emit_version
from generator.output import Output
from generator.scan import included_headers
from generator.types import Types

DESCRIPTION = "extension_api.json"
INTERFACE = "gdextension_interface.json"
INTERFACE_HEADER = "gdextension_interface.h"
STAMP = "generated.stamp"


def fingerprint(api_dir, headers):
    """Changes when what is generated could change."""
    digest = hashlib.sha256()
    inputs = [os.path.join(HERE, "generate.py")]
    inputs += sorted(os.path.join(HERE, "generator", n) for n in os.listdir(os.path.join(HERE, "generator")) if n.endswith(".py"))
    for path in inputs:
        with open(path, "rb") as file:
            digest.update(file.read())
    for name in (DESCRIPTION, INTERFACE, INTERFACE_HEADER):
        status = os.stat(os.path.join(api_dir, name))
        digest.update(("%s %d %d\n" % (name, status.st_size, status.st_mtime_ns)).encode())
    digest.update("\n".join(sorted(headers)).encode())
    return digest.hexdigest()


def is_current(out_dir, key):
    try:
        with open(os.path.join(out_dir, STAMP), encoding="utf-8") as file:
            known = file.read().split("\n")
    except FileNotFoundError:
        return False
    return known[0] == key and all(os.path.exists(os.path.join(out_dir, path)) for path in known[1:] if path)


def read_json(api_dir, name):
    with open(os.path.join(api_dir, name), encoding="utf-8") as file:
        return json.load(file)


def list_class_files(api_dir):
    """Everything that a new #include in a source can change: what the build system has to know by name."""
    types = Types(read_json(api_dir, DESCRIPTION))
    paths = ["include/" + types.header(name) for name in types.classes] + [batch_path(i) for i in range(BATCHES)]
    sys.stdout.write(";".join(sorted(paths)))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--api", required=True, help="folder with %s, %s and %s" % (DESCRIPTION, INTERFACE, INTERFACE_HEADER))
    parser.add_argument("--out", help="folder for the generated include/ and src/")
    parser.add_argument("--scan", nargs="*", default=[], help="folders of sources whose class includes decide what is wrapped")
    parser.add_argument("--list", action="store_true", help="print the files that depend on what sources include, and write nothing")
    options = parser.parse_args()

    if options.list:
        list_class_files(options.api)
        return
    if not options.out:
        parser.error("--out is needed")

    headers = included_headers([os.path.join(HERE, "include"), os.path.join(HERE, "src")] + options.scan)
    key = fingerprint(options.api, headers)
    if is_current(options.out, key):
        return

    api = read_json(options.api, DESCRIPTION)
    if api["header"].get("precision", "single") != "single":
        raise SystemExit("The engine was built in double precision; these bindings are for single precision.")
    out = Output(options.out)
    with open(os.path.join(options.api, INTERFACE_HEADER), encoding="utf-8") as file:
        emit_interface_loader(read_json(options.api, INTERFACE), file.read(), out)
    emit_version(api["header"], out)
    emit_builtins(api, out)
    emit_globals(api, out)
    whole, hollow = ClassWriter(api, Types(api)).emit(headers, out)
    out.remove_stale()
    with open(os.path.join(options.out, STAMP), "w", encoding="utf-8") as file:
        file.write("\n".join([key] + sorted(out.written)))
    print("bindings: %d classes, %d more by name, %d files changed" % (len(whole), len(hollow), out.changed))


if __name__ == "__main__":
    main()

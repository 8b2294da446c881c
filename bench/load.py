"""Measures what the extension adds to the engine's start and to a game's download. Prints lines as the other measurers do."""

import json
import os
import resource
import shutil
import subprocess
import sys
import time

ROUNDS = 15
PROJECT = """config_version=5

[application]

config/name="Start"
run/main_scene="res://main.tscn"
"""
SCENE = """[gd_scene format=3]

[node name="Main" type="Node"]
"""
EXTENSION = """[configuration]

entry_symbol = "quillstead_core_init"
compatibility_minimum = "4.6"

[libraries]

linux = "{0}"
windows = "{0}"
macos = "{0}"
"""


def write(folder, name, text):
    path = os.path.join(folder, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def make_project(folder, library, lists_it):
    """The two projects hold the same files; one of them tells the engine of the extension."""
    shutil.rmtree(folder, ignore_errors=True)
    write(folder, "project.godot", PROJECT)
    write(folder, "main.tscn", SCENE)
    write(folder, "core.gdextension", EXTENSION.format(os.path.basename(library)))
    shutil.copy(library, folder)
    write(folder, ".godot/extension_list.cfg", "res://core.gdextension\n" if lists_it else "")


def start_msec(engine, folder):
    """By the clock on the wall, and what the processor was at work."""
    began, worked = time.perf_counter(), processor_seconds()
    done = subprocess.run([engine, "--headless", "--path", folder, "--quit"], capture_output=True, text=True, check=False)
    spent = (time.perf_counter() - began) * 1000.0, (processor_seconds() - worked) * 1000.0
    if done.returncode != 0 or "ERROR" in done.stdout + done.stderr:
        sys.exit(f"bench: the engine did not start with {folder}:\n{done.stdout}{done.stderr}")
    return spent


def processor_seconds():
    children = resource.getrusage(resource.RUSAGE_CHILDREN)
    return children.ru_utime + children.ru_stime


def stripped_size(library, folder):
    copy = os.path.join(folder, "stripped")
    shutil.copy(library, copy)
    if shutil.which("strip"):
        subprocess.run(["strip", copy], check=True)
    return os.path.getsize(copy)


def say(**line):
    print(json.dumps(line), flush=True)


def main():
    engine, library, scratch, *words = sys.argv[1:]
    if words and not any(word in "load" for word in words):
        return
    say(subject=8, title="Load: what the extension adds to the engine's start")
    bare, loaded = os.path.join(scratch, "without"), os.path.join(scratch, "with")
    make_project(bare, library, False)
    make_project(loaded, library, True)
    starts = {bare: [], loaded: []}
    for one_round in range(ROUNDS + 1):
        # Whoever comes second finds the other's work just done, so they take turns at that too.
        for folder in (bare, loaded) if one_round % 2 else (loaded, bare):
            start = start_msec(engine, folder)
            if one_round > 0:
                starts[folder].append(start)
    without, with_it = ([wall for wall, _ in starts[folder]] for folder in (bare, loaded))
    added = [[after[i] - before[i] for before, after in zip(starts[bare], starts[loaded])] for i in (0, 1)]
    say(figure="load.added", what="the extension", unit="ms", samples=added[0], at_most=40)
    say(figure="load.without", what="a start without it", unit="ms", samples=without)
    say(figure="load.with", what="a start with it", unit="ms", samples=with_it)
    say(figure="load.added_work", what="the extension, by the processor's time", unit="ms", samples=added[1])
    say(figure="load.size", what="the stripped release library", unit="bytes", samples=[stripped_size(library, scratch)], in_readme=True)


main()

"""Holds the two lists of the debugger's words, the library's and the editor's, to the same words."""

import re
import sys

from passed import ROOT

GAME = "src/machine/debugger_messages.hpp"
EDITOR = "addons/quillstead/runtime/debugger_messages.gd"
# The editor's names of the orders hold the capture's name; the library hears them without it.
ORDERS = ("WATCH", "PAUSE", "STEP")
# Where the library says what an action is doing.
STATUS_SOURCE = "src/machine/stepping.cpp"


def main():
    game = dict(re.findall(r'constexpr const char \*(\w+) = "([^"]*)";', (ROOT / GAME).read_text()))
    editor = dict(re.findall(r'^const (\w+): String = "([^"]*)"$', (ROOT / EDITOR).read_text(), re.MULTILINE))
    faults = []
    if not game or not editor:
        faults.append(f"{GAME} has {len(game)} words and {EDITOR} {len(editor)}: one of them is not read right")
    capture = game.pop("CONTROL", None)
    for name, word in sorted(game.items()):
        said = f"{capture}:{word}" if name in ORDERS else word
        if editor.get(name) != said:
            faults.append(f'{EDITOR}: {name} is {editor.get(name)!r}, and "{said}" in {GAME}')
        if name not in ORDERS and not word.startswith(editor.get("CAPTURE", "?") + ":"):
            faults.append(f"{GAME}: {name} does not begin with the editor's capture")
    statuses = (ROOT / STATUS_SOURCE).read_text()
    for name, word in sorted(editor.items()):
        if name.startswith("STATUS_"):
            if f'"{word}"' not in statuses:
                faults.append(f'{STATUS_SOURCE}: never says "{word}", which {EDITOR} knows as {name}')
        elif name != "CAPTURE" and name not in game:
            faults.append(f"{EDITOR}: {name} is not in {GAME}")
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())

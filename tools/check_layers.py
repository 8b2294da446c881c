"""Holds the layers of src/ to one direction: an include may point to the same layer or to a lower one, as LAYERS orders them."""

import re
import sys

from passed import ROOT, sources

# From the bottom up. A file belongs to the first row that matches it, and may include what stands in its own row and above.
LAYERS = [
    ("machine and design", re.compile(r"(machine/|machine_node/|design/|settings/|sc_machine)")),
    ("action", re.compile(r"(action/|fast_lane/|sc_action|sc_condition|sc_fast_lane|sc_native_actions\.hpp)")),
    ("kinds and natives", re.compile(r"(kinds/|native_|natives/|sc_native_actions)")),
    ("registration", re.compile(r"register_types")),
]
# What the machine calls its actions by, and what belongs to nobody: everything may include these.
COMMON = re.compile(r"(sc_action|sc_condition|sc_native_actions|pch|core_version)\.hpp")

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def layer_of(name):
    for rank, (_, pattern) in enumerate(LAYERS):
        if pattern.match(name):
            return rank
    return None


def main():
    src = ROOT / "src"
    faults = 0
    for path in sources(["src"], {".cpp", ".hpp"}):
        name = path.relative_to(src).as_posix()
        own = layer_of(name)
        if own is None:
            continue
        text = path.read_text()
        for match in INCLUDE.finditer(text):
            included = match.group(1)
            line = text.count("\n", 0, match.start()) + 1
            if COMMON.fullmatch(included):
                continue
            if not (src / included).exists():
                print(f'src/{name}:{line}: includes "{included}", which is not a path from src/')
                faults += 1
                continue
            other = layer_of(included)
            if other is not None and other > own:
                print(f'src/{name}:{line}: {LAYERS[own][0]} must know nothing of {LAYERS[other][0]} ("{included}")')
                faults += 1
    return 1 if faults else 0


sys.exit(main())

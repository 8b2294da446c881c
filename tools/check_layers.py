"""Holds the layers of src/ to one direction: an include may point to the same layer or to a lower one, as LAYERS orders them.
Kinds live in a folder per category, and know nothing of other categories."""

import re
import sys

from passed import ROOT, sources

# From the bottom up. A file belongs to the first row that matches it, and may include what stands in its own row and above.
LAYERS = [
    ("machine and design", re.compile(r"(machine/|machine_node/|design/|settings/|character/)")),
    ("action", re.compile(r"(action/|fast_lane/|design_check/|steering/|space/|inventory/|terrain/)")),
    ("kinds", re.compile(r"kinds/")),
    ("registration", re.compile(r"register_types")),
]
# What the machine calls its actions by, and what belongs to nobody: everything may include these.
COMMON = re.compile(r"(action/sc_action|action/sc_condition|action/sc_native_actions|pch|core_version)\.hpp")
# One category's kinds know nothing of another's. The root holds what belongs to no folder.
CATEGORY = re.compile(r"kinds/(\w+)/")
AT_THE_ROOT = {"pch.hpp", "register_types.cpp", "register_types.hpp"}

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
            if name not in AT_THE_ROOT:
                print(f"src/{name}: belongs to no layer")
                faults += 1
            continue
        category = CATEGORY.match(name)
        if name.startswith("kinds/") and not category:
            print(f"src/{name}: kinds live in the folder of their category, kinds/<category>/")
            faults += 1
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
            other_category = CATEGORY.match(included)
            if category and other_category and category.group(1) != other_category.group(1):
                print(f'src/{name}:{line}: kinds of {category.group(1)} must know nothing of those of {other_category.group(1)} ("{included}")')
                faults += 1
    return 1 if faults else 0


sys.exit(main())

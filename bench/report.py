"""Makes a table and a file of what the measurers of ./dev bench print, line by line, on standard input."""

import argparse
import json
import os
import sys

import tables
from figures import Run, is_met, save


def arguments():
    parser = argparse.ArgumentParser(prog="./dev bench", description="Measure, with the release library, each figure beside its yardsticks.")
    parser.add_argument("words", metavar="WORD", nargs="*", help="only the subjects whose name holds one of these: event, tick, idle, start, fast_lane, variables, broadcast, load, scale, characters, systems")
    parser.add_argument("--against", metavar="FILE", help="an earlier run to compare with")
    parser.add_argument("--json", metavar="FILE", help="where the figures are left (build/bench.json)")
    parser.add_argument("--readme", action="store_true", help="put the table into README.md")
    parser.add_argument("--show-words", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("--caller", default=".", help=argparse.SUPPRESS)
    parser.add_argument("--engine-version", default="", help=argparse.SUPPRESS)
    given = parser.parse_args()
    if given.readme and given.words:
        parser.error("--readme takes a run of all subjects")
    return given


def main():
    given = arguments()
    if given.show_words:
        print(" ".join(given.words))
        return 0
    then = None
    if given.against:
        with open(os.path.join(given.caller, given.against), encoding="utf-8") as file:
            then = json.load(file)

    run = Run()
    for text in sys.stdin:
        if not text.startswith("{"):
            sys.stderr.write(text)
            continue
        said = json.loads(text)
        if "subject" in said:
            print(f"{said['subject']}. {said['title']}", flush=True)
        made = run.take(said)
        if made:
            print(tables.line(made), flush=True)
    if not run.figures:
        print("Nothing was measured.", file=sys.stderr)
        return 1

    now = run.as_file(given.engine_version)
    held = [entry for entry in now["figures"] if entry["target"] is not None]
    missed = [entry for entry in held if not is_met(entry)]
    print(f"{len(held) - len(missed)} of {len(held)} targets met. {tables.described(now)}")
    path = os.path.join(given.caller, given.json) if given.json else os.path.join("build", "bench.json")
    save(path, now)
    if then:
        print("\n".join(tables.comparison(then, now)))
    if given.readme:
        return write_readme(now)
    return 0


def write_readme(now):
    with open("README.md", encoding="utf-8") as file:
        text = tables.put_into(file.read(), "\n".join(tables.readme(now)))
    if text is None:
        print(f"README.md has not the two marks that the table goes between:\n{tables.BEGIN}\n{tables.END}", file=sys.stderr)
        return 1
    with open("README.md", "w", encoding="utf-8") as file:
        file.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())

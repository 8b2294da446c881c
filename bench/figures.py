"""A run's figures: what is made of the measurers' lines, and the file it is kept in."""

import datetime
import glob
import json
import os
import platform
import re
import statistics
import subprocess


def quartiles(samples):
    if len(samples) < 2:
        return samples[0], samples[0], samples[0]
    low, median, high = statistics.quantiles(samples, n=4, method="inclusive")
    return low, median, high


def figure(name, what, unit, samples, target):
    low, median, high = quartiles(samples)
    return {
        "name": name,
        "what": what,
        "unit": unit,
        "median": round(median, 4),
        "low": round(low, 4),
        "high": round(high, 4),
        "rounds": len(samples),
        "target": target,
    }


def is_met(entry):
    return entry["target"] is None or entry["median"] <= entry["target"]


class Run:
    """The figures in the order in which they came, with the subject that each belongs to."""

    def __init__(self):
        self.subjects = {}
        self.figures = []
        self._samples = {}
        self._named = {}
        self._subject = None

    def take(self, said):
        """Takes one line of a measurer. Answers the figure that it made, or None."""
        if "subject" in said:
            self._subject = said["subject"]
            self.subjects[self._subject] = said["title"]
            return None
        if "ratio" in said:
            made = self._ratio_of(said)
        else:
            self._samples[said["figure"]] = said["samples"]
            made = said["samples"] and figure(
                said["figure"], said["what"], said["unit"], said["samples"], said.get("at_most"))
        if not made:
            return None
        made["subject"] = self._subject
        made["in_readme"] = said.get("in_readme", False)
        self._named[made["name"]] = made
        self.figures.append(made)
        return made

    def _ratio_of(self, said):
        """Of each round's two, not of the medians: what slows a round down slows both. Growth is held against that of a
        yardstick between the same sizes, and so are they."""
        names = [said["ratio"], said["over"], *said.get("beside", [])]
        rounds = [row for row in zip(*(self._samples.get(name, []) for name in names)) if min(row) > 0]
        if not rounds:
            return None
        one, other, *yardstick = (self._named[name]["what"] for name in names)
        what = f"{one} / {other}"
        ratios = [row[0] / row[1] for row in rounds]
        if yardstick:
            what = f"its growth over that of {yardstick[0]}"
            ratios = [ratio * row[3] / row[2] for ratio, row in zip(ratios, rounds)]
        made = figure(" / ".join(names), what, "times", ratios, said.get("at_most"))
        made["of"] = names
        return made

    def as_file(self, engine_version):
        return {
            "date": datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d %H:%M UTC"),
            "commit": commit(),
            "machine": machine(),
            "engine": engine_version,
            "subjects": {str(number): title for number, title in sorted(self.subjects.items())},
            "figures": sorted(self.figures, key=lambda entry: entry["subject"]),
        }


def save(path, content):
    os.makedirs(os.path.dirname(path) or ".", exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        json.dump(content, file, indent="\t", ensure_ascii=False)
        file.write("\n")


def machine():
    return {"cpu": cpu_model(), "caches": caches(), "cores": os.cpu_count(), "memory_gib": memory_gib()}


def cpu_model():
    try:
        found = re.search(r"^model name\s*:\s*(.+)$", read("/proc/cpuinfo"), re.MULTILINE)
    except OSError:
        found = None
    return found.group(1).strip() if found else platform.processor() or platform.machine()


def caches():
    """Those that hold data, as the first core sees them: "L1 32 KiB, L2 1 MiB, L3 32 MiB"."""
    found = []
    for folder in sorted(glob.glob("/sys/devices/system/cpu/cpu0/cache/index*")):
        try:
            level, kind, size = (read(os.path.join(folder, name)) for name in ("level", "type", "size"))
        except OSError:
            continue
        number = re.fullmatch(r"(\d+)([KM]?)", size)
        if kind != "Instruction" and number:
            kib = int(number[1]) * (1024 if number[2] == "M" else 1)
            found.append(f"L{level} " + (f"{kib / 1024:g} MiB" if kib >= 1024 else f"{kib} KiB"))
    return ", ".join(found)


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read().strip()


def memory_gib():
    try:
        return round(os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30, 1)
    except (AttributeError, ValueError, OSError):
        return None


def commit():
    """Empty outside of a repository. A plus says that what was measured is not quite what was committed."""
    def git(*arguments):
        done = subprocess.run(["git", *arguments], capture_output=True, text=True, check=False)
        return done.stdout.strip() if done.returncode == 0 else ""
    try:
        known = git("rev-parse", "HEAD")
        return known + "+" if known and git("status", "--porcelain") else known
    except OSError:
        return ""

"""A run's figures: what is made of the measurers' lines, and the file it is kept in."""

import datetime
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
        """Of each round's two, not of the medians: what slows a round down slows both."""
        one, other = said["ratio"], said["over"]
        pairs = [(a, b) for a, b in zip(self._samples.get(one, []), self._samples.get(other, [])) if b > 0]
        if not pairs:
            return None
        what = f"{self._named[one]['what']} / {self._named[other]['what']}"
        made = figure(f"{one} / {other}", what, "times", [a / b for a, b in pairs], said.get("at_most"))
        made["of"] = [one, other]
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
    return {"cpu": cpu_model(), "cores": os.cpu_count(), "memory_gib": memory_gib()}


def cpu_model():
    try:
        with open("/proc/cpuinfo", encoding="utf-8") as file:
            found = re.search(r"^model name\s*:\s*(.+)$", file.read(), re.MULTILINE)
    except OSError:
        found = None
    return found.group(1).strip() if found else platform.processor() or platform.machine()


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

"""Remembers, between runs, what has passed a check, by a digest of everything that the answer depends on."""

import hashlib
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent


class Passed:
    def __init__(self, check):
        self.path = ROOT / "build" / "lint" / f"{check}.passed"
        self.known = set(self.path.read_text().split()) if self.path.exists() else set()
        self.kept = set()

    def holds(self, key):
        if key in self.known:
            self.kept.add(key)
            return True
        return False

    def add(self, key):
        self.kept.add(key)

    def save(self):
        """Digests that nobody asked about are of files that have changed since, and are dropped."""
        self.path.parent.mkdir(parents=True, exist_ok=True)
        self.path.write_text("\n".join(sorted(self.kept)) + "\n")


def digest(*parts):
    sha = hashlib.sha256()
    for part in parts:
        data = part.encode() if isinstance(part, str) else part
        sha.update(str(len(data)).encode() + b":" + data)
    return sha.hexdigest()


def sources(folders, suffixes):
    for folder in folders:
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix in suffixes and path.is_file():
                yield path

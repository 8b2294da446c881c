"""Where generated text goes: files are touched only when their text changes, so that a rebuild compiles only what changed."""

import os
import re


class Output:
    def __init__(self, root):
        self.root = root
        self.written = set()
        self.changed = 0

    def write(self, relpath, text):
        if not text.endswith("\n"):
            text += "\n"
        self.written.add(os.path.normpath(relpath))
        path = os.path.join(self.root, relpath)
        try:
            with open(path, encoding="utf-8", newline="") as existing:
                if existing.read() == text:
                    return
        except (FileNotFoundError, UnicodeDecodeError):
            pass
        os.makedirs(os.path.dirname(path), exist_ok=True)
        # A whole file or none: an interrupted run must not leave half a header behind.
        temporary = path + ".new"
        with open(temporary, "w", encoding="utf-8", newline="") as file:
            file.write(text)
        os.replace(temporary, path)
        self.changed += 1

    def write_header(self, relpath, text):
        """A header, by its path below include/. With a guard of its own: of a precompiled header that ccache kept, a compiler that
        goes by the file would read it twice."""
        guard = re.sub(r"\W", "_", relpath).upper()
        self.write("include/" + relpath, "#ifndef %s\n#define %s\n\n%s\n\n#endif // %s\n" % (guard, guard, text.strip("\n"), guard))

    def remove_stale(self, subdirs=("include", "src")):
        """Drops what an earlier run wrote and this one did not: a stale header would hide a missing include."""
        for subdir in subdirs:
            for folder, _dirs, files in os.walk(os.path.join(self.root, subdir)):
                for name in files:
                    path = os.path.join(folder, name)
                    if os.path.normpath(os.path.relpath(path, self.root)) not in self.written:
                        os.remove(path)
                        self.changed += 1

"""Finds texts of src/ with characters beyond ASCII that would come out wrong: String, StringName and vformat() read a plain
literal as Latin-1. Where the declarations of classes decode their texts themselves, and in String::utf8(), it may stand."""

import re
import sys

from passed import ROOT, sources

# What is a comment, a raw string, a string with or without a prefix, or a character, in this order.
TOKEN = re.compile(
    r"//[^\n]*|/\*.*?\*/"
    r'|(?P<raw>(?P<raw_prefix>u8|[uUL])?R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)")'
    r'|(?P<string>(?P<prefix>\b(?:u8|[uUL]))?"(?:[^"\\\n]|\\.)*")'
    r"|(?<![0-9A-Fa-f])'(?:[^'\\\n]|\\.)+'",
    re.DOTALL,
)
# Of the statement that a literal is in, up to the literal.
DECODED = re.compile(r"String::utf8\(\s*$|\bHint\s+\w+\s*=\s*\{|\.\s*(?:setting|setting_as|property|about)\b|\b(?:Class|Kind)Table<\w+>\s+\w+\(|\bSC_ENUM_LABELLED\(")
ESCAPED = re.compile(r"\\(?:x[89a-fA-F]|[23][0-7][0-7]|[uU])")


def is_plain(match):
    if match.group("raw"):
        return not match.group("raw_prefix")
    return bool(match.group("string")) and match.group("prefix") in (None, "u8")


def faults_in(text):
    """Lines of the literals that are read as Latin-1."""
    statement = ""
    end = 0
    for match in TOKEN.finditer(text):
        statement = (statement + text[end : match.start()]).rpartition(";")[2]
        end = match.end()
        if not match.group("raw") and not match.group("string"):
            continue
        literal = match.group()
        if is_plain(match) and (not literal.isascii() or ESCAPED.search(literal)) and not DECODED.search(statement):
            yield text.count("\n", 0, match.start()) + 1
        # Adjacent literals are one; what is in front of the first counts for all.
        if text[end:].lstrip()[:1] != '"':
            statement += '""'


def main():
    faults = 0
    for path in sources(["src"], {".cpp", ".hpp"}):
        for line in faults_in(path.read_text(encoding="utf-8")):
            faults += 1
            print(f'{path.relative_to(ROOT)}:{line}: a plain literal is read as Latin-1; write U"..." or String::utf8("...")')
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

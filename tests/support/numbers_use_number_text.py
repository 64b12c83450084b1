#!/usr/bin/env python3
"""Fails when code outside core/shared/NumberText formats or reads a real number.

printf's and strtod's families follow the process locale, which a Qt host sets
from the desktop: in a decimal-comma locale they would write "1,5" into a SPICE
deck or read "1.5" as 1. NumberText is the one printer and reader that does not
depend on it. This check looks, outside comments, for
  - a printf-family call whose format holds a real conversion (%f %e %g %a),
  - the C and C++ readers of reals (strtod, atof, stod, sscanf and their kin),
  - stream manipulators that format reals (std::fixed, std::setprecision, ...),
  - std::to_string of a real: a real literal or cast, a name this file declares
    as double or float, or a member some header declares so.
Usage: numbers_use_number_text.py ROOT
"""

import pathlib
import re
import sys

ALLOWED = {"core/shared/NumberText.h", "core/shared/NumberText.cpp"}
FOLDERS = ["core", "ui", "module", "apps"]
SUFFIXES = {".h", ".hpp", ".cpp", ".cc"}

# Comments and literals; the digit separator of 1'000 is no character literal.
TOKENS = re.compile(
    r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\[^\n]{1,9}?|[^\'\\\n])\'', re.S)
REAL_CONVERSION = re.compile(r"%[-+ #0']*(?:\*|\d+)?(?:\.(?:\*|\d*))?(?:L|l|ll|h|q)?[fFeEgGaA]")
PRINTF_CALL = re.compile(r"\b\w*printf\s*\(")
REAL_READERS = re.compile(
    r"\b(?:strto(?:d|f|ld)|wcsto(?:d|f|ld)|atof|sto(?:d|f|ld)|v?[sf]?scanf)\s*\(")
REAL_MANIPULATORS = re.compile(
    r"\bstd::(?:fixed|scientific|hexfloat|defaultfloat|setprecision|showpoint)\b")
TO_STRING_CALL = re.compile(r"\bto_string\s*\(")
REAL_TYPE = r"(?:long\s+)?(?:double|float)"
REAL_DECLARATION = re.compile(REAL_TYPE + r"\b(?:\s+const\b)?\s*[&*]?\s*(\w+)")
REAL_HOLDER = re.compile(r"<\s*(?:const\s+)?" + REAL_TYPE + r"\s*>\s*[&*]?\s*(\w+)")
# Members and member functions: `double pad_x, pad_y;`, `double GetPeriod() const`.
REAL_MEMBERS = re.compile(
    r"\b" + REAL_TYPE + r"\s+(\w+(?:\s*,\s*\w+)*)\s*(?:\[[^\]]*\])?\s*([;={(])")
REAL_LITERAL = re.compile(r"(?<![\w.])(?:\d+\.\d*|\.\d+|\d+[eE][-+]?\d+)")
REAL_CAST = re.compile(r"static_cast\s*<\s*" + REAL_TYPE + r"\s*>|\(\s*" + REAL_TYPE + r"\s*\)")
INTEGER_CAST = re.compile(
    r"static_cast\s*<\s*(?:std::)?(?:u?int\w*|(?:unsigned\s+)?(?:long|long long|int|short|char)"
    r"|unsigned|size_t|ptrdiff_t)\s*>\s*\(")
# A name with the access before it, unless more access follows (in a.b.c only c counts).
NAME = re.compile(r"(\.|->|::)?\s*\b([A-Za-z_]\w*)\b(?!\s*(?:\.|->|::))")


def without_comments(text):
    """The text with comments blanked (line breaks kept); literals stay."""
    def blank(match):
        token = match.group(0)
        return re.sub(r"[^\n]", " ", token) if token.startswith("/") else token
    return TOKENS.sub(blank, text)


def call_arguments(text, open_paren):
    """The text between the parenthesis at `open_paren` and its partner."""
    depth = 0
    at = open_paren
    while at < len(text):
        literal = TOKENS.match(text, at)
        if literal:
            at = literal.end()
            continue
        if text[at] == "(":
            depth += 1
        elif text[at] == ")":
            depth -= 1
            if depth == 0:
                return text[open_paren + 1:at]
        at += 1
    return text[open_paren + 1:]


def string_literals(text):
    return [token for token in TOKENS.findall(text) if token.startswith('"')]


def string_literals_removed(text):
    """The text with the insides of literals blanked, so names in them do not count."""
    def blank(match):
        token = match.group(0)
        if token.startswith('"'):
            return '"' + " " * (len(token) - 2) + '"'
        return token
    return TOKENS.sub(blank, text)


def is_real_argument(argument, real_names, real_members):
    argument = argument.strip()
    cast = INTEGER_CAST.match(argument)
    if cast and len(call_arguments(argument, cast.end() - 1)) == len(argument) - cast.end() - 1:
        return False  # the whole argument is cast to an integer
    if REAL_LITERAL.search(argument) or REAL_CAST.search(argument):
        return True
    for access, name in NAME.findall(argument):
        if access in (".", "->") and name in real_members:
            return True
        if not access and name in real_names:
            return True
    return False


def main():
    root = pathlib.Path(sys.argv[1])
    files = sorted(path for folder in FOLDERS for path in (root / folder).rglob("*")
                   if path.suffix in SUFFIXES and path.is_file())
    declaring = files + sorted((root / "include").rglob("*.h"))
    code = {path: without_comments(path.read_text(encoding="utf-8")) for path in declaring}
    real_members = set()
    for path in declaring:
        for names, end in REAL_MEMBERS.findall(string_literals_removed(code[path])):
            # In a source file `double x = ...` is mostly a local; members end in ";".
            if path.suffix in (".h", ".hpp") or end == ";":
                real_members.update(name.strip() for name in names.split(","))

    offences = []
    for path in files:
        relative = path.relative_to(root).as_posix()
        if relative in ALLOWED:
            continue
        text = code[path]
        plain = string_literals_removed(text)
        real_names = set(REAL_DECLARATION.findall(plain)) | set(REAL_HOLDER.findall(plain))

        def offence(at, what):
            offences.append(f"{relative}:{text.count(chr(10), 0, at) + 1}: {what}")

        for match in PRINTF_CALL.finditer(plain):
            arguments = call_arguments(text, match.end() - 1)
            if any(REAL_CONVERSION.search(literal) for literal in string_literals(arguments)):
                offence(match.start(), "printf-family real conversion")
        for match in REAL_READERS.finditer(plain):
            offence(match.start(), f"{match.group(0).rstrip('( ')} reads a real")
        for match in REAL_MANIPULATORS.finditer(plain):
            offence(match.start(), f"{match.group(0)} formats a real")
        for match in TO_STRING_CALL.finditer(plain):
            argument = call_arguments(text, match.end() - 1)
            if is_real_argument(argument, real_names, real_members):
                offence(match.start(), f"to_string of a real: {argument.strip()}")

    if offences:
        print("Format and read real numbers through core/shared/NumberText, which does not "
              "follow the process locale:")
        print("\n".join(offences))
        return 1
    print(f"numbers use NumberText: {len(files)} files checked")
    return 0


if __name__ == "__main__":
    sys.exit(main())

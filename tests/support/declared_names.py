"""The names that a C header declares, for the checks of what is declared."""

import pathlib
import re
import subprocess

IDENTIFIER = re.compile(r"\b([A-Za-z_]\w*)\s*$")


def without_braces(text):
    """The text with the contents of all braces gone; an extern "C" block keeps its contents."""
    text = text.replace('extern "C" {', " ")
    kept, depth = [], 0
    for character in text:
        if character == "{":
            if depth == 0:
                kept.append("{}")
            depth += 1
        elif character == "}":
            depth -= 1
        elif depth == 0:
            kept.append(character)
    return "".join(kept)


def declared_names(preprocessed):
    """The functions and extern variables that a preprocessed header declares or defines."""
    text = re.sub(r"^\s*#.*$", "", preprocessed, flags=re.MULTILINE)
    text = re.sub(r"__attribute__\s*\(\(.*?\)\)", "", text)
    names = set()
    for statement in re.split(r";|(?<=\{\})", without_braces(text)):
        statement = " ".join(statement.split())
        if not statement or statement.startswith(("typedef", "struct", "union", "enum", "_Static_assert")):
            # A function may return a struct by its tag, but the headers name every struct by its typedef.
            continue
        if "(" in statement:
            match = IDENTIFIER.search(statement[: statement.index("(")])
        else:
            match = IDENTIFIER.search(statement) if statement.startswith("extern") else None
        if match and match.group(1).startswith("Zun"):
            names.add(match.group(1))
    return names


def preprocessed(compiler, root, source, *flags):
    """What the preprocessor makes of a C source: a file, or a text."""
    is_file = isinstance(source, pathlib.Path)
    command = [compiler, "-std=c11", "-E", "-P", "-I", str(root), *flags, "-x", "c", str(source) if is_file else "-"]
    return subprocess.run(command, input=None if is_file else source, capture_output=True, text=True, check=True).stdout


def sees_declarations():
    """Tries it out on declarations that it must see."""
    sample = """
      typedef struct ZunThing ZunThing; struct ZunThing { int (*ZunMember)(int); };
      ZunThing* ZunThingMake(ZunThing* p, void (*callback)(int)); extern int ZunCounter;
      inline int ZunThingGet(const ZunThing* p) { return p != 0 ? 1 : 0; } __attribute__((format(printf, 1, 2))) void
      ZunPrint(const char* format, ...);
    """
    return declared_names(sample) == {"ZunThingMake", "ZunCounter", "ZunThingGet", "ZunPrint"}

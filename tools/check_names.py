#!/usr/bin/env python3
"""Refuses a name that two files of a target give in their unnamed namespaces: they may be compiled together."""

import pathlib
import re
import sys

MODULE = ["manager", "importers", "conversion", "settings", "text", "excel", "netinfo", "logtools"]
UNNAMED = re.compile(r"^namespace ([\w:]+) \{\n(?:namespace (\w+) \{\n)?namespace \{\n(.*?)^\}  // namespace\n", re.M | re.S)
CONSTANT = re.compile(r"^(?:constexpr|const|inline constexpr)\b[^(={\n]*?\b(k\w+)(?:\[\w*\])* *[={(]", re.M)
TYPE = re.compile(r"^(?:(?:struct|class|enum class|enum) (\w+)\b|using (\w+ = [^;]*);)", re.M)
FUNCTION = re.compile(r"^(?!return|using|namespace|template|struct|class|enum)\w[\w:<>,&*\[\] ]+[ &*](\w+)\(([^;{]*)\) (?:const )?\{", re.M)


def target_of(path):
    parts = path.parts
    if parts[0] == "src":
        if parts[1] in MODULE:
            return "qloom_io"
        if parts[1] == "host":
            return "qloom_simulation" if parts[2] == "simulation" else "qloom_host"
        return "/".join(parts[1:-1]) if parts[1] == "apps" else parts[1]
    return "/".join(parts[:2])


def names_of(text):
    """Names of constants and types, and functions with the types of their parameters, each with what may be said twice."""
    for match in UNNAMED.finditer(text):
        space = match.group(1) + "::" + (match.group(2) or "")
        body = match.group(3)
        for name in CONSTANT.findall(body):
            yield space + "::" + name, ""
        for name, alias in TYPE.findall(body):
            yield space + "::" + (name or alias.split(" ")[0]), alias
        for name, parameters in FUNCTION.findall(body):
            types = [re.sub(r"\s*\w+(?: = .*)?$", "", p.strip()) for p in parameters.split(",")]
            yield space + "::" + name + "(" + ", ".join(types) + ")", ""


def main():
    root = pathlib.Path(sys.argv[1])
    owners = {}
    clashes = []
    for folder in ("src", "tests"):
        for path in sorted((root / folder).rglob("*.cpp")):
            name = path.relative_to(root)
            for given, alias in names_of(path.read_text(encoding="utf-8")):
                other, same = owners.setdefault((target_of(name), given), (name, alias))
                if other != name and not (alias and alias == same):
                    clashes.append(f"{name}: {given} is in {other}, too")
    print("\n".join(clashes))
    return 1 if clashes else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Refuses an include that points up the house, where each floor sees only the floors named to it here, and a dialog template
that the registry of templates lacks."""

import pathlib
import re
import sys

PLATFORM = {"platform"}
COMPONENTS = PLATFORM | {"components"}
MODULE = COMPONENTS | {"manager", "importers", "conversion", "text", "excel", "netinfo", "logtools", "settings", "resources"}
SEES = {
    "platform": PLATFORM,
    "components": COMPONENTS,
    "host": COMPONENTS | {"host"},
    "apps": MODULE | {"host", "apps"},
}
# Libraries that only these folders may know.
LIBRARIES = {
    "sqlite3.h": ("src/host/project", "src/host/netdb", "src/host/sinks/geopackage"),
    "pugixml.hpp": ("src/host",),
    "minizip/": ("src/host/workbook",),
    "expat.h": ("src/host/workbook", "src/host/recordings", "src/host/sinks/text_layers"),
    "pcap/": ("src/host/recordings",),
    "uchardet/": ("src/host/encodings",),
    "freexl.h": ("src/host/workbook",),
    "nlohmann/": ("src/host/logstore", "src/host/simulation", "src/host/sinks/text_layers", "src/apps"),
    "ogr": ("src/host/sinks/gdal",),
    "gdal": ("src/host/sinks/gdal",),
    "cpl_": ("src/host/sinks/gdal",),
    "isa-l/": ("src/host/workbook",),
    "CLI/": ("src/apps",),
    "Q": ("src/apps/qloom-desktop",),
}

# The rooms of a floor, from the ground up; those of one row do not see each other.
ROOMS = [
    ({"resources", "conversion"}, {"settings"}, {"importers"}, {"text", "netinfo", "excel", "logtools"}, {"manager"}),
    ({"host/basics", "host/encodings", "host/logstore", "host/streams", "host/catalogue", "host/markup", "host/workbook"},
     {"host/decoder", "host/autotest", "host/communicator", "host/simulation", "host/recordings", "host/project"},
     {"host/netdb"},
     {"host/subjects", "host/analysis"},
     {"host/sinks"}),
    ({"sinks/geopackage", "sinks/text_layers", "sinks/gdal"},),
    ({"text/navigator"}, {"text/dialect", "text/import", "text/selection"}, {"text/export"}),
    ({"apps/text_files", "apps/report"}, {"apps/qloom", "apps/qloom-desktop"}),
]
STOREY = {room: storey for rooms in ROOMS for storey, row in enumerate(rooms) for room in row}

INCLUDE = re.compile(r'^\s*#include\s+(["<])([^">]+)[">]', re.MULTILINE)


def rooms_of(path):
    """The rooms that a file below src/ lies in, as ROOMS names them, by the folder that holds the room."""
    folders = path.split("/")[:-1]
    names = ["/".join(folders[:depth]) for depth in range(1, len(folders) + 1)]
    return {name.rpartition("/")[0]: name for name in names if name in STOREY}


def climbs(path, target):
    here, there = rooms_of(path), rooms_of(target)
    return any(here[at] != there[at] and STOREY[here[at]] <= STOREY[there[at]] for at in here.keys() & there.keys())


def faults(root):
    for path in sorted((root / "src").rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        name = path.relative_to(root).as_posix()
        floor = name.split("/")[1]
        allowed = SEES.get(floor, MODULE)
        for quote, target in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if quote == '"' and target.split("/")[0] not in allowed:
                yield f"{name}: includes {target}, which {floor} does not see"
            if quote == '"' and climbs(name.removeprefix("src/"), target):
                yield f"{name}: includes {target}, a room that does not lie below"
            for library, folders in LIBRARIES.items():
                if quote == "<" and target.startswith(library) and not name.startswith(folders):
                    yield f"{name}: includes {target}, which only {', '.join(folders)} may know"


def forgotten_templates(root):
    resources = root / "src/resources"
    listed = (resources / "templates.h").read_text(encoding="utf-8")
    for path in sorted(resources.glob("*_templates.h")):
        for name in re.findall(r"constexpr DialogTemplate (\w+)", path.read_text(encoding="utf-8")):
            if f"&{name}," not in listed:
                yield f"{path.relative_to(root).as_posix()}: {name} is not in src/resources/templates.h"


def main():
    root = pathlib.Path(sys.argv[1])
    found = [*faults(root), *forgotten_templates(root)]
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

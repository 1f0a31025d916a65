#!/usr/bin/env python3
"""check_reports.py KORVEL: runs every subcommand with --json in a scratch directory and compares what it
prints with docs/report.schema.json. Every report must be valid, and every member that the schema
describes must occur in one of them. Exit status 1 if not, 77 without the package python3-jsonschema."""

import json
import os
import pathlib
import subprocess
import sys
import tempfile

try:
    import jsonschema
except ImportError:
    print("python3-jsonschema is not installed")
    sys.exit(77)

ROOT = pathlib.Path(__file__).resolve().parent.parent
KORVEL = str(pathlib.Path(sys.argv[1]).resolve())
STATES = ROOT / "data/us-states.curves"

FILES = {
    # A square in two parts with a loose end, a bridge to an island, and a sliver.
    "curves": "6 5 0 0 20 0 20 20 0 20 0 0 2 10 -5 10 20 2 10 20 10 0"
    " 4 4 4 6 4 4 6 4 4 2 4 4 0 0 3 30 30 31 31 32 31",
    "bow_tie": "4 0.0 0.0 9.0 9.0 9.0 0.0 0.0 9.0 1 4 0 1 2 3 1 1 0",
    "broken": "5 0 0 0 6 0 0 0 6 0 0 0 6 1 1 1 5 0 1 2 0 1 3 0 2 3 1 2 9 1 1 2 1 5 80 .5 .5 0 1 2 3 4",
    "turned": "4 0 0 0 6 0 0 0 6 0 0 0 6 5 0 1 2 0 1 3 0 2 3 1 2 3 1 2 3 1 5 80 .5 .5 0 1 2 3 4",
    "lands": '{"type": "LineString", "coordinates": [[0, 1, 2], [1, 0, 3]]}',
    # A ring with a hole, and a polygon that overlaps it.
    "polygons": '{"type": "GeometryCollection", "geometries": [{"type": "Polygon", "coordinates": '
    "[[[0, 0], [3, 0], [3, 3.25], [0, 0]], [[2, 1], [2.5, 1], [2.5, 2], [2, 1]]]}, "
    '{"type": "Polygon", "coordinates": [[[1, -1], [2, -1], [2, 1], [1, -1]]]}]}',
    "place": '{"type": "Point", "coordinates": [0.5, 0.25]}',
    "down": "4 0.0 0.0 9.0 0.0 9.0 9.0 0.0 9.0 1 4 0 1 2 3 1 1 0\ngrid 0.1 origin 0 0 down",
    "open": "4 0 0 0 6 0 0 0 6 0 0 0 6 3 0 1 2 0 1 3 0 2 3 1 3 80 .5 .5 0 1 2",
}

# The command lines, with the exit status where it is not 0.
RUNS = [
    ("regions curves -o regions --picture regions.png --size 200x200", 0),
    ("regions curves --select 5,5 --select 50,50", 0),
    ("regions curves --seed 15,10", 0),
    ("regions curves --select 50,50", 2),
    ("regions broken", 2),
    (f"regions {STATES} --picture states.png --size 200x200", 0),
    ("triangles regions", 0),
    ("triangles bow_tie", 0),
    ("triangles bow_tie --strict", 3),
    ("locate regions 5,5 50,50", 0),
    ("solid regions --levels 0,5 -o model", 0),
    ("solid bow_tie --levels 0,5 -o none", 2),
    ("starter cube --size 4,4,4 -o cube", 0),
    ("starter ball --size 3 --center 0,0,1000 -o ball", 0),
    ("convert model mesh.ply", 0),
    ("convert mesh.ply mesh.obj", 0),
    ("info mesh.ply", 0),
    ("check mesh.ply", 0),
    ("check mesh.ply --fix -o fixed.off", 0),
    ("merge mesh.ply cube -o merged", 0),
    ("view mesh.ply --pick 0,0", 0),
    ("section mesh.ply --plane x=5 -o cut", 0),
    ("section model --plane x=5 -o section --picture section.png --size 200x200", 0),
    ("section model --plane 1,1,1,-20", 0),
    ("section model --plane z=9", 0),
    ("section open --plane z=1", 0),
    ("section model --plane z=1 --sweep 3 --picture sweep.png --size 200x200", 0),
    ("view model --pick 0,0 --verbose", 0),
    ("view model --pick 900,900", 0),
    ("view cube --picture cube.png --size 64x64", 0),
    ("view cube --picture cube.png --size 64x64 --view 100,100,200,200", 0),
    ("merge cube ball -o both", 0),
    ("weld model -o welded", 0),
    ("clean both --delete 0 -o cleaned", 0),
    ("inside cube 0,0,0 9,9,9", 0),
    ("move cube --body 0 --by 1,2,3 -o moved", 0),
    ("info curves", 0),
    ("info regions", 0),
    ("info model", 0),
    ("info section", 0),
    ("triangles regions -o triangles", 0),
    ("info triangles", 0),
    ("check model", 0),
    ("check broken", 2),
    ("check turned --fix -o fixed", 0),
    ("convert lands converted.geojson", 0),
    ("regions polygons --labels place", 0),
    ("regions lands", 0),
    ("solid polygons --levels 0,5 -o placed", 0),
    ("info down", 0),
    ("info polygons", 0),
    ("check polygons", 0),
    ("formats", 0),
]


def resolved(node, schema):
    while "$ref" in node:
        node = schema["definitions"][node["$ref"].rsplit("/", 1)[1]]
    return node


def note_members(value, node, path, used, schema):
    """Adds the paths of all members of a value, as the schema names them."""
    node = resolved(node, schema)
    if isinstance(value, dict):
        for name, member in value.items():
            here = node.get("properties", {}).get(name, node.get("additionalProperties"))
            if isinstance(here, dict):
                used.add(f"{path}.{name}")
                note_members(member, here, f"{path}.{name}", used, schema)
    elif isinstance(value, list) and isinstance(node.get("items"), dict):
        for item in value:
            note_members(item, node["items"], path, used, schema)


def described_members(node, path, schema):
    node = resolved(node, schema)
    for name, member in node.get("properties", {}).items():
        yield f"{path}.{name}"
        yield from described_members(member, f"{path}.{name}", schema)
    if isinstance(node.get("items"), dict):
        yield from described_members(node["items"], path, schema)


schema = json.loads((ROOT / "docs/report.schema.json").read_text())
validator = jsonschema.Draft7Validator(schema)
used, problems = set(), []
with tempfile.TemporaryDirectory() as scratch:
    os.chdir(scratch)
    for name, text in FILES.items():
        pathlib.Path(name).write_text(text + "\n")
    for arguments, status in RUNS:
        run = subprocess.run([KORVEL, *arguments.split(), "--json"], capture_output=True, text=True)
        if run.returncode != status:
            problems.append(f"korvel {arguments}: status {run.returncode}, {run.stderr}")
        try:
            report = json.loads(run.stdout)
        except json.JSONDecodeError as error:
            problems.append(f"korvel {arguments}: {error}")
            continue
        for error in validator.iter_errors(report):
            where = "/".join(map(str, error.absolute_path))
            problems.append(f"korvel {arguments}: {where}: {error.message[:300]}")
        note_members(report, schema, "", used, schema)
problems += [f"{name}: in no report" for name in described_members(schema, "", schema) if name not in used]

print(*problems, sep="\n")
print(f"{len(RUNS)} reports checked")
sys.exit(1 if problems else 0)

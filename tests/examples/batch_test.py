#!/usr/bin/env python3
"""batch_test.py PROGRAM EXAMPLES WORK: a batch of 50 scenes, some of them broken, through examples/batch."""

import base64
import json
import os
import pathlib
import shutil
import struct
import subprocess
import sys

PROGRAM, EXAMPLES, WORK = map(pathlib.Path, sys.argv[1:4])
BROKEN = {"truncated": "parts/scene 07.gltf", "index beyond the points": "parts/scene 13.gltf",
          "empty": "parts/scene 21.gltf", "no such buffer": "scene 34.gltf", "no STL": "parts/scene 41.stl"}
FACET = """solid a
facet normal 0 0 1
outer loop
vertex 0 0 0
vertex 1 0 0
vertex 0 1 0
endloop
endfacet
endsolid a
"""
# Stands for ssh: runs the command here.
SSH = """#!/bin/sh
while [ "${1#machine-}" = "$1" ]; do shift; done
shift
[ "$1" != -- ] || shift
exec sh -c "$*"
"""


def gltf(triangles, buffer=None, last_index=None, picture=None):
    """A fan of triangles around the first point."""
    points = [(0, 0, 0)] + [(10, i, i * i) for i in range(triangles + 1)]
    indices = [index for i in range(triangles) for index in (0, i + 1, i + 2)]
    if last_index is not None:
        indices[-1] = last_index
    data = b"".join(struct.pack("<3f", *p) for p in points) + struct.pack(f"<{len(indices)}H", *indices)
    scene = {
        "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}], "nodes": [{"mesh": 0, "name": "Größe"}],
        "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "indices": 1, "material": 0}]}],
        "materials": [{"pbrMetallicRoughness": {"baseColorTexture": {"index": 0}} if picture else {}}],
        "accessors": [{"bufferView": 0, "componentType": 5126, "count": len(points), "type": "VEC3",
                       "min": [0, 0, 0], "max": [10, triangles, triangles ** 2]},
                      {"bufferView": 1, "componentType": 5123, "count": len(indices), "type": "SCALAR"}],
        "bufferViews": [{"buffer": 0, "byteLength": 12 * len(points)},
                        {"buffer": 0, "byteOffset": 12 * len(points), "byteLength": 2 * len(indices)}],
        "buffers": [{"byteLength": len(data),
                     "uri": buffer or "data:application/octet-stream;base64," + base64.b64encode(data).decode()}]}
    if picture:
        scene |= {"textures": [{"source": 0}], "images": [{"uri": picture}]}
    return json.dumps(scene)


def make_scenes():
    """50 scenes with 1 to 50 triangles; returns their names in the order of the batch."""
    names = [f"{'parts/' if i % 2 else ''}scene {i:02}.{'stl' if i == 41 else 'gltf'}" for i in range(1, 51)]
    (WORK / "parts").mkdir(parents=True)
    texts = {name: gltf(number) for number, name in enumerate(names, 1)}
    texts[names[29]] = gltf(30, picture="lost.png")  # a missing texture is told, and no failure
    texts[BROKEN["truncated"]] = texts[BROKEN["truncated"]][:300]
    texts[BROKEN["index beyond the points"]] = gltf(13, last_index=15)
    texts[BROKEN["empty"]] = ""
    texts[BROKEN["no such buffer"]] = gltf(34, buffer="lost.bin")
    texts[BROKEN["no STL"]] = "solid nonsense"
    for name, text in texts.items():
        (WORK / name).write_text(text, encoding="utf-8")
    return sorted(names)


def batch(scenes, *options):
    """Runs the batch; returns its exit code and the rows that it added to the job log, as (host, line of the list)."""
    log = WORK / "out/jobs.log"
    before = len(log.read_text().splitlines()) if log.exists() else 1
    run = subprocess.run([EXAMPLES / "batch/export-batch", "out", *options], input="\n".join(scenes) + "\n", text=True,
                         cwd=WORK, capture_output=True, timeout=240, env=os.environ | {"ORVELPRC": str(PROGRAM)})
    rows = [row.split("\t") for row in log.read_text().splitlines()[before:]]
    assert len(rows) > 0, run.stderr
    return run.returncode, [(row[1], int(row[0])) for row in rows]


def report():
    run = subprocess.run([EXAMPLES / "batch/join-reports", "out"], capture_output=True, text=True, cwd=WORK, timeout=60)
    return run.returncode, json.loads(run.stdout)


def lines_of(rows):
    return sorted(line for _, line in rows)


def test_exactly_the_broken_scenes_fail(scenes):
    broken = {name: scenes.index(name) + 1 for name in BROKEN.values()}
    first = scenes[:20]
    code, rows = batch(first)
    assert code == 1 and lines_of(rows) == list(range(1, 21)), rows

    # All of them: what is done is left alone, what failed is tried again.
    code, rows = batch(scenes)
    again = [line for line in broken.values() if line <= 20]
    assert len(again) in range(1, 5)
    assert code == 1 and lines_of(rows) == sorted(again + list(range(21, 51))), rows

    code, joined = report()
    assert code == 1 and (joined["scenes"], joined["exported"], joined["failed"], joined["left"]) == (50, 45, 5, 0), joined
    assert {failure["scene"] for failure in joined["failures"]} == set(BROKEN.values())
    assert all(failure["exitCode"] == 1 and failure["scene"] in failure["reason"] for failure in joined["failures"]), joined
    assert joined["trianglesPlaced"] == sum(range(1, 51)) - (7 + 13 + 21 + 34 + 41)
    assert joined["bytes"] == sum(file.stat().st_size for file in (WORK / "out").rglob("*.prc"))
    assert joined["withWarnings"] == 1
    written = {str(file.relative_to(WORK / "out")) for file in (WORK / "out").rglob("*.prc")}
    assert written == {f"{name}.prc" for name in scenes if name not in broken}


def test_a_resume_does_only_what_is_left(scenes):
    for number, name in enumerate(BROKEN.values()):
        (WORK / name).write_text(gltf(60 + number) if name.endswith("gltf") else FACET, encoding="utf-8")
    ssh = WORK / "ssh"
    ssh.write_text(SSH, encoding="utf-8")
    ssh.chmod(0o755)
    shutil.copy(WORK / scenes[0], WORK / "added later.gltf")
    expected = sorted([scenes.index(name) + 1 for name in BROKEN.values()] + [51])
    code, rows = batch(scenes + ["added later.gltf"], "--sshlogin", f"1/{ssh} machine-a,1/{ssh} machine-b")
    assert code == 0 and lines_of(rows) == expected, rows
    assert {host.split()[-1] for host, _ in rows} == {"machine-a", "machine-b"}, rows
    code, joined = report()
    assert code == 0 and (joined["scenes"], joined["exported"]) == (51, 51), joined["failures"]

    (WORK / "out/added later.gltf.prc").unlink()
    code, joined = report()
    assert code == 1 and [failure["scene"] for failure in joined["failures"]] == ["added later.gltf"]


if __name__ == "__main__":
    shutil.rmtree(WORK, ignore_errors=True)
    ALL = make_scenes()
    test_exactly_the_broken_scenes_fail(ALL)
    test_a_resume_does_only_what_is_left(ALL)

"""The input files that the documents name, made of the demo scene and of small files of the tests."""

import json
import shutil
import struct
import subprocess

import markdown

def pack(gltf, glb, animation_names=()):
    """Makes one glb of a glTF file, its buffer and its pictures; animations may get other names."""
    scene = json.loads(gltf.read_text(encoding="utf-8"))
    data = bytearray((gltf.parent / scene["buffers"][0]["uri"]).read_bytes())
    for image in scene.get("images", []):
        picture = (gltf.parent / image.pop("uri")).read_bytes()
        scene["bufferViews"].append({"buffer": 0, "byteOffset": len(data), "byteLength": len(picture)})
        image |= {"bufferView": len(scene["bufferViews"]) - 1, "mimeType": "image/png"}
        data += picture + bytes(-len(picture) % 4)
    scene["buffers"] = [{"byteLength": len(data)}]
    for animation, name in zip(scene["animations"], animation_names):
        animation["name"] = name
    text = json.dumps(scene).encode()
    text += b" " * (-len(text) % 4)
    glb.write_bytes(struct.pack("<III", 0x46546C67, 2, 28 + len(text) + len(data)) + struct.pack("<II", len(text), 0x4E4F534A) +
                    text + struct.pack("<II", len(data), 0x4E4942) + data)


def chair(gltf, names):
    """The demo scene with the names that the guide to scene scripts uses."""
    scene = json.loads(gltf.read_text(encoding="utf-8"))
    for material, name in zip(scene["materials"], names):
        material["name"] = name
    orrery = next(node for node in scene["nodes"] if node["name"] == "Orrery")
    next(scene["nodes"][child] for child in orrery["children"] if scene["nodes"][child]["name"] != "Dome")["name"] = "Arm"
    path = gltf.with_name("chair.gltf")
    path.write_text(json.dumps(scene), encoding="utf-8")
    return path


def first_json(document):
    return next(block.text for block in markdown.blocks(document.read_text(encoding="utf-8")) if block.language == "json")


def make(program, assembly, root, folder):
    """Makes the inputs in `folder`; returns it. `assembly` is the program of the host guide."""
    def orvelprc(*arguments):
        subprocess.run([program, *arguments, "--quiet"], cwd=folder, check=True)

    folder.mkdir(parents=True)
    subprocess.run([root / "examples/make-demo-scene", "demo"], cwd=folder, check=True, stdout=subprocess.DEVNULL)
    demo = folder / "demo/demo.gltf"
    for name in ("examples", "scripts"):
        (folder / name).symlink_to(root / name)
    (folder / "chair.script.json").write_text(first_json(root / "docs/scene-script.md"), encoding="utf-8")
    subprocess.run([assembly], cwd=folder, check=True, stdout=subprocess.DEVNULL)
    (folder / "models").mkdir()
    pack(demo, folder / "engine.glb")
    pack(demo, folder / "robot.glb", ["Walk", "Wave"])
    pack(chair(demo, ["Paint", "Lamp"]), folder / "chair.glb")
    shutil.copy(demo, folder / "scene.gltf")
    shutil.copy(folder / "demo/demo.bin", folder)
    shutil.copytree(folder / "demo/textures", folder / "textures")
    shutil.copy(root / "tests/data/import/hinge.fbx", folder / "scene.fbx")
    shutil.copy(root / "tests/data/import/hinge.fbx", folder / "house.fbx")
    orvelprc("export", "engine.glb", "-o", "chair.prc")
    orvelprc("convert", "chair.prc", "-o", "part.stl")
    for name in ("a", "b"):
        shutil.copy(folder / "chair.glb", folder / f"models/{name}.glb")
    shutil.copy(folder / "engine.glb", folder / "pump.glb")
    shutil.copy(folder / "chair.prc", folder / "pump.prc")
    orvelprc("convert", "pump.prc", "-o", "pump.obj")
    subprocess.run([root / "examples/make-data-sheet", "sheet.pdf"], cwd=folder, check=True)
    orvelprc("export", "chair.prc", "-o", "a.pdf", "--poster-dpi", "20")
    shutil.copy(folder / "a.pdf", folder / "b.pdf")
    subprocess.run(["qpdf", "--empty", "--pages", "a.pdf", "b.pdf", "--", "manual.pdf"], cwd=folder, check=True)
    return folder

"""Writes a tree of nodes as a glTF 2.0 file with one buffer file and PNG pictures beside it."""

import json
import pathlib
import struct

ARRAY_BUFFER, ELEMENT_ARRAY_BUFFER = 34962, 34963
UNSIGNED_SHORT, UNSIGNED_INT, FLOAT = 5123, 5125, 5126


class Animation:
    """A named clip: tracks of nodes, and of properties of materials as the rest of a JSON pointer below the material."""

    def __init__(self, name):
        self.name, self.tracks = name, []

    def add(self, target, path, times, values, interpolation="LINEAR"):
        """`target` is a Node or a material. `times` are seconds; `values` tuples, one for each time, of a
        "CUBICSPLINE" three: tangent before, value, tangent behind."""
        self.tracks.append((target, path, times, values, interpolation))


class Mesh:
    """A geometry in a material. Nodes that share a mesh share it in the file; meshes that share a geometry share its
    accessors."""

    def __init__(self, name, geometry, material):
        self.name, self.geometry, self.material = name, geometry, material


class Node:
    """A named node; `rotation` is a quaternion x, y, z, w."""

    def __init__(self, name, mesh=None, translation=None, rotation=None, scale=None, camera=None):
        self.name, self.mesh, self.camera, self.children = name, mesh, camera, []
        self.translation, self.rotation, self.scale = translation, rotation, scale

    def add(self, *args, **kwargs):
        """Makes a node, or takes one, as the last child; returns it."""
        node = args[0] if isinstance(args[0], Node) else Node(*args, **kwargs)
        self.children.append(node)
        return node


class Writer:
    """Collects a scene and writes it. Materials are glTF material objects whose `baseColorTexture` holds the
    name of a picture instead of an index."""

    def __init__(self, generator):
        self._document = {"asset": {"version": "2.0", "generator": generator}, "scene": 0}
        self._buffer = bytearray()
        self._known = {}     # id of a geometry, mesh, material or node -> index; the objects stay alive in _kept
        self._kept = []
        self._textures = {}  # picture name -> texture index
        self._variants = []  # of each variant the pairs of a material and the one that replaces it

    def write(self, folder, name, scene_name, roots, pictures, animations=(), variants=()):
        """Writes `name`.gltf, `name`.bin and textures/*.png; `pictures` maps the used names to `Picture`s. A variant is
        a name and a list of pairs: a material and the one that replaces it."""
        folder = pathlib.Path(folder)
        self._variants = [pairs for _, pairs in variants]
        nodes = [self._once(root, self._node) for root in roots]
        for animation in animations:
            self._animation(animation)
        if variants:
            self._use("KHR_materials_variants")
            self._document["extensions"] = {"KHR_materials_variants": {"variants": [{"name": n} for n, _ in variants]}}
        self._document["scenes"] = [{"name": scene_name, "nodes": nodes}]
        self._document["buffers"] = [{"uri": name + ".bin", "byteLength": len(self._buffer)}]
        (folder / "textures").mkdir(parents=True, exist_ok=True)
        for picture in self._textures:
            (folder / "textures" / (picture + ".png")).write_bytes(pictures[picture].png())
        (folder / (name + ".bin")).write_bytes(self._buffer)
        path = folder / (name + ".gltf")
        path.write_text(json.dumps(self._document, indent=1, ensure_ascii=False) + "\n", encoding="utf-8")
        return path

    def _append(self, key, value):
        self._document.setdefault(key, []).append(value)
        return len(self._document[key]) - 1

    def _once(self, thing, make):
        if id(thing) not in self._known:
            self._kept.append(thing)
            self._known[id(thing)] = make(thing)
        return self._known[id(thing)]

    def _node(self, node):
        value = {"name": node.name}
        for field in ("translation", "rotation", "scale"):
            numbers = getattr(node, field)
            if numbers is not None:
                value[field] = [float(n) for n in numbers]
        if node.mesh is not None:
            value["mesh"] = self._once(node.mesh, self._mesh)
        if node.camera is not None:
            value["camera"] = self._append("cameras", node.camera)
        index = self._append("nodes", value)
        children = [self._once(child, self._node) for child in node.children]
        if children:
            value["children"] = children
        return index

    def _mesh(self, mesh):
        primitive = dict(self._once(mesh.geometry, self._geometry))
        primitive["material"] = self._once(mesh.material, self._material)
        mappings = [{"variants": [number], "material": self._once(replacement, self._material)}
                    for number, pairs in enumerate(self._variants)
                    for material, replacement in pairs if material is mesh.material]
        if mappings:
            primitive["extensions"] = {"KHR_materials_variants": {"mappings": mappings}}
        return self._append("meshes", {"name": mesh.name, "primitives": [primitive]})

    def _geometry(self, geometry):
        index_format = ("H", UNSIGNED_SHORT) if len(geometry.positions) < 65536 else ("I", UNSIGNED_INT)
        return {"attributes": {"POSITION": self._vectors(geometry.positions, "VEC3", with_bounds=True),
                               "NORMAL": self._vectors(geometry.normals, "VEC3"),
                               "TEXCOORD_0": self._vectors(geometry.uvs, "VEC2")},
                "indices": self._accessor(geometry.indices, *index_format, "SCALAR", len(geometry.indices),
                                          ELEMENT_ARRAY_BUFFER)}

    def _vectors(self, vectors, kind, with_bounds=False):
        # Adding 0 turns -0 into 0: equal points have equal bytes.
        flat = [float(c) + 0.0 for v in vectors for c in v]
        index = self._accessor(flat, "f", FLOAT, kind, len(vectors), ARRAY_BUFFER)
        if with_bounds:
            stored = [struct.unpack("<3f", struct.pack("<3f", *v)) for v in vectors]
            self._document["accessors"][index].update(min=[min(axis) for axis in zip(*stored)],
                                                      max=[max(axis) for axis in zip(*stored)])
        return index

    def _accessor(self, numbers, code, component_type, kind, count, target):
        data = struct.pack("<%d%s" % (len(numbers), code), *numbers)
        view = {"buffer": 0, "byteOffset": len(self._buffer), "byteLength": len(data)}
        view = self._append("bufferViews", {**view, "target": target} if target else view)
        self._buffer += data + bytes(-len(data) % 4)
        return self._append("accessors", {"bufferView": view, "componentType": component_type, "count": count,
                                          "type": kind})

    def _use(self, extension):
        used = self._document.setdefault("extensionsUsed", [])
        if extension not in used:
            used.append(extension)

    def _animation(self, animation):
        channels, samplers = [], []
        for target, path, times, values, interpolation in animation.tracks:
            kind = {1: "SCALAR", 3: "VEC3", 4: "VEC4"}[len(values[0])]
            flat = [float(number) for value in values for number in value]
            clock = self._accessor([float(time) for time in times], "f", FLOAT, "SCALAR", len(times), None)
            self._document["accessors"][clock].update(min=[float(times[0])], max=[float(times[-1])])
            samplers.append({"input": clock, "interpolation": interpolation,
                             "output": self._accessor(flat, "f", FLOAT, kind, len(values), None)})
            channels.append({"sampler": len(samplers) - 1, "target": self._target(target, path)})
        self._append("animations", {"name": animation.name, "channels": channels, "samplers": samplers})

    def _target(self, target, path):
        if isinstance(target, Node):
            return {"node": self._known[id(target)], "path": path}
        self._use("KHR_animation_pointer")
        pointer = "/materials/%d/%s" % (self._known[id(target)], path)
        return {"path": "pointer", "extensions": {"KHR_animation_pointer": {"pointer": pointer}}}

    def _material(self, material):
        value = dict(material)
        surface = value["pbrMetallicRoughness"] = dict(value["pbrMetallicRoughness"])
        if "baseColorTexture" in surface:
            surface["baseColorTexture"] = {"index": self._texture(surface["baseColorTexture"])}
        return self._append("materials", value)

    def _texture(self, picture):
        if picture not in self._textures:
            if not self._textures:
                self._append("samplers", {"wrapS": 10497, "wrapT": 10497, "magFilter": 9729, "minFilter": 9987})
            image = self._append("images", {"name": picture, "uri": "textures/%s.png" % picture})
            self._textures[picture] = self._append("textures", {"sampler": 0, "source": image})
        return self._textures[picture]

// Small scenes in glTF. All of them show triangles with the corners (0, 0, 0), (0.2, 0, 0), (0, 0.3, 0.5).

"use strict";

class Gltf {
    constructor() {
        this.floats = [];
        this.document = { asset: { version: "2.0" }, scene: 0, accessors: [], bufferViews: [] };
        this.corners = this.accessor("VEC3", 3, [0, 0, 0, 0.2, 0, 0, 0, 0.3, 0.5]);
    }

    accessor(type, width, values) {
        const { accessors, bufferViews } = this.document;
        bufferViews.push({ buffer: 0, byteOffset: 4 * this.floats.length, byteLength: 4 * values.length });
        this.floats.push(...values);
        return accessors.push({ bufferView: accessors.length, componentType: 5126, type,
            count: values.length / width }) - 1;
    }

    track(times, type, width, values) {
        return { input: this.accessor("SCALAR", 1, times), output: this.accessor(type, width, values) };
    }

    mesh(material, more) {
        return { primitives: [{ attributes: { POSITION: this.corners }, material, ...more }] };
    }

    finish(members) {
        const bytes = Buffer.from(Float32Array.from(this.floats).buffer);
        const uri = "data:application/octet-stream;base64," + bytes.toString("base64");
        return { ...this.document, ...members, buffers: [{ byteLength: bytes.length, uri }] };
    }
}

const half = Math.SQRT1_2;
const paint = (r, g, b) => ({ pbrMetallicRoughness: { baseColorFactor: [r, g, b, 1], metallicFactor: 0 } });

/// A robot that swings its arm and turns from red to blue, beside two bolts that share a name, one of which jumps in a
/// second clip; a camera on a dolly, rolled by 30 degrees; and a variant of the paint.
function robot() {
    const gltf = new Gltf();
    const variants = { KHR_materials_variants: { mappings: [{ material: 1, variants: [0] }] } };
    const color = { pointer: "/materials/0/pbrMetallicRoughness/baseColorFactor" };
    return gltf.finish({
        extensionsUsed: ["KHR_animation_pointer", "KHR_materials_variants"],
        extensions: { KHR_materials_variants: { variants: [{ name: "Hiver \u00e9" }] } },
        scenes: [{ nodes: [0, 6] }],
        nodes: [
            { name: "robot", children: [1, 3, 4, 5] },
            { name: "arm", children: [2], translation: [0, 0.5, 0] },
            { name: "fist", mesh: 0, translation: [1, 0, 0] },
            { name: "bolt", mesh: 1, translation: [2, 0, 0] },
            { name: "bolt", mesh: 2, translation: [3, 0, 0] },
            { name: "Geh\u00e4use", children: [8] },
            { name: "dolly", children: [7] },
            { name: "view", camera: 0, translation: [0, 0, 10],
                rotation: [0, 0, Math.sin(Math.PI / 12), Math.cos(Math.PI / 12)] },
            { name: "lid", mesh: 2, translation: [0, 7, 0] }
        ],
        cameras: [{ type: "perspective", perspective: { yfov: 0.5, znear: 0.1 } }],
        materials: [{ name: "paint", ...paint(1, 0, 0) }, { name: "steel", ...paint(0, 1, 0) }],
        meshes: [gltf.mesh(0, { extensions: variants }), gltf.mesh(1), gltf.mesh(1)],
        animations: [{
            name: "swing",
            samplers: [
                gltf.track([0, 1, 2], "VEC4", 4, [0, 0, 0, 1, 0, 0, half, half, 0, 0, half, half]),
                gltf.track([0, 1, 2], "VEC3", 3, [0, 0, 0, 4, 0, 0, 4, 0, 0]),
                gltf.track([0, 1], "VEC4", 4, [1, 0, 0, 1, 0, 0, 1, 1])
            ],
            channels: [
                { sampler: 0, target: { node: 1, path: "rotation" } },
                { sampler: 1, target: { node: 6, path: "translation" } },
                { sampler: 2, target: { path: "pointer", extensions: { KHR_animation_pointer: color } } }
            ]
        }, {
            name: "jump",
            samplers: [gltf.track([0, 1], "VEC3", 3, [3, 0, 0, 3, 1, 0])],
            channels: [{ sampler: 0, target: { node: 4, path: "translation" } }]
        }]
    });
}

const robotScript = {
    states: [{ name: "Ghost", materials: [{ material: "paint", opacity: 0.25 }] }],
    sequences: [{ name: "grip", from: 3, to: 8 }],
    visibility: [{ node: "Geh\u00e4use", visible: false }]
};

/// Three nodes that turn once about z in a second: one grows meanwhile, one is a mirrored one, one shrinks to nothing.
function turners() {
    const gltf = new Gltf();
    const turn = gltf.track([0, 0.25, 0.5, 0.75, 1], "VEC4", 4,
        [0, 0, 0, 1, 0, 0, half, half, 0, 0, 1, 0, 0, 0, half, -half, 0, 0, 0, -1]);
    return gltf.finish({
        scenes: [{ nodes: [0, 1, 2] }],
        nodes: [{ name: "growing", mesh: 0 }, { name: "mirrored", mesh: 0, scale: [-2, 3, 1] },
            { name: "shrinking", mesh: 0 }],
        meshes: [gltf.mesh()],
        animations: [{
            samplers: [turn, gltf.track([0, 1], "VEC3", 3, [1, 1, 1, 3, 2, 1]),
                gltf.track([0, 1], "VEC3", 3, [1, 1, 1, 0, 0, 0])],
            channels: [0, 1, 2].map((node) => ({ sampler: 0, target: { node, path: "rotation" } })).concat(
                [{ sampler: 1, target: { node: 0, path: "scale" } }, { sampler: 2, target: { node: 2, path: "scale" } }])
        }]
    });
}

module.exports = { robot, robotScript, turners };

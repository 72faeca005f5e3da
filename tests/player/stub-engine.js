// A stand-in for the script engine of a 3D viewer: the documented objects and nothing else. What a script asks for that is
// not documented is noted in `faults`, and so is what a viewer would not do (hide a group, assign a transform).
//
// Options: lacks (["runtime.pause", "MenuEventHandler", ...]: not in this viewer), wrapper (a node of the viewer's own
// above the file's), suffix (put behind each name), transposed (order of matrix numbers), strangerFirst (a light before
// the children of each node), up ("direction", "point" or "none": what a camera tells), rollZero (the axis that points
// up without roll), rollSign.

"use strict";

const vm = require("node:vm");

const identity = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1];

function transpose(m) {
    return m.map((_, i) => m[4 * (i & 3) + (i >> 2)]);
}

const cross = (a, b) => [0, 1, 2].map((i) => a[(i + 1) % 3] * b[(i + 2) % 3] - a[(i + 2) % 3] * b[(i + 1) % 3]);
const unit = (a) => a.map((x) => x / Math.hypot(...a));

class Engine {
    constructor(file, options = {}) {
        this.options = { lacks: [], suffix: "", rollZero: [0, 0, 1], rollSign: 1, up: "direction", ...options };
        this.faults = [];
        this.printed = [];
        this.updates = 0;
        this.handlers = [];
        this.menu = [];
        this.toolbar = [];
        this.viewerPlays = true;
        this.changes = []; // what the script did since the last call of takeChanges
        this.classes = this.makeClasses();
        this.makeScene(file);
        this.sandbox = this.makeGlobals();
        vm.createContext(this.sandbox);
    }

    lacks(name) {
        return this.options.lacks.includes(name);
    }

    // Refuses every member that `members` does not have; `writable` names those that may be assigned.
    strict(kind, members, writable = []) {
        const engine = this;
        return new Proxy(members, {
            get(target, key) {
                if (typeof key === "symbol" || engine.lacks(kind + "." + key)) {
                    return undefined;
                }
                if (!(key in target) || (key in Object.prototype && key !== "constructor")) {
                    engine.faults.push("reads " + kind + "." + key);
                    return undefined;
                }
                return target[key];
            },
            set(target, key, value) {
                if (!writable.includes(key)) {
                    engine.faults.push("sets " + kind + "." + String(key));
                    return true;
                }
                target[key] = value;
                return true;
            }
        });
    }

    makeClasses() {
        const engine = this;
        this.matrices = new Map(); // from what the script sees to what is behind it
        class Vector3 {
            constructor(x = 0, y = 0, z = 0) {
                const own = {
                    x, y, z,
                    set(v) {
                        if (arguments.length !== 1 || !Number.isFinite(v.x + v.y + v.z)) {
                            engine.faults.push("Vector3.set takes a Vector3");
                        }
                        [own.x, own.y, own.z] = [v.x, v.y, v.z];
                    }
                };
                return engine.strict("Vector3", own, ["x", "y", "z"]);
            }
        }
        class Matrix4x4 {
            constructor() {
                const behind = { numbers: identity.slice(), node: null };
                const proxy = engine.strict("Matrix4x4", {
                    get translation() { return new Vector3(...behind.numbers.slice(12, 15)); },
                    set(...given) {
                        const source = engine.matrices.get(given[0]);
                        const numbers = source ? source.numbers : Array.from(given.length === 16 ? given : given[0]);
                        if (numbers.length !== 16 || !numbers.every(Number.isFinite)) {
                            engine.faults.push("Matrix4x4.set(" + given + ")");
                        }
                        // Matrices copy as they are; only numbers from outside have an order.
                        behind.numbers = engine.options.transposed && !source ? transpose(numbers) : numbers.slice();
                        if (behind.node) {
                            engine.changes.push({ node: behind.node });
                        }
                    }
                });
                engine.matrices.set(proxy, behind);
                return proxy;
            }
        }
        const classes = { Vector3, Matrix4x4 };
        for (const kind of ["TimeEventHandler", "MenuEventHandler", "ToolEventHandler"]) {
            classes[kind] = class {
                constructor() {
                    return engine.strict(kind, { kind, onEvent: undefined }, ["onEvent"]);
                }
            };
        }
        return classes;
    }

    makeMaterial(look, index) {
        const note = (channel) => this.changes.push({ material: index, channel });
        let opacity = look.opacity;
        const own = {
            get opacity() { return opacity; },
            set opacity(value) {
                opacity = value;
                note("opacity");
            }
        };
        for (const channel of ["ambientColor", "diffuseColor", "emissiveColor", "specularColor"]) {
            const [r, g, b] = look[channel];
            const color = {
                r, g, b,
                set(...rgb) {
                    [color.r, color.g, color.b] = rgb;
                    note(channel);
                }
            };
            own[channel] = this.strict("Color", color);
        }
        return this.strict("Material", own, ["opacity"]);
    }

    makeNode(kind, name, parent, matrix) {
        const engine = this;
        const node = { name, kind, parent, children: [], visible: true, material: undefined };
        const family = parent ? parent.children : this.tops;
        const place = family.push(node) - 1;
        node.transform = new this.classes.Matrix4x4();
        const behind = this.matrices.get(node.transform);
        behind.node = name;
        behind.numbers = matrix ? transpose(matrix) : behind.numbers;
        const own = {
            name: name + (name ? this.options.suffix : ""),
            parent: parent ? parent.proxy : null,
            transform: node.transform,
            constructor: { name: kind },
            get firstChild() { return node.children[0] && node.children[0].proxy; },
            get nextSibling() { return family[place + 1] && family[place + 1].proxy; },
            get visible() { return node.visible; },
            set visible(value) {
                node.visible = value;
                if (kind !== "Mesh") {
                    engine.faults.push("sets visible of the group " + name);
                }
            }
        };
        if (kind === "Mesh") {
            Object.defineProperty(own, "material", { get: () => node.material });
        }
        node.proxy = this.strict(kind, own, ["visible"]);
        this.nodes.push(node);
        return node;
    }

    addFileNode(given, parent) {
        const node = this.makeNode("Node", given.name, parent, given.matrix);
        if (this.options.strangerFirst) {
            this.makeNode("Light", "light", node);
        }
        for (const style of given.meshes) {
            this.makeNode("Mesh", "", node).material = this.materials[style];
        }
        given.children.forEach((child) => this.addFileNode(child, node));
    }

    /// The direction that is up on the screen.
    cameraUp() {
        const { rollZero, rollSign } = this.options;
        const { position, targetPosition, roll } = this.camera;
        const sight = unit([targetPosition.x - position.x, targetPosition.y - position.y, targetPosition.z - position.z]);
        const start = unit(cross(cross(sight, rollZero), sight));
        const side = cross(sight, start);
        return start.map((x, i) => x * Math.cos(rollSign * roll) + side[i] * Math.sin(rollSign * roll));
    }

    makeCamera() {
        const engine = this;
        const { Vector3 } = this.classes;
        this.camera = {
            position: new Vector3(0, -10, 0),
            targetPosition: new Vector3(),
            roll: 0,
            fov: 1,
            get up() {
                const { x, y, z } = this.position;
                const eye = engine.options.up === "point" ? [x, y, z] : [0, 0, 0];
                return engine.options.up === "none" ? undefined
                    : new Vector3(...engine.cameraUp().map((value, i) => value + eye[i]));
            }
        };
        return this.strict("Camera", this.camera, ["roll", "fov"]);
    }

    list(items) {
        return this.strict("SceneObjectList", {
            count: items.length,
            getByIndex: (i) => items[i],
            getByName: (name) => items.find((item) => item.name === name)
        });
    }

    makeScene(file) {
        this.nodes = [];
        this.tops = [];
        this.materials = file.materials.map((look, i) => this.makeMaterial(look, i));
        const wrapper = this.options.wrapper ? this.makeNode("Node", this.options.wrapper, null) : null;
        this.addFileNode(file.root, wrapper);
        const camera = this.makeCamera();
        this.scene = this.strict("Scene", {
            // In no promised order.
            nodes: this.list(this.nodes.map((node) => node.proxy).reverse()),
            cameras: this.list([camera]),
            update: () => {
                this.updates += 1;
            }
        });
    }

    makeGlobals() {
        const runtime = this.strict("runtime", {
            addEventHandler: (handler) => this.handlers.push(handler),
            addCustomMenuItem: (name, label, kind, state) => this.menu.push({ name, label, kind, state }),
            addCustomToolButton: (name, label, kind) => this.toolbar.push({ name, label, kind }),
            play: () => { this.viewerPlays = true; },
            pause: () => { this.viewerPlays = false; },
            refresh: () => {}
        });
        const globals = {
            scene: this.scene,
            runtime,
            console: this.strict("console", { println: (text) => this.printed.push(text) }),
            ...this.classes
        };
        this.options.lacks.forEach((name) => delete globals[name]);
        // A clock of our own: the player takes the time of day to see whether events have stopped.
        this.now = 1e12;
        const engine = this;
        globals.Date = class { getTime() { return engine.now; } };
        return globals;
    }

    // --- for tests

    run(script) {
        // The engine of a viewer has none of what came with later editions of the language.
        vm.runInContext("var members = 'forEach map filter indexOf some every reduce keys find'.split(' '), i;" +
            "for (i = 0; i < members.length; i += 1) { delete Array.prototype[members[i]]; }" +
            "delete Array.isArray; delete String.prototype.trim; delete Object.keys; delete this.JSON;", this.sandbox);
        vm.runInContext(script, this.sandbox, { filename: "player" });
        return this;
    }

    fire(kind, event) {
        this.handlers.filter((h) => h.kind === kind).forEach((h) => h.onEvent(this.strict(kind + " event", event)));
    }

    /// Lets time pass; a paused viewer sends no events.
    wait(seconds) {
        this.now += 1000 * seconds;
        if (this.viewerPlays) {
            this.fire("TimeEventHandler", { time: 0, deltaTime: seconds });
        }
    }

    choose(label, checked) {
        const item = this.menu.find((i) => i.label === label);
        this.fire("MenuEventHandler", { menuItemName: item.name, menuItemChecked: checked });
    }

    press(label) {
        this.fire("ToolEventHandler", { toolName: this.toolbar.find((i) => i.label === label).name });
    }

    takeChanges() {
        return this.changes.splice(0);
    }

    find(name) {
        return this.nodes.find((node) => node.name === name);
    }

    /// Where a point of a node's own space is in the world.
    place(name, point = [0, 0, 0]) {
        let p = [...point, 1];
        for (let node = this.find(name); node; node = node.parent) {
            const m = this.matrices.get(node.transform).numbers;
            p = [0, 1, 2, 3].map((k) => p[0] * m[k] + p[1] * m[4 + k] + p[2] * m[8 + k] + p[3] * m[12 + k]);
        }
        return p.slice(0, 3);
    }

    meshesAt(name) {
        const below = (node) => (node.kind === "Mesh" ? [node] : node.children.flatMap(below));
        return below(this.find(name));
    }

    diffuse(name) {
        const { r, g, b } = this.meshesAt(name)[0].material.diffuseColor;
        return [r, g, b];
    }
}

module.exports = { Engine };

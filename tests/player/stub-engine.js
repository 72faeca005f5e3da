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

function multiply(a, b) { // row vectors: a first
    return identity.map((_, i) => [0, 1, 2, 3].reduce((sum, k) => sum + a[4 * (i >> 2) + k] * b[4 * k + (i & 3)], 0));
}

function transpose(m) {
    return m.map((_, i) => m[4 * (i & 3) + (i >> 2)]);
}

const sub = (a, b) => a.map((x, i) => x - b[i]);
const dot = (a, b) => a.reduce((sum, x, i) => sum + x * b[i], 0);
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
        const transposed = this.options.transposed;
        class Vector3 {
            constructor(x = 0, y = 0, z = 0) {
                const own = {
                    x, y, z,
                    set(v) {
                        if (arguments.length !== 1 || !(v.x - v.y - v.z < Infinity)) {
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
                const own = {
                    numbers: identity.slice(),
                    set(...given) {
                        const source = engine.own.get(given[0]);
                        const numbers = source ? source.numbers : Array.from(given.length === 16 ? given : given[0]);
                        if (numbers.length !== 16 || !numbers.every(Number.isFinite)) {
                            engine.faults.push("Matrix4x4.set(" + given + ")");
                        }
                        // Matrices copy as they are; only numbers from outside have an order.
                        own.numbers = transposed && !source ? transpose(numbers) : numbers.slice();
                        if (own.node) {
                            engine.changes.push({ node: own.node.plainName, numbers: own.numbers });
                        }
                    }
                };
                Object.defineProperty(own, "translation", { get: () => new Vector3(...own.numbers.slice(12, 15)) });
                const proxy = engine.strict("Matrix4x4", own);
                engine.own.set(proxy, own);
                return proxy;
            }
        }
        const handler = (kind, types) => class {
            constructor() {
                return engine.strict(kind, { kind, onEvent: undefined, ...types }, ["onEvent"]);
            }
        };
        this.own = new Map();
        return {
            Vector3,
            Matrix4x4,
            TimeEventHandler: handler("TimeEventHandler"),
            MenuEventHandler: handler("MenuEventHandler"),
            ToolEventHandler: handler("ToolEventHandler")
        };
    }

    color(material, channel, rgb) {
        const own = {
            r: rgb[0], g: rgb[1], b: rgb[2],
            set: (r, g, b) => {
                [own.r, own.g, own.b] = [r, g, b];
                this.changes.push({ material, channel, rgb: [r, g, b] });
            }
        };
        return this.strict("Color", own);
    }

    makeMaterial(look, index) {
        const own = { name: "material " + index };
        for (const channel of ["ambientColor", "diffuseColor", "emissiveColor", "specularColor"]) {
            own[channel] = this.color(index, channel, look[channel]);
        }
        let opacity = look.opacity;
        Object.defineProperty(own, "opacity", {
            get: () => opacity,
            set: (value) => {
                opacity = value;
                this.changes.push({ material: index, channel: "opacity", value });
            }
        });
        return this.strict("Material", own, ["opacity"]);
    }

    makeNode(kind, name, parent, matrix) {
        const engine = this;
        const transform = new this.classes.Matrix4x4();
        const own = {
            name: name + (name ? this.options.suffix : ""),
            plainName: name,
            parent: parent ? parent.proxy : null,
            transform,
            constructor: { name: kind }
        };
        if (matrix) {
            this.own.get(transform).numbers = transpose(matrix);
        }
        this.own.get(transform).node = own;
        const node = { own, children: [], parent };
        const family = parent ? parent.children : this.tops;
        const place = family.push(node) - 1;
        Object.defineProperty(own, "firstChild", { get: () => node.children[0] && node.children[0].proxy });
        Object.defineProperty(own, "nextSibling", {
            get: () => family[place + 1] && family[place + 1].proxy
        });
        let visible = true;
        Object.defineProperty(own, "visible", {
            get: () => visible,
            set: (value) => {
                visible = value;
                if (kind !== "Mesh") {
                    engine.faults.push("sets visible of the group " + name);
                }
            }
        });
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
            this.makeNode("Mesh", "", node).own.material = this.materials[style];
        }
        given.children.forEach((child) => this.addFileNode(child, node));
    }

    makeCamera() {
        const engine = this;
        const { rollZero, rollSign, up } = this.options;
        const own = { position: new this.classes.Vector3(0, -10, 0), targetPosition: new this.classes.Vector3() };
        Object.assign(own, { roll: 0, fov: 1, constructor: { name: "Camera" } });
        const point = (v) => [v.x, v.y, v.z];
        // The direction that is up on the screen.
        this.cameraUp = () => {
            const sight = unit(sub(point(own.targetPosition), point(own.position)));
            const start = unit(cross(cross(sight, rollZero), sight));
            const side = cross(sight, start);
            const angle = rollSign * own.roll;
            return start.map((x, i) => x * Math.cos(angle) + side[i] * Math.sin(angle));
        };
        this.camera = own;
        Object.defineProperty(own, "up", {
            get: () => {
                const direction = engine.cameraUp();
                const eye = point(own.position);
                return up === "none" ? undefined
                    : new this.classes.Vector3(...direction.map((x, i) => x + (up === "point" ? eye[i] : 0)));
            }
        });
        return this.strict("Camera", own, ["roll", "fov"]);
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
        return this.nodes.find((node) => node.own.plainName === name);
    }

    /// Where a point of a node's own space is in the world.
    place(name, point = [0, 0, 0]) {
        let p = [...point, 1];
        for (let node = this.find(name); node; node = node.parent) {
            const m = this.own.get(node.own.transform).numbers;
            p = [0, 1, 2, 3].map((k) => p[0] * m[k] + p[1] * m[4 + k] + p[2] * m[8 + k] + p[3] * m[12 + k]);
        }
        return p.slice(0, 3);
    }

    meshesAt(name) {
        const below = (node) => (node.own.constructor.name === "Mesh" ? [node.own] : node.children.flatMap(below));
        return below(this.find(name));
    }

    diffuse(name) {
        const { r, g, b } = this.meshesAt(name)[0].material.diffuseColor;
        return [r, g, b];
    }
}

module.exports = { Engine };

"use strict";

const assert = require("node:assert");
const { execFileSync } = require("node:child_process");
const fs = require("node:fs");
const os = require("node:os");
const path = require("node:path");
const { after, test } = require("node:test");
const { parse } = require("acorn");
const { Engine } = require("./stub-engine.js");
const { robot, robotScript, turners } = require("./scenes.js");

const folder = fs.mkdtempSync(path.join(os.tmpdir(), "player-"));
after(() => fs.rmSync(folder, { recursive: true }));

/// The script that the program makes of a scene, and the scene as it stands in the file.
function makePlayer(name, scene, script, ...options) {
    const own = path.join(folder, name);
    fs.mkdirSync(own);
    fs.writeFileSync(path.join(own, "scene.gltf"), JSON.stringify(scene));
    fs.writeFileSync(path.join(own, "script.json"), JSON.stringify(script));
    execFileSync(process.env.ORVELPRC, ["export", "scene.gltf", "-o", "out.pdf", "--script", "script.json", "--fps", "10",
        "--strict", "--quiet", ...options], { cwd: own });
    execFileSync(process.env.PLAYER_FIXTURE, [path.join(own, "out.pdf"), own]);
    const read = (file) => fs.readFileSync(path.join(own, file), "utf8");
    return { script: read("script.js"), scene: JSON.parse(read("scene.json")) };
}

const player = makePlayer("robot", robot(), robotScript);
const open = (options) => new Engine(player.scene, options).run(player.script);

function near(actual, expected, tolerance, message) {
    assert.ok(actual.every((x, i) => Math.abs(x - expected[i]) <= tolerance), `${message}: ${actual}, not ${expected}`);
}

/// Where the fist is while the arm swings: millimetres, z up.
function fistAt(frame) {
    const angle = Math.PI / 2 * Math.min(frame / 10, 1);
    return [1000 * Math.cos(angle), 0, 500 + 1000 * Math.sin(angle)];
}

function coded(linear) { // sRGB, IEC 61966-2-1
    return linear <= 0.0031308 ? 12.92 * linear : 1.055 * linear ** (1 / 2.4) - 0.055;
}

function assertFrame(engine, frame) {
    const blue = Math.min(frame / 10, 1);
    near(engine.place("fist"), fistAt(frame), 3, "fist at " + frame);
    near(engine.diffuse("fist"), [coded(1 - blue), 0, coded(blue)], 0.01, "paint at " + frame);
    near(engine.diffuse("bolt"), [0, 1, 0], 0, "steel");
    const { position, targetPosition } = engine.camera;
    near([position.x, position.y, position.z], [4000 * blue, -10000, 0], 3, "eye at " + frame);
    near([targetPosition.x - position.x, targetPosition.z - position.z], [0, 0], 3, "sight at " + frame);
    near(engine.cameraUp(), [-0.5, 0, Math.sqrt(0.75)], 0.003, "up at " + frame);
    near([engine.camera.fov], [0.5], 0.001, "field of view");
}

test("The script is ECMAScript 3 in ASCII", () => {
    parse(player.script, { ecmaVersion: 3 });
    assert.match(player.script, /^[\x00-\x7f]*$/);
});

const viewers = {
    "as documented": {},
    "with nodes and suffixes of its own": { wrapper: "Units and axes", suffix: ".17", strangerFirst: true },
    "that takes matrices the other way round": { transposed: true },
    "whose cameras roll from x up, the other way round": { rollZero: [1, 0, 0], rollSign: -1, up: "point" },
    "that does not tell where up is": { up: "none" },
    "without pause, menu, buttons and redraw": { lacks: ["runtime.pause", "runtime.play", "runtime.refresh",
        "MenuEventHandler", "ToolEventHandler", "runtime.addCustomMenuItem", "runtime.addCustomToolButton"] }
};
for (const [name, options] of Object.entries(viewers)) {
    test("A viewer " + name + " shows every frame", () => {
        const engine = open(options);
        for (let frame = 1; frame <= 45; frame += 1) {
            engine.wait(0.1);
            assertFrame(engine, frame % 21);
        }
        assert.deepStrictEqual(engine.meshesAt("lid").map((mesh) => mesh.visible), [false]);
        assert.ok(engine.meshesAt("robot").filter((mesh) => mesh.visible).length === 3);
        assert.deepStrictEqual(engine.faults, []);
    });
}

test("Nodes that grow, are mirrored or shrink to nothing turn as they should", () => {
    const { script, scene } = makePlayer("turners", turners(), {}, "--no-autoplay");
    const engine = new Engine(scene).run(script);
    engine.wait(0.1);
    assert.strictEqual(engine.updates, 0, "nothing moves before it is asked to");
    engine.sandbox.play3D();
    const turned = (angle, [x, y, z]) => // millimetres, z up
        [x * Math.cos(angle) - y * Math.sin(angle), -z, x * Math.sin(angle) + y * Math.cos(angle)].map((v) => 1000 * v);
    for (let frame = 1; frame <= 10; frame += 1) {
        engine.wait(0.1);
        const [angle, grown] = [frame * Math.PI / 5, frame / 10];
        const place = (name) => engine.place(name, [0.2, 0.3, 0.5]);
        near(place("growing"), turned(angle, [0.2 * (1 + 2 * grown), 0.3 * (1 + grown), 0.5]), 1, "growing " + frame);
        near(place("mirrored"), turned(angle, [-0.4, 0.9, 0.5]), 1, "mirrored " + frame);
        near(place("shrinking"), turned(angle, [0.2, 0.3, 0.5].map((x) => x * (1 - grown))), 1, "shrinking " + frame);
    }
    assert.deepStrictEqual(engine.faults, []);
});

test("Only what changed is touched, and the scene is updated once a frame", () => {
    const engine = open();
    engine.wait(0.1);
    engine.takeChanges();
    const updates = engine.updates;
    engine.wait(0.05);
    assert.deepStrictEqual([engine.takeChanges(), engine.updates], [[], updates]);
    engine.wait(0.05);
    const changes = engine.takeChanges();
    assert.deepStrictEqual(changes.map((c) => c.node || c.channel).sort(), ["ambientColor", "arm", "diffuseColor"]);
    assert.strictEqual(engine.updates, updates + 1);
    engine.sandbox.showFrame3D(12);
    engine.takeChanges();
    engine.sandbox.step3D(1);
    assert.deepStrictEqual(engine.takeChanges(), [], "the arm rests from frame 10 on");
});

test("Play, pause and steps keep a clock of their own", () => {
    const engine = open();
    const page = engine.sandbox;
    engine.wait(0.3);
    page.pause3D();
    engine.viewerPlays = true;
    engine.wait(0.2);
    engine.wait(0.2);
    assertFrame(engine, 3);
    page.step3D(1);
    assertFrame(engine, 4);
    page.step3D(-5);
    assertFrame(engine, 20);
    page.showFrame3D(7);
    page.play3D();
    engine.wait(0.1);
    assertFrame(engine, 8);
    page.pause3D();
    engine.now += 5000; // no events; then the viewer's own play button
    engine.viewerPlays = true;
    engine.wait(0.1);
    assertFrame(engine, 9);
    page.stop3D();
    near(engine.place("fist"), [1000, 0, 500], 0, "at rest");
    near(engine.diffuse("fist"), [1, 0, 0], 0, "at rest");
    engine.press("One frame on");
    assertFrame(engine, 1);
    engine.choose("Play or pause");
    engine.wait(0.1);
    assertFrame(engine, 2);
    assert.deepStrictEqual(engine.faults, []);
});

test("States replace looks by name, hold against the animation, and give the looks back", () => {
    const engine = new Engine(player.scene);
    const page = engine.sandbox;
    const fist = engine.meshesAt("fist")[0].material;
    fist.ambientColor.set(0.123, 0.456, 0.789); // the viewer's own idea of it
    engine.run(player.script);
    assert.deepStrictEqual([...page.states3D()], ["Hiver \u00e9", "Ghost"]);
    engine.wait(0.5);
    assert.strictEqual(page.showState3D("Hiver \u00e9"), true);
    near(engine.diffuse("fist"), [0, 1, 0], 0.003, "winter");
    engine.wait(0.1);
    near(engine.diffuse("fist"), [0, 1, 0], 0.003, "winter while it moves");
    near(engine.place("fist"), fistAt(6), 3, "fist");
    engine.choose("Show: Ghost");
    near([fist.opacity, ...engine.diffuse("fist")], [0.25, 1, 0, 0], 0.003, "ghost");
    assert.strictEqual(page.showState3D("no such"), false);
    assert.match(engine.printed.join(), /no such/);
    page.showState3D(null);
    near([fist.opacity], [1], 0, "no state");
    assertFrame(engine, 6);
    page.stop3D();
    near(engine.diffuse("fist"), [1, 0, 0], 0, "no state, at rest");
    near([fist.ambientColor.r, fist.ambientColor.g, fist.ambientColor.b], [0.123, 0.456, 0.789], 0, "as it was");
    assert.deepStrictEqual(engine.faults, []);
});

test("Sequences play by name from the rest pose", () => {
    const engine = open();
    const page = engine.sandbox;
    assert.deepStrictEqual([...page.sequences3D()], ["swing", "jump", "grip"]);
    engine.wait(0.5);
    page.playSequence3D("jump");
    engine.wait(0.5);
    near(engine.place("bolt (2)"), [3000, 0, 500], 3, "jumping");
    near(engine.place("bolt"), [2000, 0, 0], 0, "the other bolt");
    near(engine.place("fist"), fistAt(0), 0, "of another clip");
    near(engine.diffuse("fist"), [1, 0, 0], 0, "of another clip");
    page.playSequence3D("grip");
    engine.wait(0.2);
    near(engine.place("fist"), fistAt(5), 3, "a piece of the timeline");
    near(engine.diffuse("fist"), [coded(0.5), 0, coded(0.5)], 0.01, "a piece of the timeline");
    engine.choose("Play: swing");
    near(engine.place("bolt (2)"), [3000, 0, 0], 0, "back");
    engine.wait(0.4);
    assertFrame(engine, 4);
    assert.deepStrictEqual(engine.faults, []);
});

test("The flight begins where the picture was taken", () => {
    const engine = open();
    engine.sandbox.showFrame3D(0);
    const { x, y, z } = engine.camera.position;
    near(player.scene.views[""].slice(9), [x, y, z], 2, "eye");
    near(player.scene.views[""].slice(3, 6), engine.cameraUp(), 0.002, "up");
});

test("A flight close to what it looks at is as exact as one from afar", () => {
    const { script, scene } = makePlayer("close", turners(),
        { camera: { position: [0, -2, 0], target: [0, 0, 0], moves: [{ type: "orbit", from: 0, to: 10, angle: 90 }] } });
    const engine = new Engine(scene).run(script);
    for (let frame = 0; frame <= 10; frame += 1) {
        engine.sandbox.showFrame3D(frame);
        const { x, y, z } = engine.camera.position;
        near([Math.hypot(x, y), z], [2, 0], 0.001, "distance at " + frame);
    }
});

test("The usual views fit what is seen: hidden nodes do not count", () => {
    near([player.scene.views.Front[11]], [400], 1, "between the bolts and the top of the fist");
});

test("The camera can be let go of", () => {
    const engine = open();
    engine.choose("Follow the camera", false);
    engine.wait(0.5);
    assert.strictEqual(engine.camera.position.x, 0);
    engine.choose("Follow the camera", true);
    assertFrame(engine, 5);
});

test("A scene that is not the one of the file is left as it is, with a word on the console", () => {
    const engine = open({ lacks: ["Matrix4x4", "TimeEventHandler"] });
    assert.match(engine.printed.join("\n"), /cannot move nodes/);
    const stranger = new Engine({ root: { name: "other", meshes: [], children: [] }, materials: [] });
    stranger.run(player.script).wait(0.1);
    assert.match(stranger.printed.join("\n"), /no node 'arm'/);
    stranger.sandbox.showState3D("Ghost");
    assert.deepStrictEqual([...engine.faults, ...stranger.faults], []);
});

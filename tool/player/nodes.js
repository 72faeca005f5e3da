// The nodes of the scene that the player touches.

function warn(text) {
    try {
        console.println("3D player: " + text);
    } catch (ignored) {
        // Nowhere to tell it.
    }
}

function childrenOf(node) {
    var children = [], child = node.firstChild;
    while (child) {
        children.push(child);
        child = child.nextSibling;
    }
    return children;
}

// Viewers may put a dot and a number behind a name.
function isNamed(node, name) {
    return node.name === name || String(node.name).indexOf(name + ".") === 0;
}

// The top of the tree that any of the scene's nodes stands in.
function topOfScene() {
    var node = scene.nodes.count > 0 ? scene.nodes.getByIndex(0) : null, steps;
    for (steps = 0; node && node.parent && steps < 100000; steps += 1) {
        node = node.parent;
    }
    return node;
}

// Children by name, with and without what may stand behind a last dot. Keys begin with a letter of our own, so that no
// name meets a member that every object has.
function namesOf(children) {
    var byName = {}, byStem = {}, i, name, dot;
    for (i = 0; i < children.length; i += 1) {
        name = String(children[i].name);
        if (!byName["n" + name]) {
            byName["n" + name] = children[i];
        }
        dot = name.lastIndexOf(".");
        if (dot > 0 && !byStem["n" + name.substring(0, dot)]) {
            byStem["n" + name.substring(0, dot)] = children[i];
        }
    }
    return { exact: byName, stem: byStem };
}

// The exact name first, wherever it stands: what begins with it, "Wheel.1" for "Wheel", may be another node of the file.
function childOf(family, place, name) {
    var child = family.children[place];
    if (child && (name === "" || child.name === name)) {
        return child;
    }
    if (!family.names) {
        family.names = namesOf(family.children);
    }
    if (family.names.exact["n" + name]) {
        return family.names.exact["n" + name];
    }
    return child && isNamed(child, name) ? child : family.names.stem["n" + name] || null;
}

// The node that stands for the file's root: viewers may put nodes of their own above it, even with its name, which then
// do not have the child that is listed next.
function findRoot(list) {
    var queue = [], i, top = topOfScene(), children, mostLookedAt = 1000;
    while (top) {
        queue.push(top);
        top = top.nextSibling;
    }
    for (i = 0; i < queue.length && i < mostLookedAt; i += 1) {
        children = childrenOf(queue[i]);
        if (isNamed(queue[i], list.name[0]) &&
                (list.name.length < 2 || childOf({ children: children, names: null }, list.place[1], list.name[1]))) {
            return queue[i];
        }
        if (queue.length < mostLookedAt) {
            queue = queue.concat(children);
        }
    }
    return null;
}

// The nodes of the list, which names parents before their children; null for one that the scene does not have.
function findNodes(list) {
    var found = [], families = [], missing = 0, i, parent, node;
    for (i = 0; i < list.name.length; i += 1) {
        parent = list.parent[i];
        node = null;
        if (parent < 0) {
            node = findRoot(list);
        } else if (found[parent]) {
            families[parent] = families[parent] || { children: childrenOf(found[parent]), names: null };
            node = childOf(families[parent], list.place[i], list.name[i]);
        }
        node = node || scene.nodes.getByName(list.name[i]) || null;
        missing += node ? 0 : 1;
        found[i] = node;
        if (!node && missing <= 5) {
            warn("the scene has no node '" + list.name[i] + "'");
        }
    }
    if (missing > 5) {
        warn(missing + " nodes are missing in all");
    }
    return found;
}

// The meshes at and below a node. A stack of its own, since trees may be deep.
function meshesAt(node) {
    var meshes = [], stack = [node], child;
    while (stack.length > 0) {
        node = stack.pop();
        if (node.constructor && node.constructor.name === "Mesh") {
            meshes.push(node);
        }
        child = node.firstChild;
        while (child) {
            stack.push(child);
            child = child.nextSibling;
        }
    }
    return meshes;
}

function hideAt(node) {
    var meshes = meshesAt(node), i;
    for (i = 0; i < meshes.length; i += 1) {
        meshes[i].visible = false;
    }
}

// Transforms

var rowsFirst = function (p) {
    return [p[0], p[1], p[2], 0, p[3], p[4], p[5], 0, p[6], p[7], p[8], 0, p[9], p[10], p[11], 1];
};
var columnsFirst = function (p) {
    return [p[0], p[3], p[6], p[9], p[1], p[4], p[7], p[10], p[2], p[5], p[8], p[11], 0, 0, 0, 1];
};
var setNumbers = function (m, n) {
    m.set(n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], n[8], n[9], n[10], n[11], n[12], n[13], n[14], n[15]);
};
var setArray = function (m, n) {
    m.set(n);
};

// How this viewer takes the numbers of a matrix: tried on one with a translation. Null when it takes none.
function probeMatrix() {
    var orders = [rowsFirst, columnsFirst], calls = [setNumbers, setArray], i, matrix, origin;
    for (i = 0; i < 4; i += 1) {
        try {
            matrix = new Matrix4x4();
            calls[i >> 1](matrix, orders[i & 1]([1, 0, 0, 0, 1, 0, 0, 0, 1, 5, 6, 7]));
            origin = matrix.translation;
            if (Math.abs(origin.x - 5) + Math.abs(origin.y - 6) + Math.abs(origin.z - 7) < 0.01) {
                return { order: orders[i & 1], call: calls[i >> 1] };
            }
        } catch (ignored) {
            // The next way is tried.
        }
    }
    warn("this viewer cannot move nodes");
    return null;
}

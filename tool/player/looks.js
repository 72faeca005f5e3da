// Materials: colours and opacity. A look is 13 numbers from 0 to 255: ambient, diffuse, emissive and specular colour,
// opacity.

var colourNames = ["ambientColor", "diffuseColor", "emissiveColor", "specularColor"];

function readLook(material, otherwise) {
    var look = [], i, colour;
    for (i = 0; i < 4; i += 1) {
        colour = material[colourNames[i]];
        if (colour && typeof colour.r === "number") {
            look.push(colour.r, colour.g, colour.b);
        } else {
            look.push(otherwise[3 * i] / 255, otherwise[3 * i + 1] / 255, otherwise[3 * i + 2] / 255);
        }
    }
    look.push(typeof material.opacity === "number" ? material.opacity : otherwise[12] / 255);
    return look;
}

function differ(a, b, from, to) {
    var i;
    for (i = from; i < to; i += 1) {
        if (a[i] !== b[i]) {
            return true;
        }
    }
    return false;
}

// The materials of the meshes at the nodes, each with the look that it starts with.
function openMaterial(nodes, uses, rest) {
    var parts = [], i, k, meshes, material, previous = null;
    for (i = 0; i < uses.length; i += 1) {
        meshes = nodes[uses[i]] ? meshesAt(nodes[uses[i]]) : [];
        for (k = 0; k < meshes.length; k += 1) {
            material = meshes[k].material;
            // Meshes mostly share their material with their neighbours.
            if (material && material !== previous) {
                parts.push({ material: material, start: readLook(material, rest) });
                previous = material;
            }
        }
    }
    return { parts: parts, rest: rest, shown: rest };
}

// Sets a colour, or after the four colours the opacity; without a look to what the viewer had.
function setChannels(part, k, look) {
    var from = look || part.start, full = look ? 255 : 1, colour;
    if (k === 4) {
        part.material.opacity = from[12] / full;
        return;
    }
    colour = part.material[colourNames[k]];
    if (colour) {
        colour.set(from[3 * k] / full, from[3 * k + 1] / full, from[3 * k + 2] / full);
    }
}

// Gives a material a look; one that was never changed, or is as it was, keeps the viewer's own values.
// Returns whether anything was changed.
function showLook(driven, look) {
    var i, k, changes;
    if (!differ(look, driven.shown, 0, 13)) {
        return false;
    }
    for (k = 0; k < 5; k += 1) {
        if (differ(look, driven.shown, 3 * k, k < 4 ? 3 * k + 3 : 13)) {
            changes = differ(look, driven.rest, 3 * k, k < 4 ? 3 * k + 3 : 13);
            for (i = 0; i < driven.parts.length; i += 1) {
                setChannels(driven.parts[i], k, changes ? look : null);
            }
        }
    }
    driven.shown = look;
    return true;
}

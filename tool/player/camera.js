// The flight of the camera: position, target, up, and the field of view.

function cross(a, b) {
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]];
}

function dot(a, b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// The angle by which `from` turns into `to` about an axis of length 1, counter-clockwise for an eye that the axis points
// at; 0 when one of them lies along the axis.
function angleAbout(axis, from, to) {
    var a = cross(cross(axis, from), axis), b = cross(cross(axis, to), axis);
    return dot(a, a) < 1e-9 || dot(b, b) < 1e-9 ? 0 : Math.atan2(dot(axis, cross(a, b)), dot(a, b));
}

// Where up is on this viewer's screen, where it tells it: a direction, or a point over the eye.
function upOf(camera, eye) {
    var up = camera.up, length;
    if (!up || typeof up.x !== "number") {
        return null;
    }
    up = [up.x, up.y, up.z];
    length = Math.sqrt(dot(up, up));
    return Math.abs(length - 1) < 0.001 ? up : [up[0] - eye[0], up[1] - eye[1], up[2] - eye[2]];
}

// Turns the camera about its line of sight until up is up. The viewer is asked where up is without a roll and what a
// roll does to it; one that does not tell counts as upright, z up, without a roll, which is what a positive roll turns
// clockwise.
function rollTo(camera, eye, sight, up) {
    var zero, angle, after;
    camera.roll = 0;
    zero = upOf(camera, eye);
    angle = angleAbout(sight, zero || [0, 0, 1], up);
    if (Math.abs(angle) < 0.0005) {
        return;
    }
    camera.roll = angle;
    after = zero ? upOf(camera, eye) : null;
    if (after && Math.abs(angleAbout(sight, after, up)) > 0.01) {
        camera.roll = -angle;
    }
}

// track.t is what a step of a position stands for; up counts in thousandths, the field of view in hundredths of a degree.
function placeCamera(camera, track, row) {
    var eye = [row[0] * track.t, row[1] * track.t, row[2] * track.t];
    var target = [row[3] * track.t, row[4] * track.t, row[5] * track.t];
    var sight = [target[0] - eye[0], target[1] - eye[1], target[2] - eye[2]];
    var length = Math.sqrt(dot(sight, sight)) || 1;
    // In this order: a viewer keeps the distance to the target when the position moves first.
    camera.targetPosition.set(new Vector3(target[0], target[1], target[2]));
    camera.position.set(new Vector3(eye[0], eye[1], eye[2]));
    rollTo(camera, eye, [sight[0] / length, sight[1] / length, sight[2] / length], [row[6], row[7], row[8]]);
    camera.fov = row[9] * Math.PI / 18000;
}

// Tracks: what changes over the frames of a clip, as key frames and what lies between them.
//
// track.v holds the keys, width numbers each, as differences to the key before. track.f says where they stand: the
// first one at frame 0; a negative number -n lets the key before it hold for n frames more, a positive number n puts the
// next key n frames later. Without track.f there is a key at every frame.

function openTrack(track, width) {
    var starts = [0], ends = [0], values = track.v, i, last = 0;
    for (i = width; i < values.length; i += 1) {
        values[i] += values[i - width];
    }
    if (track.f) {
        for (i = 0; i < track.f.length; i += 1) {
            if (track.f[i] < 0) {
                ends[last] -= track.f[i];
            } else {
                last += 1;
                starts[last] = ends[last] = ends[last - 1] + track.f[i];
            }
        }
    } else {
        for (i = 1; i * width < values.length; i += 1) {
            starts[i] = ends[i] = i;
        }
    }
    return { width: width, starts: starts, ends: ends, values: values, key: 0, shown: -1 };
}

// The numbers at a frame; null when they are those of the call before.
function sampleTrack(track, frame, blend) {
    var starts = track.starts, key = track.key, from, to, step;
    if (frame < starts[key]) {
        key = 0;
    }
    while (key + 1 < starts.length && starts[key + 1] <= frame) {
        key += 1;
    }
    track.key = key;
    from = key * track.width;
    if (frame <= track.ends[key] || key + 1 === starts.length) {
        if (track.shown === key) {
            return null;
        }
        track.shown = key;
        return track.values.slice(from, from + track.width);
    }
    track.shown = -1;
    to = from + track.width;
    step = (frame - track.ends[key]) / (starts[key + 1] - track.ends[key]);
    return blend(track.values.slice(from, to), track.values.slice(to, to + track.width), step);
}

function blendNumbers(from, to, step) {
    var i;
    for (i = 0; i < from.length; i += 1) {
        from[i] += (to[i] - from[i]) * step;
    }
    return from;
}

function normaliseQuaternion(row) {
    var length = Math.sqrt(row[3] * row[3] + row[4] * row[4] + row[5] * row[5] + row[6] * row[6]) || 1, i;
    for (i = 3; i < 7; i += 1) {
        row[i] /= length;
    }
}

// Translation, quaternion and perhaps scales: the quaternion goes round at constant speed, all else straight.
function blendPoses(from, to, step) {
    var row = blendNumbers(from.slice(0), to, step), cosine = 0, angle, a, b, i;
    normaliseQuaternion(from);
    normaliseQuaternion(to);
    for (i = 3; i < 7; i += 1) {
        cosine += from[i] * to[i];
    }
    angle = Math.acos(Math.min(Math.abs(cosine), 1));
    a = 1 - step;
    b = step;
    if (angle > 1e-6) {
        a = Math.sin(a * angle) / Math.sin(angle);
        b = Math.sin(b * angle) / Math.sin(angle);
    }
    if (cosine < 0) {
        b = -b;
    }
    for (i = 3; i < 7; i += 1) {
        row[i] = a * from[i] + b * to[i];
    }
    return row;
}

// x-axis, y-axis, z-axis and origin of a node in its parent.
//
// Widths: 7 translation, quaternion; 10 and scales; 12 the axes themselves and the translation. track.t and track.a are
// what one step of a translation, and of a scale or an axis, stands for; track.c are scales that do not change.
function poseOf(track, row) {
    var a = track.a || 1, t = track.t, scale, x, y, z, w, i;
    if (row.length === 12) {
        for (i = 0; i < 12; i += 1) {
            row[i] *= i < 9 ? a : t;
        }
        return row;
    }
    normaliseQuaternion(row);
    scale = row.length === 10 ? [row[7] * a, row[8] * a, row[9] * a] : track.c || [1, 1, 1];
    x = row[3];
    y = row[4];
    z = row[5];
    w = row[6];
    return [
        (1 - 2 * (y * y + z * z)) * scale[0], 2 * (x * y + z * w) * scale[0], 2 * (x * z - y * w) * scale[0],
        2 * (x * y - z * w) * scale[1], (1 - 2 * (x * x + z * z)) * scale[1], 2 * (y * z + x * w) * scale[1],
        2 * (x * z + y * w) * scale[2], 2 * (y * z - x * w) * scale[2], (1 - 2 * (x * x + y * y)) * scale[2],
        row[0] * t, row[1] * t, row[2] * t
    ];
}

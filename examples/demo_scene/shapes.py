"""Turned, cut and bent shapes as triangle meshes with smooth normals and texture coordinates.

Lengths are metres, the axis of everything turned is y, triangles are counter-clockwise seen from outside. Texture
coordinates follow glTF: v grows downwards.
"""

import math

TAU = 2 * math.pi


class Geometry:
    """Vertex arrays (tuples of 3, 3 and 2 numbers) and three indices for each triangle."""

    def __init__(self):
        self.positions, self.normals, self.uvs, self.indices = [], [], [], []

    def vertex(self, position, normal, uv):
        self.positions.append(position)
        self.normals.append(_unit(normal))
        self.uvs.append(uv)
        return len(self.positions) - 1

    def triangle(self, a, b, c):
        """Leaves out a triangle without area, such as those of a grid that meets in a pole."""
        if len({self.positions[i] for i in (a, b, c)}) == 3:
            self.indices += (a, b, c)

    def quad(self, a, b, c, d):
        self.triangle(a, b, c)
        self.triangle(a, c, d)

    def flat_quad(self, a, b, c, d, uvs):
        """Four corners of its own with the normal of the plane."""
        normal = _cross(_minus(b, a), _minus(c, a))
        self.quad(*(self.vertex(p, normal, uv) for p, uv in zip((a, b, c, d), uvs)))


def _minus(a, b):
    return tuple(x - y for x, y in zip(a, b))


def _cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def _unit(v):
    length = math.sqrt(sum(c * c for c in v))
    return tuple(c / length for c in v)


def _polar(radius, y, angle):
    """Angles run from z to x, so that a growing angle turns counter-clockwise seen from above."""
    return (radius * math.sin(angle), y, radius * math.cos(angle))


def arc(centre_radius, centre_y, radius, start, end, steps):
    """Profile points on a circle; angles in degrees, 0 points outwards, 90 upwards."""
    angles = (math.radians(start + (end - start) * i / steps) for i in range(steps + 1))
    return [(centre_radius + radius * math.cos(a), centre_y + radius * math.sin(a)) for a in angles]


def curve(points, steps=6):
    """A smooth profile through `points` (Catmull-Rom), `steps` pieces between neighbours; radii stay above 0."""
    ends = [points[0], *points, points[-1]]
    result = []
    for p0, p1, p2, p3 in zip(ends, ends[1:], ends[2:], ends[3:]):
        for step in range(steps):
            t = step / steps
            result.append(tuple(0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t
                                       + (3 * b - a - 3 * c + d) * t ** 3) for a, b, c, d in zip(p0, p1, p2, p3)))
    return [(max(r, 0.0), y) for r, y in [*result, points[-1]]]


def lathe(runs, segments, turns=1.0, metres_per_repeat=None):
    """Turns profiles around the y axis.

    runs: polylines of (radius, y), smooth inside, with sharp edges between one run and the next. A run that goes
    upwards shows its outer side; one that goes inwards shows its top.
    turns: how often the texture goes round; a whole number. metres_per_repeat: profile length for one texture height;
    None stretches the texture over the whole run, v = 1 at its start.
    """
    geometry = Geometry()
    for run in runs:
        lengths = [0.0]
        for a, b in zip(run, run[1:]):
            lengths.append(lengths[-1] + math.dist(a, b))
        scale = metres_per_repeat or lengths[-1]
        rows = []
        for i, (radius, y) in enumerate(run):
            radius = radius if radius > 1e-9 else 0.0  # the cosine of a right angle is not quite 0
            dr, dy = _tangent(run, i)
            v = 1 - lengths[i] / scale
            # The last column stands exactly on the first: the sine of a full turn is not quite 0.
            angles = [TAU * (s % segments) / segments for s in range(segments + 1)]
            rows.append([geometry.vertex(_polar(radius, y, angle), _polar(dy, -dr, angle), (turns * s / segments, v))
                         for s, angle in enumerate(angles)])
        for low, high in zip(rows, rows[1:]):
            for s in range(segments):
                geometry.quad(low[s], low[s + 1], high[s + 1], high[s])
    return geometry


def _tangent(run, i):
    """Direction of a profile in its point i: the mean of its neighbouring pieces' directions."""
    pieces = [(run[j], run[j + 1]) for j in (i - 1, i) if 0 <= j < len(run) - 1]
    directions = [((b[0] - a[0]) / math.dist(a, b), (b[1] - a[1]) / math.dist(a, b)) for a, b in pieces]
    return sum(d[0] for d in directions), sum(d[1] for d in directions)


def sphere(radius, segments=48, rings=24):
    return lathe([arc(0, 0, radius, -90, 90, rings)], segments)


def cylinder(radius, height, bevel, segments=32):
    """Stands on y = 0; closed, with a bevel at both ends."""
    return lathe([[(0, 0), (radius - bevel, 0)], [(radius - bevel, 0), (radius, bevel)],
                  [(radius, bevel), (radius, height - bevel)], [(radius, height - bevel), (radius - bevel, height)],
                  [(radius - bevel, height), (0, height)]], segments)


def torus(radius, tube, segments=96, sides=16):
    return lathe([arc(radius, 0, tube, -180, 180, sides)], segments, turns=8)


def disc(radius, tile, rings=6, segments=96):
    """Faces upwards at y = 0; the texture repeats every `tile` metres along x and z."""
    geometry = Geometry()
    rows = [[geometry.vertex(p, (0, 1, 0), (p[0] / tile, p[2] / tile))
             for p in (_polar(radius * ring / rings, 0.0, TAU * s / segments) for s in range(segments))]
            for ring in range(rings + 1)]
    for inner, outer in zip(rows, rows[1:]):
        for s in range(segments):
            t = (s + 1) % segments
            geometry.quad(inner[s], outer[s], outer[t], inner[t])
    return geometry


def annulus(inside, outside, segments=192, turns=1.0, both_sides=False):
    """A flat ring at y = 0 that faces upwards; the texture goes round, v = 0 at its inner edge."""
    geometry = Geometry()
    for side in (1, -1) if both_sides else (1,):
        inner, outer = ([geometry.vertex(_polar(radius, 0.0, TAU * (s % segments) / segments), (0, side, 0),
                                         (turns * s / segments, v)) for s in range(segments + 1)]
                        for radius, v in ((inside, 0.0), (outside, 1.0)))
        for s in range(segments):
            quad = (inner[s], outer[s], outer[s + 1], inner[s + 1])
            geometry.quad(*(quad if side > 0 else reversed(quad)))
    return geometry


def bar(length, width, height, bevel):
    """A beam along x from x = 0, centred in y and z, with bevelled long edges."""
    y, z = height / 2, width / 2
    outline = [(y - bevel, z), (-y + bevel, z), (-y, z - bevel), (-y, -z + bevel), (-y + bevel, -z), (y - bevel, -z),
               (y, -z + bevel), (y, z - bevel)]
    geometry = Geometry()
    for (y0, z0), (y1, z1) in zip(outline, outline[1:] + outline[:1]):
        geometry.flat_quad((0, y0, z0), (0, y1, z1), (length, y1, z1), (length, y0, z0),
                           [(0, 0), (0, 0.1), (20 * length, 0.1), (20 * length, 0)])
    for x, direction in ((0.0, -1.0), (length, 1.0)):
        corners = [geometry.vertex((x, py, pz), (direction, 0, 0), (py * 20, pz * 20)) for py, pz in outline]
        for b, c in zip(corners[1:], corners[2:]):
            geometry.triangle(*((corners[0], b, c) if direction > 0 else (corners[0], c, b)))
    return geometry


def gear_rim(teeth, module, thickness, rim, bevel):
    """The toothed ring of a spur wheel, centred on the origin; a tooth stands at angle 0 (towards z).

    The pitch circle has the radius teeth * module / 2; two wheels of one module run together when their axes are the
    sum of these radii apart. rim: from the pitch circle to the inside of the ring.
    """
    pitch = teeth * module / 2
    root, tip, inside = pitch - 1.25 * module, pitch + module, pitch - rim
    # Radius and angle, in parts of the tooth's share of the circle, from one gap to the next.
    tooth = [(root, -0.5), (root, -0.33), (pitch, -0.235), (tip, -0.12), (tip, 0.12), (pitch, 0.235), (root, 0.33)]
    outline = [(radius, TAU * (number + part) / teeth) for number in range(teeth) for radius, part in tooth]
    geometry = Geometry()
    half = thickness / 2
    _gear_flanks(geometry, outline, half, bevel)
    for side in (1, -1):
        _gear_face(geometry, outline, inside, side * half, bevel)
    wall = [[geometry.vertex(_polar(inside, y, a), _polar(-1, 0, a), (a * 8 / TAU, y / thickness + 0.5))
             for _, a in [*outline, (0, outline[0][1] + TAU)]] for y in (half, -half)]
    for i in range(len(outline)):
        geometry.quad(wall[0][i], wall[0][i + 1], wall[1][i + 1], wall[1][i])
    return geometry


def _gear_flanks(geometry, outline, half, bevel):
    """The walls around the teeth and the bevels above and below them, each piece flat."""
    bands = [(-half, -bevel), (-half + bevel, 0.0), (half - bevel, 0.0), (half, -bevel)]  # y, change of radius
    for (r0, a0), (r1, a1) in zip(outline, outline[1:] + [(outline[0][0], outline[0][1] + TAU)]):
        for (low, shrink_low), (high, shrink_high) in zip(bands, bands[1:]):
            geometry.flat_quad(_polar(r0 + shrink_low, low, a0), _polar(r1 + shrink_low, low, a1),
                               _polar(r1 + shrink_high, high, a1), _polar(r0 + shrink_high, high, a0),
                               [(0, low * 50), (0.05, low * 50), (0.05, high * 50), (0, high * 50)])


def _gear_face(geometry, outline, inside, y, bevel):
    """Top (y > 0) or bottom of a toothed ring. The texture runs round: brushed metal shows circles."""
    normal = (0, 1 if y > 0 else -1, 0)
    columns = []
    for radius, angle in [*outline, (outline[0][0], outline[0][1] + TAU)]:
        u = angle * 8 / TAU
        columns.append((geometry.vertex(_polar(inside, y, angle), normal, (u, inside * 50)),
                        geometry.vertex(_polar(radius - bevel, y, angle), normal, (u, radius * 50))))
    for (inner0, outer0), (inner1, outer1) in zip(columns, columns[1:]):
        geometry.quad(*((inner0, outer0, outer1, inner1) if y > 0 else (inner0, inner1, outer1, outer0)))

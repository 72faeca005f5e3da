"""Pictures made from noise: wood, brushed metal, marble tiles, a calendar dial and the faces of the planets.

Every picture is a `Picture` of 8-bit RGB or RGBA rows, the top row first. Nothing depends on chance or on the machine:
the noise comes from an integer hash.
"""

import math
import struct
import zlib


class Picture:
    """Pixels of `components` bytes (3 RGB, 4 RGBA), rows from the top down."""

    def __init__(self, width, height, components, pixels):
        assert len(pixels) == width * height * components
        self.width, self.height, self.components, self.pixels = width, height, components, bytes(pixels)

    def png(self):
        """The bytes of a PNG file: filter "sub" on every row, which suits smooth pictures."""
        stride, step = self.width * self.components, self.components
        rows = bytearray()
        for start in range(0, len(self.pixels), stride):
            row = self.pixels[start:start + stride]
            rows.append(1)
            rows += row[:step]
            rows += bytes((a - b) & 255 for a, b in zip(row[step:], row))
        colour_type = {3: 2, 4: 6}[self.components]
        header = struct.pack(">IIBBBBB", self.width, self.height, 8, colour_type, 0, 0, 0)
        return (b"\x89PNG\r\n\x1a\n" + _chunk(b"IHDR", header) + _chunk(b"IDAT", zlib.compress(bytes(rows), 9))
                + _chunk(b"IEND", b""))


def _chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def _paint(width, height, colour_at):
    """A picture from a function (u, v) -> components 0..255; v grows downwards, samples lie in pixel centres."""
    pixels = bytearray()
    for row in range(height):
        v = (row + 0.5) / height
        for column in range(width):
            pixels += bytes(max(0, min(255, round(c))) for c in colour_at((column + 0.5) / width, v))
    return Picture(width, height, len(pixels) // (width * height), pixels)


def _mix(a, b, t):
    return tuple(x + (y - x) * t for x, y in zip(a, b))


def _step(low, high, x):
    """0 below `low`, 1 above `high`, smooth between."""
    t = max(0.0, min(1.0, (x - low) / (high - low)))
    return t * t * (3 - 2 * t)


def _gradient(stops, x):
    """The colour at `x` of ascending stops (position, colour)."""
    for (low, a), (high, b) in zip(stops, stops[1:]):
        if x <= high:
            return _mix(a, b, max(0.0, (x - low) / (high - low)))
    return stops[-1][1]


# --- Noise ------------------------------------------------------------------------------------------------------------

_SIZE = 64  # lattice cells along each axis; the noise repeats after them


def _hash_table():
    """_SIZE^3 values 0..1 on a lattice, scrambled by a multiplicative hash."""
    table = []
    state = 0x2545F491
    for _ in range(_SIZE ** 3):
        state = (state * 1664525 + 1013904223) & 0xFFFFFFFF
        mixed = ((state ^ (state >> 15)) * 0x9E3779B1) & 0xFFFFFFFF
        table.append((mixed >> 8) / 0xFFFFFF)
    return table


_LATTICE = _hash_table()


def _noise(x, y, z):
    """Value noise 0..1 in space, period 64 in each direction."""
    i, j, k = math.floor(x), math.floor(y), math.floor(z)
    x, y, z = x - i, y - j, z - k
    x, y, z = x * x * (3 - 2 * x), y * y * (3 - 2 * y), z * z * (3 - 2 * z)
    i0, i1 = i & 63, (i + 1) & 63
    j0, j1 = (j & 63) << 6, ((j + 1) & 63) << 6
    k0, k1 = (k & 63) << 12, ((k + 1) & 63) << 12
    t = _LATTICE
    a = t[i0 | j0 | k0] * (1 - x) + t[i1 | j0 | k0] * x
    b = t[i0 | j1 | k0] * (1 - x) + t[i1 | j1 | k0] * x
    c = t[i0 | j0 | k1] * (1 - x) + t[i1 | j0 | k1] * x
    d = t[i0 | j1 | k1] * (1 - x) + t[i1 | j1 | k1] * x
    return (a * (1 - y) + b * y) * (1 - z) + (c * (1 - y) + d * y) * z


def _fractal(x, y, z, octaves):
    """Octaves of noise, each of twice the frequency and half the weight; 0..1."""
    total, weight, norm = 0.0, 1.0, 0.0
    for octave in range(octaves):
        total += weight * _noise(x + 17 * octave, y, z)
        norm += weight
        x, y, z, weight = 2 * x, 2 * y, 2 * z, weight / 2
    return total / norm


def _on_sphere(u, v):
    """The point of the unit sphere whose map position is (u, v): noise taken there has no seam."""
    longitude, latitude = 2 * math.pi * u, math.pi * (0.5 - v)
    return (math.cos(latitude) * math.cos(longitude), math.sin(latitude), math.cos(latitude) * math.sin(longitude))


# --- Materials --------------------------------------------------------------------------------------------------------

def walnut():
    """Grain along u; repeats along u, since noise on a circle has no end."""
    def colour(u, v):
        x, y = math.cos(2 * math.pi * u), math.sin(2 * math.pi * u)
        bend = _fractal(1.2 * x + 5, 1.2 * y + 5, 3 * v, 3)
        rings = 0.5 + 0.5 * math.sin(2 * math.pi * (9 * v + 2.6 * bend))
        fibre = _fractal(6 * x + 9, 6 * y + 9, 150 * v, 2)
        base = _mix((66, 36, 20), (126, 76, 43), 0.25 + 0.6 * rings * rings)
        return _mix(base, (40, 21, 12), 0.55 * _step(0.45, 0.85, fibre))
    return _paint(256, 192, colour)


def brushed_metal():
    """Grey streaks along u, light enough to tint: the material's colour says which metal it is. Repeats both ways."""
    def colour(u, v):
        x, y = math.cos(2 * math.pi * u), math.sin(2 * math.pi * u)
        streak = 0.6 * _noise(1.5 * x + 3, 1.5 * y + 3, 64 * v) + 0.4 * _noise(3 * x + 11, 3 * y + 11, 128 * v)
        grey = 196 + 59 * streak
        return (grey, grey, grey)
    return _paint(64, 256, colour)


def marble_tiles():
    """Two tiles by two, green and white marble with veins and a fine joint; repeats."""
    def colour(u, v):
        tile = (int(2 * u) + int(2 * v)) % 2
        offset = 31 * tile
        vein = abs(_fractal(4 * u + offset, 4 * v + offset, 0.5 + 7 * tile, 4) - 0.5)
        line = 1 - _step(0.0, 0.045, vein)
        cloud = _fractal(3 * u + offset, 3 * v, 9.5, 3)
        plain = _mix((34, 62, 54), (58, 88, 76), cloud) if tile else _mix((196, 188, 170), (226, 220, 206), cloud)
        rgb = _mix(plain, (150, 150, 138), line * (0.3 if tile else 0.45))
        from_centre = max(abs((2 * u) % 1 - 0.5), abs((2 * v) % 1 - 0.5))
        return _mix(rgb, (96, 88, 74), _step(0.48, 0.49, from_centre))
    return _paint(192, 192, colour)


_LETTERS = {
    "A": "01110 10001 10001 11111 10001 10001 10001", "B": "11110 10001 11110 10001 10001 10001 11110",
    "C": "01111 10000 10000 10000 10000 10000 01111", "D": "11110 10001 10001 10001 10001 10001 11110",
    "E": "11111 10000 11110 10000 10000 10000 11111", "F": "11111 10000 11110 10000 10000 10000 10000",
    "G": "01111 10000 10000 10011 10001 10001 01111", "J": "00111 00010 00010 00010 10010 10010 01100",
    "L": "10000 10000 10000 10000 10000 10000 11111", "M": "10001 11011 10101 10101 10001 10001 10001",
    "N": "10001 11001 10101 10011 10001 10001 10001", "O": "01110 10001 10001 10001 10001 10001 01110",
    "P": "11110 10001 10001 11110 10000 10000 10000", "R": "11110 10001 10001 11110 10100 10010 10001",
    "S": "01111 10000 10000 01110 00001 00001 11110", "T": "11111 00100 00100 00100 00100 00100 00100",
    "U": "10001 10001 10001 10001 10001 10001 01110", "V": "10001 10001 10001 10001 01010 01010 00100",
    "Y": "10001 10001 01010 00100 00100 00100 00100",
}
_LETTERS = {letter: rows.split() for letter, rows in _LETTERS.items()}
_MONTHS = "JAN FEB MAR APR MAY JUN JUL AUG SEP OCT NOV DEC".split()


def _month_ink(u, row, width):
    """True where the dial strip has a letter; `row` counts pixels from the strip's top."""
    scale, top = 5, 22
    month, x = divmod(u * 12, 1)
    x = (x - 0.5) * width / 12 + 3 * 6 * scale / 2  # pixels from the left edge of the word, which stands in the middle
    column, line = int(x // scale), (row - top) // scale
    if x < 0 or column >= 17 or not 0 <= line < 7 or column % 6 == 5:
        return False
    letter = _MONTHS[int(month)][column // 6]
    return _LETTERS[letter][line][column % 6] == "1"


def calendar_dial():
    """A strip to be bent to a ring: u runs round the dial, the top row is its inner edge: read from outside."""
    width, height = 2048, 80
    ink, enamel = (28, 30, 60), (238, 230, 208)

    def colour(u, v):
        row = int(v * height)
        day = u * 365 % 1
        month = u * 12 % 1
        is_edge = row < 2 or row >= height - 2 or 14 <= row < 16 or 64 <= row < 66
        is_month = (month < 0.012 or month > 0.988) and row >= 14
        is_day = row < 14 and min(day, 1 - day) < 0.18
        is_week = row >= 66 and min(u * 72 % 1, 1 - u * 72 % 1) < 0.06
        if is_edge or is_month or is_day or is_week or _month_ink(u, row, width):
            return ink
        return _mix(enamel, (222, 208, 176), _noise(40 * u, 3 * v, 4.5))
    return _paint(width, height, colour)


# --- Heavenly bodies: maps of longitude and latitude ---------------------------------------------------------------------

def sun():
    def colour(u, v):
        x, y, z = _on_sphere(u, v)
        heat = _fractal(5 * x + 20, 5 * y + 20, 5 * z + 20, 3)
        return _gradient([(0.25, (226, 98, 18)), (0.5, (250, 168, 38)), (0.75, (255, 230, 130))], heat)
    return _paint(256, 128, colour)


def rock():
    """Grey and cratered, light enough to tint: Mercury and all moons."""
    def colour(u, v):
        x, y, z = _on_sphere(u, v)
        height = _fractal(3 * x + 30, 3 * y + 30, 3 * z + 30, 4)
        pits = _step(0.62, 0.8, _noise(9 * x + 40, 9 * y + 40, 9 * z + 40))
        grey = 150 + 120 * (height - 0.4) - 50 * pits
        return (grey, grey, grey)
    return _paint(256, 128, colour)


def venus():
    def colour(u, v):
        x, y, z = _on_sphere(u, v)
        haze = _fractal(2 * x + 8, 6 * y + 8 + _noise(3 * x + 9, 3 * y, 3 * z + 9), 2 * z + 8, 3)
        return _mix((196, 140, 74), (250, 226, 172), _step(0.25, 0.75, haze))
    return _paint(256, 128, colour)


def earth():
    def colour(u, v):
        x, y, z = _on_sphere(u, v)
        height = _fractal(1.7 * x + 13, 1.7 * y + 21, 1.7 * z + 6, 5)
        sea = _mix((12, 36, 92), (28, 92, 150), _step(0.36, 0.51, height))
        dry = _step(0.4, 0.6, _noise(3 * x + 50, 3 * y + 50, 3 * z + 50)) * (1 - abs(y))
        land = _mix((46, 104, 46), (176, 146, 86), dry)
        land = _mix(land, (122, 104, 84), _step(0.6, 0.7, height))
        ground = _mix(sea, land, _step(0.505, 0.52, height))
        ground = _mix(ground, (244, 248, 252), _step(0.93, 0.96, abs(y) + 0.12 * (height - 0.5)))
        cloud = _fractal(2.6 * x + 3, 4.5 * y + 33, 2.6 * z + 44, 4)
        return _mix(ground, (250, 250, 252), 0.85 * _step(0.54, 0.7, cloud))
    return _paint(256, 128, colour)


def mars():
    def colour(u, v):
        x, y, z = _on_sphere(u, v)
        dust = _fractal(2.4 * x + 25, 2.4 * y + 7, 2.4 * z + 15, 4)
        rgb = _gradient([(0.3, (110, 48, 28)), (0.5, (178, 84, 46)), (0.7, (218, 138, 86))], dust)
        return _mix(rgb, (246, 240, 234), _step(0.965, 0.985, abs(y) + 0.06 * (dust - 0.5)))
    return _paint(256, 128, colour)


def jupiter():
    stops = [(0.0, (150, 122, 100)), (0.14, (196, 170, 140)), (0.24, (232, 214, 184)), (0.33, (168, 104, 66)),
             (0.42, (238, 222, 196)), (0.52, (244, 232, 210)), (0.6, (176, 112, 74)), (0.7, (228, 206, 172)),
             (0.84, (190, 158, 126)), (1.0, (140, 112, 92))]

    def colour(u, v):
        x, y, z = _on_sphere(u, v)
        swirl = _fractal(3 * x + 5, 9 * y + 35, 3 * z + 5, 3) - 0.5
        rgb = _gradient(stops, max(0.0, min(1.0, v + 0.07 * swirl)))
        spot = math.hypot((u - 0.3) / 0.065, (v - 0.635) / 0.06)
        return _mix(rgb, (186, 72, 44), 0.9 * (1 - _step(0.75, 1.05, spot)))
    return _paint(256, 128, colour)


def saturn():
    def colour(u, v):
        x, y, z = _on_sphere(u, v)
        band = _noise(2.0, 14 * v, 5.5) + 0.15 * _noise(4 * x + 6, 8 * y + 6, 4 * z + 6)
        return _gradient([(0.2, (196, 160, 106)), (0.6, (232, 206, 150)), (1.1, (250, 236, 200))], band)
    return _paint(256, 128, colour)


def saturn_rings():
    """A strip to be bent to a ring, RGBA: the top row is the inner edge. Thin inside, one gap, sharp edges."""
    def colour(u, v):
        density = 0.55 + 0.45 * _noise(2.5, 30 * v, 8.5)
        density *= (0.3 + 0.7 * _step(0.2, 0.28, v)) * (1 - _step(0.97, 1.0, v))
        density *= 1 - 0.95 * (_step(0.65, 0.67, v) - _step(0.72, 0.74, v))
        shade = 0.6 + 0.4 * _noise(7.5, 22 * v, 3.5)
        return (230 * shade, 204 * shade, 158 * shade, 255 * density)
    return _paint(16, 128, colour)

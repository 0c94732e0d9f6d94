#!/usr/bin/env python3
"""Writes the bundled palettes, interface/palettes/*.pal, from formulas.

    scripts/make_palettes.py [FOLDER]

Cubehelix is D. A. Green's formula (Bull. Astr. Soc. India 39, 289, 2011). All others are paths in CIELAB (CIE 015, white
D65) turned into sRGB (IEC 61966-2-1): lightness L* advances by equal steps, so that equal steps of height look equal
(in "Blue to orange" towards its middle). Blue and yellow lie on the axis a* = 0, which red-green colour blindness leaves alone.
"""
import math
import pathlib
import struct
import sys

ENTRIES = 256
REACH = 20
WHITE = (0.95047, 1.0, 1.08883)


def linear_rgb(lightness, a, b):
    """CIELAB to linear sRGB; outside 0 ... 1 what a screen cannot show."""
    fy = (lightness + 16) / 116
    xyz = []
    for f, white in zip((fy + a / 500, fy, fy - b / 200), WHITE):
        xyz.append(white * (f**3 if f > 6 / 29 else 3 * (6 / 29) ** 2 * (f - 4 / 29)))
    x, y, z = xyz
    return (3.2404542 * x - 1.5371385 * y - 0.4985314 * z,
            -0.9692660 * x + 1.8760108 * y + 0.0415560 * z,
            0.0556434 * x - 0.2040259 * y + 1.0572252 * z)


def byte(linear):
    linear = min(max(linear, 0.0), 1.0)
    level = 12.92 * linear if linear <= 0.0031308 else 1.055 * linear ** (1 / 2.4) - 0.055
    return int(255 * level + 0.5)


def largest_share(lightness, a, b):
    """How much of the chroma a screen can show, 0 ... 1."""
    low, high = 0.0, 2.0
    for _ in range(40):
        middle = (low + high) / 2
        fits = all(-1e-9 <= c <= 1 + 1e-9 for c in linear_rgb(lightness, middle * a, middle * b))
        low, high = (middle, high) if fits else (low, middle)
    return min(low, 1.0)


def shown(path):
    """The colours of a path. Where it leaves what a screen can show its chroma gives way, without a kink: the smallest
    share within REACH entries, and of these the mean within REACH."""
    points = [path(i / (ENTRIES - 1)) for i in range(ENTRIES)]
    near = lambda values, i: values[max(i - REACH, 0) : i + REACH + 1]
    shares = [largest_share(*point) for point in points]
    least = [min(near(shares, i)) for i in range(ENTRIES)]
    even = [sum(near(least, i)) / len(near(least, i)) for i in range(ENTRIES)]
    return [tuple(byte(c) for c in linear_rgb(point[0], share * point[1], share * point[2]))
            for point, share in zip(points, even)]


def cubehelix(t, start=0.5, rotations=-1.5, hue=1.0, gamma=1.0):
    angle = 2 * math.pi * (start / 3 + 1 + rotations * t)
    level = t**gamma
    amplitude = hue * level * (1 - level) / 2
    cos, sin = math.cos(angle), math.sin(angle)
    return tuple(int(255 * min(max(level + amplitude * (u * cos + v * sin), 0.0), 1.0) + 0.5)
                 for u, v in ((-0.14861, 1.78277), (-0.29227, -0.90649), (1.97294, 0.0)))


def polar(lightness, chroma, hue):
    return lightness, chroma * math.cos(math.radians(hue)), chroma * math.sin(math.radians(hue))


# Paths from t = 0 to 1: L*, a*, b*.

def even_gray(t):
    return 100 * t, 0, 0


def even_fire(t):
    """Violet, red, orange, pale yellow."""
    return polar(4 + 93 * t, 75 * math.sin(math.pi * (0.12 + 0.8 * t)), -50 + 150 * t)


def blue_to_yellow(t):
    return 8 + 86 * t, 0, -45 + 110 * t


def blue_to_orange(t):
    """From both ends towards a light middle: heights above and below a plane."""
    away = abs(2 * t - 1)
    return polar(95 - 55 * away, 62 * away, 275 if t < 0.5 else 65)


def tables():
    yield "Cubehelix", [cubehelix(i / (ENTRIES - 1)) for i in range(ENTRIES)]
    yield "Even gray", shown(even_gray)
    yield "Even fire", shown(even_fire)
    yield "Blue to yellow", shown(blue_to_yellow)
    yield "Blue to orange", shown(blue_to_orange)


def main():
    bundled = pathlib.Path(__file__).parent.parent / "interface/palettes"
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else bundled
    folder.mkdir(parents=True, exist_ok=True)
    for name, table in tables():
        entries = b"".join(bytes((*colour, 0)) for colour in table)
        header = b"RIFF" + struct.pack("<I", len(entries) + 12) + b"PAL data" + struct.pack("<I", len(entries))
        (folder / (name + ".pal")).write_bytes(header + entries)


if __name__ == "__main__":
    main()

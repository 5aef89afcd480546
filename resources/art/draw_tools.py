#!/usr/bin/env python3
"""Draws the pictures of the tools window: the six folder icons that the
folder page offers (icon resources 101 to 106) and the built-in OEM logo.

Regenerate them with:

    python3 resources/art/draw_tools.py
    convert resources/oemlogo.bmp -quality 92 resources/oemlogo.jpg

Standard library only, the same bytes on every run.  The logo is shipped as a
JPEG, as the OEM page's picture box starts with one; ImageMagick turns the
drawn bitmap into it.  Files land in resources/:

    folder1.ico .. folder6.ico   32x32, 32-bit colour with an AND mask
    oemlogo.bmp                  the logo as drawn, 120x90
"""

import os
import struct
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from draw import Canvas, clamp, mix, sd_round_rect, save_bmp  # noqa: E402

OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")

# Each folder: its body colour and the mark on its front.
FOLDERS = [
    ((235, 190, 60), "star"),
    ((70, 140, 230), "note"),
    ((90, 180, 90), "disc"),
    ((220, 80, 70), "heart"),
    ((150, 100, 200), "gear"),
    ((120, 120, 120), "lock"),
]


def folder_alpha(x, y):
    """Coverage of the folder outline: a tab and a body."""
    tab = sd_round_rect(x, y, 3.0, 6.0, 14.0, 12.0, 1.5)
    body = sd_round_rect(x, y, 2.0, 9.0, 30.0, 28.0, 2.0)
    return clamp(0.5 - min(tab, body))


def mark_alpha(kind, x, y):
    cx, cy = 16.0, 19.0
    dx, dy = x - cx, y - cy
    if kind == "star":
        import math
        a = math.atan2(dy, dx)
        r = (dx * dx + dy * dy) ** 0.5
        edge = 3.0 + 2.5 * (0.5 + 0.5 * math.cos(5 * a + math.pi / 2))
        return clamp(edge - r + 0.5)
    if kind == "note":
        head = ((dx + 2) ** 2 + (dy - 3) ** 2) ** 0.5 - 2.5
        stem = sd_round_rect(x, y, cx - 0.2, cy - 5.0, cx + 1.3, cy + 3.0, 0.3)
        return clamp(0.5 - min(head, stem))
    if kind == "disc":
        r = (dx * dx + dy * dy) ** 0.5
        return clamp(0.5 - max(r - 5.5, 1.6 - r))
    if kind == "heart":
        l = ((dx + 2.2) ** 2 + (dy + 1.5) ** 2) ** 0.5 - 2.7
        rr = ((dx - 2.2) ** 2 + (dy + 1.5) ** 2) ** 0.5 - 2.7
        tri = max(dy - 5.0 + abs(dx) * 0.0, abs(dx) + dy - 4.5, -dy - 1.5)
        return clamp(0.5 - min(l, rr, tri))
    if kind == "gear":
        import math
        a = math.atan2(dy, dx)
        r = (dx * dx + dy * dy) ** 0.5
        outer = 5.0 + (1.3 if math.cos(8 * a) > 0 else 0.0)
        return clamp(0.5 - max(r - outer, 1.8 - r))
    # lock
    body = sd_round_rect(x, y, cx - 4.5, cy - 1.0, cx + 4.5, cy + 5.5, 1.0)
    r = ((dx) ** 2 + (dy + 1.0) ** 2) ** 0.5
    shackle = max(abs(r - 3.2) - 0.9, dy + 1.0)
    return clamp(0.5 - min(body, shackle))


def sample(fn, x, y, n=4):
    return sum(fn(x + (i + 0.5) / n, y + (j + 0.5) / n) for i in range(n) for j in range(n)) / (n * n)


def save_icon(colour, kind, name):
    size = 32
    rows = []
    for y in range(size):
        row = []
        for x in range(size):
            a = sample(folder_alpha, x, y)
            shade = 0.85 + 0.15 * (1.0 - y / 32.0)
            body = tuple(c * shade for c in colour)
            m = sample(lambda u, v: mark_alpha(kind, u, v), x, y)
            col = mix(body, (255.0, 255.0, 255.0), m * 0.9)
            row.append((col, a))
        rows.append(row)
    xor = bytearray()
    andmask = bytearray()
    for y in reversed(range(size)):
        bits = 0
        for x in range(size):
            (r, g, b), a = rows[y][x]
            alpha = int(clamp(a) * 255 + 0.5)
            if alpha < 128:
                # Black under the mask: a renderer without alpha XORs these onto the
                # background, where black changes nothing.
                xor += bytes((0, 0, 0, 0))
                bits |= 1 << (31 - x)
            else:
                xor += bytes((int(clamp(b / 255) * 255 + 0.5), int(clamp(g / 255) * 255 + 0.5),
                              int(clamp(r / 255) * 255 + 0.5), alpha))
        andmask += struct.pack(">I", bits)
    info = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(xor) + len(andmask), 0, 0, 0, 0)
    image = info + bytes(xor) + bytes(andmask)
    head = struct.pack("<HHH", 0, 1, 1)
    entry = struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(image), 6 + 16)
    with open(os.path.join(OUT, name), "wb") as f:
        f.write(head + entry + image)


def draw_logo():
    w, h = 120, 90
    c = Canvas(w, h, (255, 255, 255))
    for y in range(h):
        for x in range(w):
            t = y / h
            bg = mix((250, 246, 232), (214, 228, 246), t)
            ring = abs(((x - 60) ** 2 + (y - 38) ** 2) ** 0.5 - 22.0) - 5.0
            a = clamp(0.5 - ring)
            col = mix(bg, mix((40, 90, 170), (60, 150, 210), x / w), a)
            bar = sd_round_rect(x + 0.5, y + 0.5, 20.0, 70.0, 100.0, 78.0, 3.0)
            col = mix(col, (200, 130, 40), clamp(0.5 - bar))
            c.set(x, y, col)
    return c


def main():
    for i, (colour, kind) in enumerate(FOLDERS):
        save_icon(colour, kind, "folder%d.ico" % (i + 1))
    save_bmp(draw_logo(), "oemlogo.bmp")


if __name__ == "__main__":
    main()

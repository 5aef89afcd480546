#!/usr/bin/env python3
"""Draws every picture of Tamrix Utility 3.0 Pro.

Regenerate the artwork with:

    python3 resources/art/draw.py

The script needs nothing but the Python 3 standard library and always writes
the same bytes, so the generated files can be kept in the repository next to
it: background.bmp, title.bmp, close.bmp, minimise.bmp, apply.bmp and
tamrix.ico, all in resources/.

Everything is drawn procedurally.  Shapes are anti-aliased by evaluating a
distance function (or by supersampling) for each pixel, never by a rasteriser
whose output could change with a library version.
"""

import math
import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.dirname(HERE)

# Window geometry the skin has to agree with (pixels, client coordinates).
WIN_W, WIN_H = 526, 416
WIN_RADIUS = 25            # the window region cuts its corners round
HEADER_H = 92              # blue band holding the title and the caption buttons
TITLE_X, TITLE_Y = 16, 12  # where the title picture is blitted
TITLE_W, TITLE_H = 440, 72
PAGE = (10, 90, 514, 370)  # pages are painted over this rectangle
FOOTER = (10, 372, 514, 412)  # strip holding the row of buttons
CLOSE_AT = (472, 22)
MINIMISE_AT = (492, 22)

HEADER_TOP = (24, 58, 120)
HEADER_BOTTOM = (52, 104, 178)
BODY_TOP = (234, 238, 245)
BODY_BOTTOM = (214, 222, 234)
WINDOW_EDGE = (14, 32, 70)
WHITE = (255, 255, 255)


# ---------------------------------------------------------------- helpers ---

def clamp(v, lo=0.0, hi=1.0):
    return lo if v < lo else hi if v > hi else v


def lerp(a, b, t):
    return a + (b - a) * t


def mix(c1, c2, t):
    return (lerp(c1[0], c2[0], t), lerp(c1[1], c2[1], t), lerp(c1[2], c2[2], t))


def smoothstep(e0, e1, x):
    t = clamp((x - e0) / (e1 - e0))
    return t * t * (3.0 - 2.0 * t)


def sd_round_rect(px, py, x0, y0, x1, y1, r):
    """Signed distance from (px, py) to a rectangle with rounded corners."""
    cx, cy = (x0 + x1) * 0.5, (y0 + y1) * 0.5
    hx, hy = (x1 - x0) * 0.5 - r, (y1 - y0) * 0.5 - r
    qx, qy = abs(px - cx) - hx, abs(py - cy) - hy
    ox, oy = max(qx, 0.0), max(qy, 0.0)
    return math.sqrt(ox * ox + oy * oy) + min(max(qx, qy), 0.0) - r


def sd_segment(px, py, ax, ay, bx, by):
    dx, dy = bx - ax, by - ay
    t = clamp(((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy))
    ex, ey = px - ax - dx * t, py - ay - dy * t
    return math.sqrt(ex * ex + ey * ey)


def sd_polyline(px, py, pts):
    return min(sd_segment(px, py, *pts[i], *pts[i + 1]) for i in range(len(pts) - 1))


def cover(d):
    """Pixel coverage of a shape whose signed distance at the pixel centre is d."""
    return clamp(0.5 - d)


# Ordered dithering hides the steps of the long, gentle gradients.  The pattern
# is anchored to window coordinates so that the title, which is a piece of the
# header, dithers exactly like the background under it.
BAYER4 = ((0, 8, 2, 10), (12, 4, 14, 6), (3, 11, 1, 9), (15, 7, 13, 5))


class Canvas:
    def __init__(self, w, h, fill=(0, 0, 0)):
        self.w, self.h = w, h
        self.px = [[float(fill[0]), float(fill[1]), float(fill[2])] for _ in range(w * h)]

    def get(self, x, y):
        return tuple(self.px[y * self.w + x])

    def set(self, x, y, c):
        self.px[y * self.w + x] = [float(c[0]), float(c[1]), float(c[2])]

    def blend(self, x, y, c, a):
        if a <= 0.0 or not (0 <= x < self.w and 0 <= y < self.h):
            return
        p = self.px[y * self.w + x]
        if a >= 1.0:
            p[0], p[1], p[2] = float(c[0]), float(c[1]), float(c[2])
        else:
            p[0] += (c[0] - p[0]) * a
            p[1] += (c[1] - p[1]) * a
            p[2] += (c[2] - p[2]) * a

    def crop(self, x0, y0, w, h):
        c = Canvas(w, h)
        for y in range(h):
            for x in range(w):
                c.set(x, y, self.get(x0 + x, y0 + y))
        return c

    def rows(self, dither_origin=None):
        """Yields rows of 8-bit (r, g, b) tuples, top row first."""
        for y in range(self.h):
            row = []
            for x in range(self.w):
                p = self.px[y * self.w + x]
                if dither_origin is None:
                    off = 0.0
                else:
                    ox, oy = dither_origin
                    off = (BAYER4[(y + oy) & 3][(x + ox) & 3] - 7.5) / 16.0
                row.append(tuple(int(clamp(math.floor(v + off + 0.5), 0, 255)) for v in p))
            yield row


def save_bmp(canvas, name, dither_origin=None):
    """24-bit Windows bitmap: BITMAPFILEHEADER + BITMAPINFOHEADER, bottom-up."""
    stride = (canvas.w * 3 + 3) & ~3
    rows = list(canvas.rows(dither_origin))
    data = bytearray()
    for row in reversed(rows):
        line = bytearray()
        for r, g, b in row:
            line += bytes((b, g, r))
        line += b"\0" * (stride - len(line))
        data += line
    info = struct.pack("<IiiHHIIiiII", 40, canvas.w, canvas.h, 1, 24, 0,
                       len(data), 2835, 2835, 0, 0)
    head = struct.pack("<2sIHHI", b"BM", 14 + len(info) + len(data), 0, 0, 14 + len(info))
    with open(os.path.join(OUT, name), "wb") as f:
        f.write(head + info + data)


def box_blur(mask, w, h, radius, passes=2):
    """Separable box blur of a float mask, used for soft shadows."""
    for _ in range(passes):
        tmp = [0.0] * (w * h)
        for y in range(h):
            for x in range(w):
                s, n = 0.0, 0
                for k in range(x - radius, x + radius + 1):
                    if 0 <= k < w:
                        s += mask[y * w + k]
                    n += 1
                tmp[y * w + x] = s / n
        out = [0.0] * (w * h)
        for y in range(h):
            for x in range(w):
                s, n = 0.0, 0
                for k in range(y - radius, y + radius + 1):
                    if 0 <= k < h:
                        s += tmp[k * w + x]
                    n += 1
                out[y * w + x] = s / n
        mask = out
    return mask


# --------------------------------------------------------------- the skin ---

def header_color(x, y):
    """Colour of the blue header at window pixel (x, y).

    The title picture is blitted over the header, so it is painted from this
    very function and the seam stays invisible."""
    px, py = x + 0.5, y + 0.5
    t = smoothstep(0.0, HEADER_H, py) * 0.75 + (py / HEADER_H) * 0.25
    c = mix(HEADER_TOP, HEADER_BOTTOM, t)
    # A faint glow behind the emblem, the way the old skins lit their logos.
    dx, dy = (px - 60.0) / 150.0, (py - 44.0) / 70.0
    glow = clamp(1.0 - math.sqrt(dx * dx + dy * dy))
    c = mix(c, (92, 146, 214), 0.22 * glow * glow)
    # Two wide, very soft arcs sweeping across the right of the band.
    for cx, cy, r, a in ((620.0, 250.0, 300.0, 0.07), (640.0, 262.0, 268.0, 0.05)):
        d = abs(math.sqrt((px - cx) ** 2 + (py - cy) ** 2) - r)
        c = mix(c, (150, 190, 240), a * clamp(1.0 - d / 10.0) * clamp(1.0 - d / 10.0))
    # Glassy sheen on the upper part of the band.
    c = mix(c, WHITE, 0.07 * clamp(1.0 - py / 38.0))
    return c


def body_color(x, y):
    t = clamp((y + 0.5 - HEADER_H) / (WIN_H - HEADER_H))
    return mix(BODY_TOP, BODY_BOTTOM, t)


def draw_background():
    c = Canvas(WIN_W, WIN_H)
    for y in range(WIN_H):
        for x in range(WIN_W):
            c.set(x, y, header_color(x, y) if y < HEADER_H else body_color(x, y))

    # The seam between header and body: a dark rule and a light highlight.
    for x in range(WIN_W):
        c.blend(x, HEADER_H - 1, (16, 40, 88), 0.65)
        c.set(x, HEADER_H, (176, 200, 234))
        c.blend(x, HEADER_H + 1, (200, 216, 238), 0.6)

    # Soft recess around the page area so that the pages look set into the body.
    x0, y0, x1, y1 = PAGE
    for y in range(HEADER_H + 1, y1 + 6):
        for x in range(x0 - 6, x1 + 6):
            d = sd_round_rect(x + 0.5, y + 0.5, x0, y0, x1, y1, 3.0)
            if d > 0.0:
                c.blend(x, y, (96, 112, 140), 0.16 * clamp(1.0 - d / 4.0))
            if -0.5 < d <= 0.5:
                c.blend(x, y, (150, 162, 184), 0.8)

    # Footer: a shallow tray under the buttons, darker than the body, with an
    # inner shadow along its top and a light lip along its bottom.
    fx0, fy0, fx1, fy1 = FOOTER
    for y in range(fy0 - 2, fy1 + 2):
        for x in range(fx0 - 2, fx1 + 2):
            d = sd_round_rect(x + 0.5, y + 0.5, fx0, fy0, fx1, fy1, 7.0)
            inside = cover(d)
            if inside > 0.0:
                t = (y + 0.5 - fy0) / (fy1 - fy0)
                tray = mix((200, 209, 224), (212, 220, 232), t)
                c.blend(x, y, tray, inside)
                depth = y + 0.5 - fy0
                c.blend(x, y, (80, 96, 126), inside * 0.22 * clamp(1.0 - depth / 5.0))
            edge = clamp(1.0 - abs(d) * 1.2)
            if edge > 0.0:
                lip = smoothstep(fy0 + 8.0, fy1 - 6.0, y + 0.5)
                c.blend(x, y, mix((150, 162, 184), (248, 250, 253), lip), edge * 0.9)

    # Rim of the window, following the rounded region; everything outside the
    # region takes the rim colour, so the region may be a pixel off either way.
    for y in range(WIN_H):
        for x in range(WIN_W):
            d = sd_round_rect(x + 0.5, y + 0.5, 0.0, 0.0, WIN_W, WIN_H, WIN_RADIUS)
            if d > -4.0:
                if y >= HEADER_H + 1:
                    c.blend(x, y, (250, 252, 255), 0.7 * clamp(1.0 - abs(d + 2.0)))
                else:
                    c.blend(x, y, (120, 160, 220), 0.35 * clamp(1.0 - abs(d + 2.0)))
                c.blend(x, y, WINDOW_EDGE, clamp(d + 1.5))
    return c


# ------------------------------------------------------------- the emblem ---
#
# A gold gear with a white hub carrying a green check mark: the machine is
# tuned and all is well.  It is described in a unit square (-1..1, y down) so
# the title and the 32x32 icon draw it from the same description.

GEAR_TEETH = 8
GEAR_TIP = 0.98
GEAR_ROOT = 0.76
HUB = 0.52
CHECK = ((-0.30, 0.00), (-0.08, 0.22), (0.32, -0.22))


def gear_radius(ang):
    """Outline of the gear in polar form: trapezoid teeth with sloped flanks."""
    k = math.cos(GEAR_TEETH * ang)
    tooth = clamp((k + 0.15) * 1.6)
    return GEAR_ROOT + (GEAR_TIP - GEAR_ROOT) * tooth


def inside_gear(u, v):
    r = math.sqrt(u * u + v * v)
    if r <= GEAR_ROOT:
        return True
    return r <= gear_radius(math.atan2(v, u))


# Directions probed to find the gear's rim: a point is on the rim when the
# gear does not extend a full line width around it, flanks included.
PROBES = tuple((math.cos(k * math.pi / 4.0), math.sin(k * math.pi / 4.0)) for k in range(8))


def emblem_sample(u, v, line, stroke=0.10, hub=HUB):
    """Colour of the emblem at (u, v), or None outside it.  line is the width
    of the dark outlines, stroke the half width of the check mark."""
    if not inside_gear(u, v):
        return None
    r = math.sqrt(u * u + v * v)
    check = sd_polyline(u, v, CHECK)
    if check < stroke:
        g = clamp((v + 0.25) / 0.5)
        return mix((110, 214, 86), (32, 150, 44), g)
    if check < stroke + line:
        return (18, 86, 24)
    if r < hub - line:
        # Hub: a white dome lit from the upper left.
        lx, ly = u + 0.18, v + 0.22
        t = clamp(math.sqrt(lx * lx + ly * ly) / (hub * 1.3))
        return mix((255, 255, 252), (172, 196, 228), t * t)
    if r < hub:
        return (96, 64, 10)
    if r > GEAR_ROOT - line - 0.05:
        for dx, dy in PROBES:
            if not inside_gear(u + dx * line, v + dy * line):
                return (96, 64, 10)
    # Gold body with a brighter upper half and a band of shine.
    t = clamp((v + 1.0) / 2.0)
    c = mix((255, 226, 126), (196, 128, 22), t)
    shine = clamp(1.0 - abs(u + v + 0.55) / 0.35)
    c = mix(c, (255, 246, 200), 0.45 * shine)
    return c


def render_emblem(size, line, samples=4, stroke=0.10, hub=HUB):
    """Returns size*size (colour, alpha) pairs, supersampled for smooth edges."""
    out = []
    for y in range(size):
        for x in range(size):
            acc = [0.0, 0.0, 0.0]
            hit = 0
            for sy in range(samples):
                for sx in range(samples):
                    u = ((x + (sx + 0.5) / samples) / size) * 2.0 - 1.0
                    v = ((y + (sy + 0.5) / samples) / size) * 2.0 - 1.0
                    s = emblem_sample(u, v, line, stroke, hub)
                    if s is not None:
                        acc[0] += s[0]
                        acc[1] += s[1]
                        acc[2] += s[2]
                        hit += 1
            if hit:
                out.append(((acc[0] / hit, acc[1] / hit, acc[2] / hit), hit / (samples * samples)))
            else:
                out.append(((0.0, 0.0, 0.0), 0.0))
    return out


# ---------------------------------------------------------- pixel lettering ---
#
# A small bitmap font, drawn for the name only.  Rows 0-6 hold capitals and
# ascenders, lower case sits on rows 2-6, rows 7-8 take descenders.

GLYPHS = {
    "T": ["#####", "..#..", "..#..", "..#..", "..#..", "..#..", "..#.."],
    "U": ["#...#", "#...#", "#...#", "#...#", "#...#", "#...#", ".###."],
    "P": ["####.", "#...#", "#...#", "####.", "#....", "#....", "#...."],
    "a": ["....", "....", ".##.", "...#", ".###", "#..#", ".###"],
    "m": [".....", ".....", "##.#.", "#.#.#", "#.#.#", "#.#.#", "#.#.#"],
    "r": ["....", "....", "#.##", "##..", "#...", "#...", "#..."],
    "i": ["#", ".", "#", "#", "#", "#", "#"],
    "x": [".....", ".....", "#...#", ".#.#.", "..#..", ".#.#.", "#...#"],
    "t": [".#..", ".#..", "####", ".#..", ".#..", ".#..", "..##"],
    "l": ["#.", "#.", "#.", "#.", "#.", "#.", ".#"],
    "y": ["....", "....", "#..#", "#..#", "#..#", "#..#", ".###", "...#", ".##."],
    "o": ["....", "....", ".##.", "#..#", "#..#", "#..#", ".##."],
    "3": [".###.", "#...#", "....#", "..##.", "....#", "#...#", ".###."],
    "0": [".###.", "#...#", "#..##", "#.#.#", "##..#", "#...#", ".###."],
    ".": [".", ".", ".", ".", ".", ".", "#"],
    " ": ["..", "..", "..", "..", "..", "..", ".."],
}
FONT_ROWS = 9


def layout_text(text, scale):
    """Cells (x, y) of the lit font pixels, in output pixels, and the width."""
    cells, pen = [], 0
    for i, ch in enumerate(text):
        rows = GLYPHS[ch]
        for gy, row in enumerate(rows):
            for gx, bit in enumerate(row):
                if bit == "#":
                    cells.append((pen + gx * scale, gy * scale))
        pen += len(rows[0]) * scale
        if i + 1 < len(text):
            pen += scale
    return cells, pen


def draw_lettering(canvas, x0, y0, runs, scale):
    """Draws runs of (text, top colour, bottom colour) with an outline and a
    soft shadow; the font pixels are scaled up into square blocks."""
    w, h = canvas.w, canvas.h
    lit = [0] * (w * h)
    colour_of = {}
    pen = x0
    space = len(GLYPHS[" "][0]) * scale + scale
    for k, (text, top, bottom) in enumerate(runs):
        if k:
            pen += space + scale
        cells, width = layout_text(text, scale)
        for cx, cy in cells:
            for yy in range(scale):
                for xx in range(scale):
                    px, py = pen + cx + xx, y0 + cy + yy
                    if 0 <= px < w and 0 <= py < h:
                        lit[py * w + px] = 1
                        colour_of[(px, py)] = (top, bottom)
        pen += width
    # Soft shadow, cast down and to the right.
    shadow = [0.0] * (w * h)
    for y in range(h):
        for x in range(w):
            if lit[y * w + x]:
                for sx, sy in ((2, 2), (1, 2), (2, 1), (3, 3)):
                    if x + sx < w and y + sy < h:
                        shadow[(y + sy) * w + x + sx] = 1.0
    shadow = box_blur(shadow, w, h, 1)
    for y in range(h):
        for x in range(w):
            canvas.blend(x, y, (6, 18, 48), 0.55 * shadow[y * w + x])
    # A one pixel dark outline keeps the letters crisp on the gradient.
    for y in range(h):
        for x in range(w):
            if lit[y * w + x]:
                continue
            near = 0
            for dx, dy in ((-1, 0), (1, 0), (0, -1), (0, 1)):
                nx, ny = x + dx, y + dy
                if 0 <= nx < w and 0 <= ny < h and lit[ny * w + nx]:
                    near = 1
            if near:
                canvas.blend(x, y, (10, 28, 66), 0.75)
    # The letters, with a gradient running over the capital height.
    cap = 7 * scale
    for (x, y), (top, bottom) in colour_of.items():
        t = clamp((y - y0) / float(cap - 1))
        canvas.set(x, y, mix(top, bottom, t))
        # Light top edge of each stroke catches the light.
        if y > 0 and not lit[(y - 1) * w + x]:
            canvas.blend(x, y, WHITE, 0.5)


def draw_title(background):
    # Cut from the background itself, so the title merges into the header.
    title = background.crop(TITLE_X, TITLE_Y, TITLE_W, TITLE_H)

    size, ex, ey = 56, 4, 8
    emblem = render_emblem(size, 0.06)
    # Drop shadow under the gear.
    sw, sh = size + 12, size + 12
    mask = [0.0] * (sw * sh)
    for y in range(size):
        for x in range(size):
            mask[(y + 8) * sw + x + 8] = emblem[y * size + x][1]
    mask = box_blur(mask, sw, sh, 2)
    for y in range(sh):
        for x in range(sw):
            title.blend(ex + x - 6, ey + y - 6, (4, 14, 40), 0.5 * mask[y * sw + x])
    for y in range(size):
        for x in range(size):
            col, a = emblem[y * size + x]
            title.blend(ex + x, ey + y, col, a)

    draw_lettering(title, ex + size + 14, 22, (
        ("Tamrix Utility", (255, 255, 250), (204, 220, 244)),
        ("3.0 Pro", (255, 236, 160), (236, 176, 56)),
    ), 3)
    return title


# ------------------------------------------------------ small button faces ---

def draw_caption_button(glyph, at):
    """16x16 caption button.  Pure white is the transparent colour, so the
    face is anti-aliased against the header colour under it and everything
    the face does not touch is left pure white."""
    c = Canvas(16, 16, WHITE)
    for y in range(16):
        for x in range(16):
            px, py = x + 0.5, y + 0.5
            d = sd_round_rect(px, py, 0.0, 0.0, 16.0, 16.0, 4.0)
            a = cover(d)
            if a <= 0.0:
                continue
            t = clamp(py / 16.0)
            face = mix((112, 160, 222), (34, 76, 150), t)
            if py < 8.0:
                face = mix(face, WHITE, 0.18 * (1.0 - py / 8.0))
            rim = clamp(1.0 - abs(d + 0.5))
            face = mix(face, (10, 28, 68), rim)
            inner = clamp(1.0 - abs(d + 1.5))
            if rim < 0.5:
                face = mix(face, (168, 200, 240), 0.5 * inner * (1.0 - t))
            g = glyph(px, py)
            if g > 0.0:
                # Glyph in near-white: pure white would punch a hole.
                face = mix(face, (250, 251, 253), g)
            under = header_color(at[0] + x, at[1] + y)
            col = mix(under, face, a)
            c.set(x, y, col)
            if col == (255.0, 255.0, 255.0):
                c.set(x, y, (254, 254, 254))
    return c


def close_glyph(px, py):
    d = min(sd_segment(px, py, 4.8, 4.8, 11.2, 11.2), sd_segment(px, py, 11.2, 4.8, 4.8, 11.2))
    return cover(d - 0.85)


def minimise_glyph(px, py):
    return cover(sd_round_rect(px, py, 4.5, 9.5, 11.5, 12.0, 0.8))


def draw_apply():
    c = Canvas(24, 24, WHITE)
    pts = ((5.0, 12.5), (9.8, 17.3), (19.0, 6.5))
    for y in range(24):
        for x in range(24):
            px, py = x + 0.5, y + 0.5
            d = sd_polyline(px, py, pts)
            outline = cover(d - 3.1)
            if outline <= 0.0:
                continue
            c.blend(x, y, (22, 104, 30), outline)
            t = clamp((py - 5.0) / 13.0)
            body = mix((130, 222, 100), (36, 156, 46), t)
            c.blend(x, y, body, cover(d - 2.1))
            # Highlight along the stroke's upper side.
            c.blend(x, y, (214, 248, 196), 0.55 * cover(sd_polyline(px - 0.4, py + 0.9, pts) - 0.5)
                    * cover(d - 1.6))
    return c


# --------------------------------------------------------------- the icon ---

def median_cut(colours, limit):
    """Deterministic median-cut palette for a list of (r, g, b) ints."""
    boxes = [sorted(colours)]
    while len(boxes) < limit:
        best, spread, axis = -1, 0, 0
        for i, box in enumerate(boxes):
            if len(set(box)) < 2:
                continue
            for ch in range(3):
                vals = [p[ch] for p in box]
                s = max(vals) - min(vals)
                if s > spread:
                    best, spread, axis = i, s, ch
        if best < 0:
            break
        box = sorted(boxes.pop(best), key=lambda p: (p[axis], p))
        half = len(box) // 2
        boxes += [box[:half], box[half:]]
    palette = []
    for box in boxes:
        n = len(box)
        palette.append(tuple((sum(p[ch] for p in box) + n // 2) // n for ch in range(3)))
    return palette


def save_icon(name):
    """A 32x32, 256-colour icon with its AND mask, the classic ICO layout."""
    size = 32
    # Bolder check and hub than in the title: the icon is read at a glance.
    emblem = render_emblem(size, 0.085, samples=6, stroke=0.13, hub=0.56)
    pixels, opaque = [], []
    for col, a in emblem:
        solid = a >= 0.5
        if solid and a < 1.0:
            # Edge pixels get darkened slightly rather than becoming fringes:
            # the icon lands on light and dark desktops alike.
            col = mix((60, 50, 30), col, a)
        pixels.append(tuple(int(clamp(math.floor(v + 0.5), 0, 255)) for v in col))
        opaque.append(solid)
    used = sorted(set(p for p, o in zip(pixels, opaque) if o))
    palette = [(0, 0, 0)]
    palette += used if len(used) <= 255 else median_cut([p for p, o in zip(pixels, opaque) if o], 255)
    palette += [(0, 0, 0)] * (256 - len(palette))

    def nearest(p):
        best, bd = 1, None
        for i in range(1, 256):
            q = palette[i]
            d = (p[0] - q[0]) ** 2 + (p[1] - q[1]) ** 2 + (p[2] - q[2]) ** 2
            if bd is None or d < bd:
                best, bd = i, d
        return best

    index = {}
    xor = bytearray()
    andmask = bytearray()
    for y in reversed(range(size)):
        bits = 0
        for x in range(size):
            p, o = pixels[y * size + x], opaque[y * size + x]
            if o:
                if p not in index:
                    index[p] = nearest(p)
                xor.append(index[p])
            else:
                xor.append(0)
                bits |= 1 << (31 - x)
        andmask += struct.pack(">I", bits)
    pal = b"".join(bytes((b, g, r, 0)) for r, g, b in palette)
    info = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 8, 0,
                       len(xor) + len(andmask), 0, 0, 256, 0)
    image = info + pal + bytes(xor) + bytes(andmask)
    head = struct.pack("<HHH", 0, 1, 1)
    entry = struct.pack("<BBBBHHII", size, size, 0, 0, 1, 8, len(image), 6 + 16)
    with open(os.path.join(OUT, name), "wb") as f:
        f.write(head + entry + image)


# ------------------------------------------------------------------- main ---

def main():
    background = draw_background()
    save_bmp(background, "background.bmp", dither_origin=(0, 0))
    save_bmp(draw_title(background), "title.bmp", dither_origin=(TITLE_X, TITLE_Y))
    save_bmp(draw_caption_button(close_glyph, CLOSE_AT), "close.bmp")
    save_bmp(draw_caption_button(minimise_glyph, MINIMISE_AT), "minimise.bmp")
    save_bmp(draw_apply(), "apply.bmp")
    save_icon("tamrix.ico")


if __name__ == "__main__":
    main()

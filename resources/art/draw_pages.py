#!/usr/bin/env python3
"""Draws the pictures of the pages: button pictures, score symbols and the
decorations of the beige panels.

Regenerate them with:

    python3 resources/art/draw_pages.py

Like draw.py, which draws the window skin, this needs only the Python 3
standard library and writes the same bytes on every run.  The files land in
resources/ next to the skin:

    about.bmp                      the emblem for the About page's white strip
    quit.bmp protect.bmp bios.bmp  20x20 button pictures; pure white is the
    optimise.bmp internet.bmp      transparent colour
    score_grey1..4.bmp             the CPU score scale, grey and lit; drawn
    score_lit1..4.bmp              opaque on the page's beige
    home_memory.bmp home_clock.bmp decorations, opaque on the page's beige
    drive.bmp bios_chip.bmp sound.bmp

Every picture is a stack of layers, each a signed distance function with a
paint.  Pixels are supersampled, so edges are smooth and nothing depends on a
rasteriser's rounding.
"""

import math
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import draw  # noqa: E402  (the skin's helpers; importing it draws nothing)
from draw import Canvas, clamp, mix, sd_round_rect, sd_segment, save_bmp, box_blur  # noqa: E402

WHITE = (255.0, 255.0, 255.0)
# The pages are beige panels; the opaque pictures are painted on this colour.
BEIGE = (239.0, 231.0, 206.0)
# Edges of the transparent button pictures fade into this near white instead
# of pure white, which is the transparent colour and would eat them.
HALO = (238.0, 238.0, 238.0)
# Below this coverage an edge pixel of a button picture is left transparent: a
# faint grey dot on the white face looks like dirt, not like smoothing.
HALO_CUT = 0.14
SHADOW = (92.0, 74.0, 40.0)


# ------------------------------------------------------------ primitives ---

def shade(c, k):
    """Darkens (k < 0) towards black or lightens (k > 0) towards white."""
    return mix(c, (0, 0, 0), -k) if k < 0 else mix(c, WHITE, k)


def sd_circle(px, py, cx, cy, r):
    return math.hypot(px - cx, py - cy) - r


def sd_box(px, py, x0, y0, x1, y1):
    return sd_round_rect(px, py, x0, y0, x1, y1, 0.0)


def sd_capsule(px, py, ax, ay, bx, by, hw):
    return sd_segment(px, py, ax, ay, bx, by) - hw


def sd_polygon(px, py, pts):
    """Exact signed distance to a simple polygon (negative inside)."""
    n = len(pts)
    d = (px - pts[0][0]) ** 2 + (py - pts[0][1]) ** 2
    s = 1.0
    j = n - 1
    for i in range(n):
        xi, yi = pts[i]
        xj, yj = pts[j]
        ex, ey = xj - xi, yj - yi
        wx, wy = px - xi, py - yi
        t = clamp((wx * ex + wy * ey) / (ex * ex + ey * ey))
        bx, by = wx - ex * t, wy - ey * t
        d = min(d, bx * bx + by * by)
        c1, c2, c3 = py >= yi, py < yj, ex * wy > ey * wx
        if (c1 and c2 and c3) or (not c1 and not c2 and not c3):
            s = -s
        j = i
    return s * math.sqrt(d)


def sd_ellipse(px, py, cx, cy, rx, ry):
    """First-order distance to an ellipse: good enough for thin strokes."""
    ux, uy = (px - cx) / rx, (py - cy) / ry
    k = math.hypot(ux, uy)
    if k < 1e-9:
        return -min(rx, ry)
    gx, gy = ux / (k * rx), uy / (k * ry)
    return (k - 1.0) / max(math.hypot(gx, gy), 1e-9)


def sd_arc(px, py, cx, cy, r, a0, a1, hw):
    """Stroke of half width hw along the arc of radius r between the angles
    a0 < a1 (radians, 0 pointing up, growing clockwise), with round ends."""
    a = math.atan2(px - cx, -(py - cy))
    if a0 <= a <= a1:
        return abs(math.hypot(px - cx, py - cy) - r) - hw
    ends = ((cx + r * math.sin(a0), cy - r * math.cos(a0)),
            (cx + r * math.sin(a1), cy - r * math.cos(a1)))
    return min(math.hypot(px - ex, py - ey) for ex, ey in ends) - hw


def polar(cx, cy, r, a):
    """Point at radius r and angle a (0 up, clockwise) around (cx, cy)."""
    return cx + r * math.sin(a), cy - r * math.cos(a)


def union(*ds):
    return min(ds)


def vgrad(c0, c1, y0, y1):
    return lambda x, y: mix(c0, c1, clamp((y - y0) / (y1 - y0)))


def hgrad(c0, c1, x0, x1):
    return lambda x, y: mix(c0, c1, clamp((x - x0) / (x1 - x0)))


def radial(c0, c1, cx, cy, r):
    return lambda x, y: mix(c0, c1, clamp(math.hypot(x - cx, y - cy) / r))


# ------------------------------------------------------------- rendering ---

class Layer:
    """One shape of a picture.  sdf(x, y) < 0 inside; paint and line are a
    colour or a function of (x, y); line is drawn as an inner band of the
    given width.  A layer with opacity below one glazes what is under it and
    never paints over empty background."""

    def __init__(self, sdf, paint, line=None, width=0.0, opacity=1.0, box=None):
        self.sdf, self.paint, self.line, self.width = sdf, paint, line, width
        self.opacity, self.box = opacity, box

    def sample(self, x, y):
        if self.box is not None:
            x0, y0, x1, y1 = self.box
            if x < x0 or x > x1 or y < y0 or y > y1:
                return None
        d = self.sdf(x, y)
        if d >= 0.0:
            return None
        src = self.line if self.line is not None and d > -self.width else self.paint
        return src(x, y) if callable(src) else src


def render(w, h, layers, ss=6):
    """Returns w*h (colour, coverage) pairs: the mean colour of the samples
    that some layer covers, and the share of samples covered."""
    out = []
    n = ss * ss
    for y in range(h):
        for x in range(w):
            acc = [0.0, 0.0, 0.0]
            hit = 0
            for sy in range(ss):
                py = y + (sy + 0.5) / ss
                for sx in range(ss):
                    px = x + (sx + 0.5) / ss
                    col = None
                    for layer in layers:
                        c = layer.sample(px, py)
                        if c is None:
                            continue
                        if layer.opacity < 1.0:
                            if col is not None:
                                col = mix(col, c, layer.opacity)
                        else:
                            col = c
                    if col is not None:
                        acc[0] += col[0]
                        acc[1] += col[1]
                        acc[2] += col[2]
                        hit += 1
            if hit:
                out.append(((acc[0] / hit, acc[1] / hit, acc[2] / hit), hit / n))
            else:
                out.append(((0.0, 0.0, 0.0), 0.0))
    return out


def is_white(col):
    return all(math.floor(v + 0.5) >= 255 for v in col)


def on_white(w, h, pixels):
    """A button picture: everything outside the drawing is the transparent
    pure white; edges fade to a near white so that they never turn into it."""
    c = Canvas(w, h, WHITE)
    for y in range(h):
        for x in range(w):
            col, a = pixels[y * w + x]
            if a < HALO_CUT:
                continue
            col = mix(HALO, col, a)
            c.set(x, y, (254, 254, 254) if is_white(col) else col)
    return c


def opaque(w, h, pixels, base=BEIGE, shadow=(1.5, 1.5, 1, 0.30)):
    """A picture painted on the page's colour, with a soft shadow cast down
    and to the right so that it sits on the panel rather than in it."""
    c = Canvas(w, h, base)
    if shadow:
        dx, dy, radius, strength = shadow
        # The offset may be fractional: sample the coverage bilinearly.
        ix, iy = int(math.floor(dx)), int(math.floor(dy))
        fx, fy = dx - ix, dy - iy
        mask = [0.0] * (w * h)

        def cov(x, y):
            return pixels[y * w + x][1] if 0 <= x < w and 0 <= y < h else 0.0

        for y in range(h):
            for x in range(w):
                sx, sy = x - ix, y - iy
                mask[y * w + x] = (cov(sx, sy) * (1 - fx) * (1 - fy) + cov(sx - 1, sy) * fx * (1 - fy)
                                   + cov(sx, sy - 1) * (1 - fx) * fy + cov(sx - 1, sy - 1) * fx * fy)
        mask = box_blur(mask, w, h, radius)
        for y in range(h):
            for x in range(w):
                c.blend(x, y, SHADOW, strength * mask[y * w + x])
    for y in range(h):
        for x in range(w):
            col, a = pixels[y * w + x]
            c.blend(x, y, col, a)
    return c


# ----------------------------------------------------------- about strip ---

def draw_about():
    """The emblem as in the icon, on the white strip of the About page."""
    size = 32
    emblem = draw.render_emblem(size, 0.085, samples=6, stroke=0.13, hub=0.56)
    c = Canvas(size, size, WHITE)
    for y in range(size):
        for x in range(size):
            col, a = emblem[y * size + x]
            if a <= 0.0:
                continue
            col = mix(WHITE, col, a)
            c.set(x, y, (254, 254, 254) if is_white(col) else col)
    return c


# ------------------------------------------------------- button pictures ---
#
# 20x20, read at a glance next to the button's caption: strong shapes, a dark
# outline, a light from the upper left.

def draw_quit():
    """A red power symbol: leaving the program."""
    cx, cy, r, hw = 10.0, 10.8, 6.3, 1.75
    gap = math.radians(40.0)

    def sdf(x, y):
        # sd_arc counts angles from the top and cannot wrap round; measured
        # upside down, the ring is the arc about the top and its opening is
        # about the bottom.
        ring = sd_arc(x, 2.0 * cy - y, cx, cy, r, gap - math.pi, math.pi - gap, hw)
        bar = sd_capsule(x, y, cx, 2.3, cx, 9.6, hw)
        return min(ring, bar)

    def paint(x, y):
        c = mix((246, 96, 78), (176, 22, 22), clamp((y - 3.0) / 15.0))
        # A little light on the upper left of the ring.
        lit = clamp(1.0 - math.hypot(x - 6.0, y - 6.0) / 5.0)
        return mix(c, (255, 190, 170), 0.5 * lit)

    return [Layer(sdf, paint, (112, 12, 12), 0.85)]


def shield_outline(cx=10.0, top=1.0, hw=7.0, mid=8.4, tip=18.8, inset=0.0, steps=12):
    """Polygon of a heater shield, straight top and sides, the bottom two arcs
    meeting in a point, shrunk by inset (the caller rounds it back out)."""
    depth = tip - mid
    # Circle radius that makes the arcs leave the sides vertically and meet
    # at the tip.
    rad = (depth * depth + hw * hw) / (2.0 * hw)
    r = rad - inset
    ox = hw - rad                      # centre of the right-hand arc, from cx
    end = math.acos(clamp(-ox / r))    # where that arc reaches the middle line
    right = [(cx + ox + r * math.cos(end * k / steps), mid + r * math.sin(end * k / steps))
             for k in range(steps + 1)]
    left = [(2.0 * cx - x, y) for x, y in reversed(right[:-1])]
    return [(cx - hw + inset, top + inset), (cx + hw - inset, top + inset)] + right + left


SHIELD = shield_outline(inset=1.6)


def shield_sdf(x, y):
    return sd_polygon(x, y, SHIELD) - 1.6


def draw_protect():
    """A blue shield with a gold rim: protection."""
    def rim(x, y):
        return mix((255, 232, 140), (200, 136, 24), clamp((y - 2.0) / 16.0))

    def field(x, y):
        if x < 10.0:
            c = mix((112, 176, 250), (44, 104, 214), clamp((y - 3.0) / 14.0))
        else:
            c = mix((48, 108, 214), (18, 58, 156), clamp((y - 3.0) / 14.0))
        return c

    def star(x, y):
        pts = []
        for k in range(10):
            rr = 4.3 if k % 2 == 0 else 1.85
            pts.append(polar(10.0, 9.9, rr, k * math.pi / 5.0))
        return sd_polygon(x, y, pts)

    return [
        Layer(shield_sdf, rim, (22, 40, 96), 0.85),
        Layer(lambda x, y: shield_sdf(x, y) + 2.1, field),
        Layer(star, (255, 222, 96), (150, 96, 8), 0.55),
    ]


def draw_bios():
    """A chip with three legs on each side: the BIOS."""
    # Legs two pixels wide on whole pixels, one pixel apart: anything finer
    # smears into a grey fringe at this size.
    lo, hi = 4.0, 16.0
    legs = []
    for c in (7.0, 10.0, 13.0):
        legs.append((c - 1.0, 1.0, c + 1.0, lo + 0.5))      # top
        legs.append((c - 1.0, hi - 0.5, c + 1.0, 19.0))     # bottom
        legs.append((1.0, c - 1.0, lo + 0.5, c + 1.0))      # left
        legs.append((hi - 0.5, c - 1.0, 19.0, c + 1.0))     # right

    def leg_sdf(x, y):
        return min(sd_box(x, y, *r) for r in legs)

    def leg_paint(x, y):
        return mix((224, 228, 234), (128, 134, 146), clamp((x + y - 4.0) / 30.0))

    def body(x, y):
        c = mix((86, 92, 108), (30, 32, 40), clamp((x + y - 9.0) / 22.0))
        return c

    return [
        Layer(leg_sdf, leg_paint, (86, 90, 100), 0.45),
        Layer(lambda x, y: sd_round_rect(x, y, lo, lo, hi, hi, 1.2), body, (12, 12, 16), 0.8),
        # Bevel: the lit top-left edge of the package.
        Layer(lambda x, y: max(sd_round_rect(x, y, lo + 0.8, lo + 0.8, hi - 0.8, hi - 0.8, 0.6),
                               -sd_round_rect(x, y, lo + 1.8, lo + 1.8, hi - 0.8, hi - 0.8, 0.6)),
              (160, 168, 186), opacity=0.55),
        # Pin-one mark.
        Layer(lambda x, y: sd_circle(x, y, 7.0, 7.0, 1.1), (150, 158, 176)),
    ]


def gear_sdf(x, y, cx, cy, tip, root, teeth, phase=0.0):
    r = math.hypot(x - cx, y - cy)
    k = math.cos(teeth * (math.atan2(y - cy, x - cx) + phase))
    tooth = clamp((k + 0.2) * 2.4)
    return (r - (root + (tip - root) * tooth)) * 0.9


def draw_optimise():
    """A lightning bolt over a steel gear: speed for the machine."""
    cx, cy = 10.0, 10.0
    # The bolt stays inside the hub so that the whole rim of teeth shows.
    bolt = tuple((cx + (x - 10.2) * 0.72, cy + (y - 10.1) * 0.72) for x, y in
                 ((9.3, 1.6), (14.4, 1.6), (11.6, 7.4), (15.4, 7.4),
                  (7.2, 18.6), (9.0, 10.6), (5.0, 10.6)))

    def steel(x, y):
        return mix((214, 222, 234), (104, 116, 138), clamp((x + y - 4.0) / 28.0))

    def hub(x, y):
        return mix((96, 156, 246), (26, 72, 176), clamp(math.hypot(x - 7.5, y - 7.5) / 8.0))

    def bolt_paint(x, y):
        return mix((255, 240, 110), (246, 150, 20), clamp((y - 2.0) / 16.0))

    return [
        Layer(lambda x, y: gear_sdf(x, y, cx, cy, 9.9, 7.6, 8, math.pi / 8.0), steel,
              (44, 52, 70), 0.85),
        Layer(lambda x, y: sd_circle(x, y, cx, cy, 6.3), hub, (22, 44, 104), 0.8),
        Layer(lambda x, y: sd_polygon(x, y, bolt), bolt_paint, (120, 60, 0), 0.8),
    ]


def draw_internet():
    """A blue globe with its meridians and parallels: the network."""
    cx, cy, r = 10.0, 10.0, 8.6

    def sphere(x, y):
        return sd_circle(x, y, cx, cy, r)

    def sea(x, y):
        return mix((138, 204, 255), (22, 82, 192), clamp(math.hypot(x - 7.0, y - 6.5) / 11.0))

    def grid(x, y):
        d = min(
            abs(y - cy),
            abs(sd_ellipse(x, y, cx, cy, 3.9, r)),
            abs(x - cx),
            # Parallels: chords at a third of the radius above and below.
            abs(y - (cy - 4.6)),
            abs(y - (cy + 4.6)),
        )
        return max(d - 0.5, sphere(x, y) + 0.7)

    return [
        Layer(sphere, sea, (16, 48, 124), 0.85),
        Layer(grid, (214, 238, 255), opacity=0.8),
        # Gloss on the upper left of the ball.
        Layer(lambda x, y: sd_ellipse(x, y, 7.2, 6.0, 3.4, 2.4), WHITE, opacity=0.25),
    ]




def draw_score(rank, base):
    top = SCORE_TOPS[rank - 1]
    x0, x1, bottom = 5.0, 20.0, 23.0

    def bar(x, y):
        return sd_round_rect(x, y, x0, top, x1, bottom, 2.2)

    def body(x, y):
        # Round like a rod: bright a third of the way across, dark at the edges.
        t = (x - x0) / (x1 - x0)
        k = 0.42 * (1.0 - abs(t - 0.32) / 0.68) ** 2 - 0.22 * clamp((t - 0.55) / 0.45)
        c = shade(base, k)
        return shade(c, -0.12 * clamp((y - top) / 22.0))

    def cap(x, y):
        return max(bar(x, y) + 1.0, y - top - 2.6)

    return [
        Layer(bar, body, shade(base, -0.5), 0.9),
        Layer(cap, WHITE, opacity=0.35),
    ]


# -------------------------------------------------------- page pictures ---

def rotated(fn, cx, cy, deg):
    """fn drawn in a frame centred on (cx, cy) and turned by deg degrees."""
    a = math.radians(deg)
    ca, sa = math.cos(a), math.sin(a)

    def g(x, y):
        dx, dy = x - cx, y - cy
        return fn(dx * ca + dy * sa, -dx * sa + dy * ca)
    return g


def draw_memory():
    """A memory module, tilted, with its chips and gold contacts."""
    cx, cy, turn = 24.0, 24.0, -22.0
    half_l, half_h = 21.5, 8.0

    def pcb(u, v):
        d = sd_round_rect(u, v, -half_l, -half_h, half_l, half_h, 1.0)
        # The key notch in the contact edge and the clip notches on the ends.
        d = max(d, -sd_round_rect(u, v, -5.6, half_h - 2.6, -3.6, half_h + 2.0, 0.9))
        d = max(d, -sd_circle(u, v, -half_l, 2.0, 1.6), -sd_circle(u, v, half_l, 2.0, 1.6))
        return d

    def pcb_paint(u, v):
        return mix((58, 164, 92), (22, 110, 58), clamp((v + half_h) / (2 * half_h)))

    def contacts(u, v):
        if v < half_h - 3.2 or v > half_h or -6.2 < u < -3.0:
            return 1.0
        if abs(u) > half_l - 1.6:
            return 1.0
        # A comb of 1.2 wide fingers every 2 units.
        f = (u + 100.0) % 2.0
        return abs(f - 1.0) - 0.6

    def chips(u, v):
        d = 1e9
        for x0 in (-19.0, -9.0, 1.0, 11.0):
            d = min(d, sd_round_rect(u, v, x0, -6.0, x0 + 8.0, 2.6, 0.6))
        return d

    def chip_paint(u, v):
        return mix((70, 74, 84), (24, 24, 30), clamp((v + 6.0) / 8.6))

    def chip_gloss(u, v):
        return max(chips(u, v) + 0.7, v + 4.6)

    def traces(u, v):
        # Short gold tracks between the chips and the contacts.
        if v < 3.2 or v > half_h - 3.4:
            return 1.0
        f = (u + 100.0) % 2.5
        return max(abs(f - 1.25) - 0.28, abs(u) - 19.0)

    def gold(u, v):
        return mix((255, 226, 120), (196, 138, 30), clamp((v - 4.0) / 4.0))

    def t(fn):
        return rotated(fn, cx, cy, turn)

    return [
        Layer(t(pcb), t(pcb_paint), (14, 72, 38), 0.9),
        Layer(t(traces), (214, 170, 70), opacity=0.8),
        Layer(t(contacts), t(gold), (150, 100, 20), 0.3),
        Layer(t(chips), t(chip_paint), (10, 10, 14), 0.6),
        Layer(t(chip_gloss), WHITE, opacity=0.18),
    ]


def draw_clock():
    """A round clock at ten past ten, the hands' friendliest angle."""
    cx, cy, r = 16.0, 16.0, 14.6

    def rim(x, y):
        return mix((92, 140, 222), (20, 50, 118), clamp((x + y - 4.0) / 50.0))

    def face(x, y):
        return mix((255, 254, 248), (224, 226, 232), clamp(math.hypot(x - 12.0, y - 11.0) / 18.0))

    def ticks(x, y):
        d = 1e9
        for k in range(12):
            a = k * math.pi / 6.0
            if k % 3 == 0:
                d = min(d, sd_capsule(x, y, *polar(cx, cy, 8.6, a), *polar(cx, cy, 10.6, a), 0.85))
            else:
                d = min(d, sd_capsule(x, y, *polar(cx, cy, 9.6, a), *polar(cx, cy, 10.6, a), 0.5))
        return d

    hour, minute, second = math.radians(-55.0), math.radians(60.0), math.radians(200.0)
    hands = (34, 38, 50)
    return [
        Layer(lambda x, y: sd_circle(x, y, cx, cy, r), rim, (12, 30, 76), 0.9),
        Layer(lambda x, y: sd_circle(x, y, cx, cy, r - 2.6), face, (120, 130, 150), 0.6),
        Layer(ticks, (52, 58, 74)),
        Layer(lambda x, y: sd_capsule(x, y, cx, cy, *polar(cx, cy, 6.2, hour), 1.25), hands),
        Layer(lambda x, y: sd_capsule(x, y, cx, cy, *polar(cx, cy, 9.4, minute), 0.9), hands),
        Layer(lambda x, y: sd_capsule(x, y, *polar(cx, cy, 2.5, second + math.pi),
                                      *polar(cx, cy, 10.0, second), 0.4), (214, 34, 28)),
        Layer(lambda x, y: sd_circle(x, y, cx, cy, 1.6), (214, 34, 28), (120, 16, 12), 0.5),
        # The glass catches the light on the upper left.
        Layer(lambda x, y: max(sd_circle(x, y, cx, cy, r - 3.2), -sd_circle(x, y, cx + 2.6, cy + 3.0, r - 3.6)),
              WHITE, opacity=0.45),
    ]


def draw_drive():
    """An opened hard disk: platter, spindle, head arm and the case's screws."""
    pcx, pcy, pr = 24.0, 19.5, 14.2

    def case(x, y):
        return mix((226, 230, 238), (150, 156, 170), clamp((x + y - 10.0) / 70.0))

    def platter(x, y):
        # Brushed mirror: the light sweeps round the disc in two lobes.
        a = math.atan2(y - pcy, x - pcx)
        k = 0.5 + 0.5 * math.cos(2.0 * a + 1.9)
        c = mix((92, 100, 120), (236, 240, 248), k)
        rr = math.hypot(x - pcx, y - pcy)
        return shade(c, -0.08 * clamp((rr - 6.0) / 8.0))

    def rings(x, y):
        rr = math.hypot(x - pcx, y - pcy)
        return min(abs(rr - 8.6), abs(rr - 11.6)) - 0.25

    def screws(x, y):
        return min(sd_circle(x, y, sx, sy, 1.7) for sx, sy in ((10.2, 5.8), (37.8, 5.8), (10.2, 42.2), (37.8, 42.2)))

    def slots(x, y):
        d = 1e9
        for sx, sy in ((10.2, 5.8), (37.8, 5.8), (10.2, 42.2), (37.8, 42.2)):
            d = min(d, sd_capsule(x, y, sx - 0.9, sy + 0.9, sx + 0.9, sy - 0.9, 0.35))
        return d

    pivot = (34.4, 37.2)
    head = (28.4, 22.6)

    def arm(x, y):
        # Tapering from the pivot towards the head.
        ax, ay = pivot
        bx, by = head
        dx, dy = bx - ax, by - ay
        t = clamp(((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy))
        return sd_segment(x, y, ax, ay, bx, by) - (2.2 - 1.2 * t)

    def arm_paint(x, y):
        return mix((190, 196, 208), (110, 118, 134), clamp((x - y + 20.0) / 30.0))

    return [
        Layer(lambda x, y: sd_round_rect(x, y, 7.0, 2.5, 41.0, 45.5, 3.2), case, (66, 72, 86), 0.9),
        # A shallow well around the platter, darker than the lid.
        Layer(lambda x, y: sd_circle(x, y, pcx, pcy, pr + 1.3), (136, 142, 156)),
        Layer(lambda x, y: sd_circle(x, y, pcx, pcy, pr), platter, (70, 76, 92), 0.7),
        Layer(rings, (60, 66, 84), opacity=0.25),
        Layer(lambda x, y: sd_circle(x, y, pcx, pcy, 3.6), radial((250, 250, 252), (150, 156, 170), pcx - 1.2, pcy - 1.2, 4.5),
              (60, 66, 80), 0.6),
        Layer(lambda x, y: sd_circle(x, y, pcx, pcy, 1.0), (90, 96, 110)),
        Layer(screws, radial((236, 238, 242), (120, 126, 140), 0, 0, 1), (60, 66, 80), 0.5),
        Layer(slots, (70, 76, 90)),
        Layer(arm, arm_paint, (52, 58, 72), 0.6),
        Layer(lambda x, y: sd_round_rect(x, y, head[0] - 1.3, head[1] - 1.0, head[0] + 1.3, head[1] + 1.0, 0.4),
              (56, 60, 72)),
        Layer(lambda x, y: sd_circle(x, y, pivot[0], pivot[1], 3.6), (72, 78, 94), (36, 40, 50), 0.6),
        Layer(lambda x, y: sd_circle(x, y, pivot[0], pivot[1], 1.4), (196, 202, 214)),
        # The green activity light on the case's bottom edge.
        Layer(lambda x, y: sd_round_rect(x, y, 15.0, 41.0, 19.4, 43.0, 1.0), (72, 214, 84), (24, 96, 32), 0.5),
    ]


# Capitals of a 3x5 pixel font for the label of the chip.
LABEL_GLYPHS = {
    "B": ["##.", "#.#", "##.", "#.#", "##."],
    "I": ["#", "#", "#", "#", "#"],
    "O": [".#.", "#.#", "#.#", "#.#", ".#."],
    "S": [".##", "#..", ".#.", "..#", "##."],
}


def text_cells(text, x0, y0):
    cells, pen = set(), x0
    for ch in text:
        rows = LABEL_GLYPHS[ch]
        for gy, row in enumerate(rows):
            for gx, bit in enumerate(row):
                if bit == "#":
                    cells.add((pen + gx, y0 + gy))
        pen += len(rows[0]) + 1
    return cells


def draw_bios_chip():
    """The firmware chip on a piece of motherboard, with its label."""
    board = (3.0, 3.0, 45.0, 45.0)
    lo, hi = 13.0, 35.0
    # Five legs a side, two pixels wide on whole pixels so they stay crisp.
    pins = [16.0 + 4.0 * i for i in range(5)]

    def pcb(x, y):
        return mix((46, 150, 84), (18, 98, 52), clamp((x + y - 6.0) / 84.0))

    def legs(x, y):
        d = 1e9
        for p in pins:
            d = min(d, sd_box(x, y, p - 1.0, lo - 3.0, p + 1.0, hi + 3.0),
                    sd_box(x, y, lo - 3.0, p - 1.0, hi + 3.0, p + 1.0))
        return d

    def tracks(x, y):
        # Every other leg runs out to a via near the board's edge.
        d = 1e9
        for i, p in enumerate(pins):
            if i % 2:
                continue
            d = min(d, sd_segment(x, y, p, lo - 3.0, p, 8.0), sd_segment(x, y, p, hi + 3.0, p, 40.0),
                    sd_segment(x, y, lo - 3.0, p, 8.0, p), sd_segment(x, y, hi + 3.0, p, 40.0, p))
        return d - 1.0

    def vias(x, y):
        d = 1e9
        for i, p in enumerate(pins):
            if i % 2:
                continue
            for vx, vy in ((p, 8.0), (p, 40.0), (8.0, p), (40.0, p)):
                d = min(d, sd_circle(x, y, vx, vy, 2.1))
        return d

    def via_holes(x, y):
        d = 1e9
        for i, p in enumerate(pins):
            if i % 2:
                continue
            for vx, vy in ((p, 8.0), (p, 40.0), (8.0, p), (40.0, p)):
                d = min(d, sd_circle(x, y, vx, vy, 0.85))
        return d

    def body(x, y):
        return mix((78, 82, 94), (26, 28, 34), clamp((x + y - 2 * lo) / (2 * (hi - lo))))

    cells = text_cells("BIOS", 18, 22)

    def letters(x, y):
        return -1.0 if (int(math.floor(x)), int(math.floor(y))) in cells else 1.0

    def label(x, y):
        return mix((250, 250, 246), (196, 204, 218), clamp((x + y - 34.0) / 24.0))

    return [
        Layer(lambda x, y: sd_round_rect(x, y, *board, 3.5), pcb, (10, 70, 36), 0.9),
        Layer(tracks, (222, 182, 82)),
        Layer(vias, (232, 196, 96), (150, 110, 30), 0.5),
        Layer(via_holes, (24, 70, 40)),
        Layer(legs, hgrad((236, 238, 244), (150, 156, 170), lo - 3.0, hi + 3.0), (92, 96, 108), 0.4),
        Layer(lambda x, y: sd_round_rect(x, y, lo, lo, hi, hi, 1.5), body, (8, 8, 12), 0.9),
        Layer(lambda x, y: max(sd_round_rect(x, y, lo + 1.0, lo + 1.0, hi - 1.0, hi - 1.0, 1.0),
                               -sd_round_rect(x, y, lo + 2.0, lo + 2.0, hi - 1.0, hi - 1.0, 1.0)),
              (170, 178, 196), opacity=0.45),
        Layer(lambda x, y: sd_circle(x, y, lo + 3.6, lo + 3.6, 1.3), (110, 116, 130)),
        Layer(lambda x, y: sd_round_rect(x, y, 16.0, 20.0, 33.0, 29.0, 0.8), label, (120, 128, 144), 0.6),
        Layer(letters, (26, 54, 132)),
    ]


def draw_sound():
    """A loudspeaker sending out three waves."""
    mouth = 25.0

    def magnet(x, y):
        return sd_round_rect(x, y, 4.0, 17.0, 14.6, 31.0, 1.8)

    def magnet_paint(x, y):
        return mix((110, 116, 132), (40, 42, 52), clamp((y - 17.0) / 14.0))

    cone_pts = ((13.6, 17.6), (mouth, 7.0), (mouth, 41.0), (13.6, 30.4))

    def cone_paint(x, y):
        c = mix((216, 222, 234), (110, 118, 136), clamp((y - 8.0) / 32.0))
        return shade(c, -0.15 * clamp((x - 14.0) / 11.0))

    def waves(x, y):
        d = 1e9
        for r in (7.4, 12.8, 18.2):
            d = min(d, sd_arc(x, y, mouth, 24.0, r, math.radians(45.0), math.radians(135.0), 1.55))
        return d

    def wave_paint(x, y):
        return mix((102, 176, 250), (24, 86, 196), clamp((y - 10.0) / 28.0))

    return [
        Layer(lambda x, y: sd_polygon(x, y, cone_pts), cone_paint, (40, 46, 60), 0.9),
        # The rim of the cone seen edge on.
        Layer(lambda x, y: sd_ellipse(x, y, mouth, 24.0, 2.6, 17.2), vgrad((150, 158, 176), (64, 70, 86), 7.0, 41.0),
              (34, 38, 50), 0.8),
        Layer(magnet, magnet_paint, (20, 22, 30), 0.9),
        Layer(lambda x, y: max(magnet(x, y) + 1.4, y - 20.0), WHITE, opacity=0.3),
        Layer(waves, wave_paint, (16, 54, 130), 0.8),
    ]


# ------------------------------------------------------------------- main ---

def main():
    save_bmp(draw_about(), "about.bmp")

    for name, layers in (("quit", draw_quit()), ("protect", draw_protect()), ("bios", draw_bios()),
                         ("optimise", draw_optimise()), ("internet", draw_internet())):
        save_bmp(on_white(20, 20, render(20, 20, layers, 8)), name + ".bmp")

    for rank in range(1, 5):
        for kind, base in (("grey", SCORE_GREY), ("lit", SCORE_LIT[rank - 1])):
            pixels = render(SCORE_W, SCORE_H, draw_score(rank, base), 6)
            save_bmp(opaque(SCORE_W, SCORE_H, pixels, shadow=(1.0, 0.0, 0, 0.22)),
                     "score_%s%d.bmp" % (kind, rank))

    for name, size, layers in (("home_memory", 48, draw_memory()), ("home_clock", 32, draw_clock()),
                               ("drive", 48, draw_drive()), ("bios_chip", 48, draw_bios_chip()),
                               ("sound", 48, draw_sound())):
        shadow = (1.5, 1.5, 1, 0.30) if size > 32 else (1.0, 1.0, 1, 0.26)
        save_bmp(opaque(size, size, render(size, size, layers, 5), shadow=shadow), name + ".bmp")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Draws the picture beside the home page's introduction.

    python3 resources/art/draw_home.py

writes homepc.bmp (32 x 32, a small monitor) in resources/.  The memory and
clock pictures of the same page come from draw_pages.py.  Like draw.py, whose
helpers it borrows, this needs nothing but the Python 3 standard library and
always writes the same bytes.

The picture is shown with white as the transparent colour.  Its edges are
therefore smoothed against the beige of the pages, not against white, and no
pixel of the shape is left pure white.
"""

import math
import os
import sys

sys.dont_write_bytecode = True  # no __pycache__ beside the artwork
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from draw import Canvas, clamp, cover, mix, save_bmp, sd_round_rect  # noqa: E402

WHITE = (255, 255, 255)
PAGE_BEIGE = (0xEF, 0xE7, 0xCE)  # the panels' colour, under every picture


def sd_circle(px, py, cx, cy, r):
    return math.hypot(px - cx, py - cy) - r


class Picture:
    """Layers painted over the page's beige; what no layer touches becomes the mask colour."""

    def __init__(self, size):
        self.size = size
        self.canvas = Canvas(size, size, PAGE_BEIGE)
        self.alpha = [0.0] * (size * size)

    def paint(self, colour_at, distance_at, samples=4):
        """Paints a shape given by a signed distance, supersampled, coloured per pixel."""
        n = self.size
        for y in range(n):
            for x in range(n):
                acc = 0.0
                for sy in range(samples):
                    for sx in range(samples):
                        px = x + (sx + 0.5) / samples
                        py = y + (sy + 0.5) / samples
                        acc += cover(distance_at(px, py) * samples) if samples > 1 else cover(distance_at(px, py))
                a = acc / (samples * samples)
                if a <= 0.0:
                    continue
                self.canvas.blend(x, y, colour_at(x + 0.5, y + 0.5), a)
                i = y * n + x
                self.alpha[i] = max(self.alpha[i], a)

    def finish(self):
        out = Canvas(self.size, self.size, WHITE)
        for y in range(self.size):
            for x in range(self.size):
                if self.alpha[y * self.size + x] < 0.04:
                    continue
                r, g, b = self.canvas.get(x, y)
                out.set(x, y, (min(r, 252), min(g, 252), min(b, 252)))
        return out


def draw_pc():
    """A small monitor on its foot, its screen lit in the title's blue."""
    p = Picture(32)
    # Foot and neck.
    p.paint(lambda x, y: mix((150, 156, 170), (96, 102, 118), clamp((y - 24) / 6)),
            lambda x, y: min(sd_round_rect(x, y, 9, 27, 23, 30, 1.5), sd_round_rect(x, y, 14, 22, 18, 28, 0.5)))
    # Case.
    p.paint(lambda x, y: mix((214, 218, 226), (150, 158, 174), clamp((y - 3) / 20)),
            lambda x, y: sd_round_rect(x, y, 2, 3, 30, 23, 2.5))
    p.paint(lambda x, y: (70, 78, 96), lambda x, y: abs(sd_round_rect(x, y, 2, 3, 30, 23, 2.5)) - 0.45)
    # Screen, with a light sweep across it.
    def screen(x, y):
        base = mix((60, 130, 214), (20, 58, 128), clamp((y - 5) / 15))
        sweep = clamp(1.0 - abs((x - 0.9 * y) - 10.0) / 5.0) * 0.35
        return mix(base, (190, 220, 252), sweep)
    p.paint(screen, lambda x, y: sd_round_rect(x, y, 4.5, 5.5, 27.5, 19.5, 1.0))
    # A green power light.
    p.paint(lambda x, y: (40, 190, 60), lambda x, y: sd_circle(x, y, 26.5, 21.3, 0.9))
    return p.finish()


def main():
    save_bmp(draw_pc(), "homepc.bmp")


if __name__ == "__main__":
    main()

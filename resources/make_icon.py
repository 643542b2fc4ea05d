#!/usr/bin/env python3
"""Draws Tavro's icon: a page of text on an indigo tile with an amber chat
bubble, at the sizes Windows asks for, and writes resources/tavro.ico.

Run it again only when the drawing changes; the .ico is committed."""
import struct
import sys
import zlib
from pathlib import Path

SIZES = [16, 20, 24, 32, 40, 48, 64, 256]
SUPER = 4  # samples per pixel along each axis


def rounded_rect(x, y, x0, y0, x1, y1, r):
    if x < x0 or x > x1 or y < y0 or y > y1:
        return False
    cx = min(max(x, x0 + r), x1 - r)
    cy = min(max(y, y0 + r), y1 - r)
    return (x - cx) ** 2 + (y - cy) ** 2 <= r * r


def lerp(a, b, t):
    return tuple(a[i] + (b[i] - a[i]) * t for i in range(3))


TILE_TOP = (0x3A, 0x3F, 0x9E)
TILE_BOTTOM = (0x1C, 0x74, 0x8A)
PAGE = (0xF8, 0xF5, 0xEC)
FOLD = (0xD9, 0xD3, 0xC3)
INK = (0x5B, 0x66, 0x84)
BUBBLE = (0xF4, 0xAA, 0x34)
DOTS = (0x3A, 0x2A, 0x12)


def sample(x, y):
    """Colour and alpha at a point of the unit square, layers painted in order."""
    colour, alpha = None, 0.0
    if rounded_rect(x, y, 0.02, 0.02, 0.98, 0.98, 0.2):
        colour, alpha = lerp(TILE_TOP, TILE_BOTTOM, y), 1.0
    else:
        return (0, 0, 0), 0.0
    # Page with its top-right corner folded down.
    px0, py0, px1, py1, fold = 0.18, 0.12, 0.66, 0.84, 0.14
    if px0 <= x <= px1 and py0 <= y <= py1:
        if x - (px1 - fold) > y - py0:  # the triangle cut away by the fold
            pass
        elif x >= px1 - fold and y <= py0 + fold:
            colour = FOLD
        else:
            colour = PAGE
            line_tops = [0.36, 0.46, 0.56, 0.66, 0.76]
            line_ends = [0.56, 0.58, 0.50, 0.57, 0.42]
            for top, end in zip(line_tops, line_ends):
                if top <= y <= top + 0.045 and 0.25 <= x <= end:
                    colour = INK
            if 0.25 <= x <= 0.42 and 0.22 <= y <= 0.28:
                colour = INK
    # Chat bubble with a tail towards the page, and three dots.
    in_bubble = rounded_rect(x, y, 0.46, 0.52, 0.92, 0.84, 0.1)
    tail = 0.52 <= x <= 0.64 and 0.80 <= y <= 0.92 and (y - 0.80) <= (0.64 - x) * 1.0
    rim = rounded_rect(x, y, 0.43, 0.49, 0.95, 0.87, 0.12)
    if rim and not in_bubble and not tail:
        colour = lerp(TILE_TOP, TILE_BOTTOM, y)
    if in_bubble or tail:
        colour = BUBBLE
        for cx in (0.58, 0.69, 0.80):
            if (x - cx) ** 2 + (y - 0.68) ** 2 <= 0.042 ** 2:
                colour = DOTS
    return colour, alpha


def render(size):
    pixels = []
    n = SUPER * SUPER
    for row in range(size):
        line = []
        for col in range(size):
            r = g = b = a = 0.0
            for sy in range(SUPER):
                for sx in range(SUPER):
                    x = (col + (sx + 0.5) / SUPER) / size
                    y = (row + (sy + 0.5) / SUPER) / size
                    c, al = sample(x, y)
                    r += c[0] * al
                    g += c[1] * al
                    b += c[2] * al
                    a += al
            if a > 0:
                line.append((round(r / a), round(g / a), round(b / a), round(255 * a / n)))
            else:
                line.append((0, 0, 0, 0))
        pixels.append(line)
    return pixels


def png_bytes(pixels):
    size = len(pixels)
    raw = b"".join(b"\x00" + bytes(v for px in row for v in px) for row in pixels)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)

    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b"")


def dib_bytes(pixels):
    size = len(pixels)
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    colour = b"".join(bytes((b, g, r, a)) for row in reversed(pixels) for (r, g, b, a) in row)
    mask_row = ((size + 31) // 32) * 4
    mask = bytearray()
    for row in reversed(pixels):
        bits = bytearray(mask_row)
        for i, px in enumerate(row):
            if px[3] == 0:
                bits[i // 8] |= 0x80 >> (i % 8)
        mask += bits
    return header + colour + bytes(mask)


def main():
    out = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).with_name("tavro.ico")
    images = []
    for size in SIZES:
        pixels = render(size)
        images.append((size, png_bytes(pixels) if size >= 256 else dib_bytes(pixels)))
    data = struct.pack("<HHH", 0, 1, len(images))
    offset = 6 + 16 * len(images)
    for size, blob in images:
        dim = 0 if size >= 256 else size
        data += struct.pack("<BBBBHHII", dim, dim, 0, 0, 1, 32, len(blob), offset)
        offset += len(blob)
    data += b"".join(blob for _, blob in images)
    out.write_bytes(data)


if __name__ == "__main__":
    main()

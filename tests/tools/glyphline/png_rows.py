# SPDX-License-Identifier: Apache-2.0
"""Pels of a PNG without any library for pictures."""
import struct
import zlib


def grey_rows(png):
    """The grey rows of a PNG of 8-bit RGB, as the label is."""
    width, height, depth, colour = struct.unpack(">IIBB", png[16:26])
    assert (depth, colour) == (8, 2)
    data, at = b"", 8
    while at < len(png):
        length, kind = struct.unpack(">I4s", png[at:at + 8])
        if kind == b"IDAT":
            data += png[at + 8:at + 8 + length]
        at += length + 12
    raw, above = zlib.decompress(data), bytes(3 * width)
    for y in range(height):
        start = y * (3 * width + 1)
        method, line = raw[start], bytearray(raw[start + 1:start + 1 + 3 * width])
        for x in range(3 * width):
            a, b = (line[x - 3] if x >= 3 else 0), above[x]
            c = above[x - 3] if x >= 3 else 0
            p = a + b - c
            nearest = min((abs(p - a), 0, a), (abs(p - b), 1, b), (abs(p - c), 2, c))[2]
            line[x] = (line[x] + (0, a, b, (a + b) // 2, nearest)[method]) & 255
        above = bytes(line)
        yield above[::3]

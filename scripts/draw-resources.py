#!/usr/bin/env python3
"""Draws resources/stamp.bmp, resources/new_folder.bmp and resources/exposure.wav.

What it makes is committed, and no build runs it: run it, without arguments, after changing it. It always makes the same
bytes.
"""
import math
import os
import struct
import wave

RESOURCES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "resources")

# The maker's letters, as strokes from point to point in boxes of 13 x 16 pixels, y downwards.
STAMP_WIDTH, STAMP_HEIGHT = 55, 22
LETTER_WIDTH, LETTER_HEIGHT, LETTER_GAP = 13, 16, 4
STROKE = 1.5  # half of its width
LETTERS = (
    ((1, 1.5), (12, 1.5), (1.5, 14.5), (12, 14.5)),
    ((1.5, 1), (6.5, 8), (6.5, 15), (6.5, 8), (11.5, 1)),
    ((1.5, 15), (1.5, 1.5), (7.5, 1.5), (10, 2.5), (11, 5), (10, 7.5), (7.5, 8.5), (1.5, 8.5), (6.5, 8.5), (11, 15)),
)

# A folder and a plus on 18 units, four pixels each: all sizes of a button's picture are taken from this one. Lines lie a
# quarter off the half units, so that at 18 pixels one of their edges falls between two of them.
FOLDER_UNITS, PIXELS_PER_UNIT = 18, 4
FOLDER_STROKE = 0.75
FOLDER_LAYERS = (
    ((0x3C, 0x3C, 0x3C), ((9.25, 14.25), (1.75, 14.25), (1.75, 3.75), (6.75, 3.75), (8.75, 5.75), (15.75, 5.75), (15.75, 8.25))),
    ((0x2F, 0x6F, 0xB3), ((13.25, 10.25), (13.25, 16.25))),
    ((0x2F, 0x6F, 0xB3), ((10.25, 13.25), (16.25, 13.25))),
)

RATE = 22050  # samples a second
PEAK = 0.45  # of the full scale
ATTACK, DECAY = 0.012, 0.13  # seconds; the decay to a third or so
FADE = 0.06  # seconds to silence at the end
LENGTH = 0.58
TONES = ((0.0, 659.26, 0.8), (0.16, 880.0, 1.0))  # begin, hertz, strength: a fourth upwards
OVERTONE = 0.12  # strength of the octave above each


def distance(x, y, start, end):
    dx, dy = end[0] - start[0], end[1] - start[1]
    along = ((x - start[0]) * dx + (y - start[1]) * dy) / (dx * dx + dy * dy)
    along = min(max(along, 0.0), 1.0)
    return math.hypot(x - start[0] - along * dx, y - start[1] - along * dy)


def is_ink(x, y):
    left = (STAMP_WIDTH - 3 * LETTER_WIDTH - 2 * LETTER_GAP) // 2
    top = (STAMP_HEIGHT - LETTER_HEIGHT) // 2
    letter, inside = divmod(x - left, LETTER_WIDTH + LETTER_GAP)
    if not (0 <= letter < 3 and inside < LETTER_WIDTH and 0 <= y - top < LETTER_HEIGHT):
        return False
    points = LETTERS[letter]
    return any(distance(inside + 0.5, y - top + 0.5, a, b) <= STROKE for a, b in zip(points, points[1:]))


def stamp():
    """A bitmap of 1 bit, bottom row first, in which ink is 0."""
    stride = (STAMP_WIDTH + 31) // 32 * 4
    rows = b""
    for y in reversed(range(STAMP_HEIGHT)):
        bits = "".join("0" if is_ink(x, y) else "1" for x in range(STAMP_WIDTH))
        rows += int(bits.ljust(stride * 8, "0"), 2).to_bytes(stride, "big")
    palette = bytes((0, 0, 0, 0, 255, 255, 255, 0))
    info = struct.pack("<IiiHHIIiiII", 40, STAMP_WIDTH, STAMP_HEIGHT, 1, 1, 0, len(rows), 0, 0, 2, 0)
    offset = 14 + len(info) + len(palette)
    return struct.pack("<2sIHHI", b"BM", offset + len(rows), 0, 0, offset) + info + palette + rows


def folder_pixel(x, y):
    """Blue, green, red and opacity where the point, in units, is."""
    pixel = (0, 0, 0, 0)
    for (red, green, blue), points in FOLDER_LAYERS:
        away = min(distance(x, y, a, b) for a, b in zip(points, points[1:])) - FOLDER_STROKE
        opacity = min(max(0.5 - away * PIXELS_PER_UNIT, 0.0), 1.0)
        if opacity * 255 > pixel[3]:
            pixel = (blue, green, red, round(opacity * 255))
    return bytes(pixel)


def new_folder():
    """A bitmap of 32 bits with opacity, bottom row first."""
    side = FOLDER_UNITS * PIXELS_PER_UNIT
    at = [(i + 0.5) / PIXELS_PER_UNIT for i in range(side)]
    rows = b"".join(folder_pixel(x, y) for y in reversed(at) for x in at)
    info = struct.pack("<IiiHHIIiiII", 40, side, side, 1, 32, 0, len(rows), 0, 0, 0, 0)
    return struct.pack("<2sIHHI", b"BM", 14 + len(info) + len(rows), 0, 0, 14 + len(info)) + info + rows


def sound(time):
    level = 0.0
    for begin, hertz, strength in TONES:
        age = time - begin
        if age < 0:
            continue
        envelope = min(age / ATTACK, 1.0) * math.exp(-age / DECAY)
        phase = 2 * math.pi * hertz * age
        level += strength * envelope * (math.sin(phase) + OVERTONE * math.sin(2 * phase))
    return level * min((LENGTH - time) / FADE, 1.0)


def chime():
    levels = [sound(i / RATE) for i in range(int(LENGTH * RATE))]
    scale = PEAK * 32767 / max(map(abs, levels))
    return struct.pack(f"<{len(levels)}h", *(round(level * scale) for level in levels))


def main():
    with open(os.path.join(RESOURCES, "stamp.bmp"), "wb") as file:
        file.write(stamp())
    with open(os.path.join(RESOURCES, "new_folder.bmp"), "wb") as file:
        file.write(new_folder())
    with wave.open(os.path.join(RESOURCES, "exposure.wav"), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(chime())


if __name__ == "__main__":
    main()

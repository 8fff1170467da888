"""Pixels of the kinds of PNG that the command writes: at most eight bits a channel, in one go."""
import struct
import zlib


CHANNELS = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}


def rows_of(data):
    """The rows of a picture, each a list of (red, green, blue); alpha is left out."""
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("no PNG")
    at, packed, header, palette = 8, b"", None, b""
    while at + 8 <= len(data):
        size, kind = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + size]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"PLTE":
            palette = body
        elif kind == b"IDAT":
            packed += body
        at += size + 12
    width, height, depth, colour = header[:4]
    if depth > 8 or header[6]:
        raise ValueError("another kind of PNG")
    bits = depth * CHANNELS[colour]
    step, stride = max(1, bits // 8), (width * bits + 7) // 8
    raw = zlib.decompress(packed)
    rows, above = [], bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        above = unfilter(raw[start], bytearray(raw[start + 1:start + 1 + stride]), above, step)
        rows.append(colours_of(above, width, depth, colour, palette))
    return rows


def colours_of(row, width, depth, colour, palette):
    if depth < 8:
        each = 8 // depth
        row = [row[i // each] >> (8 - depth - i % each * depth) & (1 << depth) - 1
               for i in range(width)]
    if colour == 3:
        return [tuple(palette[3 * i:3 * i + 3]) for i in row]
    if colour in (0, 4):
        step, most = CHANNELS[colour], (1 << depth) - 1
        return [(row[i] * 255 // most,) * 3 for i in range(0, len(row), step)]
    step = CHANNELS[colour]
    return [tuple(row[i:i + 3]) for i in range(0, len(row), step)]


def unfilter(kind, row, above, step):
    for i in range(len(row) if kind else 0):
        left = row[i - step] if i >= step else 0
        up, corner = above[i], above[i - step] if i >= step else 0
        if kind == 1:
            add = left
        elif kind == 2:
            add = up
        elif kind == 3:
            add = (left + up) // 2
        else:
            p = left + up - corner
            away = [(abs(p - left), 0, left), (abs(p - up), 1, up), (abs(p - corner), 2, corner)]
            add = min(away)[2]
        row[i] = (row[i] + add) & 255
    return row

"""Text as strokes, so that a chart looks the same everywhere and needs no font.

A glyph is lines parted by "|", each a row of points of two digits, x and y: 0 is the top of capitals,
2 that of small letters, 7 the baseline, 9 the foot of descenders.
"""

GLYPHS = {
    "0": "10 30 41 46 37 17 06 01 10", "1": "11 20 27", "2": "01 10 30 41 42 07 47",
    "3": "00 40 23 33 44 46 37 17 06", "4": "37 30 05 45", "5": "40 00 03 33 44 46 37 07",
    "6": "30 10 01 06 17 37 46 44 33 03", "7": "00 40 17",
    "8": "13 02 01 10 30 41 42 33 13 04 06 17 37 46 44 33", "9": "17 37 46 41 30 10 01 03 14 44",
    "a": "43 32 12 03 06 17 37 46|42 47", "b": "00 07|03 12 32 43 46 37 17 06",
    "c": "43 32 12 03 06 17 37 46", "d": "40 47|43 32 12 03 06 17 37 46",
    "e": "04 44 43 32 12 03 06 17 37 46", "f": "30 20 11 17|02 32",
    "g": "42 48 39 19 08|43 32 12 03 06 17 37 46", "h": "00 07|03 12 32 43 47", "i": "03 07|00 01",
    "j": "23 28 19 09|20 21", "k": "00 07|32 05|14 37", "l": "00 06 17",
    "m": "02 07|03 12 22 33 37|33 42 52 63 67", "n": "02 07|03 12 32 43 47",
    "o": "12 32 43 46 37 17 06 03 12", "p": "02 09|03 12 32 43 46 37 17 06",
    "q": "42 49|43 32 12 03 06 17 37 46", "r": "02 07|03 12 32",
    "s": "43 32 12 03 14 34 45 46 37 17 06", "t": "10 16 27 37|02 32", "u": "02 06 17 37 46|42 47",
    "v": "02 27 42", "w": "02 17 33 57 62", "x": "02 47|42 07", "y": "02 27|42 19",
    "z": "02 42 07 47",
    "A": "07 20 47|15 35", "B": "03 33 42 41 30 00 07 37 46 44 33", "C": "41 30 10 01 06 17 37 46",
    "D": "00 07 27 45 42 20 00", "E": "40 00 07 47|03 33", "F": "40 00 07|03 33",
    "G": "41 30 10 01 06 17 37 46 44 24", "H": "00 07|40 47|03 43", "I": "00 07",
    "J": "40 46 37 17 06", "K": "00 07|40 04|13 47", "L": "00 07 47", "M": "07 00 24 40 47",
    "N": "07 00 47 40", "O": "10 30 41 46 37 17 06 01 10", "P": "07 00 30 41 43 34 04",
    "Q": "10 30 41 46 37 17 06 01 10|25 47", "R": "07 00 30 41 43 34 04|24 47",
    "S": "41 30 10 01 02 13 33 44 46 37 17 06", "T": "00 40|20 27", "U": "00 06 17 37 46 40",
    "V": "00 27 40", "W": "00 17 33 57 60", "X": "00 47|40 07", "Y": "00 23 40|23 27",
    "Z": "00 40 07 47",
    ".": "06 07", ",": "16 08", ":": "02 03|06 07", ";": "12 13|16 08", "-": "04 34", "+": "04 44|22 26", "/": "07 40",
    "(": "10 02 05 17", ")": "00 12 15 07", "%": "07 40|00 01|46 47", "=": "03 33|05 35",
    "_": "08 48", "'": "00 01", "\u00d7": "03 36|33 06", " ": "",
}
CAPITAL = 7
GAP = 2
SPACE = 2


def points_of(line):
    return [(int(p[0]), int(p[1])) for p in line.split()]


def lay_out(text):
    """The lines of a text that starts at (0, 0) on the baseline, and its width, in glyph units."""
    lines, x = [], 0
    for char in text:
        parts = [points_of(p) for p in GLYPHS.get(char, GLYPHS["_"]).split("|")]
        lines += [[(x + px, py - CAPITAL) for px, py in part] for part in parts if part]
        x += max((px for part in parts for px, _ in part), default=SPACE) + GAP
    return lines, max(0, x - GAP)


def label(text, x, y, size=11, anchor="start", colour="#333", bold=False, turned=False):
    """An SVG path that reads `text` with capitals `size` times 0.7 high; (x, y) is on the baseline at
    its start, middle or end. Turned ones read upwards."""
    lines, width = lay_out(text)
    scale = size / 10
    shift = {"start": 0, "middle": width / 2, "end": width}[anchor]
    data = ""
    for line in lines:
        spots = [((px - shift) * scale, py * scale) for px, py in line]
        if turned:
            spots = [(py, -px) for px, py in spots]
        data += "M" + "L".join(f"{x + px:.2f} {y + py:.2f}" for px, py in spots)
    stroke = scale * (1.35 if bold else 0.9)
    return (f'<path aria-label="{escape(text)}" d="{data}" fill="none" stroke="{colour}" '
            f'stroke-width="{stroke:.2f}" stroke-linecap="round" stroke-linejoin="round"/>')


def width_of(text, size=11):
    return lay_out(text)[1] * size / 10


def escape(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace('"', "&quot;")

"""Line and bar charts as SVG text. Letters are strokes, so that every renderer draws them alike."""
import math

from lettering import label, width_of

COLOURS = {"qxsvg": "#c2410c", "librsvg": "#2563a8", "qt": "#3f8f4f", "resvg": "#7a4fa3",
           "cairo": "#2563a8"}
SPARE = ["#c2410c", "#2563a8", "#3f8f4f", "#7a4fa3", "#a8832a", "#4a4a4a"]
GRID, AXIS, INK = "#dddddd", "#888888", "#333333"


def colour_of(name, index):
    return COLOURS.get(name, SPARE[index % len(SPARE)])


def short(value):
    """A number for an axis: 5000000 is 5M, 0.01 stays."""
    for limit, mark in ((1e9, "G"), (1e6, "M"), (1e3, "k")):
        if value >= limit:
            return f"{value / limit:g}{mark}"
    return f"{value:g}"


def decades(low, high):
    return [10.0 ** p for p in range(math.floor(math.log10(low)), math.ceil(math.log10(high)) + 1)]


def even_steps(low, high):
    rough = (high - low) / 6 or 1
    power = 10.0 ** math.floor(math.log10(rough))
    step = next(power * f for f in (1, 2, 5, 10) if power * f >= rough)
    first = math.floor(low / step)
    return [step * k for k in range(first, math.ceil(high / step) + 1)]


class Scale:
    """From values to pixels; ticks reach around all values."""

    def __init__(self, values, start, end, log):
        self.log, self.start, self.end = log, start, end
        self.ticks = (decades if log else even_steps)(min(values), max(values))
        if len(self.ticks) == 1:
            self.ticks.append(self.ticks[0] * 10 if log else self.ticks[0] + 1)
        self.low, self.high = self.part(self.ticks[0]), self.part(self.ticks[-1])

    def part(self, value):
        return math.log10(value) if self.log else value

    def __call__(self, value):
        return self.start + (self.part(value) - self.low) / (self.high - self.low) * (
            self.end - self.start)


def line(x1, y1, x2, y2, colour, width=1, extra=""):
    return (f'<path d="M{x1:.1f} {y1:.1f}L{x2:.1f} {y2:.1f}" stroke="{colour}" '
            f'stroke-width="{width}" fill="none"{extra}/>')


def document(width, height, parts):
    body = "\n".join(parts)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
            f'viewBox="0 0 {width} {height}">\n'
            f'<rect width="{width}" height="{height}" fill="#ffffff"/>\n{body}\n</svg>\n')


def legend(names, x, y):
    parts = []
    for index, name in enumerate(names):
        parts.append(f'<rect x="{x:.1f}" y="{y - 8}" width="14" height="8" '
                     f'fill="{colour_of(name, index)}"/>')
        parts.append(label(name, x + 20, y))
        x += 44 + width_of(name)
    return parts


def line_chart(title, x_name, y_name, series, log=True, width=720, height=420):
    """`series` is a dict of name to [(x, y), ...]; both axes are logarithmic unless told."""
    left, right, top, bottom = 70, width - 25, 64, height - 52
    points = [p for row in series.values() for p in row]
    across = Scale([x for x, _ in points], left, right, log)
    up = Scale([y for _, y in points], bottom, top, log)
    parts = [label(title, left, 24, 14, bold=True), *legend(series, left, 46)]
    for tick in across.ticks:
        parts += [line(across(tick), top, across(tick), bottom, GRID),
                  label(short(tick), across(tick), bottom + 18, anchor="middle")]
    for tick in up.ticks:
        parts += [line(left, up(tick), right, up(tick), GRID),
                  label(short(tick), left - 8, up(tick) + 4, anchor="end")]
    parts += [line(left, top, left, bottom, AXIS), line(left, bottom, right, bottom, AXIS),
              label(x_name, (left + right) / 2, height - 12, anchor="middle"),
              label(y_name, 18, (top + bottom) / 2, anchor="middle", turned=True)]
    for index, (name, row) in enumerate(series.items()):
        colour = colour_of(name, index)
        spots = [(across(x), up(y)) for x, y in row]
        data = "M" + "L".join(f"{x:.1f} {y:.1f}" for x, y in spots)
        parts.append(f'<path d="{data}" fill="none" stroke="{colour}" stroke-width="2" '
                     'stroke-linejoin="round"/>')
        parts += [f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" fill="{colour}"/>' for x, y in spots]
    return document(width, height, parts)


def bar_chart(title, x_name, groups, marks=(), width=720):
    """`groups` is [(label, {name: value})]: bars from 1 to their value on a logarithmic axis. `marks`
    are values with a line of their own."""
    names = list(dict.fromkeys(name for _, bars in groups for name in bars))
    thick, gap, top = 11, 12, 64
    heights = [len(bars) * thick + gap for _, bars in groups]
    left, right, bottom = 130, width - 60, top + sum(heights)
    values = [v for _, bars in groups for v in bars.values()]
    across = Scale([min([1.0, *values]), max([10.0, *values])], left, right, True)
    parts = [label(title, 16, 24, 14, bold=True), *legend(names, left, 46)]
    for tick in across.ticks:
        parts += [line(across(tick), top, across(tick), bottom, GRID),
                  label(short(tick), across(tick), bottom + 18, anchor="middle")]
    y = top
    for (text, bars), height in zip(groups, heights):
        parts.append(label(text, left - 10, y + (height + 8) / 2, anchor="end"))
        for index, (name, value) in enumerate(bars.items()):
            from_x, to_x = sorted((across(1), across(value)))
            at = y + gap / 2 + index * thick
            parts.append(f'<rect x="{from_x:.1f}" y="{at:.1f}" width="{to_x - from_x:.1f}" '
                         f'height="{thick - 2}" fill="{colour_of(name, names.index(name))}"/>')
            parts.append(label(f"{value:.3g}", to_x + 5, at + 8, 10))
        y += height
    for mark in marks:
        parts.append(line(across(mark), top, across(mark), bottom, INK, 1.5,
                          ' stroke-dasharray="4 3"'))
    parts += [line(left, bottom, right, bottom, AXIS),
              label(x_name, (left + right) / 2, bottom + 40, anchor="middle")]
    return document(width, int(bottom + 54), parts)

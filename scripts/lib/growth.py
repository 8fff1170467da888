"""Time and memory against the size of the work; see scripts/bench."""
import argparse
import math
import pathlib
import random
import sys
import tempfile

import charts
import measure
from measure import NAMES, OWN

SVG = '<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 1000 1000">'
SIDE = 512
ELEMENTS = [1_000, 3_000, 10_000, 30_000, 100_000, 300_000, 1_000_000]
POINTS = [1_000, 10_000, 100_000, 1_000_000, 5_000_000]
PIXELS = [64, 128, 256, 512, 1024, 2048, 4096, 8192]
# A peer that took longer for one size is not asked for the next.
MOST_SECONDS = 20
# How much steeper than the work a curve may be between two sizes, as an exponent. Caches that no
# longer hold everything cost about as much.
STEEPER = 0.2
# Below these a curve shows the process and the clock.
LEAST = {"milliseconds": 2.0, "megabytes": 4.0}


def write_elements(path, count):
    """Small filled squares in rows, each with a colour of its own."""
    across = math.ceil(math.sqrt(count))
    step = 1000 / across
    with open(path, "w") as file:
        file.write(SVG)
        for index in range(count):
            x, y = index % across * step, index // across * step
            file.write(f'<rect x="{x:.3f}" y="{y:.3f}" width="{step * .8:.3f}" '
                       f'height="{step * .8:.3f}" fill="#{index * 2654435761 & 0xffffff:06x}"/>')
        file.write("</svg>")


def write_points(path, count, paint):
    """One path that wanders about in short lines."""
    chance = random.Random(1)
    x = y = 500.0
    with open(path, "w") as file:
        file.write(f'{SVG}<path {paint} d="M500 500')
        for _ in range(count - 1):
            x = min(990.0, max(10.0, x + chance.uniform(-9, 9)))
            y = min(990.0, max(10.0, y + chance.uniform(-9, 9)))
            file.write(f"L{x:.1f} {y:.1f}")
        file.write('"/></svg>')


FILLED = 'fill="#2563a8" fill-rule="evenodd"'
STROKED = 'fill="none" stroke="#c2410c" stroke-width="2"'


def write_scene(path):
    """Shapes of many sizes with fills, strokes and gradients, the same at every size of the picture."""
    chance = random.Random(2)
    parts = [SVG, '<linearGradient id="g"><stop stop-color="#f80"/><stop offset="1" '
             'stop-color="#08f"/></linearGradient><rect width="1000" height="1000" fill="url(#g)"/>']
    for index in range(300):
        x, y, r = (chance.uniform(a, b) for a, b in ((0, 1000), (0, 1000), (5, 120)))
        paint = ('fill="url(#g)"', f'fill="#{chance.randrange(1 << 24):06x}" fill-opacity=".6"',
                 'fill="none" stroke="#123" stroke-width="4"')[index % 3]
        parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{r:.1f}" {paint}/>')
    pathlib.Path(path).write_text("".join(parts) + "</svg>")


# name, title, name of the sizes, sizes, writer of a file for a size, phases, and the work at a size.
# Pixels are drawn of one file, so that the work is their number.
PLANS = [
    ("elements", "Elements", "elements", ELEMENTS, write_elements, ("load", "first"), lambda n: n),
    ("points-filled", "Points of a filled path", "points", POINTS,
     lambda path, n: write_points(path, n, FILLED), ("load", "first"), lambda n: n),
    ("points-stroked", "Points of a stroked path", "points", POINTS,
     lambda path, n: write_points(path, n, STROKED), ("first",), lambda n: n),
    ("pixels", "Side of the picture", "pixels along a side", PIXELS,
     lambda path, _: write_scene(path), ("first", "redraw"), lambda n: n * n),
]
WORDS = {"load": "load", "first": "first draw", "redraw": "redraw", "memory": "memory"}


def measure_plan(machine, plan, rounds, seconds, limit):
    """Rows of one plan: plan, subject, measure, size, median."""
    name, _, _, sizes, write, phases, _ = plan
    rows, slow = [], set()
    for size in [s for s in sizes if s <= limit]:
        side = size if name == "pixels" else SIDE
        with tempfile.NamedTemporaryFile(suffix=".svg") as file:
            write(file.name, size)
            for subject in [s for s in machine.subjects if s not in slow]:
                found = one_size(machine, subject, file.name, side, rounds, seconds)
                if not found:
                    print(f"{name}, {size}: {NAMES[subject]} does not do it", file=sys.stderr)
                    slow.add(subject)
                    continue
                rows += [{"plan": name, "subject": subject, "measure": m, "size": size, "median": v}
                         for m, v in found.items() if m in (*phases, "memory")]
                if subject != OWN and sum(v for m, v in found.items() if m != "memory") > (
                        MOST_SECONDS * 1e3 / 4):
                    slow.add(subject)
        print(f"{name} {size}", file=sys.stderr, flush=True)
    return rows


def one_size(machine, subject, file, side, rounds, seconds):
    times = machine.table(machine.command(subject, "times", rounds, seconds, side, file))
    memory = machine.table(machine.command(subject, "memory", side, file))
    if not times or not memory:
        return {}
    result = {phase.split()[0]: measure.median(numbers) for phase, numbers in times.items()}
    result["memory"] = max(0.01, (memory["peak"][0] - memory["idle"][0]) / 1024)
    return result


# --- Slopes

def curve_of(rows, plan, subject, what):
    return [(r["size"], r["median"]) for r in rows
            if (r["plan"], r["subject"], r["measure"]) == (plan, subject, what)]


def unit_of(what):
    return "megabytes" if what == "memory" else "milliseconds"


def slope_of(curve, work, least):
    """The exponent of a curve against its work, over all sizes where it is above the least; None
    where there are not three."""
    spots = [(math.log(work(x)), math.log(y)) for x, y in curve if y >= least]
    if len(spots) < 3:
        return None
    mid_x = sum(x for x, _ in spots) / len(spots)
    mid_y = sum(y for _, y in spots) / len(spots)
    spread = sum((x - mid_x) ** 2 for x, _ in spots)
    overall = sum((x - mid_x) * (y - mid_y) for x, y in spots) / spread
    last = (spots[-1][1] - spots[-2][1]) / (spots[-1][0] - spots[-2][0])
    return overall, last


def slopes(rows):
    """(title, measure, exponent over all, exponent of the last step, whether that is well)."""
    for name, title, _, _, _, phases, work in PLANS:
        for what in (*phases, "memory"):
            curve = curve_of(rows, name, OWN, what)
            found = slope_of(curve, work, LEAST[unit_of(what)])
            if found:
                yield title, WORDS[what], *found, max(found) <= 1 + STEEPER


def slope_table(rows):
    lines = ["| against | curve | exponent over all | last step | |", "|---|---|---|---|---|"]
    for title, what, overall, last, good in slopes(rows):
        lines.append(f"| {title} | {what} | {overall:.2f} | {last:.2f} | "
                     f"{'ok' if good else '**steeper than the work**'} |")
    return "\n".join(lines)


# --- The page

def value_table(rows, plan):
    name, _, unit, _, _, phases, _ = plan
    columns = [(s, m) for m in (*phases, "memory") for s in NAMES if curve_of(rows, name, s, m)]
    sizes = sorted({r["size"] for r in rows if r["plan"] == name})
    heads = [f"{NAMES[s].split(' (')[0]} {WORDS[m]} {'MB' if m == 'memory' else 'ms'}"
             for s, m in columns]
    lines = [f"| {unit} | " + " | ".join(heads) + " |", "|---|" + "---|" * len(columns)]
    for size in sizes:
        cells = [dict(curve_of(rows, name, s, m)).get(size) for s, m in columns]
        lines.append(f"| {size:,} | " + " | ".join(
            "-" if c is None else f"{c:.3g}" if c < 1000 else f"{c:.0f}" for c in cells) + " |")
    return "\n".join(lines)


def write_page(machine, rows):
    parts = ["\n".join(measure.versions(machine)),
             "The exponent is the slope of a curve where both axes are logarithms: 1 grows as the "
             f"work does. Up to {1 + STEEPER:g} is taken as that, since large trees no longer fit "
             f"the caches. Curves of less than {LEAST['milliseconds']:g} ms or "
             f"{LEAST['megabytes']:g} MB are left out of it.", slope_table(rows)]
    for plan in PLANS:
        name, title, unit, _, _, phases, _ = plan
        if not any(r["plan"] == name for r in rows):
            continue
        parts.append(f"### {title}")
        for what in (*phases, "memory"):
            series = {s: curve_of(rows, name, s, what) for s in NAMES}
            series = {s: c for s, c in series.items() if c}
            svg = charts.line_chart(f"{title}: {WORDS[what]}", unit, unit_of(what), series)
            picture = measure.write_chart(machine, f"growth-{name}-{what}", svg)
            parts.append(f"![{title}: {WORDS[what]} in {unit_of(what)}]({picture})")
        parts.append(value_table(rows, plan))
    measure.write_part("growth", "\n\n".join(parts))


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench growth", description=__doc__)
    parser.add_argument("programs")
    parser.add_argument("node")
    parser.add_argument("rows")
    parser.add_argument("--plans", help="only these, parted by commas; the others' rows are kept: "
                        + ", ".join(p[0] for p in PLANS))
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--seconds", type=float, default=10,
                        help="a size that takes longer ends after three rounds or more")
    parser.add_argument("--limit", type=int, default=10_000_000, help="leaves larger sizes out")
    parser.add_argument("--own-only", action="store_true", help="without the other libraries")
    parser.add_argument("--page-only", action="store_true", help="writes the page from kept rows")
    options = parser.parse_args()

    machine = measure.Machine(options.programs, options.node)
    if options.own_only:
        machine.subjects = [OWN]
    rows = measure.kept_rows(options.rows)
    wanted = options.plans.split(",") if options.plans else [p[0] for p in PLANS]
    for plan in [] if options.page_only else PLANS:
        if plan[0] in wanted:
            new = measure_plan(machine, plan, options.rounds, options.seconds, options.limit)
            rows = [r for r in rows if r["plan"] != plan[0]] + new
            measure.keep_rows(options.rows, rows)
    if not rows:
        print("Nothing was measured", file=sys.stderr)
        return 1
    write_page(machine, rows)
    print(slope_table(rows))
    return 0 if all(good for *_, good in slopes(rows)) else 1


if __name__ == "__main__":
    sys.exit(main())

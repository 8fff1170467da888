"""Charts of the surface suite's growth: surface_charts.py QXSVG ROWS.json FOLDER

A case is named CURVE/NUMBER, such as points/fill/1000. Prints the table of all curves, with the slope
of each in its last step: 1 is in proportion to the work.
"""
import json
import math
import pathlib
import subprocess
import sys

import charts

CURVES = {
    "size/tiger": ("A drawing of many paths, against its size", "pixels of the square's side", 2),
    "points/fill": ("One filled polygon, against its points", "points", 1),
    "points/stroke": ("One stroked polygon, against its points", "points", 1),
}


def curves_of(rows):
    """{curve: {subject: [(number, ms), ...]}}, in rising order."""
    curves = {}
    for row in rows:
        name, _, number = row["case"].removeprefix("surface/").rpartition("/")
        if name in CURVES and number.isdigit():
            points = curves.setdefault(name, {}).setdefault(row["subject"], {})
            points[int(number)] = row["median_ms"]
    return {n: {s: sorted(p.items()) for s, p in by.items()} for n, by in curves.items()}


def slope(points, power):
    """Of the last step on logarithmic axes, by what the work grows in."""
    (x0, y0), (x1, y1) = points[-2:]
    return math.log(y1 / y0) / math.log(x1 / x0) / power


def print_table(name, by_subject):
    unit, power = CURVES[name][1:]
    subjects = list(by_subject)
    print(f"\n| {unit} | " + " | ".join(f"{s} ms" for s in subjects) + " |")
    print("|---|" + "---|" * len(subjects))
    for number in sorted({x for points in by_subject.values() for x, _ in points}):
        times = [dict(by_subject[s]).get(number) for s in subjects]
        print(f"| {number:,} | " + " | ".join("-" if t is None else f"{t:.3g}" if t < 1000 else
                                              f"{t:.0f}" for t in times) + " |")
    print("| slope of the last step | " + " | ".join(
        f"{slope(by_subject[s], power):.2f}" for s in subjects) + " |")


def main():
    command, rows, folder = sys.argv[1:]
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    for name, by_subject in curves_of(json.loads(pathlib.Path(rows).read_text())).items():
        title, unit, _ = CURVES[name]
        chart = folder / f"{name.replace('/', '-')}.svg"
        chart.write_text(charts.line_chart(title, unit, "milliseconds", by_subject))
        subprocess.run([command, "render", "--quiet", chart, chart.with_suffix(".png")],
                       check=True)
        print_table(name, by_subject)
    return 0


if __name__ == "__main__":
    sys.exit(main())

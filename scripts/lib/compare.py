"""Puts libraries side by side on sets of drawings; see scripts/bench."""
import argparse
import os
import pathlib
import sys
import tempfile

import charts
import measure
from measure import NAMES, OWN, PEERS, ROOT

SIDES = (512, 2048)
PHASES = ["load", *(f"{phase} {side}" for side in SIDES for phase in ("first", "redraw"))]
MEASURES = [*PHASES, "memory", "whole"]
TITLES = {
    "load": "Load", "first 512": "First draw at 512", "redraw 512": "Redraw at 512",
    "first 2048": "First draw at 2048", "redraw 2048": "Redraw at 2048",
    "memory": "Peak memory", "whole": "Whole process",
}
# Sets of letters alone would measure what is not drawn yet.
TEXT_SETS = {"text", "charts"}
GOAL = 2
# Where everything takes so little, a process's own pages are what is measured.
LEAST_MEMORY = 0.25


def drawings_of(folder, with_text):
    """Names of the drawings, and how many were left out because of text."""
    files = sorted(p for p in folder.rglob("*.svg") if p.is_file())
    kept = [f for f in files if with_text or b"<text" not in f.read_bytes()]
    return [str(f) for f in kept], len(files) - len(kept)


def sets_of(with_text):
    """(name, files, files left out for text); the project's own examples where no data lies beside it."""
    data = pathlib.Path(os.environ.get("QXSVG_BENCH_DATA", ROOT.parent / "shared"))
    folders = [(p.name, p) for p in sorted((data / "perf").glob("*")) if p.is_dir()]
    folders += [(f"corpus/{p.name}", p) for p in sorted((data / "corpus").glob("*")) if p.is_dir()]
    if not folders:
        folders = [("examples", ROOT / "examples" / "drawings")]
    for name, folder in folders:
        if with_text or folder.name not in TEXT_SETS:
            yield name, *drawings_of(folder, with_text)


class Comparison:
    def __init__(self, machine, rounds, seconds):
        self.machine, self.rounds, self.seconds = machine, rounds, seconds

    def measure(self, name, files, without_text):
        readable = files
        for subject in self.machine.subjects:
            readable = self._read_by(subject, readable)
        base = {"set": name, "files": len(readable), "with_text": without_text,
                "refused": len(files) - len(readable)}
        rows = []
        for subject in self.machine.subjects if readable else []:
            def add(measure_name, numbers, of=None):
                if numbers:
                    rows.append({**base, "subject": subject, "measure": measure_name,
                                 "median": measure.median(numbers), "n": of or len(numbers)})

            sides = ",".join(map(str, SIDES))
            times = self.machine.table(self.machine.command(
                subject, "times", self.rounds, self.seconds, sides, *readable), 1200)
            for phase in PHASES:
                add(phase, times.get(phase))
            add("memory", self._memory(subject, readable))
            add("whole", self._whole(subject, readable))
        return rows

    def _read_by(self, subject, files):
        if self.machine.run(self.machine.command(subject, "check", *files)) is not None:
            return files
        # One process each: a library that ends the process takes nothing else with it.
        return [f for f in files
                if self.machine.run(self.machine.command(subject, "check", f), 60) is not None]

    def _memory(self, subject, files):
        result = []
        for _ in range(min(3, self.rounds)):
            told = self.machine.table(self.machine.command(subject, "memory", SIDES[0], *files))
            if told:
                result.append(max(LEAST_MEMORY, (told["peak"][0] - told["idle"][0]) / 1024))
        return result

    def _whole(self, subject, files):
        file = sorted(files, key=os.path.getsize)[len(files) // 2]
        side = str(SIDES[0])
        with tempfile.TemporaryDirectory() as folder:
            out = f"{folder}/out.png"
            commands = {
                OWN: [self.machine.programs / "qxsvg", "render", "--quiet", file, out, "-w", side,
                      "-h", side, "-a"],
                "librsvg": ["rsvg-convert", "-w", side, "-h", side, "-a", "-o", out, file],
                "qt": [self.machine.programs / "compare_qt_render", file, out, side],
                "resvg": ["node", ROOT / "bench" / "compare" / "resvg.js", "whole", file, out, side],
            }
            times = self.machine.seconds_of(list(map(str, commands[subject])), self.rounds)
        return [1e3 * t for t in times]


# --- The page

def medians_of(rows):
    """{set: {measure: {subject: median}}} in the order of the rows."""
    result = {}
    for row in rows:
        result.setdefault(row["set"], {}).setdefault(row["measure"], {})[row["subject"]] = row["median"]
    return result


def fastest(values):
    peers = {s: v for s, v in values.items() if s != OWN}
    return min(peers, key=peers.get) if peers and OWN in values else None


def summary_table(medians):
    lines = ["| set | " + " | ".join(TITLES[m].lower() for m in MEASURES) + " |",
             "|---|" + "---|" * len(MEASURES)]
    for name, measures in medians.items():
        cells = []
        for what in MEASURES:
            values = measures.get(what, {})
            peer = fastest(values)
            if not peer:
                cells.append("")
                continue
            ratio = values[peer] / values[OWN]
            cell = f"{ratio:.1f} ({NAMES[peer].split(' (')[0]})"
            cells.append(f"**{cell}**" if ratio < GOAL else cell)
        lines.append(f"| {name} | " + " | ".join(cells) + " |")
    return "\n".join(lines)


def full_table(rows, medians):
    about = {r["set"]: r for r in rows}
    counts = {(r["set"], r["subject"], r["measure"]): r["n"] for r in rows}
    most = max((r["n"] for r in rows if r["measure"] == "load"), default=0)
    lines = ["| set | files | library | load | first 512 | redraw 512 | first 2048 | redraw 2048 | "
             "memory MB | whole |", "|---|---|---|" + "---|" * len(MEASURES)]
    for name, measures in medians.items():
        for subject in [s for s in NAMES if any(s in v for v in measures.values())]:
            cells = []
            for what in MEASURES:
                value = measures.get(what, {}).get(subject)
                few = what in PHASES and counts.get((name, subject, what), most) < min(15, most)
                mark = f" (n={counts[name, subject, what]})" if value is not None and few else ""
                cells.append("-" if value is None else f"{value:.3g}{mark}" if value < 1000
                             else f"{value:.0f}{mark}")
            first = subject == OWN
            lines.append(f"| {name if first else ''} | {about[name]['files'] if first else ''} | "
                         f"{NAMES[subject]} | " + " | ".join(cells) + " |")
    return "\n".join(lines)


def charts_of(machine, medians):
    links = []
    for what in MEASURES:
        groups = []
        for name, measures in medians.items():
            values = measures.get(what, {})
            if OWN in values and len(values) > 1:
                groups.append((name, {s: v / values[OWN] for s, v in values.items() if s != OWN}))
        if not groups:
            continue
        kind = "memory" if what == "memory" else "time"
        svg = charts.bar_chart(TITLES[what], f"{kind} beside that of QXSVG; the dashed line is twice",
                               groups, (GOAL,))
        picture = measure.write_chart(machine, f"compare-{what.replace(' ', '-')}", svg)
        links.append(f"![{TITLES[what]}: {kind} of each library beside that of QXSVG]({picture})")
    return links


def write_page(machine, rows):
    medians = medians_of(rows)
    short = [f"{name} {TITLES[m].lower()}" for name, v in medians.items() for m in MEASURES
             if fastest(v.get(m, {})) and v[m][fastest(v[m])] < GOAL * v[m][OWN]]
    about = {r["set"]: r for r in rows}
    left_out = [f"{name} {r['with_text']}" for name, r in about.items() if r["with_text"]]
    refused = [f"{name} {r['refused']}" for name, r in about.items() if r["refused"]]
    most = max((r["n"] for r in rows if r["subject"] == OWN and r["measure"] == "load"), default=0)
    notes = [f"Times are milliseconds of the processor, the median of {most} rounds where nothing "
             "else is said."]
    if left_out:
        notes.append("Drawings left out because they have text, which is not drawn yet: "
                     + ", ".join(left_out) + ", and the sets " + " and ".join(sorted(TEXT_SETS)) + ".")
    if refused:
        notes.append("Left out for all because one of the libraries does not read them: "
                     + ", ".join(refused) + ".")
    notes.append(f"Below twice the speed or above half the memory of the best of the others: "
                 f"{len(short)} of {sum(len(v) for v in medians.values())} cells.")
    parts = ["\n".join(measure.versions(machine)), " ".join(notes),
             "How many times as long (or as much memory) the best of the other libraries takes, and "
             "which it is; bold where it is less than twice:", summary_table(medians),
             *charts_of(machine, medians), "### All medians", full_table(rows, medians)]
    measure.write_part("side by side", "\n\n".join(parts))
    return short


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench compare", description=__doc__)
    parser.add_argument("programs")
    parser.add_argument("node")
    parser.add_argument("rows")
    parser.add_argument("--sets", help="only these, parted by commas; the others' rows are kept")
    parser.add_argument("--rounds", type=int, default=15, help="rounds that a median is of")
    parser.add_argument("--seconds", type=float, default=60,
                        help="a library that takes longer for a set ends after three rounds or more")
    parser.add_argument("--with-text", action="store_true", help="drawings with text too")
    parser.add_argument("--page-only", action="store_true", help="writes the page from kept rows")
    options = parser.parse_args()

    machine = measure.Machine(options.programs, options.node)
    missing = [NAMES[p] for p in PEERS if p not in machine.subjects]
    if missing:
        print(f"Not compared, since they are not there: {', '.join(missing)}", file=sys.stderr)
    rows = measure.kept_rows(options.rows)
    wanted = options.sets.split(",") if options.sets else None
    comparison = Comparison(machine, options.rounds, options.seconds)
    found = list(sets_of(options.with_text))
    for name, files, left_out in [] if options.page_only else found:
        if not files or wanted and name not in wanted:
            continue
        print(f"{name}: {len(files)} drawings", file=sys.stderr, flush=True)
        new = comparison.measure(name, files, left_out)
        rows = [r for r in rows if r["set"] != name] + new
        measure.keep_rows(options.rows, rows)
    order = [name for name, _, _ in found]
    rows = sorted((r for r in rows if r["set"] in order), key=lambda r: order.index(r["set"]))
    if not rows:
        print("Nothing was measured", file=sys.stderr)
        return 1
    short = write_page(machine, rows)
    print(summary_table(medians_of(rows)))
    print(f"\n{len(short)} cells below twice: {'; '.join(short)}\n{measure.PAGE}")
    return 0


if __name__ == "__main__":
    sys.exit(main())

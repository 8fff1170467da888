"""Lines and branches that were reached: coverage.py ROOT BUILD [FILE-REGEX]

Reads what gcov tells of every object. A line or branch of a template or an inline function counts as
reached when one of its instances was. Branches that only an exception takes are left out: nearly every
call has one.
"""
import collections
import concurrent.futures
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile


def notes_of(data_file):
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run(["gcov", "--json-format", "--stdout", "--branch-probabilities",
                               str(data_file)], cwd=folder, capture_output=True, text=True,
                              check=True)
    return [json.loads(line) for line in done.stdout.splitlines() if line.strip()]


class Counts:
    def __init__(self):
        self.lines = collections.defaultdict(int)
        # By line, and by the number of branches that its instances have.
        self.branches = collections.defaultdict(dict)

    def add(self, line):
        number = line["line_number"]
        self.lines[number] += line["count"]
        taken = tuple(b["count"] > 0 for b in line["branches"] if not b["throw"])
        if taken:
            same = self.branches[number].get(len(taken), (False,) * len(taken))
            self.branches[number][len(taken)] = tuple(a or b for a, b in zip(same, taken))

    def missed_lines(self):
        return sorted(n for n, count in self.lines.items() if count == 0)

    def totals(self):
        """Lines, lines reached, branches, branches reached."""
        widest = [forms[max(forms)] for forms in self.branches.values()]
        return (len(self.lines), sum(c > 0 for c in self.lines.values()),
                sum(map(len, widest)), sum(map(sum, widest)))


def counts_below(root, build):
    files = collections.defaultdict(Counts)
    data = sorted(p for p in build.rglob("*.gcda") if p.relative_to(build).parts[0] != "tests")
    with concurrent.futures.ThreadPoolExecutor() as pool:
        for documents in pool.map(notes_of, data):
            for file, below in ((f, d["current_working_directory"])
                                for d in documents for f in d["files"]):
                # Relative where a compiler cache made it so, and then to where the compiler ran.
                path = pathlib.Path(os.path.normpath(os.path.join(below, file["file"])))
                if path.is_relative_to(root) and not path.is_relative_to(build):
                    for line in file["lines"]:
                        files[path.relative_to(root)].add(line)
    return {p: c for p, c in files.items() if p.parts[0] != "tests"}


def print_row(name, totals):
    lines, reached, branches, taken = totals
    parts = [f"{name:34}", f"{lines:7}", f"{100 * reached / lines:6.1f}%", f"{branches:9}",
             f"{100 * taken / branches:6.1f}%" if branches else " " * 7]
    print(" ".join(parts))


def print_ranges(path, missed):
    ranges = []
    for number in missed:
        if ranges and number <= ranges[-1][1] + 1:
            ranges[-1][1] = number
        else:
            ranges.append([number, number])
    text = " ".join(f"{a}" if a == b else f"{a}-{b}" for a, b in ranges)
    print(f"{path}: {text or 'all reached'}")


def main():
    root, build = (pathlib.Path(a).resolve() for a in sys.argv[1:3])
    files = counts_below(root, build)
    if not files:
        sys.exit("No counters below " + str(build) + ": were the tests built with them and run?")
    folders = collections.defaultdict(lambda: (0, 0, 0, 0))
    for path, counts in files.items():
        for name in (str(path.parent), "all"):
            folders[name] = tuple(a + b for a, b in zip(folders[name], counts.totals()))
    print(f"{'folder':34} {'lines':>7} {'reached':>7} {'branches':>9} {'reached':>7}")
    for name in sorted(folders, key=lambda n: (n == "all", n)):
        print_row(name, folders[name])
    print("\nMost lines not reached:")
    for path in sorted(files, key=lambda p: len(files[p].missed_lines()), reverse=True)[:20]:
        print_row(str(path), files[path].totals())
    if len(sys.argv) > 3 and sys.argv[3]:
        print()
        for path in sorted(p for p in files if re.search(sys.argv[3], str(p))):
            print_ranges(path, files[path].missed_lines())
    return 0


if __name__ == "__main__":
    sys.exit(main())

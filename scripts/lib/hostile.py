"""Runs the command over hostile documents: hostile.py DIR BUILDS-FOLDER release,asan ONLY

Each file is loaded by "validate --deep", drawn at its own size and drawn at 256 by 256 together with a
plain good drawing, whose picture must come out as ever.
"""
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import pictures

# What differs from the table on purpose.
ACCEPTED = {
    "e04-transform-extremes.svg": "a transform that cannot be read is an error",
    "j10-value-lists-malformed.svg": "a transform that cannot be read is an error",
}
# A sanitizer build is slower and keeps freed memory.
FACTORS = {"release": (1, 1), "asan": (10, 4)}
GOOD = ('<svg xmlns="http://www.w3.org/2000/svg" width="40" height="40"><rect width="40" height="40" '
        'fill="#123456"/><circle cx="20" cy="20" r="15" fill="#fedcba"/></svg>')
MARK, MARK_AT, NEAR = (0, 128, 0), 0.75, 2
SANITIZER_STATUS = 99
ENVIRONMENT = {
    "ASAN_OPTIONS": f"exitcode={SANITIZER_STATUS}:detect_leaks=1:allocator_may_return_null=1",
    "UBSAN_OPTIONS": f"exitcode={SANITIZER_STATUS}:print_stacktrace=1",
}


class Case:
    def __init__(self, cells):
        self.name, _, self.outcome, limit, mark = (c.strip().strip("`") for c in cells[:5])
        self.seconds, self.megabytes = map(float, re.findall(r"[\d.]+", limit)[:2])
        self.has_mark = mark == "yes"


def cases_of(folder):
    for line in (folder / "README.md").read_text().splitlines():
        cells = line.strip().strip("|").split("|")
        if len(cells) >= 6 and re.fullmatch(r" *`[^`]+\.svgz?` *", cells[0]):
            yield Case(cells)


def canaries_of(folder):
    """Words that may not be told and colours that may not be seen."""
    words, colours = set(), set()
    for file in sorted((folder / "canary").glob("*")):
        if file.suffix in (".txt", ".svg", ".css"):
            text = file.read_text()
            words |= {w.encode() for w in re.findall(r"CANARY-[0-9A-F]+", text)}
            if file.suffix == ".svg":
                colours |= {tuple(bytes.fromhex(c)) for c in re.findall(r'fill="#([0-9a-f]{6})"', text)}
    return words, colours


class Run:
    """One run of the command to its end, or to a limit."""

    def __init__(self, arguments, seconds, megabytes, hard_memory):
        def limit():
            # The verdict is by processor time and resident memory; these end what goes far past.
            resource.setrlimit(resource.RLIMIT_CPU, (int(seconds) + 2,) * 2)
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            if hard_memory:
                resource.setrlimit(resource.RLIMIT_AS, (int(megabytes * 2) << 20,) * 2)

        with tempfile.TemporaryFile() as log:
            process = subprocess.Popen(arguments, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                       preexec_fn=limit, env={**os.environ, **ENVIRONMENT})
            end, killed = time.monotonic() + 5 * seconds + 5, False
            while True:
                done, status, used = os.wait4(process.pid, os.WNOHANG)
                if done:
                    break
                if time.monotonic() > end and not killed:
                    process.kill()
                    killed = True
                time.sleep(0.002)
            process.returncode = status
            log.seek(0)
            self.text = log.read(1 << 20)
        self.seconds = used.ru_utime + used.ru_stime
        self.megabytes = used.ru_maxrss / 1024
        self.exit = os.waitstatus_to_exitcode(status)
        self.fault = self._fault(killed, seconds, megabytes)

    def _fault(self, killed, seconds, megabytes):
        if killed or self.exit == -signal.SIGXCPU:
            return "HANG"
        if self.exit < 0:
            return f"CRASH({signal.Signals(-self.exit).name})"
        if self.exit == SANITIZER_STATUS:
            return "SANITIZER"
        if self.exit > 1:
            return f"STATUS({self.exit})"
        if self.seconds > seconds:
            return f"SLOW({self.seconds:.1f} s)"
        if self.megabytes > megabytes:
            return f"MEMORY({self.megabytes:.0f} MB)"
        if self.exit == 1 and not self.text.strip():
            return "SILENT"
        return ""


def fault_of_picture(file, case, colours):
    """What is wrong with a picture that was drawn."""
    data = file.read_bytes()
    try:
        rows = pictures.rows_of(data)
    except ValueError as error:
        return f"PICTURE({error})"
    if case.outcome in "NC":
        if any(colours & set(row) for row in rows):
            return "CANARY"
    if case.has_mark:
        row = rows[int(MARK_AT * len(rows))]
        pixel = row[int(MARK_AT * len(row))]
        if max(abs(a - b) for a, b in zip(pixel, MARK)) > NEAR:
            return f"NOMARK({bytes(pixel).hex()})"
    return ""


def fault_by_outcome(case, status):
    if case.outcome == "E" and status == 0:
        return "NOERROR"
    if case.outcome in ("P", "C") and status == 1:
        return "NOPICTURE"
    return ""


class Bench:
    def __init__(self, folder, command, build, work):
        self.folder, self.command, self.work = folder, command, work
        self.slow, self.more = FACTORS[build]
        self.hard = build == "release"
        self.words, self.colours = canaries_of(folder)
        self.good = work / "good.svg"
        self.good.write_text(GOOD)
        self.reference = self._picture_of(self.good)

    def _picture_of(self, file):
        out = self.work / "reference"
        out.mkdir(exist_ok=True)
        subprocess.run([self.command, "render", file, "-o", out / "good.png", "-w", "256", "-h", "256"],
                       check=True, stdout=subprocess.DEVNULL)
        return (out / "good.png").read_bytes()

    def run(self, case):
        """The faults found, the outcome, and the most seconds and megabytes of the three runs."""
        file, out = self.folder / case.name, self.work / "out"
        picture = out / f"{file.stem}.png"
        big, natural = ["-w", "256", "-h", "256"], out / "natural.png"
        plans = [
            ("load", ["validate", "--deep", file], None),
            ("draw", ["render", "--quiet", file, "-o", natural], natural),
            ("256", ["render", "--quiet", file, self.good, "-o", out, *big], picture),
        ]
        faults, runs = [], []
        for name, arguments, drawn in plans:
            shutil.rmtree(out, ignore_errors=True)
            out.mkdir()
            run = Run([self.command, *arguments], case.seconds * self.slow,
                      case.megabytes * self.more, self.hard)
            runs.append(run)
            found = run.fault or fault_by_outcome(case, run.exit)
            if not found and any(word in run.text for word in self.words):
                found = "CANARY"
            if not found and drawn and run.exit == 0:
                found = fault_of_picture(drawn, case, self.colours)
            if not found and name == "256":
                good = out / "good.png"
                if not good.exists() or good.read_bytes() != self.reference:
                    found = "GOOD-DRAWING-LOST"
            if found:
                faults.append(f"{name}: {found}")
        outcome = "picture" if runs[-1].exit == 0 else "error"
        return faults, outcome, max(r.seconds for r in runs), max(r.megabytes for r in runs)


def main():
    source, builds, names, only = sys.argv[1:5]
    cases = [c for c in cases_of(pathlib.Path(source)) if only in c.name]
    bad = 0
    print(f"{'file':36} {'build':8} {'told':4} {'outcome':8} {'s':>6} {'MB':>5}  verdict")
    with tempfile.TemporaryDirectory() as temporary:
        work = pathlib.Path(temporary)
        folder = work / "documents"
        # A copy, since a pipe that nobody writes to has to lie beside them.
        shutil.copytree(source, folder)
        for path in (folder, folder / "canary"):
            path.chmod(0o755)
        os.mkfifo(folder / "canary" / "pipe.png")
        for build in names.split(","):
            bench = Bench(folder, pathlib.Path(builds) / build / "bin" / "qxsvg", build, work)
            for case in cases:
                faults, outcome, seconds, megabytes = bench.run(case)
                accepted = ACCEPTED.get(case.name)
                bad += bool(faults) and not accepted
                verdict = "; ".join(faults) or "ok"
                if faults and accepted:
                    verdict += f" (accepted: {accepted})"
                print(f"{case.name:36} {build:8} {case.outcome:4} {outcome:8} {seconds:6.2f} "
                      f"{megabytes:5.0f}  {verdict}", flush=True)
    print(f"{len(cases)} documents, {bad} rows that do not end as told")
    return 1 if bad or not cases else 0


if __name__ == "__main__":
    sys.exit(main())

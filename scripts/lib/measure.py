"""What the comparisons have in common: the libraries, how each is run alone, rows that are kept, and
pages of which a part is generated."""
import datetime
import json
import os
import pathlib
import platform
import re
import resource
import statistics
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs" / "performance.md"
PICTURES = ROOT / "docs" / "pictures" / "performance"
OWN = "qxsvg"
NAMES = {OWN: "QXSVG", "librsvg": "librsvg", "qt": "Qt SVG", "resvg": "resvg (resvg-js)"}
PEERS = [name for name in NAMES if name != OWN]
# Bytes that a library may take before it counts as not able to do something.
MOST_MEMORY = 8 << 30


def limit_memory():
    resource.setrlimit(resource.RLIMIT_DATA, (MOST_MEMORY, MOST_MEMORY))


class Machine:
    """Where the programs are, and which of the libraries are there."""

    def __init__(self, programs, node):
        self.programs, self.node = pathlib.Path(programs), pathlib.Path(node)
        # The last core: the first has most of the interrupts.
        os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})
        self.subjects = [name for name in NAMES if self._is_there(name)]

    def command(self, subject, *arguments):
        if subject == "resvg":
            script = ROOT / "bench" / "compare" / "resvg.js"
            return ["node", "--expose-gc", str(script), *map(str, arguments)]
        return [str(self.programs / "compare_subject"), subject, *map(str, arguments)]

    def run(self, arguments, timeout=600):
        """What a program printed; None when it failed, was killed, or took too long."""
        environment = {**os.environ, "NODE_PATH": str(self.node / "node_modules")}
        try:
            done = subprocess.run(arguments, stdin=subprocess.DEVNULL, capture_output=True,
                                  text=True, timeout=timeout, env=environment,
                                  preexec_fn=limit_memory)
        except subprocess.TimeoutExpired:
            return None
        return done.stdout if done.returncode == 0 else None

    def table(self, arguments, timeout=600):
        """Lines of "name: numbers" as a dict; empty when the program failed."""
        text = self.run(arguments, timeout) or ""
        parts = (line.rsplit(":", 1) for line in text.splitlines() if ":" in line)
        return {name: [float(n) for n in numbers.split()] for name, numbers in parts}

    def seconds_of(self, arguments, rounds, budget=60):
        """Processor seconds of whole processes, one after the other."""
        environment = {**os.environ, "NODE_PATH": str(self.node / "node_modules")}
        result = []
        for number in range(rounds + 1):
            process = subprocess.Popen(arguments, stdin=subprocess.DEVNULL, env=environment,
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            _, status, used = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            if process.returncode != 0:
                return []
            # The first one finds the program's files on the disk.
            if number > 0:
                result.append(used.ru_utime + used.ru_stime)
            if number >= 3 and sum(result) > budget:
                break
        return result

    def _is_there(self, name):
        if name == OWN:
            return True
        probe = ROOT / "examples" / "drawings" / "lighthouse-icon.svg"
        return self.run(self.command(name, "check", probe)) is not None


def versions(machine):
    """Lines on the machine, what was compared, and the day."""
    def told(*arguments):
        try:
            return subprocess.run(arguments, capture_output=True, text=True, check=True,
                                  cwd=ROOT).stdout.strip()
        except (OSError, subprocess.CalledProcessError):
            return "unknown"

    processor = re.search(r"model name\s*:\s*(.+)", pathlib.Path("/proc/cpuinfo").read_text())
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    system = re.search(r'PRETTY_NAME="(.+)"', pathlib.Path("/etc/os-release").read_text())
    package = machine.node / "node_modules" / "@resvg" / "resvg-js" / "package.json"
    libraries = {
        OWN: told("git", "log", "-1", "--format=commit %h of %cs"),
        "librsvg": told("pkg-config", "--modversion", "librsvg-2.0"),
        "qt": told("pkg-config", "--modversion", "Qt6Svg"),
        "resvg": json.loads(package.read_text())["version"] if package.exists() else "unknown",
    }
    return [
        f"- Machine: {processor[1] if processor else platform.machine()}, {os.cpu_count()} cores, "
        f"{memory:.0f} GB, {system[1] if system else platform.system()}; each process on one core",
        "- Compared: " + ", ".join(f"{NAMES[s]} {libraries[s]}" for s in machine.subjects)
        + (f", Node {told('node', '--version')}" if "resvg" in machine.subjects else ""),
        f"- Compiler: {told('c++', '--version').splitlines()[0]}",
        f"- Date: {datetime.date.today().isoformat()}",
    ]


def median(numbers):
    return statistics.median(numbers)


def kept_rows(path):
    path = pathlib.Path(path)
    return json.loads(path.read_text()) if path.exists() else []


def keep_rows(path, rows):
    path = pathlib.Path(path)
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text("[\n" + ",\n".join(json.dumps(row) for row in rows) + "\n]\n")


def write_part(name, text):
    """Puts `text` between the marks of that name on the page; the rest of it is written by hand."""
    begin, end = f"<!-- {name}: begin, written by scripts/bench -->", f"<!-- {name}: end -->"
    page = PAGE.read_text() if PAGE.exists() else "# Performance\n"
    part = f"{begin}\n\n{text.strip()}\n\n{end}"
    if begin in page:
        head, rest = page.split(begin, 1)
        page = head + part + rest.split(end, 1)[1]
    else:
        page = f"{page.rstrip()}\n\n{part}\n"
    PAGE.write_text(page)


def write_chart(machine, name, svg):
    """The chart, and its picture drawn by our own command; gives the picture's name for the page."""
    PICTURES.mkdir(parents=True, exist_ok=True)
    chart = PICTURES / f"{name}.svg"
    chart.write_text(svg)
    picture = chart.with_suffix(".png")
    subprocess.run([machine.programs / "qxsvg", "render", "--quiet", chart, picture], check=True)
    return picture.relative_to(PAGE.parent)

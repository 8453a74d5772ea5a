"""table.py FOLDER: prints the medians of all rounds found there beside the floor's and judges them by the limits."""

import json
import math
import pathlib
import statistics
import sys

# Operations on a whole curve cost at most so many times the floor, by number of keys ...
TIMES_THE_FLOOR = {1000: 1.5, 10000: 1.5, 100000: 2.0}
# ... and grow no faster: the exponent from n/10 to n keys is at most so much above the floor's.
ABOVE_THE_FLOORS_EXPONENT = 0.15
WHOLE_CURVE = ("wrapping", "building by insert", "destroying", "moveKeys", "reorganizeKeys", "releaseAndInsertKeys",
               "setKeysSmooth", "drag step")

# One key's edit or lookup takes at most so many times as long in the largest curve as in the smallest.
ONE_KEY = "one key, "
ONE_KEY_GROWTH = 1.5
# These take at most so many nanoseconds.
LOOKUPS = (ONE_KEY + "getIndexOf", ONE_KEY + "ZT::index")
LOOKUP_NANOSECONDS = 10.0

# Reading and writing files takes at most so many times what Boost's own reader and writer take.
XML = ("write XML", "read XML")
TIMES_BOOST = 2.0

# A key takes at most so many times the floor's heap.
TIMES_THE_FLOORS_HEAP = 1.15
# A drag of many steps keeps at most so many bytes more than one of one or two.
DRAG_MEMORY_GROWTH = 4096

PROGRAMS = ("floor", "curve", "commands", "evaluation", "captures", "animation", "editor")
FLOOR_PREFIX = "floor: "  # marks a row of a library program that measures what its namesake is compared with


class Row:
    """One operation at one size: its times by round, in nanoseconds for all of its keys."""

    def __init__(self, operation, layout, n):
        self.operation, self.layout, self.n = operation, layout, n
        self.keys = 1.0
        self.times = {"library": {}, "floor": {}}

    def per_key(self, side):
        return statistics.median(self.times[side].values()) / self.keys if self.times[side] else None

    def ratio(self):
        """Library to floor, of what was measured in the same round."""
        return median_quotient(self.times["library"], self.times["floor"])


def median_quotient(times, others):
    quotients = [times[i] / others[i] for i in times.keys() & others.keys()]
    return statistics.median(quotients) if quotients else None


class Limits:
    """Judges figures, and counts how many of them keep their limit."""

    def __init__(self):
        self.met = self.count = 0

    def judge(self, name, figure, limit):
        self.count += 1
        self.met += figure <= limit
        return f"{name} {limit:.2f}", "" if figure <= limit else f"{name} {figure:.2f} EXCEEDED"


def read_rows(folder):
    """All rows, by operation, layout and number of keys; an operation's rows stand together, the small ones first."""
    rows = {}
    paths = [path for program in PROGRAMS for path in folder.glob(f"{program}-*.json")]
    numbered = [(*(int(number) for number in path.stem.split("-")[1:]), path) for path in paths]
    for measured_in, _, path in sorted(numbered, key=lambda each: each[:2]):
        for entry in json.loads(path.read_text())["benchmarks"]:
            name = entry["run_name"].split("/iterations:")[0]
            side = "floor" if path.stem.startswith("floor-") or name.startswith(FLOOR_PREFIX) else "library"
            operation, size = name.removeprefix(FLOOR_PREFIX).split("|")
            layout, n = size.rsplit("/", 1)
            row = rows.setdefault((operation, layout, int(n)), Row(operation, layout, int(n)))
            if "median" in entry:  # missing where the row was skipped
                row.keys = entry["keys"]
                row.times[side][measured_in] = entry["median"]
    operations = list(dict.fromkeys(row.operation for row in rows.values()))
    order = sorted(rows.values(), key=lambda row: (operations.index(row.operation), row.layout, row.n))
    return {(row.operation, row.layout, row.n): row for row in order if row.times["library"]}


def exponent(rows, row, side):
    tenth = rows.get((row.operation, row.layout, row.n // 10))
    growth = median_quotient(row.times[side], tenth.times[side]) if tenth else None
    return None if growth is None else math.log10(growth)


def judge_row(rows, row, limits):
    """Pairs of a limit's text and a verdict, which is empty where the limit is kept."""
    ratio, tenth = row.ratio(), rows.get((row.operation, row.layout, row.n // 10))
    if row.operation.startswith(WHOLE_CURVE):
        if ratio is not None and row.n in TIMES_THE_FLOOR:
            yield limits.judge("ratio", ratio, TIMES_THE_FLOOR[row.n])
        if ratio is not None and tenth is not None and tenth.ratio() is not None:
            # The difference of two exponents, taken from ratios: these hardly change with the machine's speed.
            # What is no slower than the floor has not outgrown it: no row may become better by a slower library at
            # a tenth of its size.
            growth = math.log10(ratio / tenth.ratio()) if ratio > 1.0 else 0.0
            yield limits.judge("exp above", growth, ABOVE_THE_FLOORS_EXPONENT)
    if row.operation.startswith(ONE_KEY):
        sizes = [n for operation, layout, n in rows if (operation, layout) == (row.operation, row.layout)]
        smallest = rows[(row.operation, row.layout, min(sizes))]
        if row.n == max(sizes) > min(sizes):
            times = row.per_key("library") / smallest.per_key("library")
            text, verdict = limits.judge("growth", times, ONE_KEY_GROWTH)
            yield f"{text} (is {times:.2f})", verdict
    if row.operation in LOOKUPS:
        yield limits.judge("ns", row.per_key("library"), LOOKUP_NANOSECONDS)
    if row.operation in XML and ratio is not None:
        yield limits.judge("ratio", ratio, TIMES_BOOST)


def text_of(figure, digits):
    return "-" if figure is None else f"{figure:.{digits}f}"


def print_line(operation, layout, n, figures, judgements):
    limit = ", ".join(text for text, _ in judgements)
    verdict = ", ".join(verdict for _, verdict in judgements if verdict) or ("ok" if judgements else "")
    line = f"{operation:<46} {layout:<16} {n:>8}" + "".join(f" {figure:>9}" for figure in figures)
    print(f"{line}  {limit:<28} {verdict}".rstrip())


def print_rows(rows, limits):
    print_line("operation", "layout", "n", ("ns/key", "floor", "ratio", "exponent", "floor's"), [("limit", "verdict")])
    for row in rows.values():
        figures = (text_of(row.per_key("library"), 1), text_of(row.per_key("floor"), 1), text_of(row.ratio(), 2),
                   text_of(exponent(rows, row, "library"), 2), text_of(exponent(rows, row, "floor"), 2))
        print_line(row.operation, row.layout, row.n, figures, list(judge_row(rows, row, limits)))


def print_memory(folder, limits):
    paths = [folder / f"memory-{side}.json" for side in ("library", "floor")]
    if not all(path.exists() for path in paths):
        return
    library, floor = (json.loads(path.read_text()) for path in paths)
    print()
    print_line("memory", "", "n", ("bytes/key", "floor", "ratio"), [("limit", "verdict")])
    for name in ("heap bytes per key", "resident bytes per key"):
        for n, figure in library[name].items():
            ratio = figure / floor[name][n]
            judgements = [limits.judge("ratio", ratio, TIMES_THE_FLOORS_HEAP)] if name.startswith("heap") else []
            print_line(name, "frame order", n, (text_of(figure, 1), text_of(floor[name][n], 1), text_of(ratio, 2)),
                       judgements)
    steps = library["heap bytes after drag steps"]
    first, merged, last = (steps[step] for step in sorted(steps, key=int))
    judgement = limits.judge("bytes more", last - min(first, merged), DRAG_MEMORY_GROWTH)
    for step, figure in steps.items():
        print_line(f"heap bytes after {step} drag steps", "frame order", 10000, (figure, "", ""),
                   [judgement] if figure is last else [])


def main():
    folder = pathlib.Path(sys.argv[1])
    limits = Limits()
    rows = read_rows(folder)
    paired = [row for row in rows.values() if row.operation.startswith(WHOLE_CURVE + XML)]
    alone = [row.operation for row in paired if row.ratio() is None]
    if not rows or alone:
        sys.exit(f"no floor for: {', '.join(alone)}" if alone else "no row matches")
    print_rows(rows, limits)
    print_memory(folder, limits)
    print(f"\n{limits.met} of {limits.count} limits met")
    return 0 if limits.met == limits.count else 1


if __name__ == "__main__":
    sys.exit(main())

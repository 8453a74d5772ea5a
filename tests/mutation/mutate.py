"""How strong are the tests? Changes one place of the library's sources at a time, builds and tests it, and says what no
test noticed. See scripts/mutate for how to call it."""

import argparse
import collections
import json
import os
import random
import re
import sys
import threading
import time
from concurrent.futures import ThreadPoolExecutor

from equivalents import read_equivalents
from mutants import mutants_of
from worktree import FLOORS, TEST_FOLDERS, BuildError, Worktree

PROJECT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
PLACE = os.path.join(PROJECT, "build", "mutate")
WANTED = 0.90
SANITIZERS = "address,undefined,float-cast-overflow"
# Fetching memory ahead changes nothing that a test could see.
NOT_MUTATED = {"model/KeyTrail.h", "model/Prefetch.h"}


def all_mutants():
    found = []
    for floor in FLOORS:
        for folder, _, names in sorted(os.walk(os.path.join(PROJECT, floor))):
            for name in sorted(names):
                file = os.path.relpath(os.path.join(folder, name), PROJECT)
                if file.endswith((".cpp", ".h")) and file not in NOT_MUTATED:
                    with open(os.path.join(PROJECT, file), encoding="utf-8") as source:
                        found += mutants_of(file, source.read())
    alike = collections.Counter()
    for mutant in found:
        alike[mutant.name] += 1
        if alike[mutant.name] > 1:  # In the order in which they stand there.
            mutant.function += f" #{alike[mutant.name]}"
    return found


class Judge:
    """Decides for each mutant whether a test notices it, with the tests first that are likely to."""

    def __init__(self, tests):
        self._tests = tests
        self._kills = collections.Counter()  # by file and test
        self._lock = threading.Lock()

    def _tests_for(self, file):
        floor = FLOORS.index(file.split("/")[0])
        stem = os.path.splitext(os.path.basename(file))[0]

        def rank(test):
            subject = test.name[: -len("Test")]
            is_own = subject == stem or subject.startswith(stem) or stem.startswith(subject)
            with self._lock:
                kills = self._kills[file, test.name]
            return (subject != stem, not is_own, -kills, TEST_FOLDERS.index(test.folder), test.seconds)

        return sorted((test for test in self._tests if TEST_FOLDERS.index(test.folder) >= floor), key=rank)

    def judge(self, tree, mutant):
        """"killed by <test>", "survived" or "does not build"."""
        is_header = mutant.file.endswith(".h")
        try:
            if not is_header:
                tree.build()
            for test in self._tests_for(mutant.file):
                if is_header:
                    tree.build(test.name)
                outcome = tree.run(test)
                if outcome != "passed":
                    with self._lock:
                        self._kills[mutant.file, test.name] += 1
                    return f"killed: {test.name} {outcome}"
        except BuildError:
            return "does not build"
        return "survived"


def worktrees(sanitizers, count):
    names = [("sanitized-" if sanitizers else "") + str(number) for number in range(max(1, count))]
    trees = [Worktree(PROJECT, os.path.join(PLACE, name), sanitizers) for name in names]
    with ThreadPoolExecutor() as pool:
        list(pool.map(lambda tree: tree.configure_and_build(max(1, os.cpu_count() // len(trees))), trees))
    return trees


class Run:
    """Judges mutants, a few of them at a time, each in a tree of its own."""

    def __init__(self, mutants, sanitizers, jobs):
        trees = worktrees(sanitizers, jobs)
        tests = trees[0].tests()
        for test in tests:
            trees[0].measure(test)
        print(f"mutate: {len(mutants)} mutants, {len(tests)} test programs of {sum(t.seconds for t in tests):.0f} "
              "seconds", file=sys.stderr, flush=True)
        self._judge = Judge(tests)
        self._trees = trees
        self._survivor = "survived" if sanitizers else "survived without sanitizers"
        self._lock = threading.Lock()
        self._started = time.monotonic()
        self._waiting = collections.deque(self._portions(mutants))
        self._total = len(mutants)
        self.verdicts = []

    # Mutants of one file stay together, and headers come last: after a change in one, all test programs that were
    # built with it have to be built again.
    @staticmethod
    def _portions(mutants, most=12):
        def place(mutant):
            return (mutant.file.endswith(".h"), FLOORS.index(mutant.file.split("/")[0]), mutant.file, mutant.start)

        ordered = sorted(mutants, key=place)
        portions = []
        for mutant in ordered:
            if not portions or portions[-1][0].file != mutant.file or len(portions[-1]) == most:
                portions.append([])
            portions[-1].append(mutant)
        return portions

    def go(self):
        with ThreadPoolExecutor() as pool:
            list(pool.map(self._work, self._trees))
        return self.verdicts

    def _work(self, tree):
        while True:
            with self._lock:
                if not self._waiting:
                    return
                portion = self._waiting.popleft()
            text = tree.read(portion[0].file)
            for mutant in portion:
                tree.write(mutant.file, mutant.apply(text))
                verdict = self._judge.judge(tree, mutant)
                tree.write(mutant.file, text)
                self._note(mutant, verdict)

    def _note(self, mutant, verdict):
        with self._lock:
            self.verdicts.append((mutant, verdict))
            if verdict == "survived":
                print(f"\n{self._survivor}: {mutant.show()}", flush=True)
            done = len(self.verdicts)
            if done % 25 == 0 or done == self._total:
                minutes = (time.monotonic() - self._started) / 60
                print(f"mutate: {done} of {self._total} after {minutes:.1f} minutes", file=sys.stderr, flush=True)


def summarise(verdicts, equivalent):
    counts = collections.Counter("killed" if v.startswith("killed") else v for _, v in verdicts)
    judged = counts["killed"] + counts["survived"]
    score = counts["killed"] / judged if judged else 1.0
    by_file = collections.defaultdict(collections.Counter)
    for mutant, verdict in verdicts:
        by_file[mutant.file][verdict.split(":")[0]] += 1
    print(f"\n{'killed':>8}{'survived':>10}{'unbuilt':>9}")
    for file in sorted(by_file):
        line = by_file[file]
        print(f"{line['killed']:8}{line['survived']:10}{line['does not build']:9}  {file}")
    print(f"\nmutate: {counts['killed']} of {judged} mutants killed, {score:.1%}; {equivalent} more are known to be "
          f"equivalent, {counts['does not build']} did not build")
    with open(os.path.join(PLACE, "result.json"), "w", encoding="utf-8") as file:
        json.dump({
            "score": score,
            "killed": counts["killed"],
            "survived": counts["survived"],
            "equivalent": equivalent,
            "unbuilt": counts["does not build"],
            "mutants": [{"file": m.file, "line": m.line, "function": m.function, "kind": m.kind, "before": m.before,
                         "after": m.after, "verdict": v} for m, v in verdicts],
        }, file, indent=1)
    return score


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutate")
    parser.add_argument("filter", nargs="?", default=".", help="regular expression for the files to mutate")
    parser.add_argument("--sample", type=int, help="only so many mutants, chosen at random")
    parser.add_argument("--seed", type=int, default=1, help="of the choice")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="mutants at a time")
    parser.add_argument("--list", action="store_true", help="shows the mutants and makes none")
    options = parser.parse_args()

    mutants = all_mutants()
    equivalents = read_equivalents(os.path.join(PROJECT, "tests", "mutation", "equivalent.txt"))
    stale = equivalents - {mutant.name for mutant in mutants}
    for file, function, before, after in sorted(stale):
        print(f"mutate: equivalent.txt names what is no mutant: {file} {function}\n  - {before}\n  + {after}",
              file=sys.stderr)
    mutants = [mutant for mutant in mutants if re.search(options.filter, mutant.file)]
    equivalent = len(mutants)
    mutants = [mutant for mutant in mutants if mutant.name not in equivalents]
    equivalent -= len(mutants)
    if options.sample is not None and options.sample < len(mutants):
        mutants = random.Random(options.seed).sample(mutants, options.sample)
    if options.list:
        print("\n".join(mutant.show() for mutant in mutants))
        print(f"mutate: {len(mutants)} mutants and {equivalent} known to be equivalent")
        return 1 if stale else 0

    verdicts = Run(mutants, "", options.jobs).go()
    survivors = [mutant for mutant, verdict in verdicts if verdict == "survived"]
    if survivors:
        # What reads dead memory often finds there what it expects.
        verdicts = [(mutant, verdict) for mutant, verdict in verdicts if verdict != "survived"]
        verdicts += Run(survivors, SANITIZERS, options.jobs).go()
    return 0 if summarise(verdicts, equivalent) >= WANTED and not stale else 1


if __name__ == "__main__":
    sys.exit(main())

"""A copy of the project with a build of its own, in which one mutant after the other is built and tested."""

import json
import os
import re
import resource
import signal
import subprocess

FLOORS = ("base", "model", "commands")
# Slots that throw and memory that runs out are asked last: they know all floors above the base.
TEST_FOLDERS = (*FLOORS, "faults")
_COPIED = ("base", "model", "commands", "tests", "cmake", "CMakeLists.txt", "README.md")
_MEMORY = 4 << 30
# Chosen at random otherwise: the same mutants shall survive each time.
_ENVIRONMENT = {**os.environ, "QT_QPA_PLATFORM": "offscreen", "QTEST_DISABLE_STACK_DUMP": "1", "RC_PARAMS": "seed=1"}


class BuildError(Exception):
    pass


class Test:
    """A test program with the CPU seconds that it takes on sound sources."""

    def __init__(self, name, folder, program):
        self.name = name
        self.folder = folder
        self.program = program
        self.seconds = 0.0

    @property
    def limit(self):
        return int(5 * self.seconds) + 3


class Worktree:
    def __init__(self, project, place, sanitizers=""):
        self.source = os.path.join(place, "main")
        self._sanitizers = sanitizers
        self._project = project
        self._build = os.path.join(self.source, "build")
        self._copy()
        shared = os.path.join(project, "..", "shared")
        link = os.path.join(place, "shared")
        if os.path.isdir(shared) and not os.path.lexists(link):
            os.symlink(os.path.realpath(shared), link)

    # Only what differs is written, so that as little as possible is built anew.
    def _copy(self):
        wanted = set()
        for top in _COPIED:
            path = os.path.join(self._project, top)
            folders = os.walk(path) if os.path.isdir(path) else [(self._project, [], [top])]
            for folder, _, names in folders:
                wanted.update(os.path.relpath(os.path.join(folder, name), self._project) for name in names)
        for folder, folders, names in os.walk(self.source):
            folders[:] = [name for name in folders if os.path.join(folder, name) != self._build]
            for name in names:
                path = os.path.join(folder, name)
                if os.path.relpath(path, self.source) not in wanted:
                    os.remove(path)
        for name in wanted:
            with open(os.path.join(self._project, name), "rb") as file:
                content = file.read()
            self._write_if_other(os.path.join(self.source, name), content)

    @staticmethod
    def _write_if_other(path, content):
        if os.path.exists(path):
            with open(path, "rb") as file:
                if file.read() == content:
                    return
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)

    def configure_and_build(self, jobs):
        # Without -Werror: a mutant may leave something unused. Shared libraries that tests need not be linked to
        # again: a change in a source is one file and one link.
        subprocess.run(
            ["cmake", "-S", self.source, "-B", self._build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
             "-DCMAKE_CXX_FLAGS=-w", "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DEDITABLEANIMATION_WERROR=OFF",
             "-DEDITABLEANIMATION_EXAMPLES=OFF", "-DEDITABLEANIMATION_EDITOR=OFF", "-DEDITABLEANIMATION_INSTALL=OFF",
             "-DEDITABLEANIMATION_SANITIZE=" + self._sanitizers,
             "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", "-DEDITABLEANIMATION_PRECOMPILE_LIBRARIES=ON",
             "-DCMAKE_SHARED_LINKER_FLAGS=-fuse-ld=gold", "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=gold",
             "-DCMAKE_PROJECT_INCLUDE=" + os.path.join(self.source, "cmake", "FastBuild.cmake")],
            check=True, stdout=subprocess.DEVNULL)
        self.build(jobs=jobs)

    def build(self, *targets, jobs=1):
        done = subprocess.run(["ninja", "-C", self._build, f"-j{jobs}", *targets], text=True, errors="replace",
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        if done.returncode != 0:
            if re.search(r"ninja: (error|fatal)|fatal error: Killed|No space left|Cannot allocate memory", done.stdout):
                raise RuntimeError(done.stdout)  # No mutant's fault.
            raise BuildError(done.stdout)

    def tests(self):
        """The test programs that may notice a mutant."""
        listing = subprocess.run(["ctest", "--test-dir", self._build, "--show-only=json-v1"],
                                 check=True, stdout=subprocess.PIPE).stdout
        found = []
        for each in json.loads(listing)["tests"]:
            folder = os.path.relpath(os.path.dirname(each["command"][0]), os.path.join(self._build, "tests"))
            if folder in TEST_FOLDERS:
                found.append(Test(each["name"], folder, os.path.join("tests", folder, each["name"])))
        return found

    def measure(self, test):
        """Notes how long a test takes that has to pass."""
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        outcome = self.run(test, 900)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        if outcome != "passed":
            raise BuildError(f"{test.name} {outcome} without any mutation")
        test.seconds = after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime

    def run(self, test, limit=None):
        """Runs a test and returns "passed", "failed", "crashed" or "hung"."""
        limit = limit or test.limit
        with subprocess.Popen([os.path.join(self._build, test.program)], env=_ENVIRONMENT, cwd=self._build,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
            try:
                resource.prlimit(process.pid, resource.RLIMIT_CPU, (limit, limit + 1))
                if not self._sanitizers:  # They reserve addresses for all memory there could be.
                    resource.prlimit(process.pid, resource.RLIMIT_AS, (_MEMORY, _MEMORY))
                resource.prlimit(process.pid, resource.RLIMIT_CORE, (0, 0))
            except ProcessLookupError:
                pass  # It has ended already.
            try:
                code = process.wait(timeout=30 + 10 * limit)
            except subprocess.TimeoutExpired:
                process.kill()
                return "hung"
        if code in (-signal.SIGXCPU, -signal.SIGKILL):
            return "hung"
        return "passed" if code == 0 else "crashed" if code < 0 else "failed"

    def read(self, file):
        with open(os.path.join(self.source, file), encoding="utf-8") as source:
            return source.read()

    def write(self, file, text):
        with open(os.path.join(self.source, file), "w", encoding="utf-8") as target:
            target.write(text)

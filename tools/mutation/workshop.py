"""A copy of the tree in which a source is changed, built and tested, away from the user's own files."""

import filecmp
import hashlib
import os
import resource
import shutil
import signal
import subprocess
from pathlib import Path

PRESET = "headless-mutate"  # each source has an object of its own: a change then costs one short compilation
TEST_SECONDS = 60   # of processor time, so that a busy machine does not decide
IDLE_SECONDS = 300  # for a test that only waits
TEST_BYTES = 2 << 30
LARGEST_FILE = 4 << 30  # a change must not fill the disk; a test goes past 2 GiB in a file with holes


class BuildFailure(Exception):
    pass


def limit_process():
    """The hard limits stay, as some tests set limits of their own."""
    for kind, most in ((resource.RLIMIT_CPU, TEST_SECONDS), (resource.RLIMIT_AS, TEST_BYTES),
                       (resource.RLIMIT_FSIZE, LARGEST_FILE), (resource.RLIMIT_CORE, 0)):
        resource.setrlimit(kind, (most, resource.getrlimit(kind)[1]))


class Workshop:
    def __init__(self, root):
        self.root = Path(root)
        self.place = self.root / "build" / "mutate"
        self.tree = self.place / "tree"
        self.build = self.tree / "build" / PRESET
        self.objects = {}    # source: its object file below the build folder
        self.unchanged = {}  # source: fingerprint of the object of the unchanged source

    def copy_sources(self):
        """Updates the copy. Only differing files are written, so that nothing is built needlessly."""
        listing = subprocess.run(["git", "ls-files", "-coz", "--exclude-standard"], cwd=self.root,
                                 capture_output=True, check=True).stdout
        wanted = {name for name in os.fsdecode(listing).split("\0") if name and (self.root / name).is_file()}
        for file in list(self.tree.rglob("*")) if self.tree.exists() else []:
            name = str(file.relative_to(self.tree))
            if file.is_file() and name not in wanted and not name.startswith("build/"):
                file.unlink()
        for name in wanted:
            source, copy = self.root / name, self.tree / name
            if not copy.exists() or not filecmp.cmp(source, copy, shallow=False):
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, copy)

    def build_unchanged(self, programs):
        """Builds the test programs from the unchanged copy and records its objects."""
        self.make(programs)
        self._find_objects()
        built = [source for source, name in self.objects.items() if (self.build / name).exists()]
        self.unchanged = {source: self.fingerprint(source) for source in built}

    def make(self, targets, keep=True):
        """Builds; with `keep` the compiler cache stores the result."""
        environment = os.environ if keep else {**os.environ, "CCACHE_READONLY": "1"}
        result = subprocess.run([self.tree / "tools" / "build", PRESET, *targets], env=environment,
                                text=True, capture_output=True)
        if result.returncode != 0:
            raise BuildFailure(result.stderr[-4000:])

    def fingerprint(self, source):
        return hashlib.sha256((self.build / self.objects[source]).read_bytes()).hexdigest()

    def write_line(self, path, number, line):
        file = self.tree / path
        lines = file.read_text().split("\n")
        lines[number - 1] = line
        file.write_text("\n".join(lines))

    def run_tests(self, program):
        """Whether all tests of the program pass within the limits."""
        work = self._emptied("work")
        process = subprocess.Popen(
            [self.build / "tests" / program, "--gtest_brief=1", "--gtest_fail_fast"], cwd=work,
            env=self._environment(), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, preexec_fn=limit_process, start_new_session=True)
        try:
            return process.wait(IDLE_SECONDS) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            self._end_group(process)

    def _find_objects(self):
        listing = subprocess.run(["ninja", "-C", self.build, "-t", "targets", "all"], text=True,
                                 capture_output=True, check=True).stdout
        targets = [line.split(":")[0] for line in listing.splitlines()]
        self.objects = {"src/" + target.split(".dir/", 1)[1][:-2]: target for target in targets
                        if target.startswith("src/") and target.endswith(".cpp.o")}

    def _end_group(self, process):
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()

    def _emptied(self, name):
        folder = self.place / name
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        return folder

    def _environment(self):
        return {**os.environ, "HOME": str(self._emptied("home")), "TMPDIR": str(self._emptied("tmp"))}

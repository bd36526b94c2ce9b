"""Draws random one-line changes and lists those that no test of their folder notices."""

import argparse
import json
import random
import sys
from pathlib import Path

from mutation.changes import Change, changes_of_file
from mutation.workshop import BuildFailure, Workshop

FOLDERS = ["app", "base", "scene", "qsa", "qsb", "gfx", "render", "batch"]


def folder_of(change):
    return change.path.split("/")[1]


def programs_of(folder):
    """Tests that import, save and load are in a program of their own."""
    return [folder + "_tests"] + (["scene_files_tests"] if folder in ("qsa", "qsb") else [])


def lines_of(root, folders):
    """For each line of the folders' sources that can be changed, its changes."""
    found = []
    for folder in folders:
        for path in sorted((root / "src" / folder).glob("*")):
            if path.suffix in (".cpp", ".h"):
                found += changes_of_file(str(path.relative_to(root)), path.read_text())
    return found


def draws(root, folders, seed):
    """Changes in random order, none twice: a line by even chance, then one of its changes. So each
    folder is drawn in proportion to its lines."""
    chance = random.Random(seed)
    lines = lines_of(root, folders)
    while lines:
        place = chance.randrange(len(lines))
        yield lines[place].pop(chance.randrange(len(lines[place])))
        if not lines[place]:
            del lines[place]


def replayed(root, file):
    """The changes of a list, at the lines where their text stands now."""
    for entry in map(json.loads, Path(file).read_text().splitlines()):
        lines = (root / entry["path"]).read_text().split("\n")
        numbers = [number for number, line in enumerate(lines, 1) if line == entry["before"]]
        if numbers:
            nearest = min(numbers, key=lambda number: abs(number - entry["number"]))
            yield Change(entry["path"], nearest, entry["before"], entry["after"])
        else:
            print(f"gone: {entry['path']}: {entry['before'].strip()}", flush=True)


class Trial:
    """Tries changes one at a time and counts the outcomes."""

    def __init__(self, workshop):
        self.workshop = workshop
        self.counts = {"caught": 0, "survived": 0, "did not compile": 0, "same code": 0}
        self.survivors = []

    def run(self, change):
        self.workshop.write_line(change.path, change.number, change.after)
        try:
            outcome = self._outcome(change)
        finally:
            self.workshop.write_line(change.path, change.number, change.before)
        self.counts[outcome] += 1
        if outcome == "survived":
            self.survivors.append(change)
            print(f"survived: {change}", flush=True)

    def tried(self):
        return self.counts["caught"] + self.counts["survived"]

    def _outcome(self, change):
        try:
            if self._leaves_the_code(change):
                return "same code"
            self.workshop.make(programs_of(folder_of(change)), keep=False)
        except BuildFailure:
            return "did not compile"
        unnoticed = all(self.workshop.run_tests(program) for program in programs_of(folder_of(change)))
        return "survived" if unnoticed else "caught"

    def _leaves_the_code(self, change):
        """Whether the object file is the same as before: then no test can tell the two apart."""
        if change.path not in self.workshop.unchanged:
            return False  # a header: its code is in many objects
        self.workshop.make([self.workshop.objects[change.path]], keep=False)
        return self.workshop.fingerprint(change.path) == self.workshop.unchanged[change.path]


def arguments():
    parser = argparse.ArgumentParser(prog="tools/mutate", description=__doc__)
    parser.add_argument("what", nargs="*", metavar="FOLDER N",
                        help=f"a folder of src ({', '.join(FOLDERS)}; default all of them) and the number of changes (50)")
    parser.add_argument("--seed", type=int, help="the same seed draws the same changes of the same sources")
    parser.add_argument("--replay", metavar="FILE", help="tries the changes of such a list once more")
    given = parser.parse_args()
    given.folders = [word for word in given.what if word in FOLDERS] or FOLDERS
    numbers = [int(word) for word in given.what if word.isdigit()]
    if len(numbers) > 1 or any(word not in FOLDERS and not word.isdigit() for word in given.what):
        parser.error(f"FOLDER is one of {', '.join(FOLDERS)}, N a number")
    given.number = numbers[0] if numbers else 50
    given.seed = random.randrange(1 << 31) if given.seed is None else given.seed
    return given


def check_unchanged(workshop, programs):
    for program in programs:
        if not workshop.run_tests(program):
            sys.exit(f"{program} fails without any change; mend that first")


def report(root, trial):
    counts = trial.counts
    print(f"{trial.tried()} changes tried: {counts['caught']} caught, {counts['survived']} survived (beside them"
          f" {counts['did not compile']} that did not compile, {counts['same code']} that left the code as it was)")
    file = root / "build" / "mutate" / "survivors.jsonl"
    file.write_text("".join(json.dumps(vars(change)) + "\n" for change in trial.survivors))
    print(f"survivors: {file.relative_to(root)}")


def main():
    given = arguments()
    root = Path.cwd()
    workshop = Workshop(root)
    workshop.copy_sources()
    if given.replay:
        source = list(replayed(workshop.tree, given.replay))
        folders, wanted = sorted({folder_of(change) for change in source}), len(source)
    else:
        source, folders, wanted = draws(workshop.tree, given.folders, given.seed), given.folders, given.number
    programs = [program for folder in folders for program in programs_of(folder)]
    workshop.build_unchanged(programs)
    check_unchanged(workshop, programs)
    print("replay" if given.replay else f"seed {given.seed}", flush=True)
    trial = Trial(workshop)
    for change in source:
        trial.run(change)
        if trial.tried() == wanted:
            break
    workshop.make(programs)
    report(root, trial)


main()

#!/usr/bin/env python3
"""Shows what the tests would not notice: changes the sources in small ways, one at a time, and runs the tests.

    scripts/mutants.py src/query/Validate.cpp                          every mutant of one file
    scripts/mutants.py --sample 60 --seed 7 src/panel src/dialog       60 drawn from two folders
    scripts/mutants.py --line 21 src/query/Validate.cpp                those of one line

It needs a build (--build, build/dev), which it brings up to date, and changes neither that nor the sources: a
mutant is compiled in a folder of its own and linked from there, with copies of the other objects, into a test
program of its own: test_<folder>. Go on with the tests meanwhile; the headers must stay as they are. Beside
test_<folder> it is tried by a class Test<file> of another program, windows by test_look, which looks at all of
them, and by programs named with --also, such as --also dialog. Tests that are no classes, as those of bare_host,
are not among them. Classes whose name fits the file run first, then
those that have noticed most of its mutants in the least time; the first function that fails ends it.

Calls that only reserve room or give it back are left alone. Not counted are mutants that do not compile, warnings
included, and those of which the compiler makes the same code at -O1 as of the original. Each survivor is printed
with its place; it is a missing test, or code that does nothing, or a change that cannot matter: judge each. The
last line is the score.
"""
import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import random
import re
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

def is_measure(m):
    """Whether the number stands in a row of measures, where a twip more would be no pixel more."""
    line = m.string[m.string.rfind("\n", 0, m.start()) + 1:m.string.find("\n", m.end())]
    return len(re.findall(r"\b\d{2,}, ", line)) >= 2


# Room that is asked for ahead, or given back, is a matter of memory and time alone: no test can tell. One that looks
# whether the list is there does more than that.
HINTS = re.compile(r"\b(?:[rR]eserve\w*|[sS]queeze)\((?!.*Present).*\);")


RULES = [  # pattern, replacement; tried at each place outside of comments and texts
    # a number grows by 1, one of several digits by 30, which are two pixels in twips; so does 0 among measures
    (r"==", "!="), (r"!=", "=="), (r"&&", "||"), (r"\|\|", "&&"),
    (r"<=", "<"), (r">=", ">"), (r"(?<![<\-=\w]) < (?![<=])", " <= "), (r" > (?![>=])", " >= "),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
    (r" \+ 1\b", " + 2"), (r" - 1\b", " - 2"), (r"(?<![\w.\"'])0(?![\w.xX\"'])", lambda m: "30" if is_measure(m) else "1"),
    (r"(?<![\w.\"'])([2-9]|[1-9]\d+)(?![\w.\"'])", lambda m: str(int(m[0]) + (1 if int(m[0]) < 10 else 30))),
    (r"\bif \((?!const|auto)", "if (!("), (r"\+\+", "--"), (r" \? ", " ? /*swapped*/ "),
    (r"\bbreak;", ";"), (r"\bcontinue;", ";"),
    (r"^(\s+)(?!return|const|auto|throw|using|else|case|default|static|constexpr|struct|class|for|if|while|"
     r"switch|do|try|QString |[A-Z]\w* \w+[;({])([\w:>.\-]+\(.*\);)$", r"\1;  // \2"),
]

WINDOWS = ("windows", "lists", "controls", "panel", "dialog", "picker", "browser")

Mutant = collections.namedtuple("Mutant", "path text line start end old new")
TestClass = collections.namedtuple("TestClass", "program name environment")


def hidden(text):
    """The same text with comments and texts blanked out, place for place."""
    def blank(m):
        return re.sub(r"[^\n]", " ", m[0])
    return re.sub(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'|^\s*#[^\n]*', blank, text,
                  flags=re.S | re.M)


def mutants(path):
    text = path.read_text(encoding="utf-8")
    bare = HINTS.sub(lambda m: re.sub(r"[^\n]", " ", m[0]), hidden(text))
    found = []
    for pattern, with_what in RULES:
        for m in re.finditer(pattern, bare, re.M):
            old = text[m.start():m.end()]
            new = m.expand(with_what) if isinstance(with_what, str) else with_what(m)
            end = m.end()
            if new.endswith("if (!("):  # close the second bracket
                depth = 1
                while depth and end < len(bare):
                    depth += {"(": 1, ")": -1}.get(bare[end], 0)
                    end += 1
                new, old = new + text[m.end():end] + ")", text[m.start():end]
            elif "swapped" in new:
                tail = re.match(r"([^?:;]+?) : ([^?:;]+?)(?=[;,)])", bare[m.end():])
                if not tail:
                    continue
                end = m.end() + tail.end()
                one, two = text[m.end():m.end() + tail.end(1)], text[m.end() + tail.start(2):end]
                new, old = " ? %s : %s" % (two, one), text[m.start():end]
            if m.re.pattern.startswith("^"):
                new = bare[m.start():m.end()][:len(m[1])] + ";  // " + text[m.start(2):m.end(2)]
            found.append(Mutant(path, text, bare.count("\n", 0, m.start()) + 1, m.start(), end, old, new))
    return found


class Runner:
    """Runs commands, and ends those that are under way when it is left."""

    def __init__(self):
        self.running = set()
        self.lock = threading.Lock()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end_all()

    def end_all(self):
        with self.lock:
            for process in self.running:
                self.end(process)

    @staticmethod
    def end(process):
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass

    def start(self, command, folder=None, environment=None):
        with self.lock:
            process = subprocess.Popen(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
            self.running.add(process)
        return process

    def __call__(self, command, limit, folder=None, environment=None, is_enough=lambda: False):
        """The exit code; 124 for a command that took too long, or of which enough was seen."""
        process = self.start(command, folder, environment)
        latest = time.time() + limit
        try:
            while time.time() < latest and not is_enough():
                try:
                    return process.wait(0.1)
                except subprocess.TimeoutExpired:
                    continue
            self.end(process)  # a mutant that waits for ever is noticed, too
            process.wait()
            return 124
        finally:
            with self.lock:
                self.running.discard(process)


class Build:
    """How one object is compiled, and how the test programs are linked of them, as the build knows it."""

    def __init__(self, folder, objects, run):
        self.folder = folder.resolve()
        self.objects = pathlib.Path(objects)
        self.run = run
        if not (self.folder / "build.ninja").exists():
            sys.exit("%s is no build of Ninja" % folder)
        self.compiled = {}
        for entry in json.loads((self.folder / "compile_commands.json").read_text()):
            words = shlex.split(entry["command"])
            if pathlib.Path(words[0]).name == "ccache":
                words = words[1:]
            output = words[words.index("-o") + 1]
            # Of what is compiled twice, the tests link the objects of the library.
            if "_objects.dir" in output or entry["file"] not in self.compiled:
                self.compiled[pathlib.Path(entry["file"])] = words
        self.classes = self.read_classes()
        self.links = {}

    def read_classes(self):
        shown = subprocess.run(["ctest", "--test-dir", self.folder, "--show-only=json-v1"], check=True,
                               capture_output=True, text=True)
        classes = []
        for test in json.loads(shown.stdout)["tests"]:
            command = test.get("command", [""])
            if not pathlib.Path(command[0]).name.startswith("test_") or len(command) != 2:
                continue
            environment = {}
            for fact in test.get("properties", []):
                if fact["name"] == "ENVIRONMENT":
                    environment = dict(pair.split("=", 1) for pair in fact["value"])
            found = TestClass(pathlib.Path(command[0]).name, command[1], environment)
            if not any(known[:2] == found[:2] for known in classes):  # one of several looks at the same
                classes.append(found)
        return classes

    def make(self, programs):
        if self.run(["cmake", "--build", self.folder, "--target", *programs], 3600) != 0:
            sys.exit("%s cannot be built" % " ".join(programs))
        for program in programs:
            lines = subprocess.run(["ninja", "-C", self.folder, "-t", "commands", "bin/" + program], check=True,
                                   capture_output=True, text=True).stdout.splitlines()
            words = shlex.split(lines[-1].split("&& ", 1)[-1].rsplit(" &&", 1)[0])
            words = [str(self.copied(word)) if word.endswith((".o", ".a")) else word for word in words]
            self.links[program] = words + (["-fuse-ld=mold"] if shutil.which("mold") else [])

    def copied(self, name):
        """A copy of what is linked, without the debug information, which takes most of the time."""
        copy = self.objects / name.replace("/", "%")
        if not copy.exists():
            subprocess.run(["objcopy", "--strip-debug", self.folder / name, copy], check=True)
        return copy

    def object_of(self, path):
        words = self.compiled[path]
        return words[words.index("-o") + 1]

    def compile(self, path, source, result, extra=()):
        words = list(self.compiled[path])
        words[words.index("-o") + 1] = str(result)
        words[words.index("-c") + 1] = str(source)
        if "-include" not in words:  # what is compiled ahead knows one kind of debug information
            words += ["-g0"]
        return self.run([*words, *extra], 600, self.folder) == 0

    def is_linked(self, program, path):
        return str(self.copied(self.object_of(path))) in self.links[program]

    def link(self, program, path, mutated, result):
        words = list(self.links[program])
        words[words.index("-o") + 1] = str(result)
        words[words.index(str(self.copied(self.object_of(path))))] = str(mutated)
        return self.run(words, 600, self.folder) == 0

    def test(self, program_file, test, limit):
        """0 if all functions of the class pass. The first that fails ends it."""
        with tempfile.TemporaryDirectory(prefix="mutant") as folder:
            report = pathlib.Path(folder, "report")
            return self.run([program_file, test.name, "-o", "%s,txt" % report], limit, self.folder,
                            {**os.environ, **test.environment},
                            lambda: report.exists() and b"\nFAIL!" in report.read_bytes())


class Trial:
    """Which classes try a mutant, in which order, and how long they may take."""

    def __init__(self, build, also):
        self.build = build
        self.also = ["test_" + name for name in also]
        self.usual = {}
        self.noticed = collections.Counter()

    @staticmethod
    def folder(path):
        return path.parts[1] if path.parts[0] == "src" else path.parts[0]

    def candidates(self, path):
        folder = self.folder(path)
        programs = ["test_" + folder, *self.also] + (["test_look"] if folder in WINDOWS else [])
        return [test for test in self.build.classes if test.program in programs or test.name == "Test" + path.stem]

    def measure(self, tests):
        for test in tests:
            begun = time.time()
            if self.build.test(self.build.folder / "bin" / test.program, test, 900) != 0:
                sys.exit("%s %s fails without any change" % (test.program, test.name))
            self.usual[test[:2]] = time.time() - begun

    def classes(self, path):
        def words(name):
            return set(re.findall(r"[A-Z][a-z]{3,}", name))
        own = "test_" + self.folder(path)
        return sorted(self.candidates(path), key=lambda test: (test.program != own,
                                                               -len(words(path.stem) & words(test.name)),
                                                               -self.promise(path, test)))

    def promise(self, path, test):
        """Mutants of the file that the class has noticed, for the time that it takes."""
        return (self.noticed[path, test[:2]] + 0.5) / self.usual[test[:2]]

    def verdict(self, mutant, folder):
        """The class that notices it, or "" if none does; None if it does not count."""
        source = pathlib.Path(folder, mutant.path.name)
        mutated = pathlib.Path(folder, "mutated.o")
        text = mutant.text
        path = mutant.path.resolve()
        source.write_text(text[:mutant.start] + mutant.new + text[mutant.end:], encoding="utf-8")
        if not self.build.compile(path, source, mutated):
            return None
        linked = set()
        for test in self.classes(mutant.path):
            if not self.build.is_linked(test.program, path):  # but the shared library is
                continue
            program = pathlib.Path(folder, test.program)
            if program not in linked and not self.build.link(test.program, path, mutated, program):
                return None
            linked.add(program)
            if self.build.test(program, test, 10 + 4 * self.usual[test[:2]]) != 0:
                self.noticed[mutant.path, test[:2]] += 1
                return test.name
        return None if self.is_the_same(path, source, text) else ""

    def is_the_same(self, path, source, text):
        made = []
        for content in (source.read_text(encoding="utf-8"), text):
            source.write_text(content, encoding="utf-8")
            made.append(source.with_suffix(".o"))
            if not self.build.compile(path, source, made[-1], ["-w", "-O1", "-g0"]):
                return False
            made[-1] = made[-1].read_bytes()
        return made[0] == made[1]


def told(mutant):
    def short(text):
        return " ".join(text.split())[:90]
    return "%s:%d: %s  ->  %s" % (mutant.path, mutant.line, short(mutant.old), short(mutant.new))


def options():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("places", nargs="+", type=pathlib.Path)
    parser.add_argument("--sample", type=int, default=0)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--line", type=int, default=0)
    parser.add_argument("--again", type=pathlib.Path, help="those that survived in this output of an earlier run")
    parser.add_argument("--also", action="append", default=[], help="the program test_ALSO, too")
    parser.add_argument("--build", type=pathlib.Path, default=pathlib.Path("build/dev"))
    parser.add_argument("--jobs", type=int, default=1, help="mutants tried at a time")
    parser.add_argument("--minutes", type=float, default=0, help="begin no other mutant after that long")
    parser.add_argument("--verbose", action="store_true", help="tell of each mutant what noticed it")
    return parser.parse_args()


def drawn_from(wanted):
    sources = []
    for place in wanted.places:
        sources += sorted(place.rglob("*.cpp")) if place.is_dir() else [place]
    drawn = [m for source in sources for m in mutants(source) if not wanted.line or m.line == wanted.line]
    if wanted.again:
        survivors = set(wanted.again.read_text(encoding="utf-8").splitlines())
        drawn = [m for m in drawn if told(m) in survivors]
    if wanted.sample and wanted.sample < len(drawn):
        drawn = random.Random(wanted.seed).sample(drawn, wanted.sample)
    return drawn


def tried(trial, drawn, wanted):
    """Each mutant with its verdict, as they come."""
    begun = time.time()

    def one(mutant):
        if wanted.minutes and time.time() - begun > wanted.minutes * 60:
            return None  # not tried
        with tempfile.TemporaryDirectory(prefix="mutant") as folder:
            return mutant, trial.verdict(mutant, folder)

    with concurrent.futures.ThreadPoolExecutor(wanted.jobs) as pool:
        try:
            for done in concurrent.futures.as_completed([pool.submit(one, mutant) for mutant in drawn]):
                if done.result():
                    yield done.result()
        except BaseException:
            pool.shutdown(wait=False, cancel_futures=True)
            trial.build.run.end_all()
            raise


def main():
    wanted = options()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    drawn = drawn_from(wanted)
    begun = time.time()
    with Runner() as run, tempfile.TemporaryDirectory(prefix="objects") as objects:
        build = Build(wanted.build, objects, run)
        drawn = [mutant for mutant in drawn if mutant.path.resolve() in build.compiled]
        trial = Trial(build, wanted.also)
        tests = [test for test in build.classes if any(test in trial.candidates(path) for path in
                                                       {mutant.path for mutant in drawn})]
        build.make(sorted({test.program for test in tests}))
        trial.measure(tests)
        counts = collections.Counter()
        for mutant, verdict in tried(trial, drawn, wanted):
            counts["left out" if verdict is None else "noticed" if verdict else "survived"] += 1
            if verdict == "" or wanted.verbose:
                by = "" if verdict == "" else "  [%s]" % ("does not count" if verdict is None else verdict)
                print(told(mutant) + by, flush=True)
    total = counts["noticed"] + counts["survived"]
    print("%d of %d mutants noticed, %.0f %%; %d more do not count; seed %d; %.1f s for each" %
          (counts["noticed"], total, 100 * counts["noticed"] / total if total else 0, counts["left out"], wanted.seed,
           (time.time() - begun) / max(1, len(drawn))))
    return 0 if total else 2


if __name__ == "__main__":
    sys.exit(main())

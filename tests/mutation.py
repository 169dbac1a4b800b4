"""What the scripts have in common that change sources in small ways, one at a time, and see whether somebody notices.

A mutant that does not compile, or that compiles to the very same code, is none. A file of survivors lists, with the
reasons, those that change nothing which a caller could see, alone or as "any change" of a line; of the others 95 of 100 have to be
killed.
"""
import argparse
import os
import pathlib
import random
import re
import resource
import shlex
import signal
import subprocess
import sys
import tempfile
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from typing import NamedTuple

ROOT = pathlib.Path(__file__).resolve().parents[1]

os.environ["CCACHE_DISABLE"] = "1"  # mutants are compiled once

SWAPS = [(" == ", " != "), (" != ", " == "), (" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "), (" && ", " || "),
         (" || ", " && "), (" + ", " - "), (" - ", " + "), (" * ", " + "), (" / ", " * "), (" % ", " + "), (" | ", " & "), (" & ", " | "),
         ("++", "--"), ("--", "++"), (" += ", " -= "), (" -= ", " += "), (" |= ", " &= "), (" &= ", " |= "), ("std::min", "std::max"),
         ("std::max", "std::min"), (".begin()", ".end()")]
WORDS = [("true", "false"), ("false", "true"), ("0", "1"), ("1", "0"), ("2", "1"), ("COLUMN_MAJOR", "ROW_MAJOR"),
         ("ROW_MAJOR", "COLUMN_MAJOR")]


def blanked(match):
    return re.sub(r"[^\n]", " ", match[0])


def without_comments(text):
    """Comments become blanks, so that places stay."""
    return re.sub(r"//[^\n]*|/\*.*?\*/", blanked, text, flags=re.S)


def without_texts(code):
    return re.sub(r'"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)\'', lambda m: m[0][0] + " " * (len(m[0]) - 2) + m[0][0], code)


def changes(text):
    """(place, end, replacement, what) for every change of one file."""
    code = without_texts(without_comments(text))
    code = re.sub(r"^[ \t]*#.*$|static_assert[^;]*;|template <[^{;]*?>$", blanked, code, flags=re.M)
    for old, new in SWAPS:
        for m in re.finditer(re.escape(old), code):
            yield m.start(), m.end(), new, f"`{old.strip()}` becomes `{new.strip()}`"
    for old, new in WORDS:
        for m in re.finditer(rf"(?<![\w.]){old}(?![\w.])", code):
            yield m.start(), m.end(), new, f"`{old}` becomes `{new}`"
    for m in re.finditer(r"(?<![\w.])(?:[3-9]|\d\d+)(?![\w.'])", code):
        yield m.start(), m.end(), str(int(m[0]) + 1), f"`{m[0]}` becomes `{int(m[0]) + 1}`"
    for m in re.finditer(r"!(?=[\w(])", code):
        yield m.start(), m.end(), "", "`!` is left out"
    for m in re.finditer(r"\b(if|while) \((?!constexpr)", code):
        for value in ("true", "false") if m[1] == "if" else ("false",):
            yield m.end(), m.end(), f"{value} {'||' if value == 'true' else '&&'} ", f"the condition is always {value}"
    for m in re.finditer(r"^[ \t]+((?!return\b|using\b|throw\b|case\b|break\b|continue\b|static\b|const\b|friend\b|template\b|else\b)"
                         r"[\w:.\->\[\]*+()&<>]+(?:\(| [-+*|&]?= |\+\+|--)[^{}\n]*;)$", code, re.M):
        yield m.start(1), m.end(1), ";", "the statement is left out"
    for m in re.finditer(r"\breturn ([^;{}]+);", code):
        if m[1] not in ("true", "false", "nullptr", "0"):
            yield m.start(1), m.end(1), "{}", "it returns nothing"


class Library:
    """A shared library of a build, with the commands by which Ninja makes it."""

    def __init__(self, build, folder, output, headers=()):
        """`folder` holds its sources, `output` is its path in the build, perhaps that of a link to it; `headers` are some in include/
        that only the library has compiled into it."""
        output = (build / output).resolve().relative_to(build)
        self.build, self.folder, self.headers, self.link, self.units = build, folder, list(headers), None, {}
        done = subprocess.run(["ninja", "-C", build, "-t", "commands", output], capture_output=True, text=True)
        for line in done.stdout.splitlines():
            compiled = re.fullmatch(r"(.*?) -MD -MT \S+ -MF \S+ -o (\S+) -c (\S+)", line)
            if compiled and pathlib.Path(compiled[3]).is_relative_to(folder):
                self.units[pathlib.Path(compiled[3])] = (compiled[1], compiled[2])
            elif f" -o {output} " in line:
                self.link = line
        if not self.link or not self.units:
            sys.exit(f"{build} is no build by Ninja that makes {output}: {done.stderr}")
        self.name = re.search(r"-soname,(\S+)", self.link)[1]

    def files(self):
        return self.headers + sorted(path for path in self.folder.rglob("*.?pp") if path.suffix == ".hpp" or path in self.units)

    def units_with(self, path):
        """The units that have to be compiled again: those that include a header, directly or not."""
        reach = {path}
        while True:
            more = {file for file in self.files() if re.search(
                r'#include ["<](?:[^">]*/)?(?:' + "|".join(re.escape(header.name) for header in reach) + ')[">]', file.read_text())} - reach
            if not more:
                return [unit for unit in self.units if unit in reach]
            reach |= more

    def build_with(self, mutant, folder):
        """None when the library is made in `folder`, else the reason why the mutant is none."""
        overlay = folder / "sources"  # quotes look beside the including file first
        for file in self.files():
            header = file in self.headers
            copy = folder / "include" / file.relative_to(ROOT / "include") if header else overlay / file.relative_to(self.folder)
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.write_text(mutant.text if file == mutant.path else file.read_text())
        link, same = self.link, True
        for unit in self.units_with(mutant.path):
            command, made = self.units[unit]
            new = folder / (made.replace("/", "-"))
            words = shlex.split(command.replace(" -I", f" -I{folder}/include -I", 1))
            if failure(run([*words, "-w", "-o", new, "-c", overlay / unit.relative_to(self.folder)], 600, cwd=self.build)):
                return "does not compile"
            same = same and new.read_bytes() == (self.build / made).read_bytes()
            link = link.replace(f" {made} ", f" {new} ")
        if same:
            return "the same code"
        said = failure(run(["sh", "-c", re.sub(r" -o \S+ ", f" -o {folder / self.name} ", link)], 300, cwd=self.build))
        return f"does not link: {said}" if said else None


class Mutant(NamedTuple):
    library: Library
    path: pathlib.Path
    line: int
    what: str  # e.g. `<` becomes `<=`, followed by ` (2)` when it is the second such change of the line
    text: str  # of the whole file

    def key(self, what=None):
        """How a file of survivors names it: unlike line numbers, this outlives changes elsewhere."""
        line = self.path.read_text().splitlines()[self.line - 1].strip()
        return f"{self.path.name}: {line}: {what or self.what}"

    def is_in(self, known):
        return self.key() in known or self.key("any change") in known


def mutants_of(library):
    for path in library.files():
        text = path.read_text()
        found = Counter()
        for start, end, new, what in sorted(set(changes(text))):
            line = text.count("\n", 0, start) + 1
            found[line, what] += 1
            nth = f" ({found[line, what]})" if found[line, what] > 1 else ""
            yield Mutant(library, path, line, what + nth, text[:start] + new + text[end:])


def run(command, seconds, **options):
    """(status, output), or None when it took too long. Its children end with it."""
    with subprocess.Popen(list(map(str, command)), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          errors="replace", start_new_session=True, **options) as process:
        try:
            output = process.communicate(timeout=seconds)[0]
            return process.returncode, output
        except subprocess.TimeoutExpired:
            return None
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass


def failure(result):
    """None when it went well, else the first thing it says."""
    if result is None:
        return "no end"
    return None if result[0] == 0 else next(iter(result[1].strip().splitlines()), f"status {result[0]}")


def parser_of(doc, sample):
    parser = argparse.ArgumentParser(description=doc, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/dev", help="a build of everything")
    parser.add_argument("--sample", type=int, default=sample, metavar="N", help="how many mutants of all; 0 means all")
    parser.add_argument("--seed", type=int, default=12, help="of the choice")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="mutants at a time")
    parser.add_argument("--only", default="", metavar="TEXT", help="files whose path contains this")
    parser.add_argument("--verbose", action="store_true", help="name every mutant and what killed it")
    return parser


def judge_all(options, libraries, survivors, verdict, left_out=()):
    """Ends the process. `verdict(mutant, folder)` is None when nobody notices the library built in the folder; files whose names are
    in `left_out` are not changed."""
    resource.setrlimit(resource.RLIMIT_AS, (16 << 30,) * 2)  # a mutant may want all memory
    known = {line.split(" # ")[0].strip() for line in survivors.read_text().splitlines() if line and not line.startswith("#")}
    made = [mutant for library in libraries for mutant in mutants_of(library) if mutant.path.name not in left_out]
    if gone := known - {key for mutant in made for key in (mutant.key(), mutant.key("any change"))}:
        sys.exit("no such mutants any more, see " + "\n".join([str(survivors.relative_to(ROOT)), *sorted(gone)]))
    chosen = [mutant for mutant in made if options.only in str(mutant.path)]
    if options.sample and options.sample < len(chosen):
        chosen = random.Random(options.seed).sample(chosen, options.sample)
    counts = {"none": 0, "killed": 0, "SURVIVES": 0, "equivalent": 0}

    def judge(mutant):
        with tempfile.TemporaryDirectory(prefix="mutant-") as name:
            result, why = "none", mutant.library.build_with(mutant, pathlib.Path(name))
            if why is None:
                why = verdict(mutant, pathlib.Path(name))
                result = "killed" if why else "equivalent" if mutant.is_in(known) else "SURVIVES"
        counts[result] += 1
        if result == "SURVIVES" or options.verbose:
            where = f"{mutant.path.relative_to(ROOT)}:{mutant.line}"
            print(f"{result}: {where}: {mutant.key()}" + (f": {why}" if why else ""), flush=True)

    with ThreadPoolExecutor(options.jobs) as pool:
        list(pool.map(judge, chosen))
    judged = counts["killed"] + counts["SURVIVES"]
    share = 100 * counts["killed"] / max(judged, 1)
    print(f"{len(chosen)} of {len(made)} mutants, {counts['none']} of them not compiled or the same code, {counts['equivalent']} known to "
          f"change nothing: of {judged} others {counts['killed']} killed, {counts['SURVIVES']} survive ({share:.1f} %)")
    sys.exit(judged == 0 or share < 95)

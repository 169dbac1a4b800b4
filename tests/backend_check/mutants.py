#!/usr/bin/env python3
"""Changes the sources of back-ends in small ways, one at a time, and asks vexadata-backend-check alone to notice.

The back-ends are the example in examples/own_backend and the embedded one in client/. A mutant that does not compile, or that
compiles to the very same code, is none. Those that survive are printed. survivors.txt beside this script lists what of them
changes nothing that a caller could see, and why; the rest counts. Fails when fewer than 95 of 100 that count are killed.
"""
import argparse
import importlib.util
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from typing import NamedTuple

ROOT = pathlib.Path(__file__).resolve().parents[2]
KNOWN = pathlib.Path(__file__).with_name("survivors.txt")
OFFERED = ["double", "data", "buffer", "untyped-buffer", "from-buffer", "copy-out-buffer", "release-buffer"]  # by the example
FLAGS = "-std=c++20 -O1 -fPIC -fvisibility=hidden -fvisibility-inlines-hidden -w -DNDEBUG".split()

spec = importlib.util.spec_from_file_location("contract_mutants", ROOT / "tests/contract/mutants.py")
contract = importlib.util.module_from_spec(spec)
spec.loader.exec_module(contract)


class Backend(NamedTuple):
    name: str
    folder: pathlib.Path
    sources: list  # what is changed, headers too
    includes: list
    require: list  # arguments for the command


class Mutant(NamedTuple):
    backend: Backend
    path: pathlib.Path
    line: int
    what: str  # e.g. `<` becomes `<=`
    text: str  # of the whole file

    def key(self):
        """How survivors.txt names it: unlike line numbers, this outlives changes elsewhere."""
        line = self.path.read_text().splitlines()[self.line - 1].strip()
        return f"{self.path.name}: {line}: {self.what}"


def backends():
    example = ROOT / "examples/own_backend"
    client = ROOT / "client/src"
    workspace = {"WorkspaceEngine.cpp", "Exception.cpp"}  # not reached through a factory; texts of errors
    embedded = sorted(path for path in [*client.glob("*.cpp"), *client.glob("*.hpp")] if path.name not in workspace)
    return [Backend("example", example, [example / "doubles.cpp"], [], [word for name in OFFERED for word in ("--require", name)]),
            Backend("embedded", client, embedded, [ROOT / "client/include"], ["--require", "all"])]


# --- making them -----------------------------------------------------------------------------------------------------

SWAPS = [(" == ", " != "), (" != ", " == "), (" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "), (" + ", " - "),
         (" - ", " + "), (" * ", " + "), (" && ", " || "), (" || ", " && "), ("++", "--"), ("--", "++"), ("std::min", "std::max"),
         ("std::max", "std::min"), (".begin()", ".end()"), (" += ", " -= "), (" -= ", " += "), (" % ", " + "), (" / ", " * ")]
WORDS = [("true", "false"), ("false", "true"), ("0", "1"), ("1", "0"), ("2", "1"), ("COLUMN_MAJOR", "ROW_MAJOR"), ("ROW_MAJOR", "COLUMN_MAJOR")]


def without_texts(code):
    return re.sub(r'"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)\'', lambda m: m[0][0] + " " * (len(m[0]) - 2) + m[0][0], code)


def changes(text):
    """(place, end, replacement, what) for every change of one file."""
    code = without_texts(contract.without_comments(text))
    code = re.sub(r"^[ \t]*#.*$|static_assert[^;]*;|template <[^{;]*?>$", lambda m: " " * len(m[0]), code, flags=re.M)
    for old, new in SWAPS:
        for m in re.finditer(re.escape(old), code):
            yield m.start(), m.end(), new, f"`{old.strip()}` becomes `{new.strip()}`"
    for old, new in WORDS:
        for m in re.finditer(rf"(?<![\w.]){old}(?![\w.])", code):
            yield m.start(), m.end(), new, f"`{old}` becomes `{new}`"
    for m in re.finditer(r"!(?=[\w(])", code):
        yield m.start(), m.end(), "", "`!` is left out"
    for m in re.finditer(r"\bif \((?!constexpr)", code):
        for value in ("true", "false"):
            yield m.end(), m.end(), f"{value} {'||' if value == 'true' else '&&'} ", f"the condition is always {value}"
    for m in re.finditer(r"^[ \t]+((?!return\b|using\b|throw\b|case\b|break\b|continue\b|static\b|const\b|friend\b|template\b|else\b)"
                         r"[\w:.\->\[\]*+()&<>]+(?:\(| = | \+= |\+\+)[^{}\n]*;)$", code, re.M):
        yield m.start(1), m.end(1), ";", "the statement is left out"
    for m in re.finditer(r"\breturn ([^;{}]+);", code):
        if m[1] not in ("true", "false", "nullptr", "0"):
            yield m.start(1), m.end(1), "{}", "it returns nothing"


def mutants():
    for backend in backends():
        for path in backend.sources:
            text = path.read_text()
            for start, end, new, what in sorted(set(changes(text))):
                line = text.count("\n", 0, start) + 1
                yield Mutant(backend, path, line, what, text[:start] + new + text[end:])


# --- building and judging --------------------------------------------------------------------------------------------


def run(command, seconds, **options):
    try:
        return subprocess.run(command, capture_output=True, text=True, timeout=seconds, **options)
    except subprocess.TimeoutExpired:
        return None


class Builder:
    def __init__(self, options, scratch):
        self.options, self.scratch = options, scratch
        self.objects = {}
        self.core = options.build / "src/libvexadata.so"
        self.command = options.build / "tools/backend_check/vexadata-backend-check"
        for backend in backends():
            units = [path for path in backend.sources + list(backend.folder.glob("*.cpp")) if path.suffix == ".cpp"]
            if backend.name == "example":
                units = [backend.folder / "doubles.cpp"]
            units = sorted(set(units))
            compiled = list(self.each(lambda unit: (unit, self.compile(backend, unit, unit, scratch / f"{backend.name}-{unit.stem}.o")), units))
            if any(made is None for _, made in compiled):
                sys.exit(f"{backend.name} does not compile")
            self.objects[backend.name] = dict(compiled)
            if self.verdict(backend, self.link(backend, self.objects[backend.name].values(), scratch)) is not None:
                sys.exit(f"{backend.name} fails without any change")

    def each(self, work, items):
        with ThreadPoolExecutor(self.options.jobs) as pool:
            return list(pool.map(work, items))

    def compile(self, backend, unit, source, made, overlay=None):
        places = [overlay] if overlay else []
        includes = [*places, backend.folder, ROOT / "include", *backend.includes]
        result = run(["g++", *FLAGS, f"-frandom-seed={unit.name}", *[f"-I{place}" for place in includes], "-c", source, "-o", made], 600)
        return made if result is not None and result.returncode == 0 else None

    def link(self, backend, objects, folder):
        library = folder / f"lib{backend.name}.so"
        result = run(["g++", "-shared", "-Wl,-z,nodelete", *objects, self.core, f"-Wl,-rpath,{self.core.parent}", "-o", library], 300)
        return library if result is not None and result.returncode == 0 else None

    def verdict(self, backend, library):
        """None when the command finds nothing wrong, else its first complaint."""
        if library is None:
            return "it does not link"
        result = run([self.command, "--quiet", "--first", "--timeout", str(self.options.timeout), *backend.require, library], 900)
        if result is None:
            return "no end"
        return None if result.returncode == 0 else (result.stdout + result.stderr).strip().splitlines()[0]

    def units_with(self, backend, path):
        """The units that have to be compiled again: those that include a header, directly or not."""
        if path.suffix == ".cpp":
            return [path]
        reach = {path.name}
        files = [*backend.folder.glob("*.hpp"), *backend.folder.glob("*.cpp")]
        while True:
            more = {file.name for file in files if any(f'#include "{name}"' in file.read_text() for name in reach)} - reach
            if not more:
                return [file for file in files if file.suffix == ".cpp" and file.name in reach]
            reach |= more

    def judge(self, mutant):
        """("none" | "killed" | "survives", why)"""
        backend = mutant.backend
        with tempfile.TemporaryDirectory(dir=self.scratch) as name:
            folder = pathlib.Path(name)
            for file in backend.folder.glob("*.?pp"):  # quotes look beside the including file first
                (folder / file.name).write_text(mutant.text if file == mutant.path else file.read_text())
            objects = dict(self.objects[backend.name])
            same = True
            for unit in self.units_with(backend, mutant.path):
                made = self.compile(backend, unit, folder / unit.name, folder / f"{unit.stem}.o", folder)
                if made is None:
                    return "none", "does not compile"
                same = same and made.read_bytes() == objects[unit].read_bytes()
                objects[unit] = made
            if same:
                return "none", "the same code"
            why = self.verdict(backend, self.link(backend, objects.values(), folder))
            return ("survives", "") if why is None else ("killed", why)


def known_survivors():
    """The lines of survivors.txt without the reasons, which follow after ` # `."""
    return {line.split(" # ")[0].strip() for line in KNOWN.read_text().splitlines() if line and not line.startswith("#")}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/dev", help="where the command and the core library are built")
    parser.add_argument("--sample", type=int, default=40, help="how many mutants of all; 0 means all")
    parser.add_argument("--seed", type=int, default=12, help="of the choice")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="mutants at a time")
    parser.add_argument("--timeout", type=int, default=30, help="most seconds for one check")
    parser.add_argument("--only", default="", metavar="TEXT", help="files whose path contains this")
    parser.add_argument("--verbose", action="store_true", help="name every mutant and what killed it")
    options = parser.parse_args()

    chosen = [mutant for mutant in mutants() if options.only in str(mutant.path)]
    if options.sample and options.sample < len(chosen):
        chosen = random.Random(options.seed).sample(chosen, options.sample)
    known = known_survivors()
    counts = {"none": 0, "killed": 0, "survives": 0, "equivalent": 0}
    with tempfile.TemporaryDirectory(prefix="mutants-") as name:
        builder = Builder(options, pathlib.Path(name))

        def judge(mutant):
            result, why = builder.judge(mutant)
            if result == "survives" and mutant.key() in known:
                result = "equivalent"
            counts[result] += 1
            if result == "survives" or options.verbose:
                print(f"{result.upper() if result == 'survives' else result}: {mutant.path.relative_to(ROOT)}:{mutant.line}: {mutant.key()} {why}", flush=True)

        builder.each(judge, chosen)
    judged = counts["killed"] + counts["survives"]
    share = 100 * counts["killed"] / max(judged, 1)
    print(f"{len(chosen)} mutants, {counts['none']} of them not compiled or the same code, {counts['equivalent']} known to change nothing: "
          f"of {judged} others {counts['killed']} killed, {counts['survives']} survive ({share:.1f} %)")
    sys.exit(judged == 0 or share < 95)


if __name__ == "__main__":
    main()

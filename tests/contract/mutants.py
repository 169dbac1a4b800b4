#!/usr/bin/env python3
"""Changes the contract headers in ways that break back-ends, one at a time, and asks the frozen tables to notice.

Each mutant is compiled against the tables that include its header, and the program of these tables is run. A mutant is killed
when the compiler refuses it or when the program fails; it survives when the program still says that nothing has moved.
"""
import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from typing import NamedTuple

ROOT = pathlib.Path(__file__).resolve().parents[2]
INCLUDE = ROOT / "include"
TABLES = ROOT / "tests" / "contract" / "frozen"
PUBLIC = "ArrayType Exception ICustomWorkspace IVariableInfo InProcessCustomWorkspace VariableInfo ZVMID"

BY_TABLE, BY_HEADER, BY_RUN = "types compared by a table", "the header itself", "places compared by a table"


class Mutant(NamedTuple):
    header: str  # as it is included
    what: str
    text: str


# --- making them -----------------------------------------------------------------------------------------------------


def contract_headers():
    found = [*INCLUDE.glob("vexa/data/impl/*.hpp"), *INCLUDE.glob("vexa/data/detail/*.hpp")]
    names = [path.relative_to(INCLUDE).as_posix() for path in found]
    return sorted(names) + ["vexa/data/object_functions.h"] + [f"foundation/vexadata/{name}.hpp" for name in PUBLIC.split()]


def without_comments(text):
    """Comments become blanks, so that places stay."""
    return re.sub(r"//[^\n]*|/\*.*?\*/", lambda match: re.sub(r"[^\n]", " ", match[0]), text, flags=re.S)


def class_bodies(code):
    """(name, begin, end) of each class or struct that is defined."""
    for match in re.finditer(r"^(?:class|struct)\s+(?:VEXADATA_API\s+)?([\w:<>]+)[^;{]*\{", code, re.M):
        depth, place = 1, match.end()
        while depth:
            depth += {"{": 1, "}": -1}.get(code[place], 0)
            place += 1
        yield match[1], match.end(), place - 1


def top_level_parts(arguments):
    parts, depth = [""], 0
    for character in arguments:
        depth += {"(": 1, "<": 1, "[": 1, ")": -1, ">": -1, "]": -1}.get(character, 0)
        if character == "," and depth == 0:
            parts.append("")
        else:
            parts[-1] += character
    return parts if arguments.strip() else []


OTHER = {"bool": "int", "std::size_t": "std::uint32_t", "std::uint64_t": "std::int64_t", "std::int64_t": "std::int32_t",
         "long": "int", "ArrayType": "std::int32_t", "MemoryLayout": "std::int32_t", "VariableStatus": "std::int32_t"}


def other_type(kind):
    """A type that is not `kind` but could be taken for it."""
    kind = kind.strip()
    if kind in OTHER:
        return OTHER[kind]
    if kind.endswith("&"):
        return kind[:-1]
    if kind.endswith("*"):
        return kind.removeprefix("const ") if kind.startswith("const ") else "const " + kind
    return kind + "*"


def other_parameter(parameter):
    if "(*" in parameter:  # a pointer to a function
        return parameter.replace("(void*)", "(char*)")
    declared, default = re.fullmatch(r"([^=]*)(=.*)?", parameter, re.S).groups()
    kind, name = re.fullmatch(r"\s*(.*?[\w>*&\]])((?<=[*&])\w+|\s+\w+)?\s*", declared, re.S).groups()
    return f" {other_type(kind)} {name or ''} {default or ''}"


def other_signatures(operation):
    """(what changed, declaration) for the result, each parameter and the qualifiers of an operation or function."""
    match = re.fullmatch(r"(virtual|VEXA_FUNCTION)\s+([^~]*?)~?(\w+)\((.*)\)(\s*const)?([^)]*);", operation, re.S)
    if not match[2]:  # a destructor has nothing of these
        return
    keyword, result, name, arguments, const, rest = match.groups()
    parts = top_level_parts(arguments)

    def declaration(result=result, parts=parts, const=const or ""):
        return f"{keyword} {result}{name}({','.join(parts)}){const}{rest};"

    yield f"result of {name}", declaration(result=other_type(result) + " ")
    if keyword == "virtual":
        yield f"const of {name}", declaration(const="" if const else " const")
    if "noexcept" in rest:
        yield f"noexcept of {name}", declaration().replace("noexcept", "")
    for index, part in enumerate(parts):
        yield f"parameter {index + 1} of {name}", declaration(parts=[*parts[:index], other_parameter(part), *parts[index + 1:]])


def swaps_and_additions(text, spans, addition, kind):
    """Swaps neighbours and adds one before each and behind the last."""
    for (begin, end), (next_begin, next_end) in zip(spans, spans[1:]):
        first, second = text[begin:end], text[next_begin:next_end]
        yield (f"swap {kind} {short(first)} and {short(second)}",
               text[:begin] + second + text[end:next_begin] + first + text[next_end:])
    for begin, _ in spans:
        yield f"add {kind} before {short(text[begin:])}", text[:begin] + addition + " " + text[begin:]
    if spans:
        end = spans[-1][1]
        yield f"add {kind} behind {short(text[spans[-1][0]:])}", text[:end] + " " + addition + text[end:]


def short(declaration):
    return re.search(r"~?\w+(?=\s*(\(|;|=|\{|\[))", declaration)[0]


def changes(text):
    """(what, text of the header) for every change of one header."""
    code = without_comments(text)
    for name, begin, end in class_bodies(code):
        place = begin
        operations = [m.span() for m in re.finditer(r"\bvirtual\b[^;{]*;", code[begin:end])]
        members = [m.span(1) for m in re.finditer(
            r"^    ((?!static|using|return|friend)[\w:][^;()=]*?\b(?:\w+_|bytes)(?:\[\w+\])?(?:\{\w*\}| = [^;]+)?;)", code[begin:end], re.M)]
        operations, members = ([(place + a, place + b) for a, b in spans] for spans in (operations, members))

        found = [*swaps_and_additions(text, operations, "virtual void mutant();", "operation"),
                 *swaps_and_additions(text, members, "void* mutant_ = nullptr;", "member")]
        for a, b in operations:
            found.append((f"drop operation {short(code[a:b])}", text[:a] + text[b:]))
            found += [(what, text[:a] + declaration + text[b:]) for what, declaration in other_signatures(code[a:b])]
        for what, mutant in found:
            yield f"{name}: {what}", mutant

    for match in re.finditer(r"^VEXA_FUNCTION [^;]*;", code, re.M):
        for what, declaration in other_signatures(match[0]):
            yield what, text[:match.start()] + declaration + text[match.end():]
    for match in re.finditer(r"using (\w+) = [^;()]*\(\*\)\(([^;]*)\);", code):  # a pointer to a function
        parts = top_level_parts(match[2])
        for index, part in enumerate(parts):
            changed = ",".join([*parts[:index], other_parameter(part), *parts[index + 1:]])
            yield f"parameter {index + 1} of {match[1]}", text[:match.start(2)] + changed + text[match.end(2):]

    replacements = [  # what it is, where it is found, what it becomes
        ("base", r"(class [^;{]*: public )(\w[^;{]*)\{", lambda m: m[1] + "virtual " + m[2] + "{"),
        ("alias", r"(using \w+ = )([^;]*[^;)]);", lambda m: f"{m[1]}{other_type(m[2])};"),
        ("enumerator", r"(\b[A-Z][A-Z0-9_]+ = )(\d+)(?=,|\s*\})", lambda m: m[1] + str(int(m[2]) + 1)),
        ("constant", r"(constexpr std::size_t \w+ = )(\d+);", lambda m: f"{m[1]}{int(m[2]) + 1};"),
        ("underlying type", r"(enum [^;{]*: std::u?int)32(_t)", lambda m: m[1] + "64" + m[2]),
    ]
    for kind, pattern, change in replacements:
        for match in re.finditer(pattern, code, re.S):
            yield f"{kind} {' '.join(match[0].split())[:60]}", text[:match.start()] + change(match) + text[match.end():]


# --- killing them ----------------------------------------------------------------------------------------------------


class Compiler:
    """Compiles tables against the headers in `overlay` and, behind them, the ones of the tree."""

    def __init__(self, name, scratch):
        self.scratch = scratch
        self.command = [name, "-std=c++17", "-O0", "-w", "-ferror-limit=0" if "clang" in name else "-fmax-errors=0"]
        standard = set()
        for path in [*TABLES.iterdir(), *(INCLUDE / header for header in contract_headers())]:
            standard |= set(re.findall(r"^#include (<\w+>)", path.read_text(), re.M))
        prelude = scratch / "standard.hpp"  # the standard headers, read once for all
        prelude.write_text("".join(f"#include {header}\n" for header in sorted(standard)))
        suffix = ".pch" if "clang" in name else ".gch"
        self.run("-x", "c++-header", prelude, "-o", f"{prelude}{suffix}")
        self.run("-c", TABLES / "Main.cpp", "-o", scratch / "main.o")
        self.command += ["-include", str(prelude)]

    def run(self, *arguments):
        subprocess.run([*self.command, *map(str, arguments)], check=True)

    def verdict(self, table, overlay):
        """None when the table finds nothing wrong, else (what found it, the message)."""
        program = overlay / "program"
        built = subprocess.run([*self.command, "-I", overlay, "-I", INCLUDE, TABLES / table, self.scratch / "main.o", "-o", program],
                               capture_output=True, text=True)
        if built.returncode != 0:
            return (BY_TABLE if re.search(r"contract/frozen/\S+: (?:fatal )?error:", built.stderr) else BY_HEADER), built.stderr
        ran = subprocess.run([program], capture_output=True, text=True, timeout=60)
        return None if ran.returncode == 0 else (BY_RUN, ran.stdout)


def tables_by_header():
    found = {}
    for path in sorted(TABLES.glob("*.cpp")):
        for header in re.findall(r"^#include <((?:vexa|foundation)/[^>]+)>", path.read_text(), re.M):
            found.setdefault(header, []).append(path.name)
    return found


def judge(compiler, mutant, tables):
    with tempfile.TemporaryDirectory(dir=compiler.scratch) as folder:
        header = pathlib.Path(folder) / mutant.header
        header.parent.mkdir(parents=True)
        header.write_text(mutant.text)
        verdicts = (compiler.verdict(table, pathlib.Path(folder)) for table in tables)
        return next(filter(None, verdicts), None)


def check(name, mutants, tables, options):
    """Returns the number of survivors."""
    with tempfile.TemporaryDirectory(prefix="mutants-") as folder:
        compiler = Compiler(name, pathlib.Path(folder))
        for table in sorted({table for header in {m.header for m in mutants} for table in tables[header]}):
            (pathlib.Path(folder) / "unchanged").mkdir(exist_ok=True)
            if verdict := compiler.verdict(table, pathlib.Path(folder) / "unchanged"):
                sys.exit(f"{table} fails without any change:\n{verdict[1]}")
        with ThreadPoolExecutor(options.jobs) as pool:
            verdicts = list(pool.map(lambda mutant: judge(compiler, mutant, tables[mutant.header]), mutants))

    for mutant, verdict in zip(mutants, verdicts):
        if verdict is None or options.verbose:
            print(f"{'SURVIVES' if verdict is None else 'killed by ' + verdict[0]}: {mutant.header}: {mutant.what}")
    killers = Counter(verdict[0] for verdict in verdicts if verdict)
    survivors = verdicts.count(None)
    print(f"{name}: killed by", ", ".join(f"{what}: {count}" for what, count in sorted(killers.items())))
    print(f"{name}: {len(mutants)} mutants, {len(mutants) - survivors} killed, {survivors} survive")
    return survivors


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("compilers", nargs="*", default=["g++"], help="default: g++")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="mutants at a time")
    parser.add_argument("--only", default="", metavar="TEXT", help="headers whose name contains this")
    parser.add_argument("--verbose", action="store_true", help="name every mutant and what killed it")
    options = parser.parse_args()

    tables = tables_by_header()
    mutants = [Mutant(header, what, text) for header in contract_headers() if options.only in header
               for what, text in changes((INCLUDE / header).read_text())]
    unseen = {mutant.header for mutant in mutants} - set(tables)
    if unseen:
        sys.exit(f"no table in tests/contract/frozen includes {', '.join(sorted(unseen))}")
    if not mutants:
        sys.exit("no mutants")
    sys.exit(any([check(name, mutants, tables, options) for name in options.compilers]))


if __name__ == "__main__":
    main()

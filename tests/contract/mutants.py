#!/usr/bin/python3
"""Changes the contract headers in ways that break back-ends or clients, one at a time, and asks the tests to notice.

What is declared is compiled against the tables that include its header, and the program of these tables is run; what is
declared for C against the table in C. A body that both sides carry is built into a client and into a back-end, which run over
the libraries as they are. A mutant is killed when the compiler refuses it or when a program fails; it survives when the program
still says that nothing has moved or is wrong.
"""
import argparse
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from typing import NamedTuple

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
from mutation import ROOT, blanked, without_comments  # noqa: E402

INCLUDES = [ROOT / "include", ROOT / "client" / "include"]
TABLES = ROOT / "tests" / "contract" / "frozen"
CROSSING = ROOT / "tests" / "contract" / "crossing"
C_HEADER = "vexa/data/object_functions.h"
PUBLIC = "ArrayType Exception ICustomWorkspace IVariableInfo InProcessCustomWorkspace VariableInfo ZVMID"
CARRIED = "Access ElementPosition ForwardIterator"  # besides vexa/data: bodies that lay out or count what both sides hold
UNSEEN = ["vexa/data/detail/Equality.hpp"]  # nothing of it lies where another side could look; tests/mutants.py changes it
IN_REGISTERS = "ZVMID BorrowedText Number PrintOptions ElementCursor ReleaseReference Outcome"

BY_TABLE, BY_HEADER, BY_RUN = "types compared by a table", "the header itself", "places compared by a table"
BY_CLIENT, BY_BACK_END = "a client over unchanged libraries", "a back-end under unchanged libraries"

# Bodies that may be so without any difference to the other side.
EQUIVALENT = {
    ("vexa/data/detail/IndexRules.hpp", "number 2 in: if (dimensions.size() == 2) {"):
        "a short cut: arrays have at least two dimensions, which the loop behind it finds as well",
} | {
    ("vexa/data/detail/ReferenceImpl.hpp", f"first value of {member};"): "set by constructors that the library alone has"
    for member in ("std::uint64_t count_ = 0", "std::uint64_t linearIndex_ = 0", "bool linearIndexKnown_ = false")
}


class Mutant(NamedTuple):
    header: str  # as it is included
    what: str
    text: str
    judge: str = "tables"  # or "C", or "programs"


# --- making them -----------------------------------------------------------------------------------------------------


def path_of(header):
    return next(path for path in (include / header for include in INCLUDES) if path.exists())


def all_headers():
    return sorted(path.relative_to(include).as_posix() for include in INCLUDES for path in include.rglob("*.h*")
                  if path.relative_to(include).as_posix() not in UNSEEN)


def is_contract(header):
    return header.startswith("vexa/data/") or header in {f"foundation/vexadata/{name}.hpp" for name in PUBLIC.split()}


def is_carried(header):
    return header.startswith("vexa/data/") or header in {f"foundation/vexadata/{name}.hpp" for name in CARRIED.split()}


def class_bodies(code):
    """(name, begin, end) of each class or struct that is defined."""
    for match in re.finditer(r"^ *(?:class|struct)\s+(?:VEXADATA_API\s+)?([\w:<>]+)[^;{]*\{", code, re.M):
        yield match[1], match.end(), end_of_block(code, match.end())


def end_of_block(code, place):
    """Where the block ends whose content begins at `place`."""
    depth = 1
    while depth:
        depth += {"{": 1, "}": -1}.get(code[place], 0)
        place += 1
    return place - 1


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


def member_spans(code, begin, end):
    """Where the data members of a class are declared, not those of classes within it."""
    indentation = re.search(r"\n( +)\S", code[begin:end])
    if not indentation:
        return []
    name = r"(?:\w+_|bytes)" if len(indentation[1]) == 4 and "\npublic:" in code[begin:end] else r"\w+"
    pattern = (rf"^{indentation[1]}((?!static|using|return|friend|enum|union|template|explicit|operator)[\w:][^;()={{]*?[\s*&>]{name}(?:\[\w+\])?"
               r"(?:\{\w*\}|\s+= [^;]+)?;)")
    return [(begin + a, begin + b) for a, b in (m.span(1) for m in re.finditer(pattern, code[begin:end], re.M))]


def exported_functions(code):
    """Where the results of functions are named that a library exports and that are neither virtual nor templates."""
    for match in re.finditer(r"^VEXADATA_API\s+([^;{}()=]+?[\s&*])\w+\(", code, re.M):
        if not code[:match.start()].rstrip().endswith(">"):  # a template, whose name tells its result
            yield match.span(1)
    for match in re.finditer(r"^(template <[^{;]*>\s+)?class\s+VEXADATA_API\s+[^;{]*\{", code, re.M):
        begin, end = match.end(), end_of_block(code, match.end())
        last = "[;{]" if match[1] else ";"  # what is inline is exported for instances of templates alone
        pattern = r"(?<=[;{}:])\s*\n    (?:VEXADATA_API )?(?:static )?((?!virtual|friend|using|explicit|template|static|VEXADATA|return|extern|struct|[ ~\[])[^;{}()=]+?[\s&*])(?!operator)\w+\([^;{}]*?\)[^;{}=]*" + last
        for found in re.finditer(pattern, code[begin:end]):
            if "override" not in found[0] and not found[1].strip().endswith((":", ",")):
                yield begin + found.start(1), begin + found.end(1)


def changes(text, whole):
    """(what, text of the header) for every change of what one header declares; `whole` of a contract header."""
    code = without_comments(text)
    for name, begin, end in class_bodies(code):
        operations = [(begin + m.start(), begin + m.end()) for m in re.finditer(r"\bvirtual\b[^;{]*;", code[begin:end])]
        members = member_spans(code, begin, end)
        found = [*swaps_and_additions(text, operations, "virtual void mutant();", "operation"),
                 *swaps_and_additions(text, members, "void* mutant_ = nullptr;", "member")]
        for a, b in members:
            prefix, kind = re.match(r"(mutable |const (?=\w+ \w+;))?(.*?[\s*&>])(?=\w+(?:\[\w+\])?(?:\{| =|;))", code[a:b], re.S).groups()
            start = a + len(prefix or "")
            found.append((f"type of {short(code[a:b])}", text[:start] + other_type(kind) + " " + text[start + len(kind):]))
        for a, b in operations:
            found.append((f"drop operation {short(code[a:b])}", text[:a] + text[b:]))
            found += [(what, text[:a] + declaration + text[b:]) for what, declaration in other_signatures(code[a:b])]
        if name in IN_REGISTERS.split():
            found.append(("destructor", text[:begin] + f" ~{name}() {{}}" + text[begin:]))
        for what, mutant in found:
            yield f"{name}: {what}", mutant

    for a, b in exported_functions(code):
        name = re.match(r"\w+", code[b:])[0]
        yield f"result of {name}", text[:a] + other_type(code[a:b]) + " " + text[b:]
    if not whole:
        return

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


def changes_in_c(text):
    """The same of what the header declares in C alone, and of its functions once more."""
    code = without_comments(text)
    for match in re.finditer(r"^VEXA_FUNCTION [^;]*;", code, re.M):
        for what, declaration in other_signatures(match[0]):
            yield f"{what} in C", text[:match.start()] + declaration + text[match.end():]
    opaque = r"typedef struct (\w+) \w+;"
    names = re.findall(opaque, code)
    for match in re.finditer(opaque, code):
        other = next(name for name in names if name != match[1])
        for kind in ("void", f"struct {other}"):
            yield f"{match[1]} is {kind} in C", text[:match.start()] + f"typedef {kind} {match[1]};" + text[match.end():]
    for old, new in [("unsigned char bytes[16]", "unsigned char bytes[8]"), ("unsigned char bytes[16]", "unsigned long bytes[2]"),
                     ("unsigned char bytes[16];", "unsigned char bytes[16]; long mutant;"), ("typedef struct {", "typedef union {"),
                     ("    unsigned char bytes[16];", "    char mutant; unsigned char bytes[16];"),
                     ("#    include <stdbool.h>", "typedef int bool;")]:
        if old in code and not (old == "typedef struct {" and new == "typedef union {"):
            place = code.index(old)
            yield f"{new.strip()} in C", text[:place] + new + text[place + len(old):]


def bodies(code):
    """(begin, end) of each function body."""
    for match in re.finditer(r"\)\s*(?:const)?&*\s*(?:noexcept)?(?:\s*:\s[^;{]*(?:\{[^{}]*\}[^;{]*)*)?\s*\{(?=[ \n])", code):
        yield match.end(), end_of_block(code, match.end())


def changes_of_bodies(text):
    """What inline functions do: a statement dropped, a number, a comparison or a sum changed; and what members begin with."""
    code = re.sub(r"(?<=#ifdef VEXADATA_THREAD_SANITIZER\n).*?(?=#else)", blanked,
                  without_comments(text), flags=re.S)  # never compiled here
    spans = sorted(bodies(code))
    outer = [(a, b) for a, b in spans if not any(x < a and b < y for x, y in spans)]
    replacements = [
        ("drop", r"(?<=[;{}]\n) *(?! |return|const|auto|std::size_t \w+ =|static|using|case|else|if|for|while)[^;{}#]+;(?=\n)", lambda m: ""),
        ("drop", r"(?<=\{) (?! |return)[^;{}#]+;(?= \})", lambda m: ""),
        ("number", r"(?<![\w.])\d+U?(?![\w.])", lambda m: "1" if m[0].rstrip("U") == "0" else str(int(m[0].rstrip("U")) - 1)),
        ("comparison", r" (==|!=|<=|>=) ", lambda m: {"==": " != ", "!=": " == ", "<=": " > ", ">=": " < "}[m[1]]),
        ("comparison", r" (<|>) (?=\w)", lambda m: {"<": " >= ", ">": " <= "}[m[1]]),
        ("sum", r" (\+=?|-=?|\*=?) (?=\w)", lambda m: m[0].translate(str.maketrans("+-*", "-+/"))),
        ("choice", r" (&&|\|\|) ", lambda m: {"&&": " || ", "||": " && "}[m[1]]),
    ]
    for begin, end in outer:
        for kind, pattern, change in replacements:
            for match in re.compile(pattern).finditer(code, begin, end):
                line = code.count("\n", 0, match.end() - 1) + 1
                what = " ".join((match[0] if kind == "drop" else code.split("\n")[line - 1]).split())
                yield f"{kind}{'' if kind == 'drop' else ' ' + match[0].strip()} in: {what}", text[:match.start()] + change(match) + text[match.end():]
    for match in re.finditer(r"^    (?!static|using)[\w:][^;()=]*\b\w+_(\{\w+\}| = [^;{}]+);", code, re.M):
        if not any(a < match.start() < b for a, b in outer):
            first = match[1].strip("{}= ")
            other = {"0": "1", "1": "0", "nullptr": None, "false": "true", "true": "false"}.get(first)
            if other:
                yield f"first value of {' '.join(match[0].split())}", text[:match.start(1)] + match[1].replace(first, other) + text[match.end(1):]


def families():
    """For each virtual operation another one of the same interface and type."""
    siblings = {}
    for header in filter(is_contract, all_headers()):
        code = without_comments(path_of(header).read_text())
        for _, begin, end in class_bodies(code):
            groups = {}
            for m in re.finditer(r"virtual\s+([^;{~]*?[\s*&])(\w+)\(([^;{]*)\)([^;{)]*);", code[begin:end]):
                kinds = tuple(re.sub(r"\s*\b\w+\s*(=.*)?$", "", part) for part in top_level_parts(" ".join(m[3].split())))
                groups.setdefault((" ".join(m[1].split()), kinds, "const" in m[4]), []).append(m[2])
            for names in groups.values():
                for name, other in zip(names, names[1:] + names[:1]):
                    if name != other:
                        siblings[name] = other
    return siblings


def changes_of_slots(text, siblings):
    """Calls of another operation of the interface that takes and gives the same."""
    for match in re.finditer(r"(?:->|\b(?:array|chain|impl)\.)(\w+)(?=\()", without_comments(text)):
        if match[1] in siblings:
            line = text.split("\n")[text.count("\n", 0, match.start())]
            yield f"{siblings[match[1]]} in: {' '.join(line.split())}", text[:match.start(1)] + siblings[match[1]] + text[match.end():]


def mutants_of(header, siblings):
    text = path_of(header).read_text()
    for what, mutant in changes(text, is_contract(header)):
        yield Mutant(header, what, mutant)
    if header == C_HEADER:
        for what, mutant in changes_in_c(text):
            yield Mutant(header, what, mutant, "C")
    found = [*(changes_of_bodies(text) if is_carried(header) else ()), *changes_of_slots(text, siblings)]
    for what, mutant in found:
        yield Mutant(header, what, mutant, "programs")


# --- killing them ----------------------------------------------------------------------------------------------------


class Compiler:
    """Compiles tables and programs against the headers in `overlay` and, behind them, the ones of the tree."""

    def __init__(self, name, scratch, libraries):
        self.scratch, self.name = scratch, name
        self.command = [name, "-std=c++17", "-O0", "-w", "-ferror-limit=0" if "clang" in name else "-fmax-errors=0"]
        standard = set()
        for path in [*TABLES.glob("*.?pp"), *CROSSING.glob("*.?pp"), *map(path_of, all_headers())]:
            standard |= set(re.findall(r"^#include (<[\w/]+>)", path.read_text(), re.M))
        prelude = scratch / "standard.hpp"  # the standard headers, read once for all
        prelude.write_text("".join(f"#include {header}\n" for header in sorted(standard)))
        suffix = ".pch" if "clang" in name else ".gch"
        self.run("-x", "c++-header", "-fPIC", prelude, "-o", f"{prelude}{suffix}")
        self.command += ["-fPIC", "-include", str(prelude)]
        self.run("-c", TABLES / "Main.cpp", "-o", scratch / "main.o")
        folders = [libraries / "src", libraries / "client"]
        self.libraries = [folders[0] / "libvexadata.so", f"-Wl,-rpath,{folders[0]}:{folders[1]}"]
        self.client_library = folders[1] / "libvexadata_client.so"
        for said in (self.built_back_end(scratch, scratch / "libdoubles.so"),
                     self.built(scratch, CROSSING / "NumbersClient.cpp", *self.libraries, "-o", scratch / "numbers")):
            if said:
                sys.exit(said)

    def run(self, *arguments):
        subprocess.run([*self.command, *map(str, arguments)], check=True)

    def built(self, overlay, *arguments):
        """None, or what the compiler says."""
        includes = [word for folder in (overlay, *INCLUDES) for word in ("-I", folder)]
        done = subprocess.run([*self.command, *includes, *arguments], capture_output=True, text=True)
        return done.stderr if done.returncode else None

    @staticmethod
    def failed(program, **environment):
        """None, or what the program says."""
        try:
            done = subprocess.run([program], capture_output=True, text=True, timeout=60, errors="replace", env={**os.environ, **environment})
        except subprocess.TimeoutExpired:
            return "goes on for ever"
        return (done.stdout + done.stderr or str(done.returncode)) if done.returncode else None

    def judge_table(self, table, overlay):
        """None when the table finds nothing wrong, else (what found it, the message)."""
        if said := self.built(overlay, TABLES / table, self.scratch / "main.o", "-o", overlay / "program"):
            return (BY_TABLE if re.search(r"contract/frozen/\S+: (?:fatal )?error:", said) else BY_HEADER), said
        said = self.failed(overlay / "program")
        return said and (BY_RUN, said)

    def judge_c(self, overlay):
        language = ["-x", "c", "-std=c11", "-fsyntax-only", "-w", "-I", overlay, "-I", INCLUDES[0]]
        done = subprocess.run([self.name, *language, TABLES / "ObjectFunctions.c"], capture_output=True, text=True)
        return (BY_TABLE, done.stderr) if done.returncode else None

    def judge_programs(self, overlay, header):
        """The small programs first: most mutants go no further."""
        doubles = self.scratch / "libdoubles.so"  # built with the headers as they are
        programs = [("NumbersClient.cpp", [], {"LD_PRELOAD": str(doubles)}), ("Client.cpp", [self.client_library], {})]
        if header.startswith("vexa/data/"):  # with its own copies of what the library exports too
            programs.insert(0, ("Inline.cpp", ["-O1"], {}))
        optimised = ["-O2"] if re.search("(Typed|Sparse)Array.hpp", header) else []  # else the library's instances are called
        for source, libraries, environment in programs:
            if said := self.built(overlay, CROSSING / source, *optimised, *libraries, *self.libraries, "-o", overlay / "client"):
                return BY_HEADER, said
            if said := self.failed(overlay / "client", **environment):
                return BY_CLIENT, said
        if not header.startswith("vexa/data/"):
            return None
        changed = overlay / "libdoubles.so"
        if said := self.built_back_end(overlay, changed):
            return BY_HEADER, said
        said = self.failed(self.scratch / "numbers", LD_PRELOAD=str(changed))
        return said and (BY_BACK_END, said)

    def built_back_end(self, overlay, output):
        return self.built(overlay, "-shared", "-Wl,-z,nodelete", ROOT / "examples/own_backend/doubles.cpp", *self.libraries, "-o", output)

    def judge(self, mutant, tables, overlay):
        if mutant.judge == "C":
            return self.judge_c(overlay)
        if mutant.judge == "programs":
            return self.judge_programs(overlay, mutant.header)
        if not is_contract(mutant.header):  # the likely ones first
            likely = ("Functions.cpp", "Instances.cpp") if mutant.what.startswith("result of") else ("Handles.cpp",)
            tables = sorted(tables, key=lambda table: table not in likely)
        return next(filter(None, (self.judge_table(table, overlay) for table in tables)), None)


def tables_by_header():
    """The tables that depend on each header, those that name it themselves first."""
    def included(path):
        return re.findall(r"^#include <((?:vexa|foundation)/[^>]+)>", path.read_text(), re.M)

    def reached(header, seen):
        if header not in seen:
            seen.add(header)
            for other in re.findall(r"^#\s*include <((?:vexa|foundation)/[^>]+)>", path_of(header).read_text(), re.M):
                reached(other, seen)

    near, far = {}, {}
    for path in sorted(TABLES.glob("*.cpp")):
        seen = set()
        for header in included(path):
            near.setdefault(header, []).append(path.name)
            reached(header, seen)
        for header in seen:
            far.setdefault(header, []).append(path.name)
    return {header: list(dict.fromkeys(near.get(header, []) + tables)) for header, tables in far.items()}


def judged(compiler, mutant, tables):
    with tempfile.TemporaryDirectory(dir=compiler.scratch) as folder:
        header = pathlib.Path(folder) / mutant.header
        header.parent.mkdir(parents=True)
        header.write_text(mutant.text)
        return compiler.judge(mutant, tables, pathlib.Path(folder))


def check(name, mutants, tables, options):
    """Returns the number of survivors."""
    with tempfile.TemporaryDirectory(prefix="mutants-") as folder:
        compiler = Compiler(name, pathlib.Path(folder), options.libraries.resolve())
        unchanged = pathlib.Path(folder) / "unchanged"
        unchanged.mkdir()
        judges = {m.judge for m in mutants}
        found = [compiler.judge_c(unchanged) if "C" in judges else None,
                 compiler.judge_programs(unchanged, "vexa/data/") if "programs" in judges else None]
        found += [compiler.judge_table(table, unchanged)
                  for table in sorted({table for m in mutants if m.judge == "tables" for table in tables[m.header]})]
        if any(found):
            sys.exit(f"fails without any change:\n{next(filter(None, found))[1]}")
        verdicts = []
        with ThreadPoolExecutor(options.jobs) as pool:
            for mutant, verdict in zip(mutants, pool.map(lambda mutant: judged(compiler, mutant, tables[mutant.header]), mutants)):
                verdicts.append(verdict)
                if verdict is None or options.verbose:
                    print(f"{'SURVIVES' if verdict is None else 'killed by ' + verdict[0]}: {mutant.header}: {mutant.what}", flush=True)
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
    parser.add_argument("--judge", choices=["tables", "C", "programs"], help="only mutants that are judged so")
    parser.add_argument("--libraries", type=pathlib.Path, default=ROOT / "build" / "dev", metavar="FOLDER", help="a build of them")
    parser.add_argument("--sample", type=int, default=0, metavar="N", help="how many mutants of these; default: all")
    parser.add_argument("--seed", type=int, default=12, help="of the sample")
    parser.add_argument("--list", action="store_true", help="name the mutants only")
    parser.add_argument("--verbose", action="store_true", help="name every mutant and what killed it")
    options = parser.parse_args()

    siblings = families()
    made = [mutant for header in all_headers() for mutant in mutants_of(header, siblings)]
    if gone := set(EQUIVALENT) - {(mutant.header, mutant.what) for mutant in made}:
        sys.exit(f"no such mutants any more: {gone}")
    mutants = [mutant for mutant in made if options.only in mutant.header and options.judge in (None, mutant.judge)
               and (mutant.header, mutant.what) not in EQUIVALENT]
    if 0 < options.sample < len(mutants):
        mutants = random.Random(options.seed).sample(mutants, options.sample)
    tables = tables_by_header()
    unseen = {mutant.header for mutant in mutants} - set(tables)
    if unseen:
        sys.exit(f"no table in tests/contract/frozen includes {', '.join(sorted(unseen))}")
    if not mutants:
        sys.exit("no mutants")
    if options.list:
        for mutant in mutants:
            print(f"{mutant.judge}: {mutant.header}: {mutant.what}")
        return
    sys.exit(any([check(name, mutants, tables, options) for name in options.compilers]))


if __name__ == "__main__":
    main()

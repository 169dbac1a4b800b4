#!/usr/bin/python3
"""Tells which lines and branches the tests reach, from what gcovr wrote: a line for each part of the product.

Reserved operations, which nobody calls, are left out. unreached.txt beside this script lists what is not reached although it decides
something, and why; these lines count as not reached all the same. Fails when a part is below its floor, and when a listed line is
reached or is no more; with --all names every other line that is not reached.
"""
import argparse
import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
LISTED = pathlib.Path(__file__).with_name("unreached.txt")
# Lines and branches. Branches in headers are counted once for every instance of a template, which says little.
FLOORS = {"src": (97, 90), "client": (96.5, 87), "include": (98, 0), "tools/inspect": (97, 89), "tools/backend_check": (0, 0)}


def percent(reached, count):
    return 100 * reached / max(count, 1)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("counts", type=pathlib.Path, help="what gcovr --json wrote")
    parser.add_argument("--all", action="store_true", help="name every line that is not reached")
    options = parser.parse_args()
    files = {}
    for file in json.loads(options.counts.read_text())["files"]:
        text = (ROOT / file["file"]).read_text().splitlines()
        files[file["file"]] = [line for line in file["lines"] if not line.get("gcovr/noncode")
                               and "reservedOp" not in text[line["line_number"] - 1]]
    failed = False
    for part, floors in FLOORS.items():
        lines = [line for name, lines in files.items() if name.startswith(part + "/") for line in lines]
        branches = [branch for line in lines for branch in line["branches"]]
        shares = [percent(sum(each["count"] > 0 for each in all), len(all)) for all in (lines, branches)]
        below = any(share < floor for share, floor in zip(shares, floors))
        failed = failed or below
        print(f"{part:20} {shares[0]:5.1f} % of {len(lines)} lines, {shares[1]:5.1f} % of {len(branches)} branches"
              + (f"; below {floors[0]} % and {floors[1]} %" if below else ""))

    missed = {}
    for name, lines in files.items():
        text = (ROOT / name).read_text().splitlines()
        for line in lines:
            if line["count"] == 0:
                missed.setdefault(f"{name}: {text[line['line_number'] - 1].strip()}", line["line_number"])
    listed = {line.split(" # ")[0].strip() for line in LISTED.read_text().splitlines() if line and not line.startswith("#")}
    for key in sorted(listed - missed.keys()):
        print(f"{LISTED.relative_to(ROOT)} lists what is reached or no more: {key}")
        failed = True
    print(f"{len(missed)} lines are not reached, {len(listed & missed.keys())} of them listed with a reason")
    if options.all:
        for key in sorted(missed.keys() - listed):
            print(f"not reached: {key} (line {missed[key]})")
    sys.exit(failed)


if __name__ == "__main__":
    main()

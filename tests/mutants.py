#!/usr/bin/python3
"""Changes the sources of both libraries in small ways, one at a time, and asks the tests to notice.

Only the library with the change is built, as its own build would; the test programs of that build, the command
vexadata-backend-check and the examples then run over it, until one fails or takes too long. Inline bodies of public headers are left
out, since every program has copies of its own: ./dev mutants changes these. mutants_survivors.txt beside this script lists what of the
survivors changes nothing that a caller could see, and why; the rest counts. Fails when fewer than 95 of 100 that count are killed.
"""
import os
import pathlib
import sys
import time
from collections import Counter

sys.dont_write_bytecode = True
import mutation  # noqa: E402

CLIENT = pathlib.Path("client/libvexadata_client.so.0")
COMMAND = ["tools/backend_check/vexadata-backend-check", "--quiet", "--first", "--require", "all"]
CTEST = ["ctest", "--stop-on-failure", "-R", r"^(example|process)\.|^contract\.c$|^backend_check\.copy_on_write$|BeforeThreads"]
LEFT_OUT = {"test_inspect": "-Want.*",  # a minute of allocations that fail in the command
            "test_threads": "-*BeforeThreads*"}


class Tests:
    """The programs of a build, which use the library in a folder in place of the one that they were linked with."""

    def __init__(self, build):
        self.build, self.kills = build, Counter()
        self.programs = {program.name: [program] for program in (build / "tests").glob("test_*") if os.access(program, os.X_OK)}
        for name, cases in LEFT_OUT.items():
            self.programs[name].append(f"--gtest_filter={cases}")
        self.programs |= {"vexadata-backend-check": [*COMMAND, CLIENT], "ctest": CTEST}
        self.seconds = {}
        for name in list(self.programs):
            start = time.monotonic()
            if said := self.run(name, build / "client", 900):
                sys.exit(f"{name} fails without any change: {said}")
            self.seconds[name] = time.monotonic() - start

    def run(self, name, folder, seconds):
        """None when the program finds nothing wrong, else the first failure that it tells."""
        command = [folder / CLIENT.name if word == CLIENT and (folder / CLIENT.name).exists() else word for word in self.programs[name]]
        done = mutation.run(command, seconds, cwd=self.build, env={
            **os.environ, "LD_LIBRARY_PATH": str(folder), "GTEST_FAIL_FAST": "1", "GTEST_BRIEF": "1"})
        if done and done[0] != 0:
            lines = done[1].splitlines()
            return next((line for line in lines if "FAIL" in line or "Failed" in line), lines[-1] if lines else f"status {done[0]}")
        return mutation.failure(done)

    def verdict(self, mutant, folder):
        """The tests of the folder of the source come first, then those that found most in the least time."""
        def place(name):
            return name != f"test_{mutant.path.parent.name}", self.seconds[name] / (1 + self.kills[name])
        for name in sorted(self.programs, key=place):
            if said := self.run(name, folder, 20 + 6 * self.seconds[name]):
                self.kills[name] += 1
                return f"{name}: {said}"
        return None


def main():
    options = mutation.parser_of(__doc__, 100).parse_args()
    build = options.build.resolve()
    headers = [mutation.ROOT / "include/vexa/data/detail/Equality.hpp"]
    libraries = [mutation.Library(build, mutation.ROOT / "src", "src/libvexadata.so", headers),
                 mutation.Library(build, mutation.ROOT / "client/src", "client/libvexadata_client.so")]
    mutation.judge_all(options, libraries, pathlib.Path(__file__).with_name("mutants_survivors.txt"), Tests(build).verdict)


if __name__ == "__main__":
    main()

#!/usr/bin/python3
"""Changes the sources of back-ends in small ways, one at a time, and asks vexadata-backend-check alone to notice.

The back-ends are the example in examples/own_backend and the embedded one in client/. A mutant that does not compile, or that
compiles to the very same code, is none. Those that survive are printed. survivors.txt beside this script lists what of them
changes nothing that a caller could see, and why; the rest counts. Fails when fewer than 95 of 100 that count are killed.
"""
import pathlib
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
import mutation  # noqa: E402

OFFERED = "double single data buffer untyped-buffer from-buffer copy-out-buffer release-buffer"  # by the example
# Not reached through a factory; texts of errors.
OUT_OF_REACH = ["WorkspaceEngine.cpp", "HandleRegistry.cpp", "HandleRegistry.hpp", "Exception.cpp"]


def main():
    parser = mutation.parser_of(__doc__, 40)
    parser.add_argument("--timeout", type=int, default=30, help="most seconds for one check")
    options = parser.parse_args()
    build = options.build.resolve()
    example = mutation.Library(build, mutation.ROOT / "examples/own_backend", "examples/own_backend/libdoubles.so")
    embedded = mutation.Library(build, mutation.ROOT / "client/src", "client/libvexadata_client.so")

    def verdict(mutant, folder):
        required = OFFERED.split() if mutant.library is example else ["all"]
        arguments = [word for name in required for word in ("--require", name)]
        command = [build / "tools/backend_check/vexadata-backend-check", "--quiet", "--first", "--timeout", options.timeout]
        return mutation.failure(mutation.run([*command, *arguments, folder / mutant.library.name], 900))

    mutation.judge_all(options, [example, embedded], pathlib.Path(__file__).with_name("survivors.txt"), verdict, OUT_OF_REACH)


if __name__ == "__main__":
    main()

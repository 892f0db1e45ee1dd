"""What is compiled for processors with a fused multiply-add keeps to itself: a function that the linker may share with
other files would run there too.

    instructions_test.py OBJECT... (those of the module's code)

Exit status 0 where all is as it should be.
"""
import subprocess
import sys

FUSED = "by_instruction"


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def shared_functions(path):
    return [line.split()[-1] for line in output_of("nm", path).splitlines() if line.split()[-2] in "WV"]


def fuses(path):
    return "vfmadd" in output_of("objdump", "-d", "--no-show-raw-insn", path)


def problems_of(objects):
    fused = [path for path in objects if fuses(path)]
    if [FUSED in path for path in fused] != [True]:
        yield f"fused multiply-adds stand in {fused}, not in {FUSED} alone"
    for path in objects:
        if FUSED in path:
            yield from (f"{path}: others may come to run {name}" for name in shared_functions(path))


def main():
    problems = list(problems_of(sys.argv[1:]))
    print("\n".join(problems) if problems else f"{len(sys.argv) - 1} objects")
    return 1 if problems or len(sys.argv) < 20 else 0


if __name__ == "__main__":
    sys.exit(main())

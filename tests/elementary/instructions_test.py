"""What is compiled for processors with more than SSE2 keeps to itself: a function that the linker may share with other files
would run on those without, too.

    instructions_test.py OBJECT... (those of the module's code)

Exit status 0 where all is as it should be.
"""
import re
import subprocess
import sys

# Objects with such code, by what is in their names.
SPECIAL = ("by_instruction", "lanes/fused_lanes", "columns_avx2.*/discounting", "columns_avx2.*/column_handlers")


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def shared_functions(path):
    return [line.split()[-1] for line in output_of("nm", path).splitlines() if line.split()[-2] in "WV"]


def is_special(path):
    return re.search(r"\bv[a-z0-9]+\s.*%[xy]mm", output_of("objdump", "-d", "--no-show-raw-insn", path)) is not None


def problems_of(objects):
    special = [path for path in objects if is_special(path)]
    if len(special) != len(SPECIAL) or not all(any(re.search(name, path) for path in special) for name in SPECIAL):
        yield f"instructions beyond SSE2 stand in {special}, not in {SPECIAL} alone"
    for path in special:
        yield from (f"{path}: others may come to run {name}" for name in shared_functions(path))


def main():
    problems = list(problems_of(sys.argv[1:]))
    print("\n".join(problems) if problems else f"{len(sys.argv) - 1} objects")
    return 1 if problems or len(sys.argv) < 20 else 0


if __name__ == "__main__":
    sys.exit(main())

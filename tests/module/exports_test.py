"""What zelkovan.so shows and needs: exported names, undefined symbols, libraries, program headers.

    exports_test.py path/to/zelkovan.so [--sanitize=LIST]

Exit status 0 where all is as it should be, 1 where not, 77 (skipped) for sanitizer builds, which need their runtime.
"""
import re
import subprocess
import sys

EXPORTS = """
    mcn_main zelkovan vi_mcn mcn_pcns pcn_ZELKOVAN fncitems fncfin fnccols fncnmis fnccmis fncmis kxvercn1
    vmalloc_handler vmalcp_handler vmfree_handler zexpm1 zln1px zlnSumOfExp zvasum zvamx zpower
""".split()
OBJECTS = {"vi_mcn": 120, "mcn_pcns": 16, "pcn_ZELKOVAN": 80, "fncitems": 56}
LIBRARIES = {"libc.so.6"}
# Weak, and left undefined where nobody profiles or uses transactions.
LOADER_SYMBOLS = {"__cxa_finalize", "__gmon_start__", "_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable"}


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def defined_in(library):
    """The dynamic symbols of a library that the loader knows by its name."""
    listing = output_of("ldconfig", "-p")
    path = re.search(rf"^\s*{re.escape(library)} \(libc6,x86-64.*=> (\S+)$", listing, re.M).group(1)
    return {line.split()[-1].split("@")[0] for line in output_of("nm", "-D", "--defined-only", path).splitlines()}


def problems_of(module):
    exported = [line.split()[-1].split("@")[0] for line in output_of("nm", "-D", "--defined-only", module).splitlines()]
    if sorted(exported) != sorted(EXPORTS):
        missing, unwanted = set(EXPORTS) - set(exported), set(exported) - set(EXPORTS)
        yield f"exports: missing {sorted(missing)}, not wanted {sorted(unwanted)}"

    sizes = {}
    for line in output_of("nm", "-D", "-S", "--defined-only", module).splitlines():
        fields = line.split()
        if len(fields) == 4:
            sizes[fields[3].split("@")[0]] = int(fields[1], 16)
    for name, size in OBJECTS.items():
        if sizes.get(name) != size:
            yield f"{name} has {sizes.get(name)} bytes, not {size}"

    offered = set().union(*map(defined_in, sorted(LIBRARIES)))
    undefined = 0
    for line in output_of("nm", "-D", "--undefined-only", module).splitlines():
        kind, name = line.split()[-2:]
        name = name.split("@")[0]
        undefined += 1
        if name in LOADER_SYMBOLS and kind in "wU":
            continue
        if kind != "U" or name not in offered:
            yield f"undefined symbol {name} ({kind}) is of no library allowed"
    if undefined == 0:
        yield "no undefined symbol at all: memory is copied by the library"

    dynamic = output_of("readelf", "-dW", module)
    needed = set(re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic))
    if needed != LIBRARIES:
        yield f"needs {sorted(needed)}"
    if "TEXTREL" in dynamic:
        yield "has text relocations"
    if re.search(r"\((RPATH|RUNPATH)\)", dynamic):
        yield "has a library path of its own"

    headers = output_of("readelf", "-lW", module)
    stack = re.search(r"^\s*GNU_STACK\s.*$", headers, re.M)
    if stack is None or "E" in stack.group(0).split()[6]:
        yield "has an executable stack"
    segments = re.findall(r"^\s*LOAD\s+\S+\s+\S+\s+\S+\s+\S+\s+\S+\s+(.*?)\s+0x\S+$", headers, re.M)
    if not segments or any("W" in flags and "E" in flags for flags in segments):
        yield f"has a segment that is both writable and executable: {segments}"


def main():
    module = sys.argv[1]
    if any(argument.startswith("--sanitize=") and argument != "--sanitize=" for argument in sys.argv[2:]):
        print("skipped: a sanitizer build needs the sanitizer's runtime and exports for it")
        return 77
    problems = list(problems_of(module))
    for problem in problems:
        print(f"{module}: {problem}")
    print(f"{len(EXPORTS)} exports, {len(OBJECTS)} object sizes, undefined symbols, libraries, program headers: "
          f"{len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())

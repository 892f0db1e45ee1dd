"""What keeps a fault from being more than a fault: how the linked files were compiled and linked.

    hardening_test.py (module|program|adapter):FILE... [objects:ARCHIVE...]

All: addresses of other libraries' routines are looked up at load and read-only from then on, no executable stack, no
segment that is written and run, no relocation in code, canaries. Modules: the marks of protected control flow (IBT,
SHSTK), which the linker keeps only where every part has them. Programs and adapters have the C library's start files as
well, so there the archives that they are made of are looked at: every object has the marks. Programs: sizes are checked by
the C library's routines (FORTIFY).
"""
import re
import subprocess
import sys


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def marks_of(notes):
    found = re.findall(r"x86 feature: (.*)", notes)
    return set().union(*(re.split(r",\s*", line.strip()) for line in found))


def faults_of_link(path):
    dynamic = output_of("readelf", "-dW", path)
    if not re.search(r"\(FLAGS\).*BIND_NOW", dynamic):
        yield "has no BIND_NOW"
    if not re.search(r"\(FLAGS_1\).*\bNOW\b", dynamic):
        yield "has no flag NOW"
    if "TEXTREL" in dynamic:
        yield "has relocations in code"
    headers = output_of("readelf", "-lW", path)
    if not re.search(r"^\s*GNU_RELRO\s", headers, re.M):
        yield "has no GNU_RELRO"
    stack = re.search(r"^\s*GNU_STACK\s(.*)$", headers, re.M)
    if stack is None or not re.search(r"\sRW\s", stack.group(1)):
        yield "has an executable stack, or does not say"
    if re.search(r"^\s*LOAD\s.*\bRWE\b", headers, re.M):
        yield "has a segment that is written and run"


def faults_of_code(kind, path):
    undefined = output_of("nm", "-D", "--undefined-only", path)
    if "__stack_chk_fail" not in undefined:
        yield "has no canaries"
    if kind == "program" and not re.search(r"\b__\w+_chk\b", undefined):
        yield "checks no sizes"
    if kind == "module" and marks_of(output_of("readelf", "-nW", path)) != {"IBT", "SHSTK"}:
        yield "has not the marks of protected control flow"


def faults_of_objects(archive):
    members = re.split(r"^File: ", output_of("readelf", "-nW", archive), flags=re.M)[1:]
    if not members:
        yield "has no objects"
    for member in members:
        if marks_of(member) != {"IBT", "SHSTK"}:
            yield f"has no marks of protected control flow in {member.splitlines()[0]}"


def faults_of(kind, path):
    if kind == "objects":
        return list(faults_of_objects(path))
    return [*faults_of_link(path), *faults_of_code(kind, path)]


def main():
    files = [argument.split(":", 1) for argument in sys.argv[1:]]
    faults = [f"{path} {fault}" for kind, path in files for fault in faults_of(kind, path)]
    for fault in faults:
        print(fault)
    print(f"{len(files)} files, {len(faults)} faults")
    return 1 if faults or not files else 0


if __name__ == "__main__":
    sys.exit(main())

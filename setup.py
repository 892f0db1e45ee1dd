"""The wheel of the NumPy package (adapters/numpy), which CMake builds for the Python that runs this.

ZELKOVAN_BUILD: a build folder that is configured for this Python, in place of build/wheel/cmake.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys

import numpy
from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext
from wheel.bdist_wheel import bdist_wheel

ROOT = pathlib.Path(__file__).resolve().parent
WORK = pathlib.Path("build", "wheel")
OPTIONS = ["-DCMAKE_BUILD_TYPE=Release", *(f"-DZELKOVAN_{part}=OFF" for part in ("TESTS", "SQLITE", "POSTGRESQL", "DUCKDB"))]


def version():
    return re.search(r"project\(zelkovan VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"))[1]


def numpy_wanted():
    """What is built with NumPy 1 does not load with 2; 1.22 is the first with the C interface of Debian 12's."""
    return "numpy>=1.22,<2" if numpy.__version__.startswith("1.") else "numpy>=2,<3"


def glibc_wanted(library):
    """The newest version of the C library that the file asks for: (2, 35)."""
    symbols = subprocess.run(["objdump", "-T", library], check=True, capture_output=True, text=True).stdout
    return max(tuple(map(int, found.split("."))) for found in re.findall(r"GLIBC_(\d+\.\d+)", symbols))


class BuildByCMake(build_ext):
    def build_extension(self, ext):
        build = os.environ.get("ZELKOVAN_BUILD")
        if not build:
            build = WORK / "cmake"
            python = f"-DPython3_EXECUTABLE={sys.executable}"
            subprocess.run(["cmake", "-S", ROOT, "-B", build, "-G", "Ninja", python, *OPTIONS], check=True)
        subprocess.run(["cmake", "--build", build, "--target", "zelkovan_numpy_package"], check=True)
        library = pathlib.Path(self.get_ext_fullpath(ext.name))
        shutil.rmtree(library.parent, ignore_errors=True)
        shutil.copytree(pathlib.Path(build, "python", "zelkovan"), library.parent, ignore=shutil.ignore_patterns("__pycache__"))
        if not library.exists():
            sys.exit(f"{build} has no {library.name}: it is of another Python")
        subprocess.run(["strip", library], check=True)


class TaggedByWhatItNeeds(bdist_wheel):
    """manylinux of the C library whose symbols it asks for; of others it has libgcc, which such systems have."""

    def get_tag(self):
        python, abi, _ = super().get_tag()
        library = pathlib.Path(self.get_finalized_command("build_ext").get_ext_fullpath("zelkovan._zelkovan"))
        major, minor = glibc_wanted(library)
        return python, abi, f"manylinux_{major}_{minor}_x86_64"


(ROOT / WORK).mkdir(parents=True, exist_ok=True)
setup(
    version=version(),
    install_requires=[numpy_wanted()],
    packages=[],
    py_modules=[],
    ext_modules=[Extension("zelkovan._zelkovan", [])],
    cmdclass={"build_ext": BuildByCMake, "bdist_wheel": TaggedByWhatItNeeds},
    license_files=["LICENSE"],
    options={"egg_info": {"egg_base": str(WORK)}, "build": {"build_base": str(WORK)}},
)

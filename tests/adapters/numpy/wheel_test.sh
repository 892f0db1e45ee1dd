#!/usr/bin/env bash
# wheel_test.sh PYTHON SOURCE BUILD: a wheel of the build's package, by pip and without a network, installed into an environment
# of its own, which has NumPy from the system; an example of each kind of calculation there.
set -euo pipefail
python=$1 source=$2
export ZELKOVAN_BUILD=$3 PIP_NO_INDEX=1 PIP_DISABLE_PIP_VERSION_CHECK=1 PIP_ROOT_USER_ACTION=ignore
unset PYTHONPATH

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
pip() { "$@" >"$work/log" 2>&1 || { cat "$work/log" && exit 1; }; }

"$python" -m venv --system-site-packages "$work/environment"
installed=$work/environment/bin/python
# The files that pip's build writes go to a copy of what it reads.
mkdir "$work/source"
cp "$source"/{pyproject.toml,setup.py,CMakeLists.txt,LICENSE} "$work/source"
pip "$installed" -m pip wheel --no-build-isolation --no-deps --wheel-dir "$work" "$work/source"
wheels=("$work"/*.whl)
name=$(basename "${wheels[0]}")
echo "$name"

# The tag is of a C library that is here, and there is no other library that a machine could lack.
"$python" -m zipfile -e "${wheels[0]}" "$work/unpacked"
needed=$(objdump -p "$work"/unpacked/zelkovan/_zelkovan.*.so | sed -n 's/ *NEEDED *//p' |
    grep -vE '^(libc|libm|libgcc_s|ld-linux-x86-64)\.so\.[0-9]$' || true)
[ -z "$needed" ] || { echo "the wheel needs $needed"; exit 1; }
[[ $name =~ ^zelkovan-[0-9.]+-cp[0-9]+-cp[0-9]+-manylinux_2_[0-9]+_x86_64\.whl$ ]] || { echo "a strange name"; exit 1; }
[ -f "$work"/unpacked/zelkovan-*.dist-info/LICENSE ] || { echo "the wheel has no license"; exit 1; }

pip "$installed" -m pip install "${wheels[0]}"
cd "$work"
"$installed" - "$work/environment" <<'PYTHON'
import importlib.metadata
import sys

import numpy as np
import zelkovan

assert zelkovan.__file__.startswith(sys.argv[1]), zelkovan.__file__
assert zelkovan.__version__ == importlib.metadata.version("zelkovan")
# (10000 - 1000) / 5; a coupon date half a year before maturity; 2/2 + 4/4 + 8/8; a refusal.
assert zelkovan.sln([10000.0, 20000.0], [1000, 2000], 5).tolist() == [1800, 3600]
assert zelkovan.coupncd("2025-01-20", "2030-11-15", 2) == np.datetime64("2025-05-15")
assert zelkovan.npv(1, [2, 4, 8]) == 3
try:
    zelkovan.pmt(0.01, 2.5, 1000)
except zelkovan.RefusedError as error:
    assert error.argument == "nper"
else:
    raise AssertionError("2.5 periods were not refused")
PYTHON
pip "$installed" -m pip uninstall --yes zelkovan
if "$installed" -c 'import zelkovan' 2>/dev/null; then echo "the package is still there"; exit 1; fi
echo "installed, asked, removed"

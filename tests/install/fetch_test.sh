#!/usr/bin/env bash
# fetch_test.sh FETCH: an npm of the test's own hands over packages of its own. What the hashes know is taken; else nothing
# is, and the script ends with 1 and a sentence.
set -euo pipefail
fetch=$1

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
first=duckdb-1.4.4.tgz
second=duckdb-node-bindings-linux-x64-1.4.4-r.1.tgz

# npm pack --silent --pack-destination FOLDER ..., which prints what it has packed
mkdir -p "$work/bin" "$work/packages"
cat >"$work/bin/npm" <<END
#!/bin/sh
cp "$work"/packages/*.tgz "\$4"
echo "$first"
echo "$second"
END
chmod +x "$work/bin/npm"

headers=package/src/duckdb/src/include
mkdir -p "$work/$headers"
echo 'a header' >"$work/$headers/duckdb.h"
echo 'another' >"$work/$headers/duckdb_extension.h"
echo 'a library' >"$work/package/libduckdb.so"
tar -czf "$work/packages/$first" -C "$work" package/src
tar -czf "$work/packages/$second" -C "$work" package/libduckdb.so

cp "$fetch" "$work/fetch"
hashes() { (cd "$work/packages" && sha512sum "$first" "$second"); }

# run NAME STATUS SENTENCE: into the folder $work/NAME.
failed=0
run() {
    local status=0 said
    said=$(PATH="$work/bin:$PATH" "$work/fetch" "$work/$1" 2>&1) || status=$?
    [ "$status" -eq "$2" ] && [[ $said == *"$3"* ]] && return
    echo "$1: status $status instead of $2, and said: $said"
    failed=1
}
expect_nothing_in() { [ ! -e "$work/$1" ] || { echo "$1: something was taken"; failed=1; }; }

hashes >"$work/packages.sha512"
run known 0 'duckdb.h, duckdb_extension.h and libduckdb.so are in'
cmp "$work/known/libduckdb.so" "$work/package/libduckdb.so" || failed=1
cmp "$work/known/duckdb_extension.h" "$work/$headers/duckdb_extension.h" || failed=1

for changed in "$first" "$second"; do
    cp "$work/packages/$changed" "$work/kept"
    printf 'x' >>"$work/packages/$changed"
    run "changed-$changed" 1 "$changed is refused: it is not the package that adapters/duckdb/packages.sha512 knows"
    expect_nothing_in "changed-$changed"
    mv "$work/kept" "$work/packages/$changed"
done

cp "$(dirname "$fetch")/packages.sha512" "$work/packages.sha512"  # which knows the packages of the registry
run unknown 1 "$first is refused"
expect_nothing_in unknown

mv "$work/packages/$second" "$work/kept"
hashes >"$work/packages.sha512" 2>/dev/null || true
sed -i "\$a 0  $second" "$work/packages.sha512"
run missing 1 "npm has not brought $second"
expect_nothing_in missing

[ "$failed" -eq 0 ] && echo "fetch: as it should be"
exit "$failed"

#!/usr/bin/env bash
# use_prefix.sh CMAKE PREFIX LIBRARY_FOLDER CONSUMER_FOLDER C_COMPILER HOST_SOURCE: what is below PREFIX as a stranger uses it.
# The folder is moved while it is at it.
set -euo pipefail
cmake=$1 prefix=$2 library_folder=$3 consumer=$4 compiler=$5 host=$6

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo "by CMake package:"
"$cmake" -S "$consumer" -B "$work/consumer" -G Ninja -D CMAKE_PREFIX_PATH="$prefix" -D CMAKE_C_COMPILER="$compiler" \
    -D CMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF >/dev/null
"$cmake" --build "$work/consumer" >/dev/null
"$work/consumer/consumer"

echo "by pkg-config:"
export PKG_CONFIG_PATH=$prefix/$library_folder/pkgconfig
flags=$(pkg-config --cflags zelkovan)
module=$(pkg-config --variable=module zelkovan)
# shellcheck disable=SC2086
"$compiler" -std=c11 $flags -DMODULE_FILE="\"$module\"" "$consumer/consumer.c" -o "$work/by-pkg-config" -ldl
"$work/by-pkg-config"

echo "a host of one's own:"
# shellcheck disable=SC2086
"$compiler" -std=c11 $flags "$host" -o "$work/c_host" -ldl
"$work/c_host" "$module"

echo "the command, moved and from another folder:"
mv "$prefix" "$work/moved"
cd /
answer=$("$work/moved/bin/finance" PMT rate=1 nper=1 pv=100)
[ "$answer" = "-200" ] || { echo "got $answer instead of -200"; exit 1; }
echo "$answer"

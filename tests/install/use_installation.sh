#!/usr/bin/env bash
# use_installation.sh CMAKE BUILD_FOLDER CONSUMER_FOLDER C_COMPILER HOST_SOURCE
set -euo pipefail
cmake=$1 build=$2 consumer=$3 compiler=$4 host=$5

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
for file in lib/zelkovan.so bin/finance include/zelkovan/zelkovan.h share/man/man1/finance.1 \
    share/bash-completion/completions/finance share/zsh/site-functions/_finance; do
    [ -f "$prefix/$file" ] || { echo "not installed: $file"; exit 1; }
done

echo "by CMake package:"
"$cmake" -S "$consumer" -B "$work/consumer" -G Ninja -D CMAKE_PREFIX_PATH="$prefix" -D CMAKE_C_COMPILER="$compiler" \
    >/dev/null
"$cmake" --build "$work/consumer" >/dev/null
"$work/consumer/consumer"

echo "by pkg-config:"
export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
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

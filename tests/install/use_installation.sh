#!/usr/bin/env bash
# use_installation.sh CMAKE BUILD_FOLDER CONSUMER_FOLDER C_COMPILER HOST_SOURCE
set -euo pipefail
cmake=$1 build=$2 consumer=$3 compiler=$4 host=$5
here=$(dirname "$(readlink -f "$0")")

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
for file in lib/zelkovan.so bin/finance include/zelkovan/zelkovan.h share/man/man1/finance.1 \
    share/bash-completion/completions/finance share/zsh/site-functions/_finance; do
    [ -f "$prefix/$file" ] || { echo "not installed: $file"; exit 1; }
done
if [ -e "$prefix/share/doc" ]; then echo "files of Debian packages are installed"; exit 1; fi
"$here/use_prefix.sh" "$cmake" "$prefix" lib "$consumer" "$compiler" "$host"

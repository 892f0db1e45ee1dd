#!/usr/bin/env bash
# compare_examples.sh SOURCE BUILD EXAMPLES: the catalogue's examples, as that program writes them.
source=$1 build=$2 examples=$3
. "$source/adapters/postgresql/private_server.bash"
prepare_servers "$build"
"$examples" >"$folder/examples.tsv"
start_server 1 "test.least = $(wc -l <"$folder/examples.tsv")"
sql 1 -f "$source/tests/adapters/postgresql/calls.sql" <"$folder/examples.tsv"

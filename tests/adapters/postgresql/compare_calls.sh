#!/usr/bin/env bash
# compare_calls.sh SOURCE BUILD CALLS: every call of that file by SQL; nine in ten at least must have been compared.
source=$1 build=$2 calls=$3
. "$source/adapters/postgresql/private_server.bash"
prepare_servers "$build"
start_server 1
sql 1 -f "$source/tests/adapters/postgresql/calls.sql" <"$calls"

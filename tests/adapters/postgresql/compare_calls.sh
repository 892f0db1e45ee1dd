#!/usr/bin/env bash
# compare_calls.sh SOURCE BUILD LEAST CALLS: every call of that file by SQL; at least so many must have been compared.
source=$1 build=$2 least=$3 calls=$4
. "$source/adapters/postgresql/private_server.bash"
prepare_servers "$build"
start_server 1 "test.least = $least"
sql 1 -f "$source/tests/adapters/postgresql/calls.sql" <"$calls"

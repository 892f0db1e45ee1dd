#!/usr/bin/env bash
# regress.sh SOURCE BUILD PG_REGRESS EXAMPLES: the files of sql/, each against its file of expected/. EXAMPLES writes one
# line a calculation.
source=$1 build=$2 pg_regress=$3 examples=$4
. "$source/adapters/postgresql/private_server.bash"
prepare_servers "$build"
start_server 1 "max_parallel_workers = 4" "jit = off" "test.calculations = $("$examples" | wc -l)"
sql 1 -c "CREATE EXTENSION zelkovan"

# Its files must be readable by the servers' user, who need not see the source folder.
cp -r "$source/tests/adapters/postgresql/sql" "$source/tests/adapters/postgresql/expected" "$folder"
as_user mkdir "$folder/output"
chmod -R a+rX "$folder/sql" "$folder/expected"
mapfile -t files < <(cd "$folder/sql" && printf '%s\n' *.sql | sed 's/\.sql$//')
if ! as_user "$pg_regress" --inputdir "$folder" --outputdir "$folder/output" --bindir "$(server_binaries)" \
    --host "$folder" --port 1 --user tester --use-existing --dbname postgres "${files[@]}"; then
    if [ -n "${KEEP_RESULTS:-}" ]; then cp "$folder"/output/results/*.out "$KEEP_RESULTS"; fi
    cat "$folder/output/regression.diffs"
    exit 1
fi

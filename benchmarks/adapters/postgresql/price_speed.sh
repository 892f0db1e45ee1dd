#!/usr/bin/env bash
# price_speed.sh SOURCE BUILD SEVEN_ARGUMENTS BATCH_PRICE [ROWS]
#
# fin_price over a million rows, beside the two things that it is made of: a function of the same seven arguments that does
# nothing, and calls of the embedded host, one a row. One process, no parallel workers, the table in memory; the best of
# fifteen, all taking turns. Then fin_try_price over the same rows and over the same number of rows that are refused, and
# fin_why_price over these.
source=$1 build=$2 nothing_object=$3 batch_price=$4 rows=${5:-1000000}
. "$source/adapters/postgresql/private_server.bash"
prepare_servers "$build"
cp "$nothing_object" "$folder/stage/seven_arguments.so"
chmod a+r "$folder/stage/seven_arguments.so"
start_server 1 "shared_buffers = 512MB" "max_parallel_workers_per_gather = 0" "jit = off" "autovacuum = off"
sql 1 -v rows="$rows" -v nothing="'$folder/stage/seven_arguments.so'" <<'SQL'
CREATE EXTENSION zelkovan;
CREATE FUNCTION nothing(date, date, float8, float8, float8, float8, text) RETURNS float8
    AS :nothing, 'seven_arguments' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE COST 20;
CREATE UNLOGGED TABLE bonds AS
SELECT date '2025-01-20' AS settlement, date '2030-11-15' AS maturity, 0.05::float8 AS rate,
       0.01 + (id * 17 % 90) / 1000.0::float8 AS yield, 100::float8 AS redemption, 2::float8 AS frequency, '30/360' AS basis
FROM generate_series(1, :rows) id;
VACUUM ANALYZE bonds;
SQL

# Nanoseconds a row of a query that ends in one row.
time_of() {
    sql 1 -At -c "EXPLAIN (ANALYZE, TIMING OFF) SELECT count($1) FROM bonds" |
        awk -v rows="$rows" '/^Execution Time/ { printf "%.1f", $3 * 1e6 / rows }'
}

smaller() { awk -v a="$1" -v b="$2" 'BEGIN { print a < b ? a : b }'; }

arguments="settlement, maturity, rate, yield, redemption, frequency, basis"
refused="settlement, maturity, rate, yield, redemption, frequency + 0.5, basis"
price=1e300 nothing=1e300 scan=1e300 batch=1e300 try=1e300 bad=1e300 why=1e300
for run in $(seq 15); do
    nothing=$(smaller "$nothing" "$(time_of "nothing($arguments)")")
    price=$(smaller "$price" "$(time_of "fin_price($arguments)")")
    try=$(smaller "$try" "$(time_of "fin_try_price($arguments)")")
    bad=$(smaller "$bad" "$(time_of "fin_try_price($refused)")")
    why=$(smaller "$why" "$(time_of "fin_why_price($refused)")")
    scan=$(smaller "$scan" "$(time_of "basis")")
    batch=$(smaller "$batch" "$("$batch_price" "$rows")")
done

# What the server's process holds before and after another ten times as many calls, kB.
memory=$(sql 1 -At <<'SQL'
PREPARE held AS SELECT substring(pg_read_file('/proc/self/status') FROM 'RssAnon:\s+(\d+)');
SELECT count(fin_price(settlement, maturity, rate, yield, redemption, frequency, basis)) FROM bonds \gset
EXECUTE held;
SELECT count(fin_price(settlement, maturity, rate, yield, redemption, frequency, basis)) FROM bonds, generate_series(1, 10) \gset
EXECUTE held;
SQL
)
memory=${memory//$'\n'/ and }
awk -v rows="$rows" -v scan="$scan" -v nothing="$nothing" -v batch="$batch" -v price="$price" -v try="$try" -v bad="$bad" -v why="$why" \
    -v memory="$memory" 'BEGIN {
    ratio = price / (nothing + batch)
    printf "%d rows, ns a row\n", rows
    printf "  scan of the table, no call        %7.1f\n", scan
    printf "  function that does nothing        %7.1f\n", nothing
    printf "  calls of the embedded host        %7.1f\n", batch
    printf "  fin_price                         %7.1f\n", price
    printf "  fin_try_price                     %7.1f   %.2f of fin_price\n", try, try / price
    printf "  fin_try_price, rows refused       %7.1f   %.2f\n", bad, bad / price
    printf "  fin_why_price, rows refused       %7.1f   %.2f\n", why, why / price
    printf "  fin_price / (nothing + calls)     %7.2f   goal <= 1.3: %s\n", ratio, ratio <= 1.3 ? "met" : "missed"
    printf "  anonymous memory before and after another ten times as many calls: %s kB\n", memory
}'

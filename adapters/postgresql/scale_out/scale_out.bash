#!/usr/bin/env bash
# A coordinator and two shards on this machine, a portfolio spread over both, and what is worked out where:
#
#     scale_out.bash BUILD [BONDS]
#
# Starts three private servers with the extension from that build folder, asks the queries of queries.bash, checks by the
# plans that the shards are asked for what they can do, and by the answers that they are those of one server, bit for bit.
# Prints a line each and the plan of one, and ends with all that it has started.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../private_server.bash"
. "$here/queries.bash"
if [ $# -lt 1 ]; then
    echo "usage: scale_out.bash BUILD [BONDS]" >&2
    exit 2
fi
bonds=${2:-20000}

coordinator() { sql 1 -v folder="$folder" -v bonds="$bonds" --no-align --tuples-only "$@"; }

# Whether a remote query has a call of the extension's.
sent() { grep "Remote SQL:" <<<"$1" | grep -q "fin_"; }

# Rows that are only in one of the two; every column by its bits, since numbers are printed in full.
differences() {
    local local_query=${1//FROM bonds/FROM local_bonds}
    local_query=${local_query//FROM flows/FROM local_flows}
    coordinator -c "WITH far AS ($1), near AS ($local_query), rows_of AS (
        SELECT (SELECT count(*) FROM far) AS far, (SELECT count(*) FROM near) AS near,
               (SELECT count(*) FROM (SELECT far::text FROM far EXCEPT ALL SELECT near::text FROM near) s) AS different)
        SELECT far, near, different FROM rows_of"
}

faults=0
ask() {
    local name=$1 expected=$2 query=$3 plan found counts
    plan=$(coordinator -c "EXPLAIN (VERBOSE, COSTS OFF) $query")
    if sent "$plan"; then found=sent; else found=kept; fi
    counts=$(differences "$query")
    printf '%-22s %s  %s rows\n' "$name" "$found" "${counts%%|*}"
    if [ "$found" != "$expected" ]; then
        echo "  expected $expected:"
        echo "$plan"
        faults=$((faults + 1))
    fi
    if [[ ! $counts =~ ^([1-9][0-9]*)\|([0-9]+)\|0$ ]] || [ "${BASH_REMATCH[1]}" != "${BASH_REMATCH[2]}" ]; then
        echo "  answers differ from one server's: $counts"
        faults=$((faults + 1))
    fi
}

prepare_servers "$1"
for server in 1 2 3; do start_server "$server"; done
for shard in 2 3; do sql "$shard" -f "$here/shard.sql"; done
coordinator -f "$here/coordinator.sql"
coordinator -f "$here/portfolio.sql"
for shard in 2 3; do
    printf 'shard %s: %s bonds\n' "$((shard - 2))" "$(sql "$shard" -At -c 'SELECT count(*) FROM bonds')"
done
ask_all
echo
echo "The plan of per_issuer:"
coordinator -c "EXPLAIN (VERBOSE, COSTS OFF) SELECT issuer,
    max(fin_price(settlement, maturity, coupon, yield, 100, frequency, basis)) FROM bonds GROUP BY issuer"
exit $((faults > 0))

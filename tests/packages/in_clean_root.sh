#!/usr/bin/env bash
# In a root that has apt and nothing else: installs the packages beside this script, asks each, and removes them.
#
# Expected: straight-line depreciation of 10000 to 1000 over 5 periods is (10000 - 1000) / 5 = 1800; at a rate of 1 the present
# value of 2, 4 and 8 is 2/2 + 4/4 + 8/8 = 3.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
log=/tmp/apt.log

apt() { apt-get -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 -o APT::Keep-Downloaded-Packages=true "$@" >"$log" 2>&1 || { cat "$log" && exit 1; }; }

fail() {
    echo "in the clean root: $*" >&2
    exit 1
}

same() { # WHAT EXPECTED COMMAND...
    local what=$1 expected=$2 said
    shift 2
    said=$("$@" 2>&1) || fail "$what: exit status $? and: $said"
    [ "$said" = "$expected" ] || fail "$what: said"$'\n'"$said"$'\n'"instead of"$'\n'"$expected"
    echo "$what answers"
}

rm -f /etc/apt/apt.conf.d/docker-clean
apt update
mapfile -t names < <(for package in "$here"/*.deb; do dpkg-deb -f "$package" Package; done)
apt install "$here"/*.deb
mapfile -t files < <(dpkg -L "${names[@]}" | while read -r file; do [ -d "$file" ] || echo "$file"; done)
[ ${#files[@]} -gt 30 ] || fail "only ${#files[@]} files are installed"
echo "installed: ${names[*]}, ${#files[@]} files"

# ---- What docs/install.md says is there

mapfile -t told < <(grep -o '`/usr/[^`]*`' "$here/install.md" | tr -d '`')
[ ${#told[@]} -gt 5 ] || fail "the page names ${#told[@]} paths"
for path in "${told[@]}"; do [ -e "$path" ] || fail "$path of the page is not there"; done
for name in "${names[@]}"; do grep -qF "apt install ./${name}_*.deb" "$here/install.md" || fail "the page does not install $name"; done

# ---- The command, wherever it is called from

same "finance" 1800 finance SLN 10000 1000 5
same "finance --version" "finance $(dpkg-query -W -f '${source:Upstream-Version}' zelkovan)"$'\n'"Copyright 2026 the zelkovan authors. MIT license." finance --version
gzip --test /usr/share/man/man1/finance.1.gz /usr/share/doc/zelkovan/changelog.Debian.gz

# ---- PostgreSQL, a server of one's own

data=/tmp/server
as_postgres() { (cd / && setpriv --reuid postgres --regid postgres --clear-groups "$@"); }
binaries=/usr/lib/postgresql/15/bin
as_postgres $binaries/initdb --pgdata $data --auth trust --locale C --encoding UTF8 --no-sync --no-instructions >"$log" 2>&1 ||
    { cat "$log" && exit 1; }
as_postgres $binaries/pg_ctl --pgdata $data --silent --wait --log $data/log \
    --options "-c listen_addresses= -c unix_socket_directories=$data -c fsync=off" start || { cat $data/log && exit 1; }
sql() { as_postgres $binaries/psql --no-psqlrc --quiet --no-align --tuples-only -v ON_ERROR_STOP=1 -h $data postgres "$@"; }
sql --command 'CREATE EXTENSION zelkovan'
same "PostgreSQL" 1800 sql --command 'SELECT fin_sln(10000, 1000, 5)'
same "PostgreSQL's aggregate" 3 sql --command 'SELECT fin_npv(1, x ORDER BY x) FROM (VALUES (2), (4), (8)) AS flow(x)'
as_postgres $binaries/pg_ctl --pgdata $data --silent --wait --mode fast stop
rm -rf $data

# ---- SQLite by the module's name alone, Python with what was compiled for it

apt install sqlite3
same "SQLite" '1800.0|3.0' sqlite3 :memory: '.load zelkovan_sqlite' \
    'SELECT fin_sln(10000, 1000, 5), (SELECT fin_npv(1, column1) FROM (VALUES (2), (4), (8)))'
same "Python" '[1800. 3600.] 3.0' python3 -c \
    'import zelkovan; print(zelkovan.sln([10000, 20000], [1000, 2000], 5), zelkovan.npv(1, [2, 4, 8]))'
[ -d /usr/lib/python3/dist-packages/zelkovan/__pycache__ ] || fail "Python's files were not compiled"

# ---- Removal

apt purge "${names[@]}"
for file in "${files[@]}"; do [ ! -e "$file" ] || fail "$file is left"; done
for name in "${names[@]}"; do
    if dpkg-query -W "$name" >/dev/null 2>&1; then fail "$name is still known: $(dpkg-query -W -f '${Status}' "$name")"; fi
done
left=$(find / -xdev \( -path "$here" -o -path /proc -o -path /var/log -o -path /var/cache/apt \) -prune -o -iname '*zelkovan*' -print)
[ -z "$left" ] || fail "this is left:"$'\n'"$left"
echo "removed: nothing is left"

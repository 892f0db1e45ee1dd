# PostgreSQL servers of one's own, to be sourced: each a data folder and a Unix socket in one temporary folder, with the
# extension from a build folder; nothing is installed, nothing listens on a network. All end with the script, however it
# ends, and the folder goes with them.
#
#     prepare_servers BUILD        the folder, the staged extension: sets $folder
#     start_server NUMBER [OPTION=VALUE ...]
#     sql NUMBER [psql arguments]  as user "tester", database "postgres"
#     as_user COMMAND ...          as whoever owns the servers
#
# SERVER_PRELOAD: libraries that the servers load before all else, a sanitizer's runtime. What it says in one of them is
# shown, and fails the script.
#
# A server refuses to run as root: then its user is postgres, or else nobody.
set -euo pipefail

server_pids=()
folder=

server_binaries() { "${PG_CONFIG:-pg_config}" --bindir; }

as_user() {
    if [ "$(id -u)" -ne 0 ]; then
        "$@"
        return
    fi
    local user=nobody
    if id postgres >/dev/null 2>&1; then user=postgres; fi
    (cd / && setpriv --reuid "$user" --regid "$(id -g "$user")" --clear-groups "$@")
}

stop_servers() {
    trap '' INT TERM
    local pid
    for pid in ${server_pids[@]+"${server_pids[@]}"}; do kill -INT "$pid" 2>/dev/null || true; done
    for pid in ${server_pids[@]+"${server_pids[@]}"}; do wait "$pid" 2>/dev/null || true; done
    server_pids=()
    if [ -n "$folder" ]; then rm -rf "$folder"; fi
}

stop_servers_and_ask_them() {
    local status=$? reports
    reports=$([ -z "$folder" ] || grep -h -A 30 -E 'Sanitizer|runtime error:' "$folder"/server*.log || true)
    stop_servers
    if [ -z "$reports" ]; then exit "$status"; fi
    printf '%s\n' "$reports" >&2
    exit 1
}

# In /tmp whatever TMPDIR says: a socket's path is no longer than 107 bytes.
prepare_servers() {
    local build=$1
    folder=$(as_user mktemp -d /tmp/zelkovan-pg.XXXXXX)
    trap stop_servers_and_ask_them EXIT
    trap 'exit 130' INT TERM
    mkdir "$folder/stage"
    DESTDIR="$folder/stage" cmake --install "$build" --component postgresql >/dev/null
    local library
    for library in ${SERVER_PRELOAD:-}; do cp "$library" "$folder/stage"; done
    chmod -R a+rX "$folder/stage"
}

start_server() {
    local number=$1 option
    local data="$folder/data$number" binaries
    shift
    binaries=$(server_binaries)
    as_user "$binaries/initdb" --pgdata "$data" --username tester --auth trust --encoding UTF8 --locale C \
        --no-sync --no-instructions >"$folder/initdb$number.log" 2>&1
    {
        echo "listen_addresses = ''"
        echo "unix_socket_directories = '$folder'"
        echo "port = $number"
        echo "extension_destdir = '$folder/stage'"
        echo "fsync = off"
        echo "shared_buffers = 128MB"
        echo "timezone = 'UTC'"
        for option in "$@"; do echo "$option"; done
    } >>"$data/postgresql.conf"
    # Should this script be killed, the server is told to stop by the kernel.
    run_server "$binaries/postgres" -D "$data" >"$folder/server$number.log" 2>&1 &
    server_pids+=($!)
    local tries
    for tries in $(seq 200); do
        if "$binaries/pg_isready" -q -h "$folder" -p "$number"; then return; fi
        if ! kill -0 "${server_pids[-1]}" 2>/dev/null; then break; fi
        sleep 0.1
    done
    echo "server $number did not start:" >&2
    cat "$folder/server$number.log" >&2
    exit 1
}

# In place of the shell, so that the process is the server itself.
run_server() {
    local library preload=
    for library in ${SERVER_PRELOAD:-}; do preload+=" $folder/stage/${library##*/}"; done
    set -- env LD_PRELOAD="$preload" ASAN_OPTIONS=detect_leaks=0:detect_odr_violation=0 "$@"
    if [ "$(id -u)" -ne 0 ]; then exec setpriv --pdeathsig INT "$@"; fi
    local user=nobody
    if id postgres >/dev/null 2>&1; then user=postgres; fi
    cd /
    exec setpriv --reuid "$user" --regid "$(id -g "$user")" --clear-groups --pdeathsig INT "$@"
}

sql() {
    local number=$1
    shift
    "$(server_binaries)/psql" --no-psqlrc --quiet -v ON_ERROR_STOP=1 -h "$folder" -p "$number" -U tester -d postgres "$@"
}

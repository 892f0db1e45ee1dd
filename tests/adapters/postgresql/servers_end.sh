#!/usr/bin/env bash
# servers_end.sh SOURCE BUILD: a server ends with the script that started it, even if that one is killed.
source=$1 build=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cat >"$scratch/starter.sh" <<'INNER'
. "$1/adapters/postgresql/private_server.bash"
prepare_servers "$2"
start_server 1
echo "$folder ${server_pids[0]}" >"$3.new"
mv "$3.new" "$3"
if [ "$4" = stays ]; then sleep 30 >/dev/null 2>&1 & wait $!; fi
INNER

# ended HOW PID: waits for the server to end.
ended() {
    local pid=$2 tries
    for tries in $(seq 100); do
        if ! kill -0 "$pid" 2>/dev/null; then return; fi
        sleep 0.1
    done
    echo "$1: the server still runs"
    exit 1
}

started="$scratch/started"
bash "$scratch/starter.sh" "$source" "$build" "$started" ends || exit 1
read -r folder pid <"$started"
ended "by itself" "$pid"
if [ -e "$folder" ]; then echo "by itself: its folder stays"; exit 1; fi

for signal in TERM KILL; do
    rm -f "$started"
    bash "$scratch/starter.sh" "$source" "$build" "$started" stays &
    starter=$!
    for tries in $(seq 300); do
        if [ -e "$started" ]; then break; fi
        sleep 0.1
    done
    read -r folder pid <"$started"
    kill -0 "$pid" || exit 1
    kill -"$signal" "$starter"
    wait "$starter" 2>/dev/null
    ended "$signal" "$pid"
    if [ "$signal" = TERM ] && [ -e "$folder" ]; then echo "TERM: its folder stays"; exit 1; fi
    rm -rf "$folder"
done
echo "servers end"

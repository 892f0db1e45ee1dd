#!/usr/bin/env bash
# scale_out.sh SOURCE BUILD: what the demonstration itself checks.
exec bash "$1/adapters/postgresql/scale_out/scale_out.bash" "$2"

#!/usr/bin/env bash
# pages_are_fresh.sh CATALOGUE_PAGES SOURCE_FOLDER: the kept pages are those that the catalogue makes now, no more and
# no fewer; and what makes the man page wrong is told by groff.
set -euo pipefail
program=$1 source=$2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$program" "$work"
pages=(docs/reference docs/finance.1 completions wasm/javascript/catalogue.json)
made=$(find "$work" -type f | wc -l)
kept=$(cd "$source" && find "${pages[@]}" -type f | wc -l)
[ "$made" -eq "$kept" ] || { echo "$made files are made, $kept are kept"; exit 1; }
for page in "${pages[@]}"; do
    diff --recursive --unified=1 "$source/$page" "$work/$page" || {
        echo "out of date: $page; refresh with: scripts/refresh-pages"
        exit 1
    }
done

faults=$(groff -z -ww -man -Tutf8 "$work/docs/finance.1" 2>&1)
[ -z "$faults" ] || { echo "$faults"; exit 1; }
sections=$(grep '^\.SH ' "$work/docs/finance.1" | tr '\n' ' ')
[ "$sections" = ".SH NAME .SH SYNOPSIS .SH DESCRIPTION .SH OPTIONS .SH ARGUMENTS .SH PROMPT AND SCRIPTS .SH EXIT STATUS .SH FILES .SH EXAMPLES .SH CALCULATIONS .SH COPYRIGHT " ] ||
    { echo "sections: $sections"; exit 1; }

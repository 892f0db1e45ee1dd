#!/usr/bin/env bash
# bash_completion.sh FINANCE_BASH: what is offered for a command line whose last word is being typed. Words are broken
# at = as bash breaks them by itself, and not, as those have it who took = out of COMP_WORDBREAKS.
set -uo pipefail
# shellcheck disable=SC1090
source "$1"

lines=0
failed=0

# offers "EXPECTED..." WORD...: the last word is the one being typed.
offers() {
    local expected=$1
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    _finance
    lines=$((lines + 1))
    [ "${COMPREPLY[*]-}" = "$expected" ] && return
    failed=$((failed + 1))
    printf 'after: %s\n  expected: %s\n  offered:  %s\n' "$*" "$expected" "${COMPREPLY[*]-}"
}

bases='30/360 ACTUAL ACT/360 ACT/365 EU30/360'

# words and names
offers 'PRICE PRICEDISC PRICEMAT' finance PRI
offers 'PMT' finance pm
offers 'list' finance li
offers 'IRR' finance --json ir
offers 'TBILLEQ TBILLPRICE TBILLYIELD' finance --module = zelkovan.so tb
offers 'XIRR XNPV' finance --module zelkovan.so x
offers '--module' finance --mo
offers '' finance nothing
offers 'XIRR' finance help XI
offers '' finance list ''

# the value of an option is a file
offers '' finance --module PM

# names of arguments
offers 'rate= nper= pv= fv= type=' finance PMT ''
offers 'rate=' finance pmt ra
offers 'nper= pv= fv= type=' finance PMT rate = 0.005 ''
offers 'nper= pv= fv= type=' finance PMT rate=0.005 ''
offers 'pv= fv= type=' finance PMT 0.005 360 ''
offers 'firstInterest=' finance ACCRINT FIRST
offers 'financeRate= reinvestRate=' finance MIRR -100 60 60 ''
offers 'dates= guess=' finance XIRR values = -100,110 ''
offers '--json' finance PMT --j
offers 'rate=' finance PMT --json ra

# bases, by name and where the basis is next in order
offers "$bases" finance YEARFRAC basis =
offers "$bases" finance YEARFRAC basis = ''
offers 'ACTUAL ACT/360 ACT/365' finance YEARFRAC basis = ac
offers 'basis=ACTUAL basis=ACT/360 basis=ACT/365' finance YEARFRAC basis=AC
offers "$bases basis=" finance YEARFRAC 2024-01-01 2024-07-01 ''
offers 'EU30/360' finance YEARFRAC 2024-01-01 2024-07-01 eu
offers '' finance PMT rate = 0

# what follows a job
offers 'loan' finance schedule lo
offers 'loan depreciation' finance schedule ''
offers 'rate= nper= pv= fv= type= start= months= extra=' finance schedule loan ''
offers 'rate=' finance schedule loan ra
offers 'nper= pv= fv= type= start= months= extra=' finance schedule loan rate = 0.1 ''
offers 'pv= fv= type= start= months= extra=' finance schedule loan rate=0.1 nper=3 ''
offers 'cost= salvage= life= factor= month=' finance schedule depreciation ''
offers '--plot' finance schedule loan --p
offers '' finance schedule loan rate = lo
offers 'y= z_1=' finance plot "'PRICE(2008-02-15, 2017-11-15, 0.0575, y, redemption=z_1, 2, act/360, actual)'" ''
offers 'n=' finance plot "'PMT(r, n, 1)'" r = 1..2 ''
offers '--output' finance plot "'PMT(r, n, 1)'" --o
offers '' finance map "'PMT(a)'" ''

# values of options: columns of the table that the line names; a file or a number is for bash
table=$(mktemp)
trap 'rm -f "$table"' EXIT
printf '\xEF\xBB\xBFfund,deal,"due",a b\r\n1,2,3,4\n' >"$table"
offers 'fund deal due a\ b' finance fold "'IRR(x)'" "$table" --by ''
offers 'deal due' finance fold "'IRR(x)'" "$table" --by = d
offers 'fund,deal fund,due' finance fold "'IRR(x)'" "$table" --by fund,d
offers '' finance fold "'IRR(x)'" --by ''
offers '' finance schedule loan --plot ''
offers '' finance map "'PMT(a)'" -o ''
offers '' finance plot "'PMT(r, n, 1)'" --points ''

# every calculation that has a page is offered, and offers its arguments
calculations=0
for name in $(COMP_WORDS=(finance '') COMP_CWORD=1 && _finance && printf '%s\n' "${COMPREPLY[@]}" | grep '^[A-Z]'); do
    COMP_WORDS=(finance "$name" '')
    COMP_CWORD=2
    _finance
    calculations=$((calculations + 1))
    [[ ${COMPREPLY[*]-} == *= ]] && continue
    failed=$((failed + 1))
    echo "$name offers: ${COMPREPLY[*]-}"
done

pages=$(find "$(dirname "$1")/../docs/reference" -name '[A-Z]*.md' ! -name README.md | wc -l)
echo "$lines lines and $calculations of $pages calculations checked"
[ "$failed" -eq 0 ] && [ "$lines" -eq "$(grep -c '^offers ' "$0")" ] && [ "$calculations" -eq "$pages" ] &&
    [ "$pages" -gt 0 ]

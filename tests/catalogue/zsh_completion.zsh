# zsh -f zsh_completion.zsh COMPLETIONS_FOLDER: syntax, and what an interactive shell makes of a typed line and a tab.
zmodload zsh/zpty || exit 1
folder=${1:A}
zsh -n $folder/_finance || exit 1
typeset -i failed=0 checked=0

cd $folder || exit 1
zpty shell "TERM=dumb zsh -f -i"
zpty -w shell "fpath=(${(q)folder} \$fpath); autoload -Uz compinit; compinit -u -D; LISTMAX=0; PS1=as''ks:"
zpty -r -m shell text '*asks:*' || exit 1

# typed LINE: what the shell shows when a tab follows it, up to its next prompt.
typed() {
    zpty -w -n shell "$1"$'\t'" END"$'\C-u'"PS1=asks''$checked:"$'\n'
    zpty -r -m shell REPLY "*asks$checked:*"
    REPLY=${REPLY//[$'\a\b']/}
}

completes() {
    checked+=1
    typed $1
    [[ $REPLY == *"$2"* ]] && return
    failed+=1
    print -r -- "$1: expected $2, got: ${(V)REPLY}"
}

completes 'finance PRICED' 'finance PRICEDISC '
completes 'finance PM' 'finance PMT '
completes 'finance li' 'finance list '
completes 'finance help XI' 'finance help XIRR '
completes 'finance PMT ra' 'finance PMT rate='
completes 'finance PMT rate=1 np' 'finance PMT rate=1 nper='
completes 'finance YEARFRAC basis=EU' 'finance YEARFRAC basis=EU30/360 '
completes 'finance schedule lo' 'finance schedule loan '
completes 'finance schedule loan ra' 'finance schedule loan rate='
completes 'finance schedule loan rate=1 np' 'finance schedule loan rate=1 nper='
completes 'finance schedule depreciation fa' 'finance schedule depreciation factor='
completes 'finance schedule loan --plo' 'finance schedule loan --plot '
completes "finance plot 'PMT(rr, 1, pv=zz)' r" "finance plot 'PMT(rr, 1, pv=zz)' rr="
completes "finance plot 'PMT(rr, 1, pv=zz)' z" "finance plot 'PMT(rr, 1, pv=zz)' zz="
completes "finance map 'PMT(a,b,c)' --output=finance.ba" '--output=finance.bash '
completes "finance map 'PMT(a,b,c)' finance.ba" ' finance.bash '
completes "finance map 'PMT(a,b,c)' -o finance.ba" ' -o finance.bash '
completes "finance schedule loan --plot finance.ba" ' --plot finance.bash '
table=$(mktemp) && print -r 'fund,deal,amount' >$table
completes "finance fold 'IRR(amount)' $table --by de" ' --by deal '
completes "finance fold 'IRR(amount)' $table --by=fund,am" ' --by=fund,amount '
rm -f $table
completes 'finance --vers' 'finance --version '
completes 'finance PMT ' 'interest rate of one period'

zpty -d shell
print "$checked lines checked"
(( failed == 0 && checked == 22 ))

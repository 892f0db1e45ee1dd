# bash completion of finance(1). Made from the catalogue by scripts/refresh-pages.

# The arguments of a calculation, in order.
_finance_arguments() {
    case $1 in
        ACCRINT) echo issue= firstInterest= settlement= rate= par= frequency= basis= ;;
        ACCRINTM) echo issue= settlement= rate= par= basis= ;;
        AMORDEGRC) echo cost= purchase= firstPeriodEnd= salvage= period= rate= basis= ;;
        AMORLINC) echo cost= purchase= firstPeriodEnd= salvage= period= rate= basis= ;;
        COUPDAYBS) echo settlement= maturity= frequency= basis= ;;
        COUPDAYS) echo settlement= maturity= frequency= basis= ;;
        COUPDAYSNC) echo settlement= maturity= frequency= basis= ;;
        COUPNCD) echo settlement= maturity= frequency= basis= ;;
        COUPNUM) echo settlement= maturity= frequency= basis= ;;
        COUPPCD) echo settlement= maturity= frequency= basis= ;;
        CUMIPMT) echo rate= nper= pv= startPeriod= endPeriod= type= ;;
        CUMPRINC) echo rate= nper= pv= startPeriod= endPeriod= type= ;;
        DB) echo cost= salvage= life= period= month= ;;
        DDB) echo cost= salvage= life= period= factor= ;;
        DISC) echo settlement= maturity= price= redemption= basis= ;;
        DOLLARDE) echo price= denominator= ;;
        DOLLARFR) echo price= denominator= ;;
        DURATION) echo settlement= maturity= rate= yield= frequency= basis= ;;
        EFFECT) echo nominalRate= periodsPerYear= ;;
        FV) echo rate= nper= pmt= pv= type= ;;
        FVSCHEDULE) echo principal= rates=+ ;;
        INTRATE) echo settlement= maturity= investment= redemption= basis= ;;
        IPMT) echo rate= per= nper= pv= fv= type= ;;
        IRR) echo flows=+ ;;
        ISPMT) echo rate= per= nper= pv= ;;
        MDURATION) echo settlement= maturity= rate= yield= frequency= basis= ;;
        MIRR) echo flows=+ financeRate= reinvestRate= ;;
        NOMINAL) echo effectiveRate= periodsPerYear= ;;
        NPER) echo rate= pmt= pv= fv= type= ;;
        NPV) echo rate= flows=+ ;;
        ODDFPRICE) echo settlement= maturity= issue= firstCoupon= rate= yield= redemption= frequency= basis= ;;
        ODDFYIELD) echo settlement= maturity= issue= firstCoupon= rate= price= redemption= frequency= basis= ;;
        ODDLPRICE) echo settlement= maturity= lastInterest= rate= yield= redemption= frequency= basis= ;;
        ODDLYIELD) echo settlement= maturity= lastInterest= rate= price= redemption= frequency= basis= ;;
        PMT) echo rate= nper= pv= fv= type= ;;
        PPMT) echo rate= per= nper= pv= fv= type= ;;
        PRICE) echo settlement= maturity= rate= yield= redemption= frequency= basis= ;;
        PRICEDISC) echo settlement= maturity= discount= redemption= basis= ;;
        PRICEMAT) echo settlement= maturity= issue= rate= yield= basis= ;;
        PV) echo rate= nper= pmt= fv= type= ;;
        RATE) echo nper= pmt= pv= fv= type= ;;
        RECEIVED) echo settlement= maturity= investment= discount= basis= ;;
        SLN) echo cost= salvage= life= ;;
        SYD) echo cost= salvage= life= period= ;;
        TBILLEQ) echo settlement= maturity= discount= ;;
        TBILLPRICE) echo settlement= maturity= discount= ;;
        TBILLYIELD) echo settlement= maturity= price= ;;
        VDB) echo cost= salvage= life= start= end= factor= noSwitch= ;;
        XIRR) echo values=+ dates=+ guess= ;;
        XNPV) echo rate= values=+ dates=+ ;;
        YEARFRAC) echo startDate= endDate= basis= ;;
        YIELD) echo settlement= maturity= rate= price= redemption= frequency= basis= ;;
        YIELDDISC) echo settlement= maturity= price= redemption= basis= ;;
        YIELDMAT) echo settlement= maturity= issue= rate= price= basis= ;;
    esac
}

# What is typed as it stands after a word that is no calculation.
_finance_words() {
    case $1 in
        help) echo calculations ;;
        map) echo --where --output --delimiter --no-header --skip --dates --missing --decimal --numbers --digits --status --strict --quiet --json ;;
        fold) echo --by --where --output --delimiter --no-header --skip --dates --missing --decimal --numbers --digits --status --strict --quiet --json ;;
        schedule) echo loan depreciation --csv --json --digits --plot ;;
        'schedule loan') echo rate= nper= pv= fv= type= start= months= extra= --csv --json --digits --plot ;;
        'schedule depreciation') echo cost= salvage= life= factor= month= --csv --json --digits --plot ;;
        plot) echo variables --output --points --json ;;
    esac
}

# The arguments that have no value yet; where the next one in order is a basis, its keywords as well. A + marks a list:
# it takes whatever else was given in order.
_finance_open_arguments() {
    local given=" ${COMP_WORDS[*]:before_word:COMP_CWORD-before_word} " next=yes name
    local -i in_order=COMP_CWORD-before_word
    given=${given// =/=}
    for name in $given; do
        [[ $name == --* ]] && in_order+=-1
    done
    [[ $given == *=* ]] && in_order=0 next=''
    for name in $(_finance_arguments "${word^^}"); do
        if ((in_order > 0)); then
            in_order+=-1
            [[ $name == *+ ]] && in_order=0 next=''
            continue
        fi
        name=${name%+}
        [[ -n $next && $name == basis= ]] && candidates+=" $bases"
        next=''
        [[ ${given,,} == *" ${name,,}"* ]] || candidates+=" $name"
    done
}

# The names in a call that are no calculation, no argument and no basis: each may be what a range is for.
_finance_variables() {
    local text=${1//\(/( } name
    for name in ${text//[^A-Za-z0-9_.=(\/-]/ }; do
        name=${name#*=}
        [[ $name =~ ^[A-Za-z_][A-Za-z0-9_]*$ && " $bases " != *" ${name^^} "* ]] && echo "$name="
    done
}

# The columns of the table that the line names, by its header; behind a comma the next one.
_finance_columns() {
    local file header='' name delimiter=, before=''
    [[ $cur == *,* ]] && before=${cur%,*},
    for file in "${COMP_WORDS[@]:before_word}"; do
        [[ -f $file && -r $file ]] && IFS= read -r header <"$file" && break
    done
    header=${header#$'\xEF\xBB\xBF'} header=${header%$'\r'}
    [[ $header == *,* ]] || delimiter=$'\t'
    [[ $header == *[,$'\t']* ]] || delimiter=';'
    while [[ -n $header ]]; do
        name=${header%%"$delimiter"*} header=${header#"$name"} header=${header#"$delimiter"}
        [[ $name == \"*\" ]] && name=${name:1:-1}
        [[ $name == "${cur#"$before"}"* ]] && COMPREPLY+=("$prefix$before$(printf %q "$name")")
    done
}

# Whether the word before is an option with a value, which is offered then.
_finance_value() {
    local told=$argument
    [[ -n $told ]] || told=${COMP_WORDS[COMP_CWORD - 1]}
    if [[ " $file_options " == *" $told "* ]]; then
        files=yes
    elif [[ " $column_options " == *" $told "* ]]; then
        _finance_columns
    else
        [[ " $other_options " == *" $told "* ]]
    fi
}

_finance_after_word() {
    local typed='' given
    if [[ " $words " == *" $word "* ]] && _finance_value; then
        return
    elif [[ " $words " == *" $word "* ]]; then
        ((before_word < COMP_CWORD)) && typed=$(_finance_words "$word ${COMP_WORDS[before_word]}")
        [[ -n $typed ]] || typed=$(_finance_words "$word")
        [[ -z $typed || $cur == -* ]] || files=yes
        [[ $typed == calculations* ]] && typed="$words $names" files=''
        if [[ $typed == variables* ]]; then
            typed=${typed#variables}
            ((before_word < COMP_CWORD)) && typed+=" $(_finance_variables "${COMP_WORDS[before_word]}")"
        fi
        given=" ${COMP_WORDS[*]:before_word:COMP_CWORD-before_word} "
        given=${given// =/=}
        [[ -z $argument ]] || typed=''
        for word in $typed; do
            [[ $word == *= && $given == *" $word"* ]] || candidates+=" $word"
        done
    elif [[ $cur == --* ]]; then
        candidates='--help --json'
    elif [[ ${argument,,} == basis ]]; then
        candidates=$bases
    elif [[ -z $argument ]]; then
        _finance_open_arguments
    fi
}

_finance() {
    local -r words='list help map fold schedule plot'
    local -r names='ACCRINT ACCRINTM AMORDEGRC AMORLINC COUPDAYBS COUPDAYS COUPDAYSNC COUPNCD COUPNUM COUPPCD CUMIPMT CUMPRINC DB DDB DISC DOLLARDE DOLLARFR DURATION EFFECT FV FVSCHEDULE INTRATE IPMT IRR ISPMT MDURATION MIRR NOMINAL NPER NPV ODDFPRICE ODDFYIELD ODDLPRICE ODDLYIELD PMT PPMT PRICE PRICEDISC PRICEMAT PV RATE RECEIVED SLN SYD TBILLEQ TBILLPRICE TBILLYIELD VDB XIRR XNPV YEARFRAC YIELD YIELDDISC YIELDMAT'
    local -r options='--module --digits --json --help --version'
    local -r valued_options='--module --digits'
    local -r bases='30/360 ACTUAL ACT/360 ACT/365 EU30/360'
    local -r file_options='--output -o --plot'
    local -r column_options='--by'
    local -r other_options='--where --delimiter -d --skip --dates --missing --decimal --numbers --digits --points'
    local cur=${COMP_WORDS[COMP_CWORD]} argument='' prefix='' word='' candidates='' files='' candidate
    local -i i before_word=0
    COMPREPLY=()

    # basis=AC is three words where = breaks words, else one.
    if [[ $cur == = ]]; then
        argument=${COMP_WORDS[COMP_CWORD - 1]} cur=''
    elif ((COMP_CWORD > 2)) && [[ ${COMP_WORDS[COMP_CWORD - 1]} == = ]]; then
        argument=${COMP_WORDS[COMP_CWORD - 2]}
    elif [[ $cur == *=* ]]; then
        argument=${cur%%=*}
        prefix=$argument= cur=${cur#*=}
    fi

    for ((i = 1; i < COMP_CWORD; ++i)); do
        if [[ " $valued_options " == *" ${COMP_WORDS[i]} "* ]]; then
            [[ ${COMP_WORDS[i + 1]} == = ]] && i+=1
            i+=1
        elif [[ ${COMP_WORDS[i]} != -* ]]; then
            word=${COMP_WORDS[i]} before_word=i+1
            break
        fi
    done

    if [[ -n $word ]]; then
        _finance_after_word
    elif ((i > COMP_CWORD)); then
        files=yes
    elif [[ $cur == -* ]]; then
        candidates=$options
    else
        candidates="$words $names"
    fi

    for candidate in $candidates; do
        [[ ${candidate,,} == "${cur,,}"* ]] || continue
        [[ $candidate == -* && $cur != -* ]] && continue
        COMPREPLY+=("$prefix$candidate")
        [[ $candidate == *= ]] && compopt -o nospace -o nosort 2>/dev/null
    done
    [[ -n $files && ${#COMPREPLY[@]} -eq 0 ]] && compopt -o default 2>/dev/null
    return 0
}

complete -F _finance finance

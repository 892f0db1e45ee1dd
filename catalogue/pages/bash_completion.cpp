#include <string_view>

#include "catalogue/pages/pages.hpp"
#include "catalogue/wording.hpp"

namespace finance::catalogue::pages {

namespace {

constexpr std::string_view head = R"(# bash completion of finance(1). Made from the catalogue by scripts/refresh-pages.
)";

// Variables of the main function that the others see: word, the place before_word after it, cur, argument, candidates.
constexpr std::string_view before_main = R"bash(
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
)bash";

constexpr std::string_view main_function =
    R"(    local cur=${COMP_WORDS[COMP_CWORD]} argument='' prefix='' word='' candidates='' files='' candidate
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
)";

std::string joined(std::string list, std::string_view word) {
    return list.append(list.empty() ? "" : " ").append(word);
}

std::string variable(std::string_view name, const std::string& value) {
    return "    local -r " + std::string{name} + "='" + value + "'\n";
}

std::string argument_names(const Calculation& calculation) {
    std::string names;
    for (const Parameter& parameter : calculation.parameters) {
        names = joined(names, parameter.name) + (is_list(parameter.kind) ? "=+" : "=");
    }
    return names;
}

std::string argument_cases(std::span<const Calculation> calculations) {
    std::string text = "\n# The arguments of a calculation, in order.\n_finance_arguments() {\n    case $1 in\n";
    for (const Calculation& calculation : calculations) {
        text += "        " + std::string{calculation.name} + ") echo " + argument_names(calculation) + " ;;\n";
    }
    return text + "    esac\n}\n";
}

std::string word_cases(std::span<const Word> words) {
    constexpr ListForm form{"echo ", " ;;", "calculations", "variables"};
    return "\n# What is typed as it stands after a word that is no calculation.\n_finance_words() {\n    case $1 in\n" +
           typed_cases(words, form) + "    esac\n}\n";
}

std::string variables(std::span<const Calculation> calculations, const CommandWords& command) {
    std::string words;
    std::string names;
    std::string options;
    std::string valued_options;
    std::string bases;
    for (const Word& word : command.words) words = joined(words, word.word);
    for (const Calculation& calculation : calculations) names = joined(names, calculation.name);
    for (const Option& option : command.options) {
        options = joined(options, option.name);
        if (!option.value.empty()) valued_options = joined(valued_options, option.name);
    }
    for (const std::string_view keyword : basis_keywords) bases = joined(bases, keyword);
    return variable("words", words) + variable("names", names) + variable("options", options) +
           variable("valued_options", valued_options) + variable("bases", bases) +
           variable("file_options", names_of_options(command.words, ValueIs::file)) +
           variable("column_options", names_of_options(command.words, ValueIs::columns)) +
           variable("other_options", names_of_options(command.words, ValueIs::other));
}

}  // namespace

std::string bash_completion(std::span<const Calculation> calculations, const CommandWords& command) {
    return std::string{head} + argument_cases(calculations) + word_cases(command.words) + std::string{before_main} +
           variables(calculations, command) + std::string{main_function};
}

}  // namespace finance::catalogue::pages

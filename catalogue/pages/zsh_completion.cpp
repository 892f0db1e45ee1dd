#include <string_view>

#include "catalogue/pages/pages.hpp"
#include "catalogue/wording.hpp"

namespace finance::catalogue::pages {

namespace {

constexpr std::string_view head = R"(#compdef finance
# zsh completion of finance(1). Made from the catalogue by scripts/refresh-pages.
)";

// items: the arguments as name:description. The ones that have a value already are left out.
constexpr std::string_view rest = R"(
_finance_arguments() {
    local -a items open bases
    local item given
    _finance_items $1
    _finance_bases
    if compset -P '(#i)basis='; then
        compadd -a bases
        return
    fi
    compset -P '*=' && return 1
    for item in $items; do
        given=${words[(I)(#i)${item%%:*}=*]}
        ((given > 0 && given < CURRENT)) || open+=($item)
    done
    _describe -V -t arguments argument open -S = -q
}

# The columns of the table that the line names, by its header; behind a comma the next one.
_finance_columns() {
    local -a columns
    local file header delimiter=,
    for file in $words; do
        file=${(Q)file}
        [[ -f $file && -r $file ]] && IFS= read -r header <$file && break
    done
    header=${${header#$'\xEF\xBB\xBF'}%$'\r'}
    [[ $header == *,* ]] || delimiter=$'\t'
    [[ $header == *[,$'\t']* ]] || delimiter=';'
    columns=(${(ps:$delimiter:)header})
    columns=(${${columns#\"}%\"})
    compset -P '*,'
    compadd -V columns -a columns
}

# What follows a job: fixed words, names, options once a - is typed, files.
_finance_after_job() {
    local -a typed bases open
    local item given
    local -i ret=1
    (( CURRENT > 2 )) && _finance_typed "$words[1] $words[2]"
    (( $#typed )) || _finance_typed $words[1]
    if (( ${typed[(I)NAME]} )); then
        _describe -t jobs job jobs && ret=0
        _describe -t calculations calculation calculations && ret=0
        return ret
    fi
    (( $#typed )) || return 1
    item=${PREFIX%%=*}
    if [[ $PREFIX == --*=* ]] && compset -P '--[a-z-]#='; then
        _finance_value $item
        return
    fi
    if (( CURRENT > 2 )) && _finance_value $words[CURRENT-1]; then
        return 0
    fi
    if (( ${typed[(I)VARIABLE]} )); then
        typed=(${typed:#VARIABLE})
        _finance_bases
        # the names in the call that are no calculation, no argument and no basis
        given=${words[2]//\(/( }
        (( CURRENT > 2 )) && for item in ${=given//[^A-Za-z0-9_.=(\/-]/ }; do
            item=${item#*=}
            [[ $item == [A-Za-z_][A-Za-z0-9_]# ]] && (( ! ${bases[(I)${(U)item}]} )) && typed+=($item=)
        done
    fi
    for item in ${(M)typed:#*=}; do
        given=${words[(I)$item*]}
        ((given > 0 && given < CURRENT)) || open+=($item)
    done
    typed=(${typed:#*=})
    [[ $PREFIX == -* ]] || typed=(${typed:#-*})
    compadd -V arguments -S '' -a open && ret=0
    compadd -a typed && ret=0
    (( ret )) && _files && ret=0
    return ret
}

_finance() {
    local -a calculations jobs
    local state line curcontext=$curcontext
    local -i ret=1
    setopt local_options extended_glob
    _finance_calculations
    _finance_jobs
    _arguments -C $_finance_options '1: :->first' '*:: :->after' && ret=0
    case $state in
        first)
            _describe -t jobs job jobs && ret=0
            _describe -t calculations calculation calculations && ret=0
            ;;
        after)
            if (( ${jobs[(I)${words[1]}:*]} )); then
                _finance_after_job && ret=0
            else
                _finance_arguments ${(U)words[1]} && ret=0
            fi
            ;;
    esac
    return ret
}

_finance "$@"
)";

// In single quotes, a colon only where the item ends.
std::string quoted(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '\'') {
            result += "'\\''";
            continue;
        }
        if (c == ':' || c == '\\') result += '\\';
        result += c;
    }
    return result;
}

std::string item(std::string_view name, std::string_view description) {
    return '\'' + quoted(name) + ':' + quoted(description) + '\'';
}

std::string argument_items(std::span<const Calculation> calculations) {
    std::string text = "\n_finance_items() {\n    case $1 in\n";
    for (const Calculation& calculation : calculations) {
        text += "        " + std::string{calculation.name} + ") items=(\n";
        for (const Parameter& parameter : calculation.parameters) {
            text += "            " + item(parameter.name, parameter.meaning) + '\n';
        }
        text += "        ) ;;\n";
    }
    return text + "    esac\n}\n";
}

std::string calculation_items(std::span<const Calculation> calculations) {
    std::string text = "\n_finance_calculations() {\n    calculations=(\n";
    for (const Calculation& calculation : calculations) {
        text += "        " + item(calculation.name, calculation.answers) + '\n';
    }
    return text + "    )\n}\n";
}

std::string job_items(std::span<const Word> words) {
    std::string text = "\n_finance_jobs() {\n    jobs=(\n";
    for (const Word& word : words) text += "        " + item(word.word, word.purpose) + '\n';
    return text + "    )\n}\n";
}

std::string typed_items(std::span<const Word> words) {
    constexpr ListForm form{"typed=(", ") ;;", "NAME", "VARIABLE"};
    return "\n_finance_typed() {\n    case $1 in\n" + typed_cases(words, form) + "    esac\n}\n";
}

// As _arguments takes them: '--name[purpose]', '--name=[purpose]:VALUE:_files'.
std::string option_items(std::span<const Option> options) {
    std::string text = "\n_finance_options=(\n";
    for (const Option& option : options) {
        const std::string value = std::string{option.value};
        text += "    '" + std::string{option.name} + (value.empty() ? "" : "=") + '[' + quoted(option.help) + ']' +
                (value.empty() ? "" : ':' + value + ":_files") + "'\n";
    }
    return text + ")\n";
}

std::string value_branch(std::span<const Word> words, ValueIs value, std::string_view action) {
    std::string names = names_of_options(words, value);
    if (names.empty()) return {};
    for (char& c : names) c = c == ' ' ? '|' : c;
    return "        " + names + ") " + std::string{action} + " ;;\n";
}

std::string value_items(std::span<const Word> words) {
    return "\n# The value of the option $1; whether it has one.\n_finance_value() {\n    case $1 in\n" +
           value_branch(words, ValueIs::file, "_files") + value_branch(words, ValueIs::columns, "_finance_columns") +
           value_branch(words, ValueIs::other, "_message value") +
           "        *) return 1 ;;\n    esac\n    return 0\n}\n";
}

std::string basis_items() {
    std::string text = "\n_finance_bases() {\n    bases=(";
    for (const std::string_view keyword : basis_keywords) text.append(text.ends_with('(') ? "" : " ").append(keyword);
    return text + ")\n}\n";
}

}  // namespace

std::string zsh_completion(std::span<const Calculation> calculations, const CommandWords& command) {
    return std::string{head} + option_items(command.options) + basis_items() + job_items(command.words) +
           typed_items(command.words) + value_items(command.words) + calculation_items(calculations) +
           argument_items(calculations) + std::string{rest};
}

}  // namespace finance::catalogue::pages

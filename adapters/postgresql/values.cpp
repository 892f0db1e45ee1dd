#include "adapters/postgresql/values.hpp"

#include "adapters/common/engine_call.hpp"

namespace finance::adapters::postgresql {

using catalogue::Calculation;

char* kept(std::string_view text) noexcept {
    auto* copy = static_cast<char*>(
        MemoryContextAllocExtended(CurrentMemoryContext, text.size() + 1, MCXT_ALLOC_NO_OOM | MCXT_ALLOC_HUGE));
    if (copy == nullptr) return nullptr;
    std::ranges::copy(text, copy);
    copy[text.size()] = '\0';
    return copy;
}

// ---- Arguments

GivenArguments::GivenArguments(FunctionCallInfo call, std::string_view letters, bool coded_basis) {
    row_.count = static_cast<std::size_t>(call->nargs);
    row_.texts_given = 0;
    row_.lists_given = false;
    if (row_.count > letters.size()) {
        ereport(ERROR, (errcode(ERRCODE_INVALID_FUNCTION_DEFINITION),
                        errmsg("a function of zelkovan is declared with other arguments than its library has"),
                        errhint("The extension's script and its library are of different versions.")));
    }
    for (std::size_t i = 0; i < row_.count; ++i) {
        const Datum value = call->args[i].value;
        const char letter = letters[i];
        if (letter == 'n' || (letter == 'b' && coded_basis)) {
            read_number(i, DatumGetFloat8(value));
        } else if (letter == 'd') {
            read_date(i, DatumGetDateADT(value));
        } else if (letter == 'b') {
            read_basis(i, value);
        } else {
            read_list(i, letter, value);
        }
    }
}

// A slash is in no number: the usual basis is not tried for one.
void GivenArguments::read_basis(std::size_t i, Datum value) {
    const text* characters = DatumGetTextPP(value);
    const std::string_view basis{VARDATA_ANY(characters), static_cast<std::size_t>(VARSIZE_ANY_EXHDR(characters))};
    if (std::ranges::find(basis, '/') != basis.end()) return row_.set_text(i, basis);
    const host::Argument argument = basis_argument(basis);
    if (argument.kind() == host::Argument::Kind::text) return row_.set_text(i, basis);
    row_.numbers[i] = argument.number();
}

namespace {

std::size_t length_of(const ArrayType* array) {
    return static_cast<std::size_t>(ArrayGetNItems(ARR_NDIM(array), ARR_DIMS(array)));
}

// Of an array without NULLs: behind its dimensions, their lower bounds and, where it once had NULLs, their map.
template <typename Value>
std::span<const Value> values_of(const ArrayType* array) {
    const std::size_t head = sizeof(ArrayType) + 2 * sizeof(int) * static_cast<std::size_t>(ARR_NDIM(array));
    const std::size_t offset = ARR_HASNULL(array) ? static_cast<std::size_t>(array->dataoffset) : MAXALIGN(head);
    const void* first = static_cast<const char*>(static_cast<const void*>(array)) + offset;
    return {static_cast<const Value*>(first), length_of(array)};
}

}  // namespace

void GivenArguments::read_list(std::size_t i, char letter, Datum value) {
    ArrayType* array = DatumGetArrayTypeP(value);
    row_.lists_given = true;
    row_.lists[i] = {nullptr, 0};
    values_in_lists_ += length_of(array);
    if (too_long()) return;
    if (array_contains_nulls(array)) {
        missing_ = true;
        return;
    }
    const auto list = letter == 'N' ? values_of<double>(array) : list_of_dates(i, array);
    missing_ = missing_ || std::ranges::any_of(list, [](double number) { return std::isnan(number); });
    row_.lists[i] = {list.data(), list.size()};
}

std::span<const double> GivenArguments::list_of_dates(std::size_t i, const ArrayType* array) {
    const auto dates = values_of<DateADT>(array);
    const bool infinite = std::ranges::any_of(dates, [](DateADT date) { return DATE_NOT_FINITE(date); });
    if (infinite && infinite_date_ == 0) infinite_date_ = i + 1;
    auto* days = static_cast<double*>(palloc(dates.size() * sizeof(double)));
    std::ranges::transform(dates, days, host_day);
    return {days, dates.size()};
}

// ---- Answers

namespace {

bool has_sentence(const Outcome& outcome) {
    const bool told = outcome.trouble == Trouble::argument || outcome.trouble == Trouble::no_answer;
    return told && outcome.sentence != nullptr;
}

[[noreturn]] void report(const Outcome& outcome) {
    const char* sentence = outcome.sentence != nullptr ? outcome.sentence : "a call failed, and no memory to say why";
    switch (outcome.trouble) {
        case Trouble::argument:
            ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE), errmsg("%s", sentence),
                            outcome.usage != nullptr ? errhint("Usage: %s", outcome.usage) : 0));
        case Trouble::no_answer:
            ereport(ERROR, (errcode(ERRCODE_NUMERIC_VALUE_OUT_OF_RANGE), errmsg("%s", sentence)));
        case Trouble::no_memory:
            ereport(ERROR, (errcode(ERRCODE_OUT_OF_MEMORY), errmsg("out of memory")));
        default:
            ereport(ERROR, (errcode(ERRCODE_INTERNAL_ERROR), errmsg("%s", sentence)));
    }
    pg_unreachable();
}

bool is_date(double date) {
    return date == std::trunc(date) && date >= DATETIME_MIN_JULIAN - POSTGRES_EPOCH_JDATE &&
           date < DATE_END_JULIAN - POSTGRES_EPOCH_JDATE;
}

char* no_date_words(const Calculation& calculation, double day) {
    return psprintf("%.*s: the answer, day %.17g since 1960-01-01, is out of the range of dates",
                    static_cast<int>(calculation.name.size()), calculation.name.data(), day);
}

Datum date_of(const Calculation& calculation, double day, FunctionCallInfo call, Way way) {
    const double date = day - server_day_0;
    if (is_date(date)) return way == Way::reason ? null_of(call) : DateADTGetDatum(static_cast<DateADT>(date));
    if (way == Way::attempt) return null_of(call);
    const char* words = no_date_words(calculation, day);
    if (way == Way::reason) return text_of(words);
    ereport(ERROR, (errcode(ERRCODE_DATETIME_FIELD_OVERFLOW), errmsg("%s", words)));
    pg_unreachable();
}

}  // namespace

Datum null_of(FunctionCallInfo call) {
    call->isnull = true;
    return Datum{0};
}

Datum text_of(const char* words) { return PointerGetDatum(cstring_to_text(words)); }

Datum answer_of(const Calculation& calculation, const Outcome& outcome, FunctionCallInfo call, Way way) {
    if (outcome.verdict == Verdict::missing) return null_of(call);
    if (outcome.verdict != Verdict::answered) {
        if (way == Way::reason && has_sentence(outcome)) return text_of(outcome.sentence);
        report(outcome);
    }
    if (calculation.result == catalogue::ResultKind::date) return date_of(calculation, outcome.value, call, way);
    return way == Way::reason ? null_of(call) : Float8GetDatum(outcome.value);
}

char* infinite_date_words(const Calculation& calculation, std::size_t position) {
    const std::string_view name = calculation.parameters[position - 1].name;
    return psprintf("%.*s: argument %zu (%.*s): an infinite date is no day", static_cast<int>(calculation.name.size()),
                    calculation.name.data(), position, static_cast<int>(name.size()), name.data());
}

void report_infinite_date(const Calculation& calculation, std::size_t position) {
    const char* words = infinite_date_words(calculation, position);
    ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE), errmsg("%s", words)));
    pg_unreachable();
}

char* long_list_words() { return psprintf("a calculation takes no more than %zu values in its lists", longest_list); }

void report_long_list() {
    const char* words = long_list_words();
    ereport(ERROR, (errcode(ERRCODE_PROGRAM_LIMIT_EXCEEDED), errmsg("%s", words)));
    pg_unreachable();
}

}  // namespace finance::adapters::postgresql

// Whole call records through the dispatcher, and through the missing-value counters.
//
//  (1) Which calculation is meant, and whether the number of arguments suits it, is what the catalogue says.
//  (2) Status 0 and no flag, or the one status of refusal and at most one flag, on an argument after the name; a result
//      that is written or the missing value. A call that reaches no calculation leaves the result alone, as do a few
//      failures of calculations that flag nothing.
//  (3) Nothing else changes: no byte and bit of the host's, no word of its control block, no block of its memory, and
//      the note counter only where a search for a rate failed in a mode that counts notes.
//  (4) The same call gives the same bits again, whatever stood in the result, and without a result to write to.
//  (5) No call makes more steps than abi/steps.hpp says.
//  (6) With memory running out a call answers the same or is refused, and keeps to all these rules.
#include <span>

#include "abi/arguments.hpp"
#include "abi/status.hpp"
#include "fuzz/call_record.hpp"
#include "fuzz/linked_host.hpp"
#include "host/memory_vector.hpp"
#include "host/toolkit.hpp"
#include "tests/support/steps.hpp"

namespace finance::fuzz {
namespace {

enum class Verdict : std::uint8_t { no_name, unknown, too_few, too_many, calculation };

struct Expected {
    Verdict verdict;
    const catalogue::Calculation* known;
    std::int32_t count;
};

// The calculation that a text names, or null: trailing blanks do not count, case does not where the host is blind to
// it, and nothing else is forgiven.
const catalogue::Calculation* find_name(std::string_view text, bool case_blind) {
    while (text.ends_with(' ')) text.remove_suffix(1);
    const catalogue::Calculation* found = catalogue::find(text);
    return found != nullptr && (case_blind || found->name == text) ? found : nullptr;
}

Expected expected_of(const CallRecord& record, const catalogue::Calculation* known) {
    const auto count = static_cast<std::int32_t>(static_cast<std::uint32_t>(record.context()->count));
    if (count < 1) return {Verdict::no_name, nullptr, count};
    if (known == nullptr) return {Verdict::unknown, nullptr, count};
    const auto given = static_cast<std::size_t>(count);
    if (given < minimum_count(*known)) return {Verdict::too_few, known, count};
    if (list_count(*known) == 0 && given > maximum_count(*known)) return {Verdict::too_many, known, count};
    return {Verdict::calculation, known, count};
}

struct Outcome {
    Status status;
    std::uint64_t result;
    int flagged;  // slot, or -1
    std::uint64_t lines;
    std::uint64_t notes;
    std::int32_t notes_written;
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

constexpr std::uint64_t sentinels[] = {0x7FF4123456789ABC, 0x400921FB54442D18};

// Which argument has been flagged.
int flagged_slot(const CallRecord& record, std::string_view before) {
    const std::size_t head = sizeof(HostCallContext);
    int flagged = -1;
    for (std::size_t i = 0; i < record.size(); ++i) {
        const std::size_t at = head + i * sizeof(ArgSlot) + offsetof(ArgSlot, flags);
        const auto was = static_cast<std::uint8_t>(before[at]);
        const std::uint8_t is = record.slots()[i].flags;
        must(is == was || is == (was | ZELKOVAN_FLAG_INVALID), "of the flags only the invalid bit is ever set");
        if (is == was) continue;
        must(flagged < 0, "one argument is flagged at most");
        flagged = static_cast<int>(i);
    }
    return flagged;
}

// Without the module's own marks the record is what it was.
void check_record(const CallRecord& record, std::string_view before, const Outcome& outcome) {
    static std::string expected;
    static std::string after;
    expected = before;
    record.read_bytes(after);
    const std::size_t flags = sizeof(HostCallContext) + offsetof(ArgSlot, flags);
    if (outcome.flagged >= 0) {
        char& byte = expected[flags + static_cast<std::size_t>(outcome.flagged) * sizeof(ArgSlot)];
        byte = static_cast<char>(byte | ZELKOVAN_FLAG_INVALID);
    }
    std::memcpy(expected.data() + offsetof(HostCallContext, notes_written), &outcome.notes_written, 4);
    must(after == expected, "host-owned bytes and bits are unchanged");
}

Outcome call(const CallRecord& record, std::string_view before, double* result, std::uint64_t sentinel) {
    record.restore(before);
    static std::array<void*, 128> words;
    std::copy_n(linked_host().control_block(), words.size(), words.begin());
    const Holdings held = holdings();
    const Told earlier = told();
    if (result != nullptr) *result = std::bit_cast<double>(sentinel);

    steps_made = 0;
    const Status status = linked_host().dispatcher()(record.context(), result);
    must(steps_made <= test::most_steps(record.size(), record.characters()), "no call makes more steps than it may");

    const Outcome outcome{status,
                          result != nullptr ? std::bit_cast<std::uint64_t>(*result) : 0,
                          flagged_slot(record, before),
                          told().lines - earlier.lines,
                          told().notes - earlier.notes,
                          record.context()->notes_written};
    check_record(record, before, outcome);
    must(std::equal(words.begin(), words.end(), linked_host().control_block()), "the control block is unchanged");
    must(holdings() == held, "host memory is balanced");
    return outcome;
}

void check_notes(const Expected& expected, const CallRecord& record, std::string_view before, const Outcome& outcome) {
    const bool counts = ZELKOVAN_COUNTS_NOTES(record.context()->mode);
    std::int32_t was;
    std::memcpy(&was, before.data() + offsetof(HostCallContext, notes_written), sizeof was);
    const bool noted = expected.known != nullptr && expected.known->name == "XIRR" &&
                       outcome.status == STATUS_SUCCESS && outcome.result == ZELKOVAN_MISSING_VALUE_BITS;
    const auto next = static_cast<std::int32_t>(static_cast<std::uint32_t>(was) + 1);
    must(outcome.notes_written == (noted && counts ? next : was), "the note counter counts notes where it limits them");
    const bool silent = noted && counts && next > ZELKOVAN_MOST_NOTES + 1;
    must(outcome.notes == (noted && !silent ? 1U : 0U), "a search for a rate that fails writes a note");
}

// Failures that leave the result as it was: an uneven list of dates, no memory, a bill without an equivalent yield.
bool may_leave_result(const Expected& expected, bool memory_may_fail) {
    const std::string_view name = expected.known->name;
    return name == "TBILLEQ" || (name == "XNPV" && expected.count % 2 != 0) ||
           (memory_may_fail && (name == "XNPV" || name == "XIRR"));
}

void check(const Expected& expected, const Outcome& outcome, std::uint64_t sentinel, bool memory_may_fail) {
    must(outcome.status == STATUS_SUCCESS || outcome.status == STATUS_INVALID_ARGUMENT, "the host sees two statuses");
    const std::uint64_t lines_of_usage = 2 + catalogue::calculations().size() + 2;
    const bool reached = expected.verdict == Verdict::calculation;
    const bool named = expected.verdict != Verdict::no_name && expected.verdict != Verdict::unknown;
    must(outcome.lines == (reached ? 0 : named ? 1 : lines_of_usage), "the log tells a wrong name or number");
    if (!reached) {
        must(outcome.status == STATUS_INVALID_ARGUMENT, "what names no calculation, or not rightly, is refused");
        must(outcome.result == sentinel, "a call that reaches no calculation leaves the result alone");
        must(outcome.flagged == (expected.verdict == Verdict::unknown ? 0 : -1), "an unknown name is flagged");
        return;
    }
    if (outcome.status == STATUS_SUCCESS) {
        must(outcome.flagged == -1, "an answer flags nothing");
        return;
    }
    must(outcome.flagged != 0 && outcome.flagged < expected.count, "an argument of the call is flagged");
    const bool left =
        outcome.result == sentinel && outcome.flagged == -1 && may_leave_result(expected, memory_may_fail);
    must(left || outcome.result == ZELKOVAN_MISSING_VALUE_BITS, "what is refused has a missing result");
}

void call_without_memory(Bytes& in, const CallRecord& record, std::string_view before, const Expected& expected,
                         const Outcome& usual) {
    host::MemoryVector& memory = linked_host().memory();
    host::Toolkit& toolkit = linked_host().toolkit();
    const std::uint8_t fault = in.byte();
    memory.fail_at(fault & 3);
    toolkit.fail_pool_at(fault >> 2 & 1);
    toolkit.fail_block_at(fault >> 3 & 1);
    toolkit.take_shape(static_cast<host::Toolkit::Shape>(in.below(3)));
    double result = 0.0;
    const Outcome outcome = call(record, before, &result, sentinels[0]);
    memory.fail_at(0);
    toolkit.fail_pool_at(0);
    toolkit.fail_block_at(0);
    toolkit.take_shape(host::Toolkit::Shape::whole);
    check(expected, outcome, sentinels[0], true);
    must(outcome.status == STATUS_INVALID_ARGUMENT || outcome == usual, "scarce memory alters no answer");
}

bool missing_as_number(const ArgSlot& slot) {
    double value = std::numeric_limits<double>::quiet_NaN();
    if (slot.value != nullptr) std::memcpy(&value, slot.value, sizeof value);
    return value != value;
}

bool missing_by_type(const ArgSlot& slot) {
    if (slot.type % 2 != 0) return missing_as_number(slot);
    const auto* text = static_cast<const CharacterDescriptor*>(slot.value);
    if (text == nullptr || text->text == nullptr) return true;
    return std::string_view{text->text, text->length}.find_first_not_of(' ') == std::string_view::npos;
}

void check_counters(const CallRecord& record) {
    record.context()->count = static_cast<std::int64_t>(record.size());
    const std::span slots{record.slots(), record.size()};
    double counted = -1.0;
    must(fncnmis(record.context(), &counted) == 0, "counters answer");
    must(counted == static_cast<double>(std::ranges::count_if(slots, missing_as_number)), "numbers missing");
    must(fnccmis(record.context(), &counted) == 0, "counters answer");
    must(counted == static_cast<double>(std::ranges::count_if(slots, missing_by_type)), "values missing");
    if (slots.empty()) return;  // the last one looks at slot 0 whatever the count
    must(fncmis(record.context(), &counted) == 0, "counters answer");
    must(counted == (missing_by_type(slots[0]) ? 1.0 : 0.0), "the first value missing");
}

// The call in every row of columns: a row that they answer has the call's result.
void check_columns(const CallRecord& record, const Outcome& outcome) {
    constexpr std::int64_t rows = 5;
    const CharacterValue name = character_value(record.slots()[0]);
    std::vector<ZelkovanColumn> columns;
    for (std::size_t i = 1; i < record.size(); ++i)
        columns.push_back({ZELKOVAN_COLUMN_SLOTS, 0, record.slots() + i, 0, nullptr});
    for (const std::uint32_t instructions : {ZELKOVAN_INSTRUCTIONS_SSE2, ZELKOVAN_INSTRUCTIONS_AVX2}) {
        std::array<double, rows> results{};
        std::uint64_t answered = ~std::uint64_t{0};
        const ZelkovanColumns request{.name = name.text,
                                      .name_length = name.length,
                                      .columns = columns.data(),
                                      .column_count = static_cast<std::int64_t>(columns.size()),
                                      .rows = rows,
                                      .results = results.data(),
                                      .answered = &answered,
                                      .instructions = instructions,
                                      .reserved = 0};
        steps_made = 0;
        const std::int64_t count = fnccols(&request);
        must(steps_made <= rows * test::most_steps(record.size(), record.characters()), "columns make no more steps");
        must(count == std::popcount(answered), "columns count what they answer");
        must(answered == 0 || answered == 31, "rows that are the same are answered alike");
        if (answered == 0) continue;
        must(outcome.status == STATUS_SUCCESS, "columns answer no row that is refused");
        for (const double result : results) {
            must(std::bit_cast<std::uint64_t>(result) == outcome.result, "a row has the bits of its call");
        }
    }
}

void run(Bytes in) {
    static CallRecord record;
    const std::uint8_t host_mode = in.byte();
    const bool case_blind = (host_mode & 1) == 0;
    linked_host().set_case_blind(case_blind);
    linked_host().set_multibyte((host_mode & 2) != 0);
    record.fill(in);
    const catalogue::Calculation* known = find_name(record.name(), case_blind);
    record.claim(in, known);
    static std::string before;
    record.read_bytes(before);
    const Expected expected = expected_of(record, known);

    double result = 0.0;
    const Outcome first = call(record, before, &result, sentinels[0]);
    const bool many_steps = steps_made > 10'000;
    check(expected, first, sentinels[0], false);
    check_notes(expected, record, before, first);
    record.restore(before);
    const bool is_whole = expected.verdict == Verdict::calculation && expected.count == static_cast<int>(record.size());
    if (is_whole) check_columns(record, first);
    if (many_steps) return;  // slow under sanitizers, each time

    Outcome second = call(record, before, &result, sentinels[1]);
    check(expected, second, sentinels[1], false);
    if (first.result == sentinels[0] && first.status != STATUS_SUCCESS && second.result == sentinels[1]) {
        second.result = first.result;
    }
    must(second == first, "the same call gives the same bits");

    if ((host_mode & 4) != 0) {
        Outcome without = call(record, before, nullptr, 0);
        without.result = first.result;
        must(without == first, "without a result to write to all else is the same");
    }
    if ((host_mode & 8) != 0) call_without_memory(in, record, before, expected, first);
    record.restore(before);
    check_counters(record);
}

}  // namespace
}  // namespace finance::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    finance::fuzz::run({data, size});
    return 0;
}

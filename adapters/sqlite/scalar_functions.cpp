#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/sqlite/functions.hpp"
#include "adapters/sqlite/values.hpp"
#include "calls/meant.hpp"
#include "host/prepared_call.hpp"

namespace finance::adapters::sqlite {

using catalogue::Calculation;
using host::Argument;

namespace {

// The calls of one registered function. SQLite lets one thread at a time into a connection, and a calculation calls no
// function.
class CallRecord {
public:
    CallRecord(const Calculation& calculation, std::size_t arguments, Way way)
        : calculation_{calculation},
          way_{way},
          arguments_(arguments, Argument{0.0}),
          numbers_(arguments),
          call_{calculation.name} {}

    // A null anywhere is the answer, whatever the others are.
    void answer(sqlite3_context* context, std::span<sqlite3_value*> values);

private:
    [[nodiscard]] host::Evaluation evaluation();
    void give_unreadable(sqlite3_context* context, std::size_t parameter, sqlite3_value* value) const;
    void give(sqlite3_context* context, const calls::Answer& answer) const;

    const Calculation& calculation_;
    Way way_;
    std::vector<Argument> arguments_;
    std::vector<double> numbers_;  // those that are no text
    host::PreparedCall call_;
};

void CallRecord::answer(sqlite3_context* context, std::span<sqlite3_value*> values) {
    std::size_t at_fault = values.size();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const int type = sqlite3_value_type(values[i]);
        if (type == SQLITE_NULL) return;
        const bool readable = read_argument(calculation_.parameters[i], values[i], type, arguments_[i]);
        if (!readable && at_fault == values.size()) at_fault = i;
    }
    if (at_fault < values.size()) return give_unreadable(context, at_fault, values[at_fault]);
    const int unmeant = calls::unmeant_argument(calculation_, arguments_);
    const host::Evaluation evaluation = unmeant == 0 ? this->evaluation() : calls::refused_at(unmeant);
    give(context, calls::answer_of(shared_host(), calculation_, arguments_, evaluation));
}

// SQLite's answer is null until another is given.
void CallRecord::give_unreadable(sqlite3_context* context, std::size_t parameter, sqlite3_value* value) const {
    if (way_ == Way::attempt) return;
    const auto say = way_ == Way::answer ? give_error : give_text;
    say(context, unreadable(calculation_, parameter, value));
}

void CallRecord::give(sqlite3_context* context, const calls::Answer& answer) const {
    if (way_ != Way::reason) return give_answer(context, calculation_, value_of(answer, way_));
    give_sentence(context, why_no_value(answer));
}

host::Evaluation CallRecord::evaluation() {
    std::uint32_t texts = 0;
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
        numbers_[i] = arguments_[i].number();
        if (arguments_[i].kind() == Argument::Kind::text) texts |= std::uint32_t{1} << i;
    }
    call_.lay_out(arguments_.size(), texts, numbers_.data());
    for (; texts != 0; texts &= texts - 1) {
        const auto i = static_cast<std::size_t>(std::countr_zero(texts));
        call_.set_text(i, arguments_[i].text());
    }
    return call_.make(shared_host());
}

// What SQLite keeps for a registered function.
struct ScalarFunction {
    const Calculation& calculation;
    Way way;
    std::unique_ptr<CallRecord> record{};  // from the first call on
};

void call(sqlite3_context* context, int count, sqlite3_value** values) {
    or_error(context, [&] {
        auto* const function = static_cast<ScalarFunction*>(sqlite3_user_data(context));
        const std::span arguments{values, static_cast<std::size_t>(count)};
        if (!function->record) {
            function->record = std::make_unique<CallRecord>(function->calculation, arguments.size(), function->way);
        }
        function->record->answer(context, arguments);
    });
}

void forget(void* function) { std::default_delete<ScalarFunction>{}(static_cast<ScalarFunction*>(function)); }

}  // namespace

int register_scalar(sqlite3* database, const Calculation& calculation, Way way) {
    const std::string name = way_name(calculation, way);
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    int status = SQLITE_OK;
    for (std::size_t count = fewest_arguments(calculation); count <= calculation.parameters.size(); ++count) {
        if (status != SQLITE_OK) return status;
        // SQLite forgets it, also where it does not register the function.
        auto function = std::make_unique<ScalarFunction>(ScalarFunction{.calculation = calculation, .way = way});
        status = sqlite3_create_function_v2(database, name.c_str(), static_cast<int>(count), flags, function.release(),
                                            call, nullptr, nullptr, forget);
    }
    return status;
}

}  // namespace finance::adapters::sqlite

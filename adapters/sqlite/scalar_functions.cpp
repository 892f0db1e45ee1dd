#include "adapters/sqlite/scalar_functions.hpp"

#include <cmath>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/sqlite/argument_values.hpp"
#include "adapters/sqlite/results.hpp"
#include "adapters/sqlite/signatures.hpp"
#include "host/call_frame.hpp"

namespace finance::sqlite {

using catalogue::Calculation;
using host::Argument;

namespace {

// The call record of one registered function, laid out anew only where an argument changes between number and text: the
// slots point to the arguments, which stay where they are. SQLite lets one thread at a time into a connection, and a
// calculation calls no function.
class CallRecord {
public:
    CallRecord(const Calculation& calculation, std::size_t arguments)
        : calculation_{calculation}, arguments_(arguments, Argument{0.0}) {
        lay_out();
    }

    // A null anywhere is the answer, whatever the others are.
    void answer(sqlite3_context* context, std::span<sqlite3_value*> values);

private:
    void lay_out() { frame_.fill(calculation_.name, arguments_, 0, false); }
    void put(std::size_t i, const Argument& argument);
    void evaluate(sqlite3_context* context);

    const Calculation& calculation_;
    std::vector<Argument> arguments_;
    host::CallFrame frame_;
};

void CallRecord::put(std::size_t i, const Argument& argument) {
    const bool same_kind = arguments_[i].kind() == argument.kind();
    arguments_[i] = argument;
    if (!same_kind) {
        lay_out();
    } else if (argument.kind() == Argument::Kind::text) {
        frame_.set_text(i + 1, argument.text());
    }
}

void CallRecord::answer(sqlite3_context* context, std::span<sqlite3_value*> values) {
    std::size_t at_fault = values.size();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const int type = sqlite3_value_type(values[i]);
        if (type == SQLITE_NULL) return;
        Argument argument = 0.0;
        if (read_argument(calculation_.parameters[i], values[i], type, argument)) {
            put(i, argument);
        } else if (at_fault == values.size()) {
            at_fault = i;
        }
    }
    if (at_fault < values.size()) return give_error(context, unreadable(calculation_, at_fault, values[at_fault]));
    evaluate(context);
}

// The sentence of a refusal comes from a call of its own.
void CallRecord::evaluate(sqlite3_context* context) {
    double result = 0.0;
    const host::Evaluation evaluation = adapters::shared_host().evaluate(frame_.context(), &result);
    if (evaluation.answered() && !std::isnan(result)) {
        give_value(context, calculation_, result);
    } else {
        (void)frame_.take_first_flag();
        give_answer(context, calculation_, adapters::call(calculation_, arguments_));
    }
}

// What SQLite keeps for a registered function.
struct ScalarFunction {
    const Calculation& calculation;
    std::unique_ptr<CallRecord> record{};  // from the first call on
};

void call(sqlite3_context* context, int count, sqlite3_value** values) {
    or_error(context, [&] {
        auto* const function = static_cast<ScalarFunction*>(sqlite3_user_data(context));
        const std::span arguments{values, static_cast<std::size_t>(count)};
        if (!function->record) {
            function->record = std::make_unique<CallRecord>(function->calculation, arguments.size());
        }
        function->record->answer(context, arguments);
    });
}

void forget(void* function) { std::default_delete<ScalarFunction>{}(static_cast<ScalarFunction*>(function)); }

}  // namespace

int register_scalar(sqlite3* database, const Calculation& calculation) {
    const std::string name = adapters::function_name(calculation);
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    int status = SQLITE_OK;
    for (std::size_t count = fewest_arguments(calculation); count <= calculation.parameters.size(); ++count) {
        if (status != SQLITE_OK) return status;
        // SQLite forgets it, also where it does not register the function.
        auto function = std::make_unique<ScalarFunction>(ScalarFunction{.calculation = calculation});
        status = sqlite3_create_function_v2(database, name.c_str(), static_cast<int>(count), flags, function.release(),
                                            call, nullptr, nullptr, forget);
    }
    return status;
}

}  // namespace finance::sqlite

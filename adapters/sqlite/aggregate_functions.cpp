#include <memory>
#include <span>
#include <string>

#include "adapters/common/engine_call.hpp"
#include "adapters/sqlite/flow_window.hpp"
#include "adapters/sqlite/functions.hpp"
#include "adapters/sqlite/values.hpp"

namespace finance::adapters::sqlite {

using catalogue::Calculation;

namespace {

// What SQLite keeps for a registered function.
struct AggregateFunction {
    const Calculation& calculation;
    Way way;
};

const AggregateFunction& function_of(sqlite3_context* context) {
    return *static_cast<const AggregateFunction*>(sqlite3_user_data(context));
}

void forget(void* function) { std::default_delete<AggregateFunction>{}(static_cast<AggregateFunction*>(function)); }

// What SQLite keeps for the group, all zero before the first row.
struct Group {
    FlowWindow* window;
};

// Null where no row came, or there is no memory.
Group* group_of(sqlite3_context* context, int bytes = 0) {
    return static_cast<Group*>(sqlite3_aggregate_context(context, bytes));
}

FlowWindow* made_window(const AggregateFunction& function, std::size_t arguments) {
    FlowWindow* const block = Allocator<FlowWindow>{}.allocate(1);
    try {
        return std::construct_at(block, function.calculation, arguments, function.way);
    } catch (...) {
        Allocator<FlowWindow>{}.deallocate(block, 1);
        throw;
    }
}

FlowWindow& window_of(sqlite3_context* context, std::size_t arguments) {
    Group* const group = group_of(context, sizeof(Group));
    if (group == nullptr) throw std::bad_alloc{};
    if (group->window == nullptr) group->window = made_window(function_of(context), arguments);
    return *group->window;
}

void step(sqlite3_context* context, int count, sqlite3_value** values) {
    or_error(context, [&] {
        const std::span row{values, static_cast<std::size_t>(count)};
        window_of(context, row.size()).enter(row);
    });
}

void inverse(sqlite3_context* context, int count, sqlite3_value** values) {
    or_error(context, [&] {
        const std::span row{values, static_cast<std::size_t>(count)};
        window_of(context, row.size()).leave(row);
    });
}

void value(sqlite3_context* context) {
    or_error(context, [&] {
        const Group* const group = group_of(context);
        if (group == nullptr || group->window == nullptr) return;
        const FlowAnswer& answer = group->window->answer();
        const auto& [calculation, way] = function_of(context);
        if (way != Way::reason) return give_answer(context, calculation, answer.value);
        give_sentence(context, answer.sentence);
    });
}

// SQLite calls it for each group, also where the statement ends early.
void finish(sqlite3_context* context) {
    value(context);
    Group* const group = group_of(context);
    if (group == nullptr || group->window == nullptr) return;
    std::destroy_at(group->window);
    Allocator<FlowWindow>{}.deallocate(group->window, 1);
    group->window = nullptr;
}

}  // namespace

int register_aggregate(sqlite3* database, const Calculation& calculation, Way way) {
    const std::string name = way_name(calculation, way);
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    int status = SQLITE_OK;
    for (std::size_t count = fewest_arguments(calculation); count <= calculation.parameters.size(); ++count) {
        if (status != SQLITE_OK) return status;
        // SQLite forgets it, also where it does not register the function.
        auto function = std::make_unique<AggregateFunction>(AggregateFunction{calculation, way});
        status = sqlite3_create_window_function(database, name.c_str(), static_cast<int>(count), flags,
                                                function.release(), step, finish, value, inverse, forget);
    }
    return status;
}

}  // namespace finance::adapters::sqlite

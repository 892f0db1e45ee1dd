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

const Calculation& calculation_of(sqlite3_context* context) {
    return *static_cast<const Calculation*>(sqlite3_user_data(context));
}

// What SQLite keeps for the group, all zero before the first row.
struct Group {
    FlowWindow* window;
};

// Null where no row came, or there is no memory.
Group* group_of(sqlite3_context* context, int bytes = 0) {
    return static_cast<Group*>(sqlite3_aggregate_context(context, bytes));
}

FlowWindow* made_window(const Calculation& calculation, std::size_t arguments) {
    FlowWindow* const block = Allocator<FlowWindow>{}.allocate(1);
    try {
        return std::construct_at(block, calculation, arguments);
    } catch (...) {
        Allocator<FlowWindow>{}.deallocate(block, 1);
        throw;
    }
}

FlowWindow& window_of(sqlite3_context* context, std::size_t arguments) {
    Group* const group = group_of(context, sizeof(Group));
    if (group == nullptr) throw std::bad_alloc{};
    if (group->window == nullptr) group->window = made_window(calculation_of(context), arguments);
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
        give_answer(context, calculation_of(context), group->window->answer());
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

int register_aggregate(sqlite3* database, const Calculation& calculation) {
    const std::string name = function_name(calculation);
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    auto* row = const_cast<Calculation*>(&calculation);  // handed back as it is
    int status = SQLITE_OK;
    for (std::size_t count = fewest_arguments(calculation); count <= calculation.parameters.size(); ++count) {
        if (status != SQLITE_OK) return status;
        status = sqlite3_create_window_function(database, name.c_str(), static_cast<int>(count), flags, row, step,
                                                finish, value, inverse, nullptr);
    }
    return status;
}

}  // namespace finance::adapters::sqlite

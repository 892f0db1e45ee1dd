// The methods of depreciation side by side.
//
//  (1) Every amount is the module's; a book value is the cost without the amounts so far.
//  (2) Where the first year has not 12 months, DB has a period after the life; the other methods have no amount there.
//  (3) Book values are rounded where decimals are told, and amounts are the differences of those, so that they add up.
//  (4) What a method refuses is named as the schedule's own argument.
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "calls/answer.hpp"
#include "catalogue/catalogue.hpp"
#include "catalogue/depreciation.hpp"
#include "catalogue/text.hpp"
#include "command/number_form.hpp"
#include "command/pictures/schedule_picture.hpp"
#include "command/schedules/schedule.hpp"

namespace finance::command {

namespace {

namespace rules = catalogue::depreciation_parameters;

// VDB's, whose other rule is about an argument that is always given here.
constexpr catalogue::Parameter factor = [] {
    catalogue::Parameter parameter = rules::variable_declining[5];
    parameter.rule = "must not be missing";
    return parameter;
}();

}  // namespace

// The arguments of the methods, each once, with the rules that they have there.
constexpr std::array<catalogue::Parameter, 5> depreciation_parameters{rules::cost, rules::salvage, rules::counted_life,
                                                                      factor, rules::fixed_declining[4]};
static_assert(factor.name == "factor" && depreciation_parameters[4].name == "month");

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr std::string_view amounts = "depreciation of the period";
constexpr std::string_view book_values = "book value at its end";

constexpr std::array columns{
    Column{"period", "period", "", false},        Column{"SLN", "SLN", amounts, true, true},
    Column{"SYD", "SYD", amounts, true, true},    Column{"DB", "DB", amounts, true, true},
    Column{"DDB", "DDB", amounts, true, true},    Column{"VDB", "VDB", amounts, true, true},
    Column{"SLN book value", "SLN", book_values}, Column{"SYD book value", "SYD", book_values},
    Column{"DB book value", "DB", book_values},   Column{"DDB book value", "DDB", book_values},
    Column{"VDB book value", "VDB", book_values},
};

constexpr catalogue::Calculation depreciation_calculation{
    .name = "schedule depreciation", .parameters = depreciation_parameters, .failure = catalogue::never_fails};

struct Terms {
    host::Argument cost, salvage, life, factor, month;
};

using Call = std::vector<host::Argument>;

struct Method {
    std::string_view name;
    Call (*call)(const Terms& terms, std::int64_t period);
};

constexpr std::array<Method, depreciation_methods.size()> methods{{
    {"SLN",
     [](const Terms& t, std::int64_t) -> Call {
         return {t.cost, t.salvage, t.life};
     }},
    {"SYD",
     [](const Terms& t, std::int64_t k) -> Call {
         return {t.cost, t.salvage, t.life, k};
     }},
    {"DB",
     [](const Terms& t, std::int64_t k) -> Call {
         return {t.cost, t.salvage, t.life, k, t.month};
     }},
    {"DDB",
     [](const Terms& t, std::int64_t k) -> Call {
         return {t.cost, t.salvage, t.life, k, t.factor};
     }},
    {"VDB", [](const Terms& t, std::int64_t k) -> Call { return {t.cost, t.salvage, t.life, k - 1, k, t.factor, 0}; }},
}};

// factor and month where they are left out.
std::vector<host::Argument> read(Words words, const Settings& settings) {
    constexpr std::array<double, 5> defaults{none, none, none, 2.0, 12.0};
    std::vector<host::Argument> arguments;
    for (const host::Argument& given : schedule_arguments(depreciation_calculation, words, settings)) {
        const double left_out = defaults[arguments.size()];
        const bool is_left_out = given.kind() == host::Argument::Kind::absent && !std::isnan(left_out);
        arguments.push_back(is_left_out ? host::Argument{left_out} : given);
    }
    while (arguments.size() < defaults.size()) arguments.emplace_back(defaults[arguments.size()]);
    return arguments;
}

class Depreciation {
public:
    Depreciation(const std::vector<host::Argument>& arguments, const host::EmbeddedHost& host,
                 const std::optional<int>& decimals)
        : terms_{arguments[0], arguments[1], arguments[2], arguments[3], arguments[4]},
          host_{&host},
          decimals_{decimals} {
        for (const Method& method : methods) (void)amount(method, 1);
        life_ = period_count(depreciation_calculation.name, terms_.life.number());
        book_.fill(terms_.cost.number());
        shown_.fill(shown(terms_.cost.number()));
    }

    [[nodiscard]] std::int64_t rows() const { return life_ + (terms_.month.number() == 12.0 ? 0 : 1); }

    Row next() {
        ++period_;
        Row row{static_cast<double>(period_)};
        for (std::size_t i = 0; i < methods.size(); ++i) {
            const bool over = period_ > life_ && methods[i].name != "DB";
            row.push_back(over ? none : amount(methods[i], period_));
            if (over) continue;
            book_[i] -= row.back();
            if (decimals_) row.back() = shown(shown_[i] - shown(book_[i]));
            shown_[i] = shown(book_[i]);
        }
        row.insert(row.end(), shown_.begin(), shown_.end());
        return row;
    }

    [[nodiscard]] std::string title() const {
        const auto text = [](const host::Argument& argument) { return catalogue::plain_text(argument.number()); };
        return "Depreciation: cost " + text(terms_.cost) + ", salvage " + text(terms_.salvage) + ", life " +
               text(terms_.life) + ", factor " + text(terms_.factor) + ", " + text(terms_.month) +
               " months in the first year";
    }
    [[nodiscard]] double cost() const { return terms_.cost.number(); }

private:
    [[nodiscard]] double shown(double amount) const { return decimals_ ? rounded(amount, *decimals_) : amount; }
    [[nodiscard]] double amount(const Method& method, std::int64_t period) const {
        const Call call = method.call(terms_, period);
        host::Evaluation evaluation = host_->evaluate(method.name, call);
        if (evaluation.answered()) return evaluation.value;
        const catalogue::Calculation& refusing = *catalogue::find(method.name);
        const int fault = calls::argument_at_fault(refusing, call, evaluation.flagged);
        evaluation.flagged = fault < 1 ? -1 : own_position(refusing, static_cast<std::size_t>(fault));
        const std::array all{terms_.cost, terms_.salvage, terms_.life, terms_.factor, terms_.month};
        throw calls::CallRefused{calls::answer_of(depreciation_calculation, all, evaluation).named_sentence()};
    }
    static int own_position(const catalogue::Calculation& method, std::size_t position) {
        const std::string_view name = method.parameters[position - 1].name;
        return static_cast<int>(catalogue::find_parameter(depreciation_calculation, name)) + 1;
    }

    Terms terms_;
    const host::EmbeddedHost* host_;
    std::optional<int> decimals_;
    std::array<double, methods.size()> book_{};
    std::array<double, methods.size()> shown_{};
    std::int64_t life_ = 0;
    std::int64_t period_ = 0;
};

}  // namespace

Schedule depreciation_schedule(Words words, const Settings& settings, const std::optional<int>& decimals) {
    Depreciation asset{read(words, settings), settings.host.get(), decimals};
    const DepreciationPicture picture{.title = asset.title(), .cost = asset.cost()};
    std::vector<std::string> titles{picture.title};
    for (const Column& column : std::span{columns}.subspan(1)) titles.emplace_back(column.name);
    return {.titles = std::move(titles),
            .columns = columns,
            .rows = asset.rows(),
            .next_row = [asset]() mutable { return asset.next(); },
            .picture = [picture](std::span<const Row> all) { return depreciation_script(picture, all); }};
}

}  // namespace finance::command

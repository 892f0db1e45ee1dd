#include "adapters/sqlite/flow_window.hpp"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "adapters/common/engine_call.hpp"
#include "adapters/sqlite/values.hpp"
#include "calls/lists.hpp"

namespace finance::adapters::sqlite {

// Values are moved down when half are gone: each is moved once on the average.
void Flows::pop() {
    constexpr std::size_t worth_moving = 64;
    ++gone_;
    if (gone_ < worth_moving || 2 * gone_ < values_.size()) return;
    values_.erase(values_.begin(), values_.begin() + static_cast<std::ptrdiff_t>(gone_));
    gone_ = 0;
}

// ---- Scalars

bool FlowWindow::Scalar::is(const host::Argument& argument) const {
    if (argument.kind() == host::Argument::Kind::text) return text && std::string_view{*text} == argument.text();
    return !text && number == argument.number();
}

host::Argument FlowWindow::Scalar::argument() const {
    return text ? host::Argument{std::string_view{*text}} : host::Argument{number};
}

bool FlowWindow::belongs_to(const Run& run) const {
    for (std::size_t i = 0; i < row_.size(); ++i) {
        if (!is_list(i) && !run.scalars[i].is(row_[i])) return false;
    }
    return true;
}

void FlowWindow::count_in_run() {
    if (runs_.empty() || !belongs_to(runs_.back())) {
        Run run{.scalars = Vector<Scalar>(row_.size())};
        for (std::size_t i = 0; i < row_.size(); ++i) {
            if (is_list(i)) continue;
            if (row_[i].kind() == host::Argument::Kind::text) run.scalars[i].text.emplace(row_[i].text());
            if (row_[i].kind() == host::Argument::Kind::number) run.scalars[i].number = row_[i].number();
        }
        runs_.push_back(std::move(run));
    }
    ++runs_.back().rows;
}

// The sentence for the first one that differs between the first two runs.
std::string FlowWindow::changed_scalar() const {
    std::size_t i = 0;
    while (runs_[0].scalars[i] == runs_[1].scalars[i]) ++i;
    return std::string{calculation_.name} + ": argument " + std::to_string(i + 1) + " (" +
           std::string{calculation_.parameters[i].name} + "): must be the same in every row";
}

// ---- Rows

void FlowWindow::read(std::span<sqlite3_value*> row) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (read_argument(calculation_.parameters[i], row[i], row_[i])) continue;
        throw std::invalid_argument{unreadable(calculation_, i, row[i])};
    }
}

void FlowWindow::enter(std::span<sqlite3_value*> row) {
    if (!whole_) return;
    answer_.reset();
    whole_ = false;
    if (std::ranges::any_of(row, is_null)) {
        ++rows_with_null_;
    } else {
        read(row);
        count_in_run();
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (is_list(i)) lists_[i].push(row_[i].number());
        }
    }
    whole_ = true;
}

void FlowWindow::leave(std::span<sqlite3_value*> row) {
    if (!whole_) return;
    answer_.reset();
    if (std::ranges::any_of(row, is_null)) {
        --rows_with_null_;
        return;
    }
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (is_list(i)) lists_[i].pop();
    }
    if (--runs_.front().rows == 0) runs_.pop_front();
}

// ---- Answers

std::optional<double> FlowWindow::answer() {
    if (!answer_) answer_ = calculated();
    return *answer_;
}

std::optional<double> FlowWindow::calculated() const {
    if (!whole_ || rows_with_null_ > 0 || runs_.empty()) return {};
    if (runs_.size() > 1) throw calls::CallRefused{changed_scalar()};
    std::vector<host::Argument> scalars;
    std::vector<std::span<const double>> lists;
    for (std::size_t i = 0; i < row_.size(); ++i) {
        scalars.push_back(runs_.front().scalars[i].argument());
        lists.push_back(lists_[i].values());
    }
    return call(calculation_, calls::unrolled(calculation_, scalars, lists));
}

}  // namespace finance::adapters::sqlite

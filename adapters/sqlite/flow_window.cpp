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

std::size_t FlowWindow::read(std::span<sqlite3_value*> row) {
    std::size_t i = 0;
    while (i < row.size() && read_argument(calculation_.parameters[i], row[i], row_[i])) ++i;
    return i;
}

void FlowWindow::count_unreadable(std::size_t argument, sqlite3_value* value) {
    if (way_ == Way::attempt) {
        unreadable_.emplace_back();
        return;
    }
    const std::string sentence = unreadable(calculation_, argument, value);
    if (way_ == Way::answer) throw std::invalid_argument{sentence};
    unreadable_.emplace_back(std::string_view{sentence});
}

void FlowWindow::enter(std::span<sqlite3_value*> row) {
    if (!whole_) return;
    answer_.reset();
    whole_ = false;
    if (std::ranges::any_of(row, is_null)) {
        ++rows_with_null_;
    } else if (const std::size_t at_fault = read(row); at_fault < row.size()) {
        count_unreadable(at_fault, row[at_fault]);
    } else {
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
    if (!unreadable_.empty() && read(row) < row.size()) return unreadable_.pop_front();
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (is_list(i)) lists_[i].pop();
    }
    if (--runs_.front().rows == 0) runs_.pop_front();
}

// ---- Answers

const FlowAnswer& FlowWindow::answer() {
    if (!answer_) answer_ = calculated();
    return *answer_;
}

FlowAnswer FlowWindow::refused(std::string sentence) const {
    if (way_ == Way::answer) throw calls::CallRefused{sentence};
    return {.sentence = std::move(sentence)};
}

FlowAnswer FlowWindow::calculated() const {
    if (!whole_) return {};
    if (!unreadable_.empty()) return refused(std::string{unreadable_.front()});
    if (rows_with_null_ > 0 || runs_.empty()) return {};
    if (runs_.size() > 1) return refused(changed_scalar());
    std::vector<host::Argument> scalars;
    std::vector<std::span<const double>> lists;
    for (std::size_t i = 0; i < row_.size(); ++i) {
        scalars.push_back(runs_.front().scalars[i].argument());
        lists.push_back(lists_[i].values());
    }
    const std::vector<host::Argument> arguments = calls::unrolled(calculation_, scalars, lists);
    if (way_ == Way::reason) return {.sentence = why_no_value(calculation_, arguments)};
    return {.value = call(calculation_, arguments, way_)};
}

}  // namespace finance::adapters::sqlite

#include "command/tables/row_object.hpp"

#include <functional>
#include <set>

namespace finance::command {

namespace {

std::string name_of_place(std::size_t column) { return '$' + std::to_string(column + 1); }

}  // namespace

RowObject::RowObject(std::span<const std::string> names, char delimiter) : delimiter_{delimiter} {
    std::set<std::string, std::less<>> there;
    for (const std::string& name : names) {
        const bool taken = name.empty() || !there.insert(name).second;
        names_.push_back(taken ? name_of_place(names_.size()) : name);
        if (taken) there.insert(names_.back());
    }
}

void RowObject::append(JsonText& json, const Record& record) {
    const std::size_t count = split_record(record, delimiter_, fields_);
    if (count > fields_.size()) {
        fields_.resize(count);
        split_record(record, delimiter_, fields_);
    }
    json.object();
    for (std::size_t i = 0; i < count; ++i) {
        json.member(i < names_.size() ? names_[i] : name_of_place(i), field_text(fields_[i], scratch_));
    }
    json.end_object();
}

}  // namespace finance::command

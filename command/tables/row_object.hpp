// A row's own columns as a JSON object: what its fields say, as texts, under the names of the header.
//
//  (1) A column without a name, or whose name another one before it has, is called by its place: $2.
//  (2) A row with too few fields has as many members as fields; fields beyond the header are called by their places.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "command/json_text.hpp"
#include "command/tables/table_record.hpp"

namespace finance::command {

class RowObject {
public:
    // names: of the table's columns.
    RowObject(std::span<const std::string> names, char delimiter);

    // {"rate":"0.5%","nper":"360"} as the next value.
    void append(JsonText& json, const Record& record);

private:
    std::vector<std::string> names_;
    char delimiter_;
    std::vector<std::string_view> fields_;  // of one row
    std::string scratch_;                   // of one field
};

}  // namespace finance::command

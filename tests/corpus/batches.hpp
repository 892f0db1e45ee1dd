// The corpus as batches: rows are calls of one calculation with the same number of arguments.
#pragma once

#include <algorithm>
#include <map>
#include <vector>

#include "abi/status.hpp"
#include "host/batch.hpp"
#include "tests/corpus/corpus.hpp"

namespace finance::test {

inline bool as_drawn(const Draw& draw, const Outcome& got) {
    return (got.status == STATUS_SUCCESS) == (draw.status == STATUS_SUCCESS) && got.flagged == draw.flagged &&
           same_result(draw, got.written, got.value) && got.host_bytes_kept;
}

struct Rows {
    std::vector<const Draw*> draws;
    std::vector<std::vector<host::Argument>> arguments;  // of a column, one a row
};

inline std::map<std::size_t, Rows> rows_by_count(const std::vector<Draw>& draws) {
    std::map<std::size_t, Rows> rows;
    for (const Draw& draw : draws) {
        Rows& group = rows[draw.arguments.size()];
        const std::vector<host::Argument> arguments = host_arguments(draw);
        group.draws.push_back(&draw);
        group.arguments.resize(arguments.size());
        for (std::size_t i = 0; i < arguments.size(); ++i) group.arguments[i].push_back(arguments[i]);
    }
    return rows;
}

// What a batch has said of its rows.
struct Answers {
    std::vector<double> results;
    std::vector<std::uint32_t> statuses;
    std::vector<std::int32_t> flagged;

    explicit Answers(std::size_t rows) : results(rows), statuses(rows), flagged(rows) {}
    [[nodiscard]] host::Batch batch(const Draw& draw, std::span<const host::Column> columns) {
        return {draw.name, columns, results.size(), results.data(), statuses.data(), flagged.data()};
    }
};

inline bool as_drawn(const Draw& draw, const Answers& answers, std::size_t row) {
    Outcome got;
    got.status = answers.statuses[row];
    got.written = draw.result != "untouched";  // the host presets it
    got.value = answers.results[row];
    got.host_bytes_kept = true;
    if (answers.flagged[row] >= 0) got.flagged = {answers.flagged[row]};
    return as_drawn(draw, got);
}

}  // namespace finance::test

// A row of a block as the call that it stands for, for what is read of it as of a call, by the takers of abi/arguments.hpp.
// It has no result: a taker that refuses leaves nothing behind.
#pragma once

#include "abi/arguments.hpp"
#include "lanes/rows.hpp"

namespace finance {

class CallOfRow {
public:
    CallOfRow(const RowBlock& block, std::size_t row) : count_{block.count} {
        for (std::size_t i = 1; i < count_; ++i) {
            numbers_[i] = block.columns[i][row];
            call_.slots[i] = {ZELKOVAN_TYPE_NUMERIC, 0, {}, numbers_ + i};
        }
    }
    Arguments arguments() { return {&call_.context, nullptr, static_cast<std::int64_t>(count_)}; }

private:
    struct Call {
        HostCallContext context;
        ArgSlot slots[RowBlock::most_columns];
    };

    std::size_t count_;  // of arguments, the name with them
    double numbers_[RowBlock::most_columns];
    Call call_;
};

}  // namespace finance

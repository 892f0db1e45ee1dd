#include "adapters/postgresql/prepared_call.hpp"

#include <bit>
#include <memory>
#include <string_view>
#include <vector>

#include "abi/zelkovan.h"
#include "adapters/common/engine_call.hpp"

namespace finance::adapters::postgresql {

PreparedCall& PreparedCall::of(const catalogue::Calculation& calculation) {
    static std::vector<std::unique_ptr<PreparedCall>> calls(catalogue::calculations().size());
    auto& call = calls[static_cast<std::size_t>(&calculation - catalogue::calculations().data())];
    if (!call) call = std::make_unique<PreparedCall>(calculation);
    return *call;
}

void PreparedCall::lay_out(const Row& row) {
    std::vector<host::Argument> arguments;
    for (std::size_t i = 0; i < row.count; ++i) {
        if (row.is_text(i)) {
            arguments.emplace_back(std::string_view{});
        } else {
            arguments.emplace_back(0.0);
        }
    }
    count_ = SIZE_MAX;  // until it is done
    frame_.fill(calculation_.name, arguments, 0, false);
    for (std::size_t i = 0; i < row.count; ++i) {
        if (!row.is_text(i)) frame_.slot(i + 1).value = const_cast<double*>(&row.numbers[i]);  // never written to
    }
    count_ = row.count;
    texts_ = row.texts_given;
    numbers_ = row.numbers;
}

host::Evaluation PreparedCall::make(const Row& row) {
    const bool fits = row.count == count_ && row.texts_given == texts_ && row.numbers == numbers_;
    if (!fits) lay_out(row);
    for (std::uint32_t texts = texts_; texts != 0; texts &= texts - 1) {
        const auto i = static_cast<std::size_t>(std::countr_zero(texts));
        frame_.set_text(i + 1, {row.texts[i].first, row.texts[i].size});
    }
    auto result = std::bit_cast<double>(ZELKOVAN_MISSING_VALUE_BITS);
    host::Evaluation evaluation = shared_host().evaluate(frame_.context(), &result);
    if (evaluation.flagged >= 0) frame_.take_first_flag();
    return evaluation;
}

}  // namespace finance::adapters::postgresql

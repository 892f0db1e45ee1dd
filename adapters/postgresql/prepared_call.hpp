// A calculation's call record, laid out once and used again while the arguments are of the same kinds: the rows of a query
// are, and laying out takes as long as a short calculation. A server's process is one thread, and a call asks for no other.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adapters/postgresql/calls.hpp"
#include "catalogue/catalogue.hpp"
#include "host/call_frame.hpp"
#include "host/embedded_host.hpp"

namespace finance::adapters::postgresql {

class PreparedCall {
public:
    explicit PreparedCall(const catalogue::Calculation& calculation) : calculation_{calculation} {}

    // The one of that calculation, which is of the catalogue's table.
    static PreparedCall& of(const catalogue::Calculation& calculation);

    [[nodiscard]] const catalogue::Calculation& calculation() const { return calculation_; }

    // Of a row without lists.
    host::Evaluation make(const Row& row);

private:
    void lay_out(const Row& row);

    const catalogue::Calculation& calculation_;
    host::CallFrame frame_{};
    // What the record is laid out for. Its slots point into the row's numbers: rows of a query lie at one address.
    std::size_t count_ = SIZE_MAX;
    std::uint32_t texts_ = 0;
    const double* numbers_ = nullptr;
};

}  // namespace finance::adapters::postgresql

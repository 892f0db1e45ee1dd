#include "abi/arguments.hpp"

#include "abi/basis.hpp"

namespace finance {

[[gnu::cold]] void Arguments::mark(int i, Status status) {
    flag_invalid(slots_[i]);
    fail();
    status_ = status;
}

[[gnu::cold]] Status Arguments::fail() {
    if (result_ != nullptr) *result_ = MISSING_VALUE;
    return STATUS_INVALID_ARGUMENT;
}

bool Arguments::basis(int i, std::int32_t& value) { return !given(i) || read_basis(slots_[i], value) || refuse(i); }

}  // namespace finance

// Calls of the module that is linked in, for what tells people of them (calls/).
#pragma once

#include "host/evaluator.hpp"

namespace finance::wasm {

class ModuleCalls final : public host::Evaluator {
public:
    // Without memory for its record a call is refused, no argument being at fault.
    [[nodiscard]] host::Evaluation evaluate(std::string_view name,
                                            std::span<const host::Argument> arguments) const override;
};

}  // namespace finance::wasm

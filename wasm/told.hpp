// Texts as JavaScript reads them.
#pragma once

#include <cstdint>
#include <string>

#include "wasm/memory.hpp"

namespace finance::wasm {

struct Text {
    const char* place;
    std::uint32_t size;  // bytes, of UTF-8
};

// It is given back with all else that the call asked for.
inline Text kept(const std::string& text) {
    auto* place = static_cast<char*>(allocate(text.size()));
    if (place == nullptr) return {};
    text.copy(place, text.size());
    return {place, static_cast<std::uint32_t>(text.size())};
}

}  // namespace finance::wasm

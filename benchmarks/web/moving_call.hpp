// A call record that is laid out once, whose pointers move from row to row: rows as wasm/calls.cpp has them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "host/batch.hpp"

namespace finance::bench {

class MovingCall {
public:
    MovingCall(std::string_view name, std::span<const host::Column> columns)
        : words_((sizeof(HostCallContext) + (columns.size() + 1) * sizeof(ArgSlot)) / sizeof(std::uint64_t)),
          texts_(columns.size() + 1),
          columns_{columns} {
        context()->count = static_cast<std::int64_t>(columns.size()) + 1;
        set_text(0, name);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const host::Argument& argument = columns[i].sample();
            if (argument.kind() == host::Argument::Kind::text) {
                set_text(i + 1, argument.text());
            } else {
                set(i + 1, ZELKOVAN_TYPE_NUMERIC, &argument.number());
            }
        }
    }

    void make_all(host::Dispatcher dispatcher, std::span<double> results) {
        for (std::size_t row = 0; row < results.size(); ++row) {
            for (std::size_t i = 0; i < columns_.size(); ++i) {
                if (columns_[i].varies()) slot(i + 1).value = const_cast<void*>(columns_[i].at(row));
            }
            results[row] = std::bit_cast<double>(ZELKOVAN_MISSING_VALUE_BITS);
            (void)dispatcher(context(), &results[row]);
        }
    }

private:
    HostCallContext* context() { return reinterpret_cast<HostCallContext*>(words_.data()); }
    ArgSlot& slot(std::size_t i) { return reinterpret_cast<ArgSlot*>(context() + 1)[i]; }
    void set(std::size_t i, std::uint8_t type, const void* value) {
        slot(i) = {.type = type, .flags = 0, .host_owned = {}, .value = const_cast<void*>(value)};
    }
    void set_text(std::size_t i, std::string_view text) {
        texts_[i].text = const_cast<char*>(text.data());
        texts_[i].length = static_cast<std::uint32_t>(text.size());
        set(i, ZELKOVAN_TYPE_CHARACTER, &texts_[i]);
    }

    std::vector<std::uint64_t> words_;  // the context, then the slots
    std::vector<CharacterDescriptor> texts_;
    std::span<const host::Column> columns_;
};

}  // namespace finance::bench

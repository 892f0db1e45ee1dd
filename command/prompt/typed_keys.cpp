#include "command/prompt/typed_keys.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace finance::command {

namespace {

constexpr wchar_t escape = L'\x1B', tab = L'\t', put_back = L'\x19', unused = L'\x07';
constexpr std::size_t longest_completion = 64;

// Arrows up and down, Ctrl-P, Ctrl-N, Ctrl-R, and their like with Meta.
constexpr std::array<std::wstring_view, 11> leaving{L"\x10",   L"\x0E",  L"\x12",  L"\x1B[A", L"\x1B[B", L"\x1BOA",
                                                    L"\x1BOB", L"\x1Bp", L"\x1Bn", L"\x1BP",  L"\x1BN"};

// Of keys that begin with an escape: digits and brackets go on.
bool ends(std::wstring_view key) {
    const wchar_t last = key.back();
    if (key.front() != escape) return true;
    if (key.size() <= 2) return last != escape && last != L'[' && last != L'O';
    return (last < L'0' || last > L'9') && last != L';';
}

}  // namespace

bool TypedKeys::leaves_line() const { return std::ranges::find(leaving, std::wstring_view{key_}) != leaving.end(); }

void TypedKeys::count(wchar_t character) {
    if (key_.size() == 1 && character >= L' ') ++length_;
    if (character == tab) length_ += longest_completion;
    if (character == put_back) length_ += longest_;
    longest_ = std::max(longest_, length_);
}

wchar_t TypedKeys::given(wchar_t character) {
    constexpr wchar_t to_the_right = L'C';  // in place of the last letter of an arrow
    if (character == escape) key_.clear();
    key_ += character;
    count(character);
    const bool held = leaves_line() && length_ > longest_left;
    const bool arrow = key_.size() > 2;
    if (ends(key_)) key_.clear();
    if (!held) return character;
    return arrow ? to_the_right : unused;
}

}  // namespace finance::command

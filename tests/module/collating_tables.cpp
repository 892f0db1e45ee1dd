#include "tests/module/collating_tables.hpp"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace finance::test {

namespace {

constexpr int letters = 26;

unsigned char& of_letter(ByteTable& table, int letter) { return table[static_cast<std::size_t>('A' + letter)]; }
unsigned char& of_small_letter(ByteTable& table, int letter) { return table[static_cast<std::size_t>('a' + letter)]; }

// The capitals one after the other from a value on, the small letters the same.
ByteTable from(int first) {
    ByteTable table = plain_table();
    for (int i = 0; i < letters; ++i) {
        of_letter(table, i) = static_cast<unsigned char>(first + i);
        of_small_letter(table, i) = static_cast<unsigned char>(first + i);
    }
    return table;
}

ByteTable to_small_letters() {
    ByteTable table = plain_table();
    for (int i = 0; i < letters; ++i) of_letter(table, i) = of_small_letter(table, i);
    return table;
}

// As on machines whose letters stand in three runs with others between them.
ByteTable in_three_runs() {
    ByteTable table = plain_table();
    for (int i = 0; i < letters; ++i) {
        const int run = i < 9 ? 0xC1 : i < 18 ? 0xD1 - 9 : 0xE2 - 18;
        of_letter(table, i) = static_cast<unsigned char>(run + i);
        of_small_letter(table, i) = static_cast<unsigned char>(run + i - 0x40);
    }
    return table;
}

ByteTable drawn_table(std::mt19937_64& draw, int values) {
    ByteTable table{};
    for (unsigned char& value : table) value = static_cast<unsigned char>(draw() % static_cast<std::uint64_t>(values));
    return table;
}

ByteTable permutation(std::mt19937_64& draw) {
    ByteTable table = plain_table();
    std::ranges::shuffle(table, draw);
    return table;
}

// The capitals on drawn values above a bound in their order, all else anywhere.
ByteTable drawn_in_order(std::mt19937_64& draw, int bound, bool folding) {
    ByteTable values = plain_table();
    std::shuffle(values.begin() + bound, values.end(), draw);
    std::sort(values.begin() + bound, values.begin() + bound + letters);
    ByteTable table = drawn_table(draw, 256);
    for (int i = 0; i < letters; ++i) {
        of_letter(table, i) = values[static_cast<std::size_t>(bound + i)];
        if (folding) of_small_letter(table, i) = of_letter(table, i);
    }
    return table;
}

}  // namespace

std::vector<NamedTable> tables_that_ascend() {
    std::vector<NamedTable> tables{
        {"plain", plain_table()},
        {"folding", folding_table()},
        {"to small letters", to_small_letters()},
        {"in three runs", in_three_runs()},
    };
    for (const int first : {0, 1, 0x06, 0x07, 0x1E, 0x1F, 0x20, 0x21, 0x22, 0x7F, 0x80, 0xE5, 0xE6}) {
        tables.push_back({std::string{"from "}.append(std::to_string(first)), from(first)});
    }
    return tables;
}

// One letter out of its place, by as little as can be or on a value that means something; one small letter that is not
// the capital; other bytes as letters or as blanks.
std::vector<NamedTable> tables_with_one_change() {
    std::vector<NamedTable> tables;
    for (const bool folding : {false, true}) {
        const ByteTable table = folding ? folding_table() : plain_table();
        const std::string kind = folding ? "folding, " : "plain, ";
        for (int i = 0; i < letters; ++i) {
            const std::string letter(1, static_cast<char>('A' + i));
            const auto add = [&](const std::string& change, const ByteTable& changed) {
                tables.push_back({std::string{kind}.append(letter).append(change), changed});
            };
            for (const int value : {0, 0x1F, 0x20, 0x21, 0x7F, 0x80, 0xFF, 'A' + i - 1, 'A' + i + 1}) {
                ByteTable changed = table;
                of_letter(changed, i) = static_cast<unsigned char>(value);
                add(" is " + std::to_string(value), changed);
            }
            ByteTable small_as_next = table;
            of_small_letter(small_as_next, i) = of_letter(small_as_next, (i + 1) % letters);
            add(" small is the next", small_as_next);
            ByteTable small_alone = plain_table();
            of_small_letter(small_alone, i) = of_letter(small_alone, i);
            add(" small alone is folded", small_alone);
            ByteTable small_as_itself = folding_table();
            of_small_letter(small_as_itself, i) = static_cast<unsigned char>('a' + i);
            add(" small alone is not folded", small_as_itself);
            ByteTable digit_as_letter = table;
            digit_as_letter['7'] = of_letter(digit_as_letter, i);
            add(" is also 7", digit_as_letter);
            if (i + 1 == letters) continue;
            ByteTable swapped = table;
            std::swap(of_letter(swapped, i), of_letter(swapped, i + 1));
            add(" after the next", swapped);
        }
        ByteTable line_as_blank = table;
        line_as_blank['_'] = 0x20;
        tables.push_back({kind + "_ is blank", line_as_blank});
        ByteTable blank_as_letter = table;
        blank_as_letter[' '] = 'P';
        tables.push_back({kind + "blank is P", blank_as_letter});
    }
    return tables;
}

std::vector<NamedTable> random_tables(std::mt19937_64& draw, int of_each_kind) {
    std::vector<NamedTable> tables;
    for (int i = 0; i < of_each_kind; ++i) {
        const std::string number = std::string{" "}.append(std::to_string(i));
        tables.push_back({"permutation" + number, permutation(draw)});
        tables.push_back({"two values" + number, drawn_table(draw, 2)});
        tables.push_back({"40 values" + number, drawn_table(draw, 40)});
        tables.push_back({"256 values" + number, drawn_table(draw, 256)});
        tables.push_back({"in order" + number, drawn_in_order(draw, 0x21, i % 2 == 0)});
        tables.push_back({"in order from 0" + number, drawn_in_order(draw, 0, i % 2 == 0)});
    }
    return tables;
}

}  // namespace finance::test

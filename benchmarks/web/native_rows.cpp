// Rows as the native build calculates them, for rows.js, which has the same rows calculated in WebAssembly in between.
//
//     native_rows FOLDER NAME...    the first table of column_cases.cpp of each calculation
//
// Writes the columns that vary into FOLDER/NAME.columns, one after the other, and for each calculation a line "NAME TAB
// rows TAB description TAB arguments": an argument is "column", "number 100" or "text 30/360". Then it answers lines:
//
//     calls NAME      every row a call of its own of the module's entry, by one record whose pointers move to the row
//     columns NAME    all rows together, side by side, by the best instructions that there are
//
// each with nanoseconds a row, the answers of the last in FOLDER/NAME.answers.
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/columns/column_cases.hpp"
#include "benchmarks/web/moving_call.hpp"

namespace finance::bench {

namespace {

using host::EmbeddedHost;

struct Work {
    Table table{};
    std::vector<double> answers{};
};

void write(const std::string& path, const std::vector<double>& numbers) {
    std::ofstream{path, std::ios::binary}.write(reinterpret_cast<const char*>(numbers.data()),
                                                static_cast<std::streamsize>(numbers.size() * sizeof(double)));
}

const Case& first_case(const std::string& name) {
    for (const Case& one : column_cases()) {
        if (name == one.name) return one;
    }
    throw std::runtime_error{"no table of " + name};
}

std::string described(const Column& column) {
    if (column.varies()) return "column";
    std::ostringstream text;
    text.precision(17);
    const bool is_text = column.sample().kind() == Argument::Kind::text;
    is_text ? text << "text " << column.sample().text() : text << "number " << column.sample().number();
    return text.str();
}

// The columns are there once the line is.
void tell(const std::string& folder, const std::string& name, const Case& from, const Table& table) {
    std::vector<double> numbers;
    std::ostringstream line;
    line << name << '\t' << table.rows << '\t' << from.description;
    for (const Column& column : table.columns_of_calls) {
        line << '\t' << described(column);
        for (std::size_t row = 0; column.varies() && row < table.rows; ++row) {
            numbers.push_back(column.argument(row).number());
        }
    }
    write(folder + "/" + name + ".columns", numbers);
    std::cout << line.str() << std::endl;
}

double time_of(const EmbeddedHost& host, const std::string& way, const std::string& name, Work& work) {
    const host::Batch batch{
        .name = name, .columns = work.table.columns, .rows = work.table.rows, .results = work.answers.data()};
    MovingCall call{name, work.table.columns_of_calls};
    const auto start = std::chrono::steady_clock::now();
    if (way == "columns") {
        (void)host.evaluate_rows(batch);
    } else {
        call.make_all(host.dispatcher(), work.answers);
    }
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() /
           static_cast<double>(work.table.rows);
}

void serve(const std::string& folder, const std::vector<std::string>& names) {
    const EmbeddedHost host{ZELKOVAN_MODULE};
    std::map<std::string, Work> works;
    for (const std::string& name : names) {
        Random random;
        Work& work = works[name];
        first_case(name).fill(work.table, random);
        work.answers.resize(work.table.rows);
        tell(folder, name, first_case(name), work.table);
    }
    std::string way, name;
    while (std::cin >> way >> name) {
        Work& work = works.at(name);
        const double nanoseconds = time_of(host, way, name, work);
        write(folder + "/" + name + ".answers", work.answers);
        std::cout << nanoseconds << std::endl;
    }
}

}  // namespace

}  // namespace finance::bench

int main(int count, char** words) {
    if (count < 3) {
        std::fprintf(stderr, "native_rows FOLDER NAME...\n");
        return 2;
    }
    try {
        finance::bench::serve(words[1], {words + 2, words + count});
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "native_rows: %s\n", error.what());
        return 1;
    }
}

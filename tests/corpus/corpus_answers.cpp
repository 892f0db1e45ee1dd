// Calls in, one a line (name, tab, arguments), the same calls with the module's own verdict out.
#include <iostream>
#include <string>

#include "tests/model/draws.hpp"

int main() {
    using namespace finance::test;
    ensure_host();
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << line << '\t' << verdict_of(draw_of(line + "\t0\t-\tuntouched")) << '\n';
    }
}

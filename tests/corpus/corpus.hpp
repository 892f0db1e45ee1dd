// The corpus, for tests that do more with its calls than to make them once.
#pragma once

#include <string>
#include <vector>

#include "host/embedded_host.hpp"
#include "tests/model/draws.hpp"

namespace finance::test {

// The calls of one calculation: the first so many, or all.
inline std::vector<Draw> corpus_of(const std::string& name, int most = 0) {
    const std::string all = "xz --decompress --stdout '" ZELKOVAN_CORPUS "/" + name + ".tsv.xz'";
    return read_draws(most > 0 ? all + " | head -n " + std::to_string(most) : all);
}

// Its arguments for the embedded host: views into the draw.
inline std::vector<host::Argument> host_arguments(const Draw& draw) {
    std::vector<host::Argument> arguments;
    for (const Arg& arg : draw.arguments) {
        switch (arg.kind()) {
            case Arg::Kind::text:
                arguments.emplace_back(arg.text());
                break;
            case Arg::Kind::absent_text:
                arguments.push_back(host::Argument::absent_text());
                break;
            case Arg::Kind::number:
                arguments.emplace_back(arg.number());
                break;
            default:
                arguments.push_back(host::Argument::absent());
        }
    }
    return arguments;
}

}  // namespace finance::test

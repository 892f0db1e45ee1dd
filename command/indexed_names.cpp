#include "command/indexed_names.hpp"

#include <algorithm>
#include <utility>

#include "catalogue/text.hpp"

namespace finance::command {

bool CaselessLess::operator()(std::string_view a, std::string_view b) const {
    return std::ranges::lexicographical_compare(a, b, {}, catalogue::upper, catalogue::upper);
}

void IndexedNames::push_back(std::string name) {
    const Found first{.first = names_.size()};
    ++exact_.try_emplace(name, first).first->second.count;
    ++alike_.try_emplace(name, first).first->second.count;
    names_.push_back(std::move(name));
}

}  // namespace finance::command

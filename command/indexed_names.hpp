// Names in the order in which they were added, found in so many steps as their number has digits: however many there are,
// and whoever made them up.
#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace finance::command {

// ASCII, as catalogue::same_name.
struct CaselessLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
};

class IndexedNames {
public:
    struct Found {
        std::size_t first = 0;
        std::size_t count = 0;  // 0: there is none
        explicit operator bool() const { return count > 0; }
    };

    IndexedNames() = default;
    IndexedNames(std::initializer_list<std::string> names) {
        for (const std::string& name : names) push_back(name);
    }

    void push_back(std::string name);

    // As it stands.
    [[nodiscard]] Found exact(std::string_view name) const { return found_in(exact_, name); }
    // Whatever its case.
    [[nodiscard]] Found alike(std::string_view name) const { return found_in(alike_, name); }

    [[nodiscard]] const std::vector<std::string>& all() const { return names_; }
    // NOLINTNEXTLINE(google-explicit-constructor): they are names, as a vector of them is
    operator const std::vector<std::string>&() const { return names_; }
    [[nodiscard]] std::size_t size() const { return names_.size(); }
    [[nodiscard]] const std::string& operator[](std::size_t i) const { return names_[i]; }
    [[nodiscard]] auto begin() const { return names_.begin(); }
    [[nodiscard]] auto end() const { return names_.end(); }

private:
    template <typename Index>
    static Found found_in(const Index& index, std::string_view name) {
        const auto found = index.find(name);
        return found == index.end() ? Found{} : found->second;
    }

    std::vector<std::string> names_;
    std::map<std::string, Found, std::less<>> exact_;
    std::map<std::string, Found, CaselessLess> alike_;
};

}  // namespace finance::command

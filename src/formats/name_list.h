#pragma once

#include <cstddef>
#include <set>
#include <string>

namespace velmora {

/// Names in a row: "C, STRANDID".
inline std::string listOf(const std::set<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

/// Keeps a name, unless there are many already: a list of them is there to be read.
inline void rememberName(std::set<std::string>& names, const std::string& name) {
    constexpr std::size_t most = 16;
    if (names.size() < most) {
        names.insert(name);
    }
}

} // namespace velmora

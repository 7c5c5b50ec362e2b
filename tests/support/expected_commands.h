#pragma once

#include <fstream>
#include <string>
#include <vector>

namespace velmora::test {

/// The page tests/data/commands.txt: what users know of the commands, written by hand.
struct ExpectedCommands {
    struct Rule {
        std::string command;
        std::string offWhen;
    };
    std::vector<std::string> rows; ///< of the commands, without the rule
    std::vector<Rule> rules;       ///< when the document turns each off
    std::vector<std::string> menus;
};

inline ExpectedCommands expectedCommands() {
    ExpectedCommands page;
    std::ifstream file(VELMORA_TEST_DATA "/commands.txt");
    for (std::string line; std::getline(file, line);) {
        const std::size_t bar = line.rfind(" | ");
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (bar == std::string::npos) {
            page.menus.push_back(line);
        } else {
            page.rows.push_back(line.substr(0, bar));
            page.rules.push_back({line.substr(0, line.find(" | ")), line.substr(bar + 3)});
        }
    }
    return page;
}

} // namespace velmora::test

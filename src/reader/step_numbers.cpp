#include "step_numbers.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <map>
#include <vector>

#include "TextScan.h"
#include "characters.h"

namespace velmora {

namespace {

/// Whether a value begins here that is a number beyond all measure, or none.
bool isWild(std::string_view value) {
    constexpr double most = 1e100;
    if (value.starts_with('+')) {
        value.remove_prefix(1);
    }
    double number = 0.0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error == std::errc::invalid_argument || (end < value.data() + value.size() && isLetter(*end))) {
        return false; // a word, such as the name of a type
    }
    if (error == std::errc::result_out_of_range) {
        return std::string_view(value.data(), end).find('-', 1) == std::string_view::npos; // else next to nothing
    }
    return !(std::abs(number) <= most);
}

/// "#12 = NAME(#7, 'text', 0.5);" from where the one before it ended.
struct Statement {
    std::string_view text;
    std::int64_t number = 0; ///< 0 for one without
    std::vector<std::int64_t> uses;
    bool wild = false;

    /// Others are made of it, and what is made of them can do without it.
    bool isFace() const {
        return text.find("ADVANCED_FACE") != std::string_view::npos ||
               text.find("FACE_SURFACE") != std::string_view::npos;
    }
};

/// The statement that begins here. Texts stand in quotes.
Statement statementAt(std::string_view text, std::size_t begin) {
    Statement statement;
    bool valueBegins = false;
    bool inText = false;
    std::size_t end = begin;
    for (; end < text.size() && (inText || text[end] != ';'); ++end) {
        const char c = text[end];
        inText = inText != (c == '\'');
        if (inText) {
            continue;
        }
        if (c == '#') {
            std::int64_t number = 0;
            std::from_chars(text.data() + end + 1, text.data() + text.size(), number);
            if (statement.number == 0) {
                statement.number = number;
            } else {
                statement.uses.push_back(number);
            }
        }
        statement.wild = statement.wild || (valueBegins && !isSpace(c) && isWild(text.substr(end, 64)));
        valueBegins = c == '(' || c == ',' || (valueBegins && isSpace(c));
    }
    statement.text = text.substr(begin, end + 1 - begin);
    return statement;
}

std::vector<Statement> statementsOf(std::string_view text) {
    std::vector<Statement> statements;
    for (std::size_t begin = 0; begin < text.size(); begin += statements.back().text.size()) {
        statements.push_back(statementAt(text, begin));
    }
    return statements;
}

/// What uses a wild statement is wild too, up to the face that is made of them: without it the rest is whole.
void spread(std::vector<Statement>& statements) {
    std::multimap<std::int64_t, Statement*> users;
    std::vector<Statement*> wild;
    for (Statement& statement : statements) {
        for (const std::int64_t used : statement.uses) {
            users.emplace(used, &statement);
        }
        if (statement.wild) {
            wild.push_back(&statement);
        }
    }
    while (!wild.empty()) {
        const Statement* const statement = wild.back();
        wild.pop_back();
        if (statement->isFace() || statement->number == 0) {
            continue;
        }
        const auto [first, last] = users.equal_range(statement->number);
        for (auto user = first; user != last; ++user) {
            if (!user->second->wild) {
                user->second->wild = true;
                wild.push_back(user->second);
            }
        }
    }
}

} // namespace

bool hasWildNumber(std::string_view text) {
    for (std::size_t begin = 0; begin < text.size();) {
        const Statement statement = statementAt(text, begin);
        if (statement.wild) {
            return true;
        }
        begin += statement.text.size();
    }
    return false;
}

std::string withoutWildNumbers(std::string_view text) {
    std::vector<Statement> statements = statementsOf(text);
    spread(statements);
    std::string kept;
    for (const Statement& statement : statements) {
        kept += statement.wild ? std::string_view() : statement.text;
    }
    return kept;
}

} // namespace velmora

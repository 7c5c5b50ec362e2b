#include "script_line.h"

namespace velmora {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

/// Reads the words of one line from left to right.
class WordReader {
public:
    explicit WordReader(std::string_view line) : rest_(line) {}

    /// True when a word follows: no end of line and no comment.
    bool atWord() {
        while (!rest_.empty() && isBlank(rest_.front())) {
            rest_.remove_prefix(1);
        }
        return !rest_.empty() && rest_.front() != '#';
    }

    MaybeFailure read(std::string& word) {
        bool mayQuote = true;
        bool sawEquals = false;
        while (!rest_.empty() && !isBlank(rest_.front())) {
            const char c = rest_.front();
            rest_.remove_prefix(1);
            if (c == '"') {
                return mayQuote ? readQuoted(word) : strayQuote();
            }
            word += c;
            mayQuote = c == '=' && !sawEquals;
            sawEquals = sawEquals || c == '=';
        }
        return std::nullopt;
    }

private:
    static MaybeFailure strayQuote() {
        return ScriptFailure{"a quotation mark stands inside a word",
                             "quote the whole word, or all from its \"=\" on, and write \\\" for the mark itself"};
    }

    MaybeFailure readQuoted(std::string& word) {
        while (!rest_.empty()) {
            char c = rest_.front();
            rest_.remove_prefix(1);
            if (c == '"') {
                return rest_.empty() || isBlank(rest_.front()) ? std::nullopt : strayQuote();
            }
            if (c == '\\' && !rest_.empty() && (rest_.front() == '"' || rest_.front() == '\\')) {
                c = rest_.front();
                rest_.remove_prefix(1);
            }
            word += c;
        }
        return ScriptFailure{"a quotation mark is not closed", "close it on the same line"};
    }

    std::string_view rest_;
};

} // namespace

ScriptLine splitLine(std::string_view line) {
    ScriptLine result;
    WordReader reader(line);
    while (!result.failure && reader.atWord()) {
        result.failure = reader.read(result.words.emplace_back());
    }
    return result;
}

std::optional<Assignment> asAssignment(std::string_view word) {
    const std::size_t equals = word.find('=');
    if (equals == std::string_view::npos || equals == 0) {
        return std::nullopt;
    }
    return Assignment{std::string(word.substr(0, equals)), std::string(word.substr(equals + 1))};
}

} // namespace velmora

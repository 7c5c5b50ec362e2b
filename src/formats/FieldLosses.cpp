#include "FieldLosses.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "axis_name.h"
#include "characters.h"
#include "letter_case.h"
#include "name_list.h"

namespace velmora {

namespace {

/// Goes along a line, keyword after keyword.
class HeaderLine {
public:
    explicit HeaderLine(std::string_view line) : rest_(line) {}

    /// The next word that has a value; false when there is none.
    bool next();
    /// In capitals.
    std::string keyword() const { return upperCase(keyword_); }
    /// A text without its quotes, a list with its brackets, or what comes before a blank or a comma.
    std::string_view value() const { return value_; }

private:
    void skipBlanks();
    std::string_view take(std::size_t count);
    std::string_view takeText();
    std::string_view takeList();
    std::string_view takeValue();

    std::string_view rest_;
    std::string_view keyword_;
    std::string_view value_;
};

bool isOfWord(char c) {
    return isLetter(c) || isDigit(c) || c == '_';
}

bool endsValue(char c) {
    return isSpace(c) || c == ',';
}

std::size_t lengthUpTo(std::string_view text, bool (*ends)(char)) {
    return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), ends) - text.begin());
}

void HeaderLine::skipBlanks() {
    take(lengthUpTo(rest_, [](char c) { return !isSpace(c); }));
}

std::string_view HeaderLine::take(std::size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
}

// One that is not closed goes on to the end of the line, and so does a list.
std::string_view HeaderLine::takeText() {
    take(1);
    const std::string_view text = take(std::min(rest_.find('"'), rest_.size()));
    take(1);
    return text;
}

std::string_view HeaderLine::takeList() {
    int depth = 0;
    std::size_t size = 0;
    do {
        depth += rest_[size] == '(' || rest_[size] == '[' ? 1 : 0;
        depth -= rest_[size] == ')' || rest_[size] == ']' ? 1 : 0;
        ++size;
    } while (depth > 0 && size < rest_.size());
    return take(size);
}

std::string_view HeaderLine::takeValue() {
    skipBlanks();
    const char first = rest_.empty() ? '\0' : rest_.front();
    return first == '"' ? takeText() : first == '(' || first == '[' ? takeList() : take(lengthUpTo(rest_, endsValue));
}

bool HeaderLine::next() {
    while (!rest_.empty()) {
        if (rest_.front() == '"') {
            takeText();
        } else if (!isLetter(rest_.front())) {
            take(1);
        } else {
            keyword_ = take(lengthUpTo(rest_, [](char c) { return !isOfWord(c); }));
            skipBlanks();
            if (!rest_.empty() && rest_.front() == '=') {
                take(1);
                value_ = takeValue();
                return true;
            }
        }
    }
    return false;
}

template <std::size_t count>
bool isOneOf(std::string_view word, const std::array<std::string_view, count>& words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// What tells, in an entry of a header, that the zone's numbers are not one point after the other; empty when nothing
/// does.
std::string otherOrder(const std::string& keyword, const std::string& value) {
    static constexpr std::array<std::string_view, 3> partOfNumbers{"VARSHARELIST", "PASSIVEVARLIST", "D"};
    if (keyword == "F" || keyword == "DATAPACKING") {
        return value == "POINT" ? std::string() : value;
    }
    const bool other = keyword == "ZONETYPE"      ? value != "ORDERED"
                       : keyword == "K"           ? value != "1"
                       : keyword == "VARLOCATION" ? value.find("CELLCENTERED") != std::string::npos
                                                  : isOneOf(keyword, partOfNumbers);
    return other ? keyword : std::string();
}

} // namespace

void FieldLosses::takeVariables(std::string_view line) {
    for (const char axis : std::string_view("XYZ")) {
        line.remove_prefix(std::min(line.find('"'), line.size()));
        line.remove_prefix(line.empty() ? 0 : 1);
        const std::size_t end = std::min(line.find('"'), line.size());
        std::string_view name = line.substr(0, end);
        while (!name.empty() && isSpace(name.front())) {
            name.remove_prefix(1);
        }
        otherVariables_ = otherVariables_ || axisOf(name) != axis;
        line.remove_prefix(std::min(end + 1, line.size()));
    }
}

void FieldLosses::takeZone(std::string_view line) {
    bool misread = false;
    for (HeaderLine header(line); header.next();) {
        const std::string keyword = header.keyword();
        const std::string order = otherOrder(keyword, upperCase(header.value()));
        if (order.empty()) {
            takeEntry(keyword, header.value());
        } else {
            rememberName(misreadBy_, order);
            misread = true;
        }
    }
    misread_ += misread ? 1 : 0;
}

void FieldLosses::takeEntry(const std::string& keyword, std::string_view value) {
    static constexpr std::array<std::string_view, 8> known{"I",  "J",           "K",        "F",
                                                           "DT", "DATAPACKING", "ZONETYPE", "VARLOCATION"};
    if (keyword == "T") {
        titles_ += value.empty() || value.starts_with("ZONE_") ? 0 : 1;
    } else if (!isOneOf(keyword, known)) {
        rememberName(passedOver_, keyword);
    }
}

void FieldLosses::noteGeometry(FileRead& record) const {
    if (otherVariables_) {
        record.losesGeometry("Line 2 does not name x, y and z first and in this order: the first three numbers of a "
                             "point are taken for them");
    }
    if (misread_ > 0) {
        record.losesGeometry("Zones whose headers tell another order of numbers, read point after point all the "
                             "same (" +
                             listOf(misreadBy_) + "): " + std::to_string(misread_));
    }
}

void FieldLosses::noteDetails(FileRead& record) const {
    if (titles_ > 0) {
        record.losesDetail("Titles of zones that patches do not have: " + std::to_string(titles_));
    }
    if (!passedOver_.empty()) {
        record.losesDetail("Values of headers that are not kept: " + listOf(passedOver_));
    }
}

} // namespace velmora

#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace velmora::reference {

/// The Tecplot reader as a plain sequence of stream reads, step by step, with matchers written out in place of regular
/// expressions. Zones keep all their arrays.
class TecplotReader {
public:
    struct Array {
        std::string name;
        std::vector<double> values;
        friend bool operator==(const Array&, const Array&) = default;
    };
    struct Zone {
        std::string title;
        bool ordered = true;
        std::int64_t i = 0, j = 0, k = 0; // nodes and elements of a triangle zone in i and j
        std::vector<Array> arrays;        // x, y, z, then the others
        std::vector<std::int32_t> connectivity;
        friend bool operator==(const Zone&, const Zone&) = default;
    };
    /// What was raised.
    struct Fault {
        std::string name;
        std::string text;
        friend bool operator==(const Fault&, const Fault&) = default;
    };

    std::string title = "Untitled";
    std::vector<Zone> zones;
    std::optional<Fault> fault;

    void read(const std::filesystem::path& path) {
        in_.open(path);
        in_.imbue(std::locale::classic());
        if (!in_) {
            fault = Fault{"File Error", "..."};
            return;
        }
        try {
            while (!in_.eof()) {
                scanHeader();
                parseHeader();
                skipToZone();
            }
        } catch (const Fault& raised) {
            fault = raised;
        }
    }

private:
    std::ifstream in_;
    std::string text_;
    std::streamoff zoneStart_ = 0;
    bool fileHeaderRead_ = false;
    std::vector<std::string> variables_;
    int index_[3] = {0, 0, 0};
    int zoneNumber_ = 1;
    std::string zoneTitle_ = "zone";
    int zoneType_ = 0;
    int i_ = 0, j_ = 0, k_ = 0, nodes_ = 0, elements_ = 0;
    int packing_ = 0;
    std::vector<int> active_;
    double zerosMade_ = 0;

    static std::string upper(std::string text) {
        for (char& c : text) {
            if (c >= 'a' && c <= 'z') {
                c = static_cast<char>(c - 32);
            }
        }
        return text;
    }

    // A position also where the stream has none to tell.
    std::streamoff position() { return in_.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in); }
    void goTo(std::streamoff place) {
        in_.clear();
        in_.seekg(place);
    }

    static bool isSpace(char c) { return c == ' ' || (c >= 9 && c <= 13); }
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    static bool isAlpha(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
    static bool isWord(char c) { return isDigit(c) || isAlpha(c) || c == '_'; }

    // ---- the scanner of characters

    void scanHeader() {
        text_.clear();
        bool lastWasBlank = true;
        bool seenWord = false;
        char c = 0;
        while (in_.get(c)) {
            if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
                if (!lastWasBlank) {
                    text_ += c;
                    lastWasBlank = true;
                }
            } else if (isDigit(c) || c == '-' || c == '.' || c == '+') {
                in_.unget();
                const std::streamoff start = position();
                if (seenWord) {
                    if (threeNumbers(lastWasBlank)) {
                        goTo(start);
                        return;
                    }
                } else {
                    std::streamoff before = position();
                    double number = 0;
                    while (in_ >> number) {
                        before = position();
                    }
                    goTo(before);
                    seenWord = true;
                    zoneStart_ = before;
                }
            } else if (c == '#') {
                std::string line;
                std::getline(in_, line);
                text_ += '\n';
                lastWasBlank = true;
            } else if (c == '[' || c == '"') {
                std::string inner;
                std::getline(in_, inner, c == '[' ? ']' : '"');
                text_ += c + inner;
                if (!in_.eof()) {
                    text_ += c == '[' ? ']' : '"';
                }
                lastWasBlank = false;
            } else {
                text_ += c;
                lastWasBlank = false;
                if (!seenWord) {
                    seenWord = true;
                    zoneStart_ = position();
                }
            }
        }
    }

    bool threeNumbers(bool& lastWasBlank) {
        std::string all;
        for (int count = 0; count < 3; ++count) {
            std::string token;
            char c = 0;
            while (in_.get(c)) {
                if (c == ',' || c == '#' || (isSpace(c) && !token.empty())) {
                    break;
                }
                if (!isSpace(c)) {
                    token += c;
                }
            }
            all += token;
            if (in_) {
                all += c;
                if (c == '#') {
                    std::string line;
                    std::getline(in_, line);
                }
            }
            std::istringstream text(token);
            text.imbue(std::locale::classic());
            double number = 0;
            if (!(text >> number)) {
                text_ += all;
                lastWasBlank = true;
                return false;
            }
        }
        return true;
    }

    void skipToZone() {
        char c = 0;
        while (in_.get(c)) {
            if (c != 'Z') {
                continue;
            }
            in_.unget();
            const std::streamoff start = position();
            std::string word;
            in_ >> word;
            if (upper(word) == "ZONE") {
                goTo(start);
                return;
            }
        }
    }

    // ---- keywords and values; places are indices into text_

    struct Match {
        std::size_t begin, end;
        std::string group;
    };

    char at(std::size_t place) const { return place < text_.size() ? text_[place] : '\0'; }
    bool wordBoundary(std::size_t place) const { return place >= text_.size() || !isWord(text_[place]); }

    std::optional<Match> nextWord(std::size_t from) const {
        for (std::size_t begin = from; begin < text_.size(); ++begin) {
            if (!isAlpha(text_[begin]) || (begin > from && isWord(text_[begin - 1]))) {
                continue;
            }
            std::size_t end = begin;
            while (end < text_.size() && isAlpha(text_[end])) {
                ++end;
            }
            if (wordBoundary(end)) {
                return Match{begin, end, text_.substr(begin, end - begin)};
            }
        }
        return std::nullopt;
    }

    // `value` takes the place of the value and gives the end behind it, and sets the group.
    using ValueMatcher = std::function<std::optional<std::size_t>(std::size_t, std::string&)>;

    Match find(const Match& word, const ValueMatcher& value) const {
        for (std::size_t begin = word.begin; begin < text_.size(); ++begin) {
            if (text_.compare(begin, word.group.size(), word.group) != 0) {
                continue;
            }
            std::size_t place = passSpace(begin + word.group.size());
            if (place >= text_.size() || text_[place] != '=') {
                continue;
            }
            std::string group;
            if (const auto end = value(passSpace(place + 1), group)) {
                return {begin, *end, group};
            }
        }
        throw header(word.group);
    }

    std::size_t passSpace(std::size_t place) const {
        while (place < text_.size() && isSpace(text_[place])) {
            ++place;
        }
        return place;
    }

    ValueMatcher run(bool (*of)(char)) const {
        return [this, of](std::size_t begin, std::string& group) -> std::optional<std::size_t> {
            std::size_t end = begin;
            while (end < text_.size() && of(text_[end])) {
                ++end;
            }
            group = text_.substr(begin, end - begin);
            return end > begin && wordBoundary(end) ? std::optional(end) : std::nullopt;
        };
    }

    ValueMatcher quoted(bool mayBeEmpty) const {
        return [this, mayBeEmpty](std::size_t begin, std::string& group) -> std::optional<std::size_t> {
            if (at(begin) != '"') {
                return std::nullopt;
            }
            std::size_t end = begin + 1;
            while (end < text_.size() && text_[end] != '"' && text_[end] != '\n' && text_[end] != '\r') {
                ++end;
            }
            group = text_.substr(begin + 1, end - begin - 1);
            const bool good = at(end) == '"' && (mayBeEmpty || !group.empty());
            return good ? std::optional(end + 1) : std::nullopt;
        };
    }

    ValueMatcher names() const {
        return [this](std::size_t begin, std::string&) -> std::optional<std::size_t> {
            std::size_t end = begin;
            for (std::size_t place = begin; at(place) == '"'; end = place) {
                std::size_t close = place + 1;
                while (close < text_.size() && (isWord(text_[close]) || std::string("/~()-").find(text_[close]) < 5)) {
                    ++close;
                }
                if (close == place + 1 || at(close) != '"') {
                    break;
                }
                place = close + 1;
                place += at(place) == ',' ? 1 : 0;
                place = passSpace(place);
            }
            return end > begin ? std::optional(end) : std::nullopt;
        };
    }

    ValueMatcher list() const {
        return [this](std::size_t begin, std::string& group) -> std::optional<std::size_t> {
            if (at(begin) != '[') {
                return std::nullopt;
            }
            std::size_t end = begin + 1;
            while (end < text_.size() &&
                   (isSpace(text_[end]) || isDigit(text_[end]) || text_[end] == ',' || text_[end] == '-')) {
                ++end;
            }
            if (at(end) != ']' || end == begin + 1) {
                return std::nullopt;
            }
            const std::size_t first = std::min(passSpace(begin + 1), end - 1);
            group = text_.substr(first, end - first);
            return end + 1;
        };
    }

    Fault header(const std::string& keyword) const {
        return {"Parsing Error", "at the header of the zone\nZone No: " + std::to_string(zoneNumber_) +
                                     "\nZone Title: " + zoneTitle_ + "\nKeyword: " + keyword};
    }

    void parseHeader() {
        std::size_t place = 0;
        while (const auto word = nextWord(place)) {
            const std::string keyword = upper(word->group);
            if (keyword == "VARIABLES" || keyword == "TITLE" || keyword == "FILETYPE") {
                if (fileHeaderRead_) {
                    place = word->end;
                } else {
                    fileHeaderRead_ = true;
                    place = parseFileHeader(place);
                }
            } else if (keyword == "ZONE") {
                parseZone(word->end);
                return;
            } else {
                place = word->end;
            }
        }
    }

    std::size_t parseFileHeader(std::size_t place) {
        while (const auto word = nextWord(place)) {
            const std::string keyword = upper(word->group);
            if (keyword == "VARIABLES") {
                const Match match = find(*word, names());
                bool open = false;
                std::string name;
                for (std::size_t p = match.begin; p < match.end; ++p) {
                    if (text_[p] == '"') {
                        if (open) {
                            variables_.push_back(name);
                        }
                        open = !open;
                        name.clear();
                    } else if (open) {
                        name += text_[p];
                    }
                }
                place = match.end;
                checkCoordinates();
            } else if (keyword == "TITLE") {
                const Match match = find(*word, quoted(true));
                title = match.group;
                place = match.end;
            } else if (keyword == "FILETYPE") {
                place = word->end;
            } else {
                return place;
            }
        }
        return place;
    }

    void checkCoordinates() {
        bool found[3] = {false, false, false};
        for (int v = 0; v < static_cast<int>(variables_.size()); ++v) {
            for (int axis = 0; axis < 3; ++axis) {
                if (upper(variables_[static_cast<std::size_t>(v)]) == std::string(1, static_cast<char>('X' + axis))) {
                    index_[axis] = v;
                    found[axis] = true;
                }
            }
        }
        requireCoordinates(found);
    }

    static void requireCoordinates(const bool (&found)[3]) {
        std::string missing;
        for (int axis = 0; axis < 3; ++axis) {
            if (!found[axis]) {
                missing += std::string(" '") + static_cast<char>('x' + axis) + "'";
            }
        }
        if (!missing.empty()) {
            throw Fault{"Parsing Error", "missing coordinate(s): " + missing};
        }
    }

    static int number(const std::string& digits) {
        std::istringstream text(digits);
        text.imbue(std::locale::classic());
        int value = 0;
        if (!(text >> value)) {
            throw Fault{"Value Error", "..."};
        }
        return value;
    }

    void parseZone(std::size_t place) {
        zoneTitle_ = "zone";
        zoneType_ = i_ = j_ = k_ = nodes_ = elements_ = packing_ = 0;
        active_.clear();
        for (int v = 0; v < static_cast<int>(variables_.size()); ++v) {
            active_.push_back(v);
        }
        while (const auto word = nextWord(place)) {
            const std::string keyword = upper(word->group);
            Match match{0, word->end, {}};
            const auto integer = [&](int& target) {
                match = find(*word, run(isDigit));
                target = number(match.group);
            };
            if (keyword == "T") {
                match = find(*word, quoted(false));
                zoneTitle_ = match.group;
            } else if (keyword == "ZONETYPE" || keyword == "ET") {
                match = find(*word, run(isAlpha));
                setType(upper(match.group), word->group);
            } else if (keyword == "I") {
                integer(i_);
            } else if (keyword == "J") {
                integer(j_);
            } else if (keyword == "K") {
                integer(k_);
            } else if (keyword == "NODES" || keyword == "N") {
                integer(nodes_);
            } else if (keyword == "ELEMENTS" || keyword == "E") {
                integer(elements_);
            } else if (keyword == "DATAPACKING" || keyword == "F") {
                match = find(*word, run(isAlpha));
                const std::string value = upper(match.group);
                if (value == "BLOCK" || value == "FEBLOCK") {
                    packing_ = 0;
                } else if (value == "POINT" || value == "FEPOINT") {
                    packing_ = 1;
                } else {
                    throw header(word->group + " " + value);
                }
            } else if (keyword == "PASSIVEVARLIST") {
                match = find(*word, list());
                walkList(match.group, word->group);
            }
            place = match.end;
        }
        zoneData();
    }

    void setType(const std::string& value, const std::string& keyword) {
        const char* const names[6] = {"ORDERED", "LINESEG", "TRIANGLE", "QUADRILATERAL", "TETRAHEDRON", "BRICK"};
        for (int type = 0; type < 6; ++type) {
            if (value == names[type] || (type > 0 && value == std::string("FE") + names[type])) {
                zoneType_ = type;
                return;
            }
        }
        throw header(keyword);
    }

    void walkList(const std::string& items, const std::string& keyword) {
        const int count = static_cast<int>(variables_.size());
        std::vector<bool> passive(variables_.size());
        int previous = count;
        bool inRange = false;
        std::size_t place = 0;
        for (;;) {
            while (place < items.size() && !isDigit(items[place])) {
                ++place;
            }
            std::string digits;
            while (place < items.size() && isDigit(items[place])) {
                digits += items[place++];
            }
            if (digits.empty()) {
                throw header(keyword);
            }
            const int result = number(digits) - 1;
            if (result < 0 || result >= count) {
                throw header(keyword);
            }
            if (inRange) {
                for (int v = previous + 1; v <= result; ++v) {
                    passive[static_cast<std::size_t>(v)] = true;
                }
                inRange = false;
            } else {
                passive[static_cast<std::size_t>(result)] = true;
                previous = result;
            }
            while (place < items.size() && (isSpace(items[place]) || items[place] == ',')) {
                ++place;
            }
            if (place == items.size()) {
                break;
            }
            if (items[place] == '-') {
                inRange = true;
                ++place;
            }
        }
        std::vector<int> rest;
        for (const int v : active_) {
            if (!passive[static_cast<std::size_t>(v)]) {
                rest.push_back(v);
            }
        }
        active_ = rest;
    }

    // ---- numbers

    Fault data() {
        in_.clear();
        const std::streamoff failure = position();
        goTo(zoneStart_);
        int n = 1;
        for (std::streamoff place = zoneStart_; place < failure; ++place) {
            n += in_.get() == '\n' ? 1 : 0;
        }
        return {"Value Error", "invalid data\nZone No: " + std::to_string(zoneNumber_) + "\nZone Title: " + zoneTitle_ +
                                   "\nLine Shift: " + std::to_string(n) + "\n"};
    }

    void zoneData() {
        ++zoneNumber_;
        if (zoneType_ == 0) {
            ordered();
        } else if (zoneType_ == 2 || zoneType_ == 3) {
            triangles();
        } else {
            skip();
        }
    }

    static constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();

    // Arrays as made by adding variable after variable; `arrayOf` gives the array of each variable.
    std::vector<std::size_t> addVariables(Zone& zone) const {
        std::vector<std::size_t> arrayOf;
        for (const std::string& name : variables_) {
            std::size_t a = 0;
            while (a < zone.arrays.size() && upper(zone.arrays[a].name) != upper(name)) {
                ++a;
            }
            if (a < zone.arrays.size()) {
                zone.title = name;
            } else {
                zone.arrays.push_back({name, {}});
            }
            arrayOf.push_back(a);
        }
        return arrayOf;
    }

    // Values are put where they belong as they come; what is not given stays 0.
    void readValues(Zone& zone, const std::vector<std::size_t>& arrayOf, std::int64_t points) {
        if (active_.empty() && !zone.arrays.empty()) {
            zerosMade_ += static_cast<double>(points);
            if (zerosMade_ > 1048576) {
                throw data();
            }
        }
        const auto put = [&](int variable, std::int64_t point) {
            double value = 0;
            if (!(in_ >> value)) {
                throw data();
            }
            std::vector<double>& values = zone.arrays[arrayOf[static_cast<std::size_t>(variable)]].values;
            if (static_cast<std::size_t>(point) >= values.size()) {
                values.resize(static_cast<std::size_t>(point) + 1);
            }
            values[static_cast<std::size_t>(point)] = value;
        };
        if (packing_ == 1) {
            for (std::int64_t point = 0; point < points; ++point) {
                for (const int variable : active_) {
                    put(variable, point);
                }
                if (!in_) {
                    throw data();
                }
                if (active_.empty()) {
                    break; // nothing changes from here on
                }
            }
        } else {
            for (const int variable : active_) {
                for (std::int64_t point = 0; point < points; ++point) {
                    put(variable, point);
                }
            }
        }
        for (Array& array : zone.arrays) {
            array.values.resize(static_cast<std::size_t>(points));
        }
    }

    void rebuild(Zone& zone, const std::vector<std::size_t>& arrayOf) const {
        if (zone.arrays.empty()) {
            return;
        }
        std::vector<Array> arrays;
        std::vector<bool> taken(zone.arrays.size());
        for (const int v : index_) {
            const std::size_t a = arrayOf[static_cast<std::size_t>(v)];
            arrays.push_back(zone.arrays[a]);
            taken[a] = true;
        }
        for (std::size_t a = 0; a < zone.arrays.size(); ++a) {
            if (!taken[a]) {
                arrays.push_back(zone.arrays[a]);
            }
        }
        zone.arrays = arrays;
    }

    void ordered() {
        std::int64_t total = 0;
        if (i_ > 0 && j_ > 0 && k_ > 0) {
            total = std::int64_t{i_} * j_;
            if (total > most || total * k_ > most) {
                throw data();
            }
            total *= k_;
        }
        Zone zone{zoneTitle_, true, i_, j_, k_, {}, {}};
        const std::vector<std::size_t> arrayOf = addVariables(zone);
        readValues(zone, arrayOf, total);
        if (i_ >= 2 && j_ >= 2) {
            rebuild(zone, arrayOf);
            zones.push_back(zone);
        }
    }

    void triangles() {
        const std::int64_t count = std::int64_t{elements_} * (zoneType_ == 3 ? 2 : 1);
        if (4 * count > most) {
            throw data();
        }
        if (variables_.empty()) {
            const bool noneFound[3] = {false, false, false};
            requireCoordinates(noneFound);
        }
        Zone zone{zoneTitle_, false, nodes_, count, 0, {}, {}};
        const std::vector<std::size_t> arrayOf = addVariables(zone);
        readValues(zone, arrayOf, nodes_);
        for (int e = 0; e < elements_; ++e) {
            const int corners = zoneType_ == 2 ? 3 : 4;
            int node[4] = {0, 0, 0, 0};
            for (int c = 0; c < corners; ++c) {
                in_ >> node[c];
            }
            if (!in_) {
                throw data();
            }
            for (int c = 0; c < corners; ++c) {
                if (node[c] < 1 || node[c] > nodes_) {
                    throw data();
                }
            }
            zone.connectivity.insert(zone.connectivity.end(), {node[0] - 1, node[1] - 1, node[2] - 1, -1});
            if (zoneType_ == 3) {
                zone.connectivity.insert(zone.connectivity.end(), {node[2] - 1, node[3] - 1, node[0] - 1, -1});
            }
        }
        rebuild(zone, arrayOf);
        zones.push_back(zone);
    }

    void skip() {
        if (packing_ == 1 && active_.empty() && nodes_ > 0 && !in_) {
            throw data();
        }
        double number = 0;
        for (std::int64_t n = 0; n < nodes_ * static_cast<std::int64_t>(active_.size()); ++n) {
            if (!(in_ >> number)) {
                throw data();
            }
        }
        const int corners[6] = {0, 2, 3, 4, 4, 8};
        int node = 0;
        for (std::int64_t n = 0; n < std::int64_t{elements_} * corners[zoneType_]; ++n) {
            if (!(in_ >> node)) {
                throw data();
            }
        }
    }
};

} // namespace velmora::reference

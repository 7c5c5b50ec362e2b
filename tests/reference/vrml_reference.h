#pragma once

#include <cctype>
#include <fstream>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "triangulation_reference.h"

namespace velmora::reference {

/// The face sets of a VRML file with a stream's own reads.
class VrmlReference {
public:
    explicit VrmlReference(const std::string& path) : stream_(path) { stream_.imbue(std::locale::classic()); }

    TriangleFile read() {
        TriangleFile file;
        try {
            readHeader();
            int number = 0;
            while (!stream_.eof()) {
                points_.clear();
                polygons_.clear();
                ++number;
                try {
                    findNode();
                    parseNode();
                } catch (const EOFError&) {
                    break;
                } catch (const ParseError&) {
                    continue;
                }
                takeZone(number, file);
            }
        } catch (const GenericError& error) {
            file.error = error.name() + ": " + error.text();
        }
        return file;
    }

private:
    // "#VRML V", digits, any character, digits, a blank; what follows is free.
    void readHeader() {
        std::string line;
        std::getline(stream_, line);
        line += '\n';
        const std::string start = "#vrml v";
        for (std::size_t i = 0; i < start.size(); ++i) {
            if (i >= line.size() || std::tolower(static_cast<unsigned char>(line[i])) != start[i]) {
                throw ParseError("reference", __LINE__, "Is not a valid VRML file");
            }
        }
        for (std::size_t count = line.size(); count > 0; --count) { // the longest version that can be
            const std::string digits = line.substr(start.size(), count);
            if (digits.size() == count && digits.find_first_not_of("0123456789") == std::string::npos &&
                restMatches(line.substr(start.size() + count))) {
                checkVersion(digits);
                return;
            }
        }
        throw ParseError("reference", __LINE__, "Is not a valid VRML file");
    }

    static bool restMatches(const std::string& rest) {
        std::size_t end = 1;
        while (end < rest.size() && std::isdigit(static_cast<unsigned char>(rest[end])) != 0) {
            ++end;
        }
        return end > 1 && end < rest.size() && rest[end] == ' ' && end + 1 < rest.size();
    }

    static void checkVersion(const std::string& digits) {
        std::istringstream number(digits);
        int version = 0;
        if (!(number >> version)) {
            throw ValueError("reference", __LINE__);
        }
        if (version != 1 && version != 2) {
            throw FileError("reference", __LINE__, "Unsupported version of VRML file");
        }
    }

    std::string word() {
        std::string text;
        stream_ >> text;
        if (stream_.fail()) {
            if (stream_.eof()) {
                throw EOFError("reference", __LINE__);
            }
            throw IOError("reference", __LINE__);
        }
        const std::size_t found = text.find_first_of("()[]{}");
        const std::size_t length = found == 0 ? 1 : std::min(found, text.size());
        if (length < text.size()) {
            stream_.clear();
            stream_.seekg(-static_cast<std::streamoff>(text.size() - length), std::ios::cur);
            text.resize(length);
        }
        return text;
    }

    void expect(const std::string& wanted) {
        if (word() != wanted) {
            throw ParseError("reference", __LINE__);
        }
    }

    static bool isName(const std::string& text) {
        return text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos;
    }

    void findNode() {
        do {
            int c = stream_.get();
            while (c != 'I' && c != EOF) {
                c = stream_.get();
            }
            if (c == EOF) {
                throw EOFError("reference", __LINE__);
            }
            stream_.unget();
        } while (word() != "IndexedFaceSet");
    }

    void parseNode() {
        expect("{");
        while (true) {
            const std::string field = word();
            if (field == "}") {
                return;
            }
            if (field == "coordIndex") {
                readIndices();
            } else if (field == "coord") {
                readCoordinates();
            } else if (isName(field)) {
                skipField();
            } else {
                throw ParseError("reference", __LINE__);
            }
        }
    }

    void readCoordinates() {
        if (word() != "Coordinate") {
            return;
        }
        expect("{");
        for (std::string inside = word(); inside != "}"; inside = word()) {
            if (inside == "point") {
                readPoints();
            }
        }
    }

    void readPoints() {
        expect("[");
        Point point{};
        while (stream_ >> point[0] >> point[1] >> point[2]) {
            points_.push_back(point);
        }
        stream_.clear();
        expect("]");
    }

    void readIndices() {
        expect("[");
        Corners polygon;
        int index = 0;
        while (stream_ >> index) {
            if (index == -1 && !polygon.empty()) {
                polygons_.push_back(polygon);
                polygon.clear();
            } else {
                polygon.push_back(index);
            }
        }
        stream_.clear();
        expect("]");
        if (!polygon.empty()) {
            polygons_.push_back(polygon);
        }
    }

    void skipField() {
        const std::string value = word();
        if (value == "NULL" || value == "TRUE" || value == "FALSE") {
            return;
        }
        if (value == "(" || value == "[" || value == "{") {
            skipBrackets(value[0]);
            return;
        }
        double number = 0.0;
        std::istringstream stream(value);
        stream.imbue(std::locale::classic());
        if (stream >> number) {
            return;
        }
        if (!isName(value)) {
            throw ParseError("reference", __LINE__);
        }
        const std::string behind = word();
        if (behind != "(" && behind != "[" && behind != "{") {
            throw ParseError("reference", __LINE__);
        }
        skipBrackets(behind[0]);
    }

    char next() {
        char c = 0;
        if (!stream_.get(c)) {
            throw IOError("reference", __LINE__, "Unexpected EOF: find_appropriate_close_brace():");
        }
        return c;
    }

    void skipBrackets(char opening) {
        const char closing = opening == '(' ? ')' : opening == '[' ? ']' : '}';
        bool inString = false;
        int opened = 1;
        int closed = 0;
        while (closed < opened) {
            const char c = next();
            if (inString && c == '\\') {
                next();
            } else if (c == '"') {
                inString = !inString;
            } else if (!inString) {
                opened += c == opening ? 1 : 0;
                closed += c == closing ? 1 : 0;
            }
        }
    }

    void takeZone(int number, TriangleFile& file) {
        if (points_.empty() || polygons_.empty()) {
            return;
        }
        TriangleZone zone{"Zone_" + std::to_string(number), points_, {}};
        for (const Corners& polygon : polygons_) {
            triangulate(points_, polygon, zone.triangles);
        }
        file.zones.push_back(zone);
    }

    std::ifstream stream_;
    std::vector<Point> points_;
    std::vector<Corners> polygons_;
};

inline TriangleFile readVrml(const std::string& path) {
    return VrmlReference(path).read();
}

} // namespace velmora::reference

#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <locale>
#include <string>

#include "PatchList.h"
#include "stream_numbers.h"

namespace velmora::reference {

/// The reader of field files as a plain sequence of stream reads.
class FieldReader {
public:
    PatchList patches;
    PatchList fieldPatches;
    std::string message; // empty when all went well
    std::string titleLine;
    std::string variablesLine;
    int fieldCount = 0;

    void read(const std::filesystem::path& path) {
        readFile(path);
        if (!message.empty()) {
            patches.clear();
            fieldPatches.clear();
        }
    }

private:
    void readFile(const std::filesystem::path& path) {
        std::ifstream stream(path);
        stream.imbue(std::locale::classic());
        if (!stream) {
            message = "It is impossible to open selected file";
            return;
        }
        titleLine = lineOf(stream);
        variablesLine = lineOf(stream);
        const auto quotes = std::count(variablesLine.begin(), variablesLine.end(), '"');
        if (quotes % 2 != 0 || quotes < 6 || quotes > 12) {
            message = "Your 'dat' file contains wrong number of variables";
            return;
        }
        fieldCount = static_cast<int>(quotes - 6) / 2;
        for (int compartment = 1;; ++compartment) {
            const std::string header = lineOf(stream);
            if (header.empty()) {
                return;
            }
            const int points = countOf(header, "I=");
            const int sections = countOf(header, "J=");
            if (points == -1 || sections == -1) {
                message = "Header of APT file is wrong. Compartment N= " + std::to_string(compartment);
                return;
            }
            if (!readZone(stream, sections, points)) {
                message = "Body of APT file is wrong. Compartment N= " + std::to_string(compartment);
                return;
            }
        }
    }

    static std::string lineOf(std::istream& stream) {
        char buffer[255] = {};
        takeLine(stream, buffer);
        return buffer;
    }

    static int countOf(const std::string& line, const char* key) {
        int value = -1;
        if (const char* const place = std::strstr(line.c_str(), key)) {
            char digits[6] = {};
            for (int i = 0; i < 5 && place[2 + i] != '\0' && place[2 + i] != ','; ++i) {
                digits[i] = place[2 + i];
            }
            std::sscanf(digits, "%d", &value);
        }
        return value;
    }

    bool readZone(std::istream& stream, int sections, int points) {
        Patch patch;
        Patch field;
        for (int n = 0; n < sections; ++n) {
            patch.emplace_back();
            field.emplace_back();
            for (int m = 0; m < points; ++m) {
                double values[6] = {};
                for (int i = 0; i < 3 + fieldCount; ++i) {
                    if (!take(stream, values[i])) {
                        return false;
                    }
                }
                patch.back().emplace_back(values[0], values[1], values[2]);
                field.back().emplace_back(values[3], values[4], values[5]);
            }
        }
        patches.push_back(patch);
        fieldPatches.push_back(field);
        if (sections > 0 && points > 0) {
            char rest[255] = {};
            takeLine(stream, rest);
        }
        return true;
    }
};

} // namespace velmora::reference

#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <locale>
#include <string>
#include <vector>

#include "PatchList.h"
#include "stream_numbers.h"

namespace velmora::reference {

/// The .apt reader as a plain sequence of stream reads, step by step.
class AptReader {
public:
    std::vector<std::string> messages;
    std::int32_t total = 0;
    bool firstPassEnded = false; ///< at the regular end
    bool lastPassEnded = false;  ///< the same of the last pass made

    void read(const std::filesystem::path& path, PatchList& patches) {
        if (countLines(path)) {
            readPoints(path, patches);
        }
    }

private:
    int compartment_ = 0;

    void say(const char* text) { messages.push_back(text + std::to_string(compartment_)); }
    void sayHeader() { say("Header of APT file is wrong. Compartment N= "); }
    void sayBody() { say("Body of APT file is wrong. Compartment N= "); }

    bool open(std::ifstream& stream, const std::filesystem::path& path) {
        stream.open(path);
        stream.imbue(std::locale::classic());
        if (!stream) {
            messages.emplace_back("It is impossible to open selected file");
        }
        compartment_ = 0;
        return stream.is_open();
    }

    static std::int32_t wrap(std::int64_t value) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(value & 0xFFFFFFFF));
    }

    bool countLines(const std::filesystem::path& path) {
        std::ifstream stream;
        if (!open(stream, path)) {
            return false;
        }
        char line[255];
        for (;;) {
            ++compartment_;
            std::int32_t sections = -1;
            std::int32_t points = -1;
            take(stream, sections);
            take(stream, points);
            if (!stream) {
                firstPassEnded = sections == -1 || points == -1;
                lastPassEnded = firstPassEnded;
                if (!firstPassEnded) {
                    sayHeader();
                }
                return true;
            }
            takeLine(stream, line);
            const std::int32_t count = wrap(std::int64_t{sections} * points);
            total = wrap(std::int64_t{total} + count);
            for (std::int32_t i = 0; i < count; ++i) {
                if (!takeLine(stream, line)) {
                    sayBody();
                    return false;
                }
            }
        }
    }

    int period() const {
        int factor = total / 2010000;
        const double quotient = static_cast<double>(total) / 2010000;
        if (static_cast<float>(quotient - factor) > 0.1F) {
            factor += 1;
        }
        if (factor <= 0) {
            return 0;
        }
        return factor <= 4 ? 2 : factor <= 9 ? 3 : 4;
    }

    void readPoints(const std::filesystem::path& path, PatchList& patches) {
        std::ifstream stream;
        if (!open(stream, path)) {
            return;
        }
        std::int64_t kept = 0;
        std::int64_t bare = 0;
        for (;;) {
            ++compartment_;
            std::int32_t sections = -1;
            std::int32_t points = -1;
            take(stream, sections);
            take(stream, points);
            if (!stream) {
                lastPassEnded = sections == -1 || points == -1;
                if (!lastPassEnded) {
                    sayHeader();
                }
                return;
            }
            if (points <= 0 && sections > 0) {
                bare += sections;
            }
            if (bare > 2412000) {
                lastPassEnded = false;
                sayHeader();
                return;
            }
            Patch patch;
            if (!readCompartment(stream, sections, points, kept, patch)) {
                lastPassEnded = false;
                sayBody();
                return;
            }
            patches.push_back(patch);
        }
    }

    bool readCompartment(std::istream& stream, std::int32_t sections, std::int32_t points, std::int64_t& kept,
                         Patch& patch) const {
        const int p = period();
        int pointPhase = 0;
        int sectionPhase = 0;
        for (std::int32_t i = 0; i < sections; ++i) {
            PointList section;
            for (std::int32_t j = 0; j < points; ++j) {
                zVec<double> point;
                if (!take(stream, point.x) || !take(stream, point.y) || !take(stream, point.z)) {
                    return false;
                }
                if (!(pointPhase != 0 && j != points - 1 && points > 65)) {
                    section.push_back(point);
                }
                ++pointPhase;
                if (p == 0 || pointPhase == p) {
                    pointPhase = 0;
                }
            }
            if (!(sectionPhase != 0 && i != sections - 1 && sections > 65)) {
                patch.push_back(section);
                kept += static_cast<std::int64_t>(section.size());
            }
            ++sectionPhase;
            if (p == 0 || sectionPhase == p) {
                sectionPhase = 0;
            }
            if (kept >= 2412000) {
                break;
            }
        }
        return true;
    }
};

} // namespace velmora::reference

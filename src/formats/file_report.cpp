#include "file_report.h"

#include <algorithm>
#include <cstdint>

namespace velmora {

namespace {

/// "522, kept: 521", "522, all kept"; of what the file has in another form, as its polygons are, "in the model: 12".
std::string countLine(std::string_view kind, std::int64_t found, std::int64_t kept) {
    if (kept > found) {
        return kindInWords(kind) + " in the model: " + std::to_string(kept);
    }
    if (kept < found) {
        return keptText(kind, found, kept);
    }
    return kindInWords(kind) + " in the file: " + std::to_string(found) + (found > 0 ? ", all kept" : "");
}

/// Whether a text tells the count already, with its cause: "Facets in the file: 522, kept: 521 (...)".
bool isTold(const std::vector<std::string>& texts, std::string_view kind, std::int64_t kept) {
    const std::string begin = kindInWords(kind);
    const std::string end = ", kept: " + std::to_string(kept) + " (";
    return std::any_of(texts.begin(), texts.end(), [&](const std::string& text) {
        return text.starts_with(begin) && text.find(end) != std::string::npos;
    });
}

void addCounts(const FileRead& read, std::vector<std::string>& lines) {
    const auto add = [&](const std::string& kind) {
        const std::int64_t kept = countOf(read.kept, kind);
        if (!isTold(read.changed, kind, kept) && !isTold(read.reasons, kind, kept)) {
            lines.push_back(countLine(kind, countOf(read.found, kind), kept));
        }
    };
    for (const auto& [kind, count] : read.found) {
        add(kind);
    }
    for (const auto& kept : read.kept) {
        if (std::none_of(read.found.begin(), read.found.end(),
                         [&kept](const auto& other) { return other.first == kept.first; })) {
            add(kept.first);
        }
    }
}

const char* verdictOf(const FileRead& read) {
    if (read.bytes == 0) {
        return "The file is empty.";
    }
    if (!read.keptAnything()) {
        return "Nothing of the file was kept.";
    }
    if (!read.complete) {
        return "Part of its geometry was not kept: a save over the file would lose it.";
    }
    if (read.thinned) {
        return "Not all of its points were kept: a save over the file would lose the others.";
    }
    return read.lossless ? "All of its geometry was kept as it is."
                         : "All of its geometry was kept: a save over the file would lose what is named above.";
}

} // namespace

std::string unitText(const FileRead& read) {
    return read.unit.empty() ? std::string() : "Unit of length: " + read.unit;
}

std::vector<std::string> reportLines(const FileRead& read) {
    std::vector<std::string> lines = {read.path.string(),
                                      "Format: " + read.format + ", bytes: " + std::to_string(read.bytes)};
    if (!read.unit.empty()) {
        lines.push_back(unitText(read));
    }
    addCounts(read, lines);
    for (const std::string& change : read.changed) {
        lines.push_back("Changed: " + change);
    }
    for (const std::string& reason : read.reasons) {
        lines.push_back("Lost: " + reason);
    }
    lines.emplace_back(verdictOf(read));
    return lines;
}

std::vector<std::string> reportLines(const std::vector<FileRead>& reads) {
    std::vector<std::string> lines;
    for (const FileRead& read : reads) {
        if (!lines.empty()) {
            lines.emplace_back();
        }
        const std::vector<std::string> each = reportLines(read);
        lines.insert(lines.end(), each.begin(), each.end());
    }
    return lines;
}

} // namespace velmora

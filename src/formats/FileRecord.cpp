#include "FileRecord.h"

#include <algorithm>
#include <cctype>

namespace velmora {

namespace {

/// So many texts of a kind are of use to a reader; a damaged file could give millions.
constexpr std::size_t mostTexts = 20;

void add(std::vector<std::string>& texts, std::string text) {
    if (texts.size() < mostTexts) {
        texts.push_back(std::move(text));
    } else if (texts.size() == mostTexts) {
        texts.emplace_back("and more of the kind");
    }
}

} // namespace

std::int64_t& countOf(Counts& counts, std::string_view kind) {
    const auto found =
        std::find_if(counts.begin(), counts.end(), [kind](const auto& count) { return count.first == kind; });
    return found != counts.end() ? found->second : counts.emplace_back(kind, 0).second;
}

std::int64_t countOf(const Counts& counts, std::string_view kind) {
    const auto found =
        std::find_if(counts.begin(), counts.end(), [kind](const auto& count) { return count.first == kind; });
    return found != counts.end() ? found->second : 0;
}

std::string kindInWords(std::string_view kind) {
    std::string words;
    for (const char letter : kind) {
        const auto code = static_cast<unsigned char>(letter);
        if (words.empty()) {
            words += static_cast<char>(std::toupper(code));
        } else if (std::isupper(code) != 0) {
            words += ' ';
            words += static_cast<char>(std::tolower(code));
        } else {
            words += letter;
        }
    }
    return words;
}

std::string keptText(std::string_view kind, std::int64_t found, std::int64_t kept) {
    return kindInWords(kind) + " in the file: " + std::to_string(found) + ", kept: " + std::to_string(kept);
}

void FileRead::countFromZero(const std::vector<std::string>& kinds) {
    found.clear();
    for (const std::string& kind : kinds) {
        found.emplace_back(kind, 0);
    }
    kept = found;
}

void FileRead::losesGeometry(std::string reason) {
    complete = lossless = false;
    add(reasons, std::move(reason));
}

void FileRead::losesDetail(std::string reason) {
    lossless = false;
    add(reasons, std::move(reason));
}

void FileRead::alters(std::string change) {
    lossless = false;
    add(altered_, change);
    add(changed, std::move(change));
}

std::vector<std::string> FileRead::losses() const {
    if (lossless || !reasons.empty()) {
        return reasons;
    }
    std::vector<std::string> lost;
    for (const std::string& change : altered_.empty() ? changed : altered_) {
        add(lost, "A save would not bring back: " + change);
    }
    return lost;
}

bool FileRead::keptAnything() const {
    return std::any_of(kept.begin(), kept.end(), [](const auto& count) { return count.second > 0; });
}

} // namespace velmora

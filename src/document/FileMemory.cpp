#include "FileMemory.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace velmora {

// The place decides before the file: after a link was led elsewhere, or a file put in the place of another, what stands
// there is another one than the document knows.
const FileMemory::Entry* FileMemory::find(const std::filesystem::path& path, const FileIdentity& identity) const {
    const auto there =
        std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return entry.path == path; });
    if (there != entries_.end()) {
        return &*there;
    }
    const auto same = std::find_if(entries_.begin(), entries_.end(),
                                   [&](const Entry& entry) { return entry.identity.isSameFile(identity); });
    return same != entries_.end() ? &*same : nullptr;
}

void FileMemory::put(Entry entry) {
    std::erase_if(entries_, [&entry](const Entry& other) {
        return other.path == entry.path || other.identity.isSameFile(entry.identity);
    });
    entries_.push_back(std::move(entry));
}

void FileMemory::noteRead(const FileRead& record, bool alone) {
    // Appending a model's own file to it takes nothing from what is known of it.
    if (!alone && doubtAbout(record.path) == OverwriteDoubt::None && find(record.path, record.identity) != nullptr) {
        return;
    }
    put({record.path, record.identity, true, alone, record.lossless, record.thinned});
}

void FileMemory::noteBufferRead(const FileRead& record) {
    put({record.path, record.identity, false, true, record.lossless, record.thinned});
}

void FileMemory::noteWritten(const std::filesystem::path& path) {
    if (const std::optional<FileIdentity> identity = FileIdentity::of(path)) {
        put({path, *identity});
    }
}

OverwriteDoubt FileMemory::doubtAbout(const std::filesystem::path& path) const {
    const std::optional<FileIdentity> identity = FileIdentity::of(path);
    if (!identity) {
        return OverwriteDoubt::None;
    }
    const Entry* const entry = find(path, *identity);
    if (entry == nullptr) {
        return OverwriteDoubt::Foreign;
    }
    return entry->thinned                 ? OverwriteDoubt::HoldsMorePoints
           : !entry->lossless             ? OverwriteDoubt::HoldsMore
           : !entry->alone                ? OverwriteDoubt::Foreign
           : entry->identity != *identity ? OverwriteDoubt::Changed
                                          : OverwriteDoubt::None;
}

void FileMemory::forgetModel() {
    std::erase_if(entries_, [](const Entry& entry) { return entry.ofModel; });
}

} // namespace velmora

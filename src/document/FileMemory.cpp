#include "FileMemory.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "path_names.h"

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
    // A file that was written is another one than before, under each of its names.
    std::erase_if(entries_, [&entry](const Entry& other) {
        const std::optional<FileIdentity> there = FileIdentity::of(other.path);
        return other.path == entry.path || other.identity.isSameFile(entry.identity) ||
               (there && there->isSameFile(entry.identity));
    });
    entries_.push_back(std::move(entry));
}

void FileMemory::noteRead(const FileRead& record, bool alone) {
    // Appending a model's own file to it takes nothing from what is known of it.
    const bool known = find(record.path, record.identity) != nullptr;
    if (!alone && known && doubtAbout(record.path, FileContent::Model) == OverwriteDoubt::None) {
        return;
    }
    put({record.path, record.identity, true, alone, record.lossless, record.thinned});
}

void FileMemory::noteBufferRead(const FileRead& record) {
    put({record.path, record.identity, false, true, record.lossless, record.thinned, FileContent::Buffer});
}

void FileMemory::noteWritten(const std::filesystem::path& path, FileContent content, std::int64_t leftOut) {
    if (const std::optional<FileIdentity> identity = FileIdentity::of(path)) {
        put({.path = path, .identity = *identity, .content = content, .leftOut = leftOut});
    }
}

// The whole model leaves out nothing, if the file keeps its form: a name that leads to a file of another type gives it
// another one. A part, an export and the buffer are less than the model that stands in a file.
bool FileMemory::Entry::holdsMoreThan(FileContent written, const std::filesystem::path& target) const {
    return written == FileContent::Model ? extensionOf(path) != extensionOf(target) : written != content;
}

OverwriteDoubt FileMemory::doubtAbout(const std::filesystem::path& path, FileContent content,
                                      std::int64_t leftOut) const {
    const std::optional<FileIdentity> identity = FileIdentity::of(path);
    if (!identity) {
        return OverwriteDoubt::None;
    }
    const Entry* const entry = find(path, *identity);
    if (entry == nullptr) {
        return OverwriteDoubt::Foreign;
    }
    const bool holdsMore = !entry->lossless || (entry->alone && entry->holdsMoreThan(content, path)) ||
                           (entry->alone && leftOut > entry->leftOut);
    return entry->thinned                            ? OverwriteDoubt::HoldsMorePoints
           : holdsMore                               ? OverwriteDoubt::HoldsMore
           : !entry->alone                           ? OverwriteDoubt::Foreign
           : !entry->identity.isUnchanged(*identity) ? OverwriteDoubt::Changed
                                                     : OverwriteDoubt::None;
}

void FileMemory::forgetModel() {
    std::erase_if(entries_, [](const Entry& entry) { return entry.ofModel; });
}

} // namespace velmora

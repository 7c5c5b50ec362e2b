#include "ZipArchive.h"

#include <vector>

#include <zip.h>

namespace velmora {

ZipArchive::ZipArchive(std::string_view bytes) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* const source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    if (source != nullptr) {
        archive_.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
        if (archive_ == nullptr) {
            zip_source_free(source);
        }
    }
    zip_error_fini(&error);
}

void ZipArchive::Close::operator()(zip* archive) const {
    zip_discard(archive);
}

ZipArchive::Part ZipArchive::read(const std::string& name,
                                  const std::function<bool(std::string_view piece)>& take) const {
    constexpr std::size_t pieceSize = std::size_t{1} << 16;
    const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> part(
        archive_ == nullptr ? nullptr : zip_fopen(archive_.get(), name.c_str(), ZIP_FL_NOCASE), &zip_fclose);
    if (part == nullptr) {
        return Part::Missing;
    }
    std::vector<char> piece(pieceSize);
    for (;;) {
        const zip_int64_t count = zip_fread(part.get(), piece.data(), piece.size());
        if (count <= 0) {
            return count == 0 ? Part::Whole : Part::Damaged;
        }
        if (!take({piece.data(), static_cast<std::size_t>(count)})) {
            return Part::Stopped;
        }
    }
}

} // namespace velmora

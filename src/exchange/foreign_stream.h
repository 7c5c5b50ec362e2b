#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "foreign_file.h"

namespace velmora {

/// Brings what a file holds from one process to another, as a row of records: a letter, the length in eight bytes, and
/// so many bytes. Both processes run on the same machine.
class ForeignWriter {
public:
    /// `write` takes all bytes that it is given, or answers false, and then nothing more is written.
    explicit ForeignWriter(std::function<bool(const char* bytes, std::size_t size)> write);

    void format(std::string_view name);
    void unit(std::string_view name);
    void singlePrecision();
    void lost(std::string_view reason);
    void detail(std::string_view reason);
    void changed(std::string_view what);
    /// Each with its number, where that is not 0.
    void lost(std::string_view reason, std::int64_t number);
    void changed(std::string_view what, std::int64_t number);
    /// Of a file whose faces become grids: how many it has, and how many did.
    void faces(std::int64_t found, std::int64_t kept);
    void progress(double fraction);
    void add(const ForeignGrid& grid);
    void add(const FileMesh& mesh);
    /// All is told. Without it what came is not whole. False when not all was taken.
    bool end();

private:
    void record(char kind, const void* bytes, std::size_t size);
    void text(char kind, std::string_view text) { record(kind, text.data(), text.size()); }

    std::function<bool(const char* bytes, std::size_t size)> write_;
    bool good_ = true;
};

/// Puts the records together again. Nothing is believed: what comes may be of a process that lost its mind.
class ForeignCollector {
public:
    /// At most so many bytes are taken.
    explicit ForeignCollector(std::uint64_t most) : most_(most) {}

    /// The next bytes; false once they are no records, or too many.
    bool take(std::string_view bytes);
    /// The end was told, and all parts hold together.
    bool isWhole() const;
    /// More bytes came than were allowed.
    bool isTooMuch() const { return tooMuch_; }
    double progress() const { return progress_; }
    ForeignFile& file() { return file_; }

private:
    bool takeRecord(char kind, std::string_view bytes);
    std::vector<double>* axis(char kind);
    FileMesh* mesh();

    std::uint64_t most_;
    std::uint64_t taken_ = 0;
    std::string waiting_; // the beginning of a record
    ForeignFile file_;
    double progress_ = 0.0;
    bool good_ = true;
    bool ended_ = false;
    bool tooMuch_ = false;
};

} // namespace velmora

#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "SafeFile.h"

namespace velmora {

/// Writes numbers as they stand in memory, lowest byte first, in blocks. Whether it went well tells flush().
class BinaryWriter {
public:
    explicit BinaryWriter(SafeFile& file) : file_(file) {}

    template <class T>
    void write(T value) {
        char bytes[sizeof(T)];
        std::memcpy(bytes, &value, sizeof(T));
        block_.append(bytes, sizeof(T));
        if (block_.size() > blockSize) {
            flush();
        }
    }
    void writeReal(double value, bool doublePrecision) {
        doublePrecision ? write(value) : write(static_cast<float>(value));
    }
    void writeText(std::string_view text) { block_.append(text); }
    bool flush() {
        const bool written = file_.write(block_);
        block_.clear();
        return written;
    }

private:
    static constexpr std::size_t blockSize = std::size_t{1} << 20;

    SafeFile& file_;
    std::string block_;
};

} // namespace velmora

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmora {

/// When the numbers of a file are converted ahead, and in which pieces. None of it has an effect on what is read.
struct AheadSizes {
    std::int64_t leastFile = std::int64_t{8} << 20; ///< bytes of a file that is worth the threads
    std::size_t block = std::size_t{4} << 20;       ///< bytes in hand
    std::size_t piece = std::size_t{64} << 10;      ///< bytes that one thread takes at a time
    std::int32_t numbersBefore = 256;               ///< taken of a block one by one, before the others are converted
};

/// The sizes that hold for files opened from now on; tests change them.
AheadSizes& aheadSizes();

/// The numbers of a block of text, converted by all threads before somebody asks for them. Where a reader will look for
/// a number depends on all that stands before; so everything that begins like a number behind white space is converted,
/// and who asks says where his number begins. What was not converted is left to him.
class NumbersAhead {
public:
    struct Number {
        double value;
        std::uint32_t begin;  ///< its first byte
        std::uint16_t length; ///< in bytes
        bool whole;           ///< of digits alone, behind a sign or none
    };

    /// Forgets the block.
    void clear() { ready_ = false; }
    bool isReady() const { return ready_; }

    /// Converts the numbers of `size` bytes from `text`, behind which stands a NUL, in pieces of that many bytes. Left
    /// out are those that a stream would not take as they are, or of which it is not sure that they end in the block.
    void convert(const char* text, std::size_t size, std::size_t piece);

    /// The number that begins at byte `begin`, or null. It is found if nobody asked for a later one before.
    const Number* at(std::size_t begin) {
        while (next_->begin < begin) {
            ++next_;
        }
        if (next_->begin != begin && next_->begin == behindAll) {
            return inNextPiece(begin);
        }
        return next_->begin == begin ? next_ : nullptr;
    }

private:
    static constexpr std::uint32_t behindAll = 0xffffffff;

    const Number* inNextPiece(std::size_t begin);

    bool ready_ = false;
    std::vector<std::vector<Number>> pieces_; ///< each ends in one that begins behind all
    std::size_t count_ = 0;                   ///< of pieces that belong to the block
    std::size_t piece_ = 0;
    const Number* next_ = nullptr;
};

} // namespace velmora

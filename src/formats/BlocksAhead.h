#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace velmora {

/// When a file is read ahead. None of it has an effect on what is read.
struct AheadSizes {
    std::int64_t leastFile = std::int64_t{4} << 20; ///< bytes of a file that is worth the threads
    std::size_t block = std::size_t{1} << 18;       ///< bytes that one thread takes at a time
    std::int32_t numbersBefore = 256;               ///< taken of a block one by one, before others are converted ahead
};

/// The sizes that hold for files opened from now on; tests change them.
AheadSizes& aheadSizes();

/// A number that stands in a block of text.
struct NumberAhead {
    /// What may stand between a number and the one before it; see `gap`.
    static constexpr std::uint8_t text = 0;   ///< more than white space, or nothing is known of it
    static constexpr std::uint8_t blanks = 1; ///< white space without a line feed
    static constexpr std::uint8_t lines = 2; ///< white space with several line feeds, or with one far before the number
    static constexpr std::uint8_t line = 3;  ///< white space with one line feed

    double value;
    std::uint32_t begin;  ///< its first byte
    std::uint16_t length; ///< in bytes
    bool whole;           ///< of digits alone, behind a sign or none
    std::uint8_t gap;     ///< one of those above; of `line` and so much more, so many bytes stand behind the line feed

    std::size_t end() const { return std::size_t{begin} + length; }
    bool beginsLine() const { return gap >= line; }
    /// The first byte of its line, if it begins it.
    std::size_t lineStart() const { return begin - static_cast<std::size_t>(gap - line); }
};

/// Converts what begins like a number behind white space, or at the first byte, of `size` bytes, behind which stands a
/// NUL. Left out are those that a stream would not take as they are, or of which it is not sure that they end there.
/// The last of `numbers`, which have room for `mostNumbers(size)`, begins behind all bytes.
void convertNumbers(const char* text, std::size_t size, NumberAhead* numbers);

/// How many numbers can stand in `size` bytes, and the one behind them.
constexpr std::size_t mostNumbers(std::size_t size) {
    return (size + 1) / 2 + 1;
}

/// The blocks of a file from where it stands, read and with their numbers converted by other threads before somebody
/// asks for them. Where a reader will look for a number depends on all that stands before; so all numbers are
/// converted, and who asks says where his begins. What was not converted is left to him.
class BlocksAhead {
public:
    /// `descriptor` must stay open, and is not to be touched elsewhere, as long as the object lives.
    BlocksAhead(int descriptor, std::size_t blockSize, std::size_t helpers);
    ~BlocksAhead();
    BlocksAhead(const BlocksAhead&) = delete;
    BlocksAhead& operator=(const BlocksAhead&) = delete;

    /// False when not one thread could be had.
    bool hasHelpers() const { return !helpers_.empty(); }

    /// Exchanges `text`, of `blockSize` bytes and a NUL, for the next block, and gives its size. 0 at the end of the
    /// file, or where the system failed to read it; `text` then stays.
    std::size_t next(std::unique_ptr<char[]>& text);
    bool readFailed() const { return readFailed_; }

    /// The number that begins at byte `begin` of the block given last, or null. It is found if nobody asked for a later
    /// one before. Others stand behind it, the last of which is none: in its gap is text.
    const NumberAhead* at(std::size_t begin) {
        goTo(begin);
        return number_->begin == begin ? number_ : nullptr;
    }
    /// The same for the number before which nothing but white space stands from byte `place` on, as far as that is
    /// known without a look at the text.
    const NumberAhead* behind(std::size_t place) {
        goTo(place);
        return number_->gap != NumberAhead::text && number_[-1].end() <= place ? number_ : nullptr;
    }

private:
    struct Slot {
        std::unique_ptr<char[]> text;
        std::size_t size = 0;
        bool failed = false;
        bool ready = false;
        std::unique_ptr<NumberAhead[]> numbers;
    };

    void goTo(std::size_t place) {
        while (number_->begin < place) {
            ++number_;
        }
    }
    void readBlocks();
    Slot* readNext(bool mayWait);
    void convertBlock(Slot& slot);
    void awaitBlock(const Slot& slot);

    int descriptor_;
    std::size_t blockSize_;
    std::vector<Slot> slots_; ///< block number n stands in slot n modulo their count
    std::mutex reading_;      ///< who holds it reads the next block
    std::size_t blocksRead_ = 0;
    bool endRead_ = false;
    std::mutex mutex_; ///< of what follows, and of a slot's `ready`
    std::condition_variable changed_;
    std::size_t blocksGiven_ = 0;
    bool stopped_ = false;
    std::unique_ptr<NumberAhead[]> numbers_; ///< of the block given last
    const NumberAhead* number_ = nullptr;
    bool ended_ = false;
    bool readFailed_ = false;
    std::vector<std::thread> helpers_;
};

} // namespace velmora

#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "number_line.h"

namespace velmora {

/// When a file is read ahead. None of it has an effect on what is read.
struct AheadSizes {
    std::int64_t leastFile = std::int64_t{4} << 20; ///< bytes of a file that is worth the threads
    std::size_t block = std::size_t{1} << 18;       ///< bytes that one thread takes at a time
    std::size_t numbersBefore = 256;                ///< taken of a block one by one, before others are converted ahead
};

/// The sizes that hold for files opened from now on; tests change them.
AheadSizes& aheadSizes();

/// A number that stands in a block of text.
struct NumberAhead {
    double value;
    std::uint32_t begin;  ///< its first byte
    std::uint16_t length; ///< in bytes
    bool whole;           ///< of digits alone, behind a sign or none
    bool follows;         ///< nothing but white space stands between it and the number before it

    std::size_t end() const { return std::size_t{begin} + length; }
};

/// A line of numbers that stands in a block of text.
struct LineAhead {
    std::uint32_t begin; ///< its first byte
    std::uint32_t first; ///< the first one that is no white space
    std::uint32_t end;   ///< what stands behind its line feed
};

/// Converts what begins like a number behind white space, or at the first byte, of `size` bytes, behind which stands a
/// NUL. Left out are those that a stream would not take as they are, or of which it is not sure that they end there.
/// The last of `numbers`, which have room for `mostNumbers(size)`, begins behind all bytes.
void convertNumbers(const char* text, std::size_t size, NumberAhead* numbers);

/// How many numbers can stand in `size` bytes, and the one behind them.
constexpr std::size_t mostNumbers(std::size_t size) {
    return (size + 1) / 2 + 1;
}

/// Converts the lines of a form, see convertLine, that begin in `size` bytes, behind which stands a NUL. Not the first
/// one, as nobody knows whether it began before. The last of `lines`, which have room for `mostNumbers(size)` as
/// `values` has, begins behind all bytes; the numbers of the others stand in `values`.
void convertLines(const char* text, std::size_t size, LineForm form, LineAhead* lines, double* values);

/// The blocks of a file from where it stands, read and with their numbers converted by other threads before somebody
/// asks for them. Where a reader will look for a number depends on all that stands before; so all numbers are
/// converted, and who asks says where his begins. What was not converted is left to him. Who asks for lines of numbers
/// gets them all at once from the next blocks on, which costs less.
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
    /// one before. Others stand behind it, the last of which is none: it follows none.
    const NumberAhead* at(std::size_t begin) {
        goTo(begin);
        return number_->begin == begin ? number_ : nullptr;
    }
    /// The same for the number before which nothing but white space stands from byte `place` on, as far as that is
    /// known without a look at the text.
    const NumberAhead* behind(std::size_t place) {
        goTo(place);
        return number_->follows && number_[-1].end() <= place ? number_ : nullptr;
    }

    /// Whether lines of that form were converted in the block given last, and no single numbers. What is asked for
    /// decides how the next blocks are converted.
    bool holdsLines(LineForm form) {
        ask(form);
        return given_.form == form;
    }
    /// From now on single numbers are wanted.
    void askForNumbers() { ask({}); }
    /// Lines that follow each other from byte `place` on, before which nothing but white space stands in the first.
    struct Lines {
        const double* values = nullptr;
        std::size_t count = 0;
        std::size_t end = 0; ///< what stands behind the last one
    };
    /// At most so many of them. They are found if nobody asked for later ones before.
    Lines linesAt(std::size_t place, std::size_t most);

private:
    struct Slot {
        std::unique_ptr<char[]> text;
        std::size_t size = 0;
        bool failed = false;
        bool ready = false;
        LineForm form; ///< of the lines that were converted; of none when numbers were
        std::unique_ptr<NumberAhead[]> numbers;
        std::unique_ptr<LineAhead[]> lines;
        std::unique_ptr<double[]> values; ///< of the lines
    };

    void goTo(std::size_t place) {
        while (number_->begin < place) {
            ++number_;
        }
    }
    void ask(LineForm form) {
        if (asked_.load(std::memory_order_relaxed) != form) {
            asked_.store(form, std::memory_order_relaxed);
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
    std::atomic<LineForm> asked_{LineForm{}};
    Slot given_; ///< the block given last, but for its text
    const NumberAhead* number_ = nullptr;
    const LineAhead* line_ = nullptr;
    bool ended_ = false;
    bool readFailed_ = false;
    std::vector<std::thread> helpers_;
};

} // namespace velmora

#include "BlocksAhead.h"

#include <cerrno>
#include <exception>
#include <limits>

#include <sys/types.h>
#include <unistd.h>

#include "byte_steps.h"
#include "characters.h"
#include "plain_decimal.h"

namespace velmora {

namespace {

/// A word that begins like a number; gives what stands behind as much of it as is one, null when none is. Most whole
/// numbers have few digits.
const char* convertNumber(const char* begin, const char* end, NumberAhead& number) {
    const char* const firstDigit = begin + static_cast<int>(isSign(*begin));
    number.whole = false;
    if (firstDigit[1] != '.') { // no need to try it
        std::int32_t magnitude = 0;
        if (const char* const stop = convertFewDigits(firstDigit, magnitude)) {
            // Of zeros the negative one keeps its sign as a real number.
            number.value = *begin == '-' ? -static_cast<double>(magnitude) : magnitude;
            number.whole = true;
            return stop;
        }
    }
    const char* const stop = convertDecimal(begin + static_cast<int>(*begin == '+'), end, number.value);
    return stop != nullptr && stop - begin > std::numeric_limits<std::uint16_t>::max() ? nullptr : stop;
}

constexpr std::uint32_t behindAll = std::numeric_limits<std::uint32_t>::max();
constexpr NumberAhead noNumber = {0.0, behindAll, 0, false, NumberAhead::text};

/// Passes over white space and gives what kind of a gap it is.
std::uint8_t skipGap(const char*& p, const char* end) {
    if (*p == ' ' && !isSpace(p[1])) { // nearly always
        ++p;
        return NumberAhead::blanks;
    }
    constexpr std::ptrdiff_t far = std::numeric_limits<std::uint8_t>::max() - NumberAhead::line;
    const char* behindFeed = nullptr;
    int feeds = 0;
    while (isSpace(*p)) { // the NUL behind the block stops it
        if (*p++ == '\n') {
            behindFeed = p;
            ++feeds;
            p = *p == ' ' ? skipSpaces(p, end) : p;
        }
    }
    if (feeds == 0) {
        return NumberAhead::blanks;
    }
    return feeds == 1 && p - behindFeed <= far ? static_cast<std::uint8_t>(NumberAhead::line + (p - behindFeed))
                                               : NumberAhead::lines;
}

} // namespace

AheadSizes& aheadSizes() {
    static AheadSizes sizes;
    return sizes;
}

void convertNumbers(const char* text, std::size_t size, NumberAhead* number) {
    const char* const end = text + size;
    const char* p = text;
    bool behindNumber = false;
    while (true) {
        const std::uint8_t space = skipGap(p, end);
        if (p == end) {
            break;
        }
        const char* const begin = p;
        const char* const firstDigit = p + (isSign(*p) ? 1 : 0);
        const std::uint8_t gap = behindNumber ? space : NumberAhead::text;
        behindNumber = false;
        if (isDigit(*firstDigit) || *firstDigit == '.') {
            if (const char* const stop = convertNumber(begin, end, *number)) {
                number->begin = static_cast<std::uint32_t>(begin - text);
                number->length = static_cast<std::uint16_t>(stop - begin);
                number->gap = gap;
                ++number;
                behindNumber = true;
                p = stop;
            }
        }
        while (p != end && !isSpace(*p)) {
            behindNumber = false;
            // Behind a control character, which belongs to the word, or the word's first letter.
            p = skipWord(p + 1, end);
        }
    }
    *number = noNumber;
}

// ---- BlocksAhead ----------------------------------------------------------------------------------------------------

BlocksAhead::BlocksAhead(int descriptor, std::size_t blockSize, std::size_t helpers)
    : descriptor_(descriptor), blockSize_(blockSize), slots_(helpers + 2),
      numbers_(std::make_unique_for_overwrite<NumberAhead[]>(mostNumbers(blockSize))), number_(numbers_.get()) {
    *numbers_.get() = noNumber;
    for (Slot& slot : slots_) {
        slot.text = std::make_unique_for_overwrite<char[]>(blockSize + 1);
        slot.numbers = std::make_unique_for_overwrite<NumberAhead[]>(mostNumbers(blockSize));
    }
    helpers_.reserve(helpers);
    try {
        while (helpers_.size() < helpers) {
            helpers_.emplace_back([this] { readBlocks(); });
        }
    } catch (const std::exception&) {
        // No room for one more: those that are there do the work.
    }
}

BlocksAhead::~BlocksAhead() {
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
    }
    changed_.notify_all();
    for (std::thread& helper : helpers_) {
        helper.join();
    }
}

/// The next block of the file in its slot, once that is free; null when the end was read, nobody wants more, or it
/// would take a wait that is not wanted.
BlocksAhead::Slot* BlocksAhead::readNext(bool mayWait) {
    std::unique_lock reading(reading_, std::defer_lock);
    if (mayWait) {
        reading.lock();
    }
    if ((!mayWait && !reading.try_lock()) || endRead_) {
        return nullptr;
    }
    {
        std::unique_lock lock(mutex_);
        const auto isFree = [this] { return blocksRead_ < blocksGiven_ + slots_.size(); };
        if (mayWait) {
            changed_.wait(lock, [&] { return stopped_ || isFree(); });
        }
        if (stopped_ || !isFree()) {
            return nullptr;
        }
    }
    Slot& slot = slots_[blocksRead_++ % slots_.size()];
    ssize_t count = 0;
    do {
        count = ::read(descriptor_, slot.text.get(), blockSize_);
    } while (count < 0 && errno == EINTR);
    slot.failed = count < 0;
    slot.size = count > 0 ? static_cast<std::size_t>(count) : 0;
    slot.text[slot.size] = '\0';
    endRead_ = count <= 0;
    return &slot;
}

void BlocksAhead::convertBlock(Slot& slot) {
    convertNumbers(slot.text.get(), slot.size, slot.numbers.get());
    {
        const std::lock_guard lock(mutex_);
        slot.ready = true;
    }
    changed_.notify_all();
}

void BlocksAhead::readBlocks() {
    while (Slot* const slot = readNext(true)) {
        convertBlock(*slot);
    }
}

/// Instead of waiting for a block the reader makes one of those behind it ready.
void BlocksAhead::awaitBlock(const Slot& slot) {
    const auto isReady = [this, &slot] {
        const std::lock_guard lock(mutex_);
        return slot.ready;
    };
    while (!isReady()) {
        if (Slot* const other = readNext(false)) {
            convertBlock(*other);
        } else {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [&slot] { return slot.ready; });
        }
    }
}

std::size_t BlocksAhead::next(std::unique_ptr<char[]>& text) {
    if (ended_) {
        return 0;
    }
    std::size_t size = 0;
    Slot& slot = slots_[blocksGiven_ % slots_.size()];
    awaitBlock(slot);
    {
        const std::lock_guard lock(mutex_);
        size = slot.size;
        ended_ = size == 0;
        readFailed_ = slot.failed;
        if (ended_) {
            return 0;
        }
        text.swap(slot.text);
        numbers_.swap(slot.numbers);
        slot.ready = false;
        ++blocksGiven_;
    }
    changed_.notify_all();
    number_ = numbers_.get();
    return size;
}

} // namespace velmora

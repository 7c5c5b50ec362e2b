#include "BlocksAhead.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <limits>
#include <type_traits>

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
constexpr NumberAhead noNumber = {0.0, behindAll, 0, false, false};
constexpr LineAhead noLine = {behindAll, behindAll, behindAll};

/// Of a line feed spaces often follow, of a space nearly never.
const char* skipWhiteSpace(const char* p, const char* end) {
    if (*p == ' ' && !isSpace(p[1])) {
        return p + 1;
    }
    while (isSpace(*p)) { // the NUL behind the block stops it
        if (*p++ == '\n' && *p == ' ') {
            p = skipSpaces(p, end);
        }
    }
    return p;
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
        p = skipWhiteSpace(p, end);
        if (p == end) {
            break;
        }
        const char* const begin = p;
        const char* const firstDigit = p + (isSign(*p) ? 1 : 0);
        const bool follows = behindNumber;
        behindNumber = false;
        if (isDigit(*firstDigit) || *firstDigit == '.') {
            if (const char* const stop = convertNumber(begin, end, *number)) {
                number->begin = static_cast<std::uint32_t>(begin - text);
                number->length = static_cast<std::uint16_t>(stop - begin);
                number->follows = follows;
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

namespace {

template <class Number>
void convertLinesOf(const char* text, std::size_t size, std::size_t numbers, LineAhead* line, double* values) {
    const char* const end = text + size;
    const auto behindFeed = [end](const char* p) {
        const void* const feed = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
        return feed != nullptr ? static_cast<const char*>(feed) + 1 : end;
    };
    const auto place = [text](const char* p) { return static_cast<std::uint32_t>(p - text); };
    for (const char* p = behindFeed(text); p != end;) {
        const char* const behind = convertLine<Number>(p, end, values, numbers);
        if (behind == nullptr) {
            p = behindFeed(p);
            continue;
        }
        *line++ = {place(p), place(skipInLine(p)), place(behind)};
        values += numbers;
        p = behind;
    }
    *line = noLine;
}

} // namespace

void convertLines(const char* text, std::size_t size, LineForm form, LineAhead* lines, double* values) {
    form.whole != 0 ? convertLinesOf<std::int32_t>(text, size, form.numbers, lines, values)
                    : convertLinesOf<double>(text, size, form.numbers, lines, values);
}

// ---- BlocksAhead ----------------------------------------------------------------------------------------------------

BlocksAhead::BlocksAhead(int descriptor, std::size_t blockSize, std::size_t helpers)
    : descriptor_(descriptor), blockSize_(blockSize), slots_(helpers + 2) {
    const std::size_t room = mostNumbers(blockSize);
    const auto makeRoom = [room](Slot& slot) {
        slot.numbers = std::make_unique_for_overwrite<NumberAhead[]>(room);
        slot.lines = std::make_unique_for_overwrite<LineAhead[]>(room);
        slot.values = std::make_unique_for_overwrite<double[]>(room);
    };
    makeRoom(given_);
    given_.numbers[0] = noNumber;
    given_.lines[0] = noLine;
    number_ = given_.numbers.get();
    line_ = given_.lines.get();
    for (Slot& slot : slots_) {
        makeRoom(slot);
        slot.text = std::make_unique_for_overwrite<char[]>(blockSize + 1);
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
    slot.form = asked_.load(std::memory_order_relaxed);
    if (slot.form.numbers > 0) {
        slot.numbers[0] = noNumber;
        convertLines(slot.text.get(), slot.size, slot.form, slot.lines.get(), slot.values.get());
    } else {
        convertNumbers(slot.text.get(), slot.size, slot.numbers.get());
    }
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
        given_.form = slot.form;
        given_.numbers.swap(slot.numbers);
        given_.lines.swap(slot.lines);
        given_.values.swap(slot.values);
        slot.ready = false;
        ++blocksGiven_;
    }
    changed_.notify_all();
    number_ = given_.numbers.get();
    line_ = given_.lines.get();
    return size;
}

BlocksAhead::Lines BlocksAhead::linesAt(std::size_t place, std::size_t most) {
    while (line_->first < place) {
        ++line_;
    }
    if (line_->begin > place || most == 0) {
        return {};
    }
    const auto before = static_cast<std::size_t>(line_ - given_.lines.get());
    std::size_t count = 1;
    while (count < most && line_[count].begin == line_[count - 1].end) {
        ++count;
    }
    const std::size_t end = line_[count - 1].end;
    line_ += count;
    return {given_.values.get() + before * given_.form.numbers, count, end};
}

} // namespace velmora

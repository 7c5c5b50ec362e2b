#include "NumberPortions.h"

#include <algorithm>

#include "parallel.h"

namespace velmora {

namespace {

/// So many for each thread: one that is held up by other work leaves the rest to the others.
constexpr std::size_t portionsOfThread = 4;
/// Bytes of words for each number that a portion has room for; there are more numbers than words in a file.
constexpr std::size_t wordsOfNumber = 16;
/// What an integer, or a number beside the digits that its precision asks for, has at most.
constexpr std::size_t besideDigits = 24;

} // namespace

PortionSizes& portionSizes() {
    static PortionSizes sizes;
    return sizes;
}

NumberPortions::NumberPortions(std::size_t threads, std::size_t numbers, int precision, std::chars_format format)
    : precision_(precision), format_(format), numbers_(numbers), portions_(portionsOfThread * threads) {
    const std::size_t lengthOfNumber = static_cast<std::size_t>(precision) + besideDigits;
    for (Portion& portion : portions_) {
        portion.items.reserve(numbers);
        portion.words.reserve(wordsOfNumber * numbers);
        portion.text.resize((lengthOfNumber + wordsOfNumber) * numbers);
    }
}

void NumberPortions::makeRoom() {
    if (portion().items.size() == numbers_ || portion().words.size() == wordsOfNumber * numbers_) {
        ++current_;
    }
}

void NumberPortions::addChar(char value) {
    std::vector<Item>& items = portion().items;
    if (!items.empty() && items.back().kind != Kind::Words && items.back().behind == '\0' && value != '\0') {
        items.back().behind = value;
    } else {
        addText({&value, 1});
    }
}

std::size_t NumberPortions::addText(std::string_view text) {
    Portion& in = portion();
    const std::size_t size = std::min(text.size(), wordsOfNumber * numbers_ - in.words.size());
    in.words.insert(in.words.end(), text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size));
    if (!in.items.empty() && in.items.back().kind == Kind::Words) {
        in.items.back().length += static_cast<std::uint32_t>(size);
    } else {
        in.items.push_back({0.0, 0, static_cast<std::uint32_t>(size), Kind::Words, '\0'});
    }
    return size;
}

void NumberPortions::convert(Portion& portion) const {
    char* p = portion.text.data();
    char* const end = p + portion.text.size();
    const char* words = portion.words.data();
    for (const Item& item : portion.items) {
        switch (item.kind) {
        case Kind::Real:
            p = std::to_chars(p, end, item.real, format_, precision_).ptr;
            break;
        case Kind::Whole:
            p = std::to_chars(p, end, item.whole).ptr;
            break;
        case Kind::Words:
            p = std::copy_n(words, item.length, p);
            words += item.length;
        }
        if (item.behind != '\0') {
            *p++ = item.behind;
        }
    }
    portion.textSize = static_cast<std::size_t>(p - portion.text.data());
}

bool NumberPortions::flushInto(SafeFile& file) {
    const std::size_t used = std::min(current_ + 1, portions_.size());
    forEachChunk(used, 1, [this](std::size_t number, std::size_t, std::size_t) { convert(portions_[number]); });
    bool written = true;
    for (std::size_t number = 0; number < used; ++number) {
        Portion& portion = portions_[number];
        written = file.write({portion.text.data(), portion.textSize}) && written;
        portion.items.clear();
        portion.words.clear();
    }
    current_ = 0;
    return written;
}

} // namespace velmora

#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "SafeFile.h"

namespace velmora {

/// From how much text on it is worth the threads. It has no effect on what is written.
struct PortionSizes {
    std::size_t numbers = 4096;       ///< that one thread turns into text at a time
    std::size_t textBefore = 1 << 20; ///< bytes that are written by one thread before
};

/// The sizes that hold for writers made from now on; tests change them.
PortionSizes& portionSizes();

/// Numbers and words on their way into a file. They wait in portions, which are turned into text by several threads at
/// once and written in their order: how a number is spelt does not depend on what stands around it.
class NumberPortions {
public:
    /// For so many threads; `numbers` is what a portion takes.
    NumberPortions(std::size_t threads, std::size_t numbers, int precision, std::chars_format format);

    // Each takes what is given, once `isFull` is false.
    void addDouble(double value) { portion().items.push_back({value, 0, 0, Kind::Real, '\0'}); }
    void addInt(std::int64_t value) { portion().items.push_back({0.0, value, 0, Kind::Whole, '\0'}); }
    void addChar(char value);
    /// Gives how much of the text was taken: all of it, or what has room.
    std::size_t addText(std::string_view text);
    /// Whether nothing has room any more.
    bool isFull() const { return current_ == portions_.size(); }
    /// Goes on with the next portion when the one in hand has no room for another number or word.
    void makeRoom();

    /// All that waits goes into the file. False when that failed.
    bool flushInto(SafeFile& file);

private:
    enum class Kind : std::uint8_t { Real, Whole, Words };
    struct Item {
        double real;
        std::int64_t whole;
        std::uint32_t length; ///< of words
        Kind kind;
        char behind; ///< what follows a number; NUL for nothing
    };
    struct Portion {
        std::vector<Item> items;
        std::vector<char> words;
        std::vector<char> text;
        std::size_t textSize = 0;
    };

    Portion& portion() { return portions_[current_]; }
    void convert(Portion& portion) const;

    int precision_;
    std::chars_format format_;
    std::size_t numbers_;
    std::vector<Portion> portions_;
    std::size_t current_ = 0;
};

} // namespace velmora

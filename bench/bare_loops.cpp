// The least that a file of text can cost: a loop over its bytes that converts each number and keeps none. compare.py
// sets the programs beside it.
//
// bare_loops numbers FILE [REALS]   behind so many real numbers come whole ones; without REALS all are real
// bare_loops nothing                starts and ends

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <limits>
#include <string_view>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 20;

constexpr bool isBlank(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

constexpr bool beginsNumber(char c) {
    return (c >= '0' && c <= '9') || c == '-' || c == '.';
}

/// What the loop comes to, so that no compiler leaves it out.
struct Numbers {
    std::int64_t count = 0;
    double sum = 0.0;
};

template <class Value>
const char* takeNumber(const char* first, const char* last, Numbers& numbers) {
    Value value{};
    const auto [behind, error] = std::from_chars(first, last, value);
    if (error == std::errc()) {
        ++numbers.count;
        numbers.sum += static_cast<double>(value);
    }
    return behind;
}

/// Takes the numbers of whole words; other words are passed over.
void takeWords(const char* first, const char* last, std::int64_t reals, Numbers& numbers) {
    while (first != last) {
        if (isBlank(*first)) {
            ++first;
            continue;
        }
        if (beginsNumber(*first)) {
            first = numbers.count < reals ? takeNumber<double>(first, last, numbers)
                                          : takeNumber<std::int32_t>(first, last, numbers);
        }
        while (first != last && !isBlank(*first)) {
            ++first;
        }
    }
}

/// False when the file cannot be read.
bool takeFile(const char* path, std::int64_t reals, Numbers& numbers) {
    const int file = ::open(path, O_RDONLY | O_CLOEXEC);
    std::vector<char> block(blockSize);
    std::size_t kept = 0; // of the word that the block before ended in
    ssize_t count = -1;
    while (file >= 0 && (count = ::read(file, block.data() + kept, block.size() - kept)) > 0) {
        const char* const first = block.data();
        const char* const end = first + kept + count;
        const char* last = end;
        while (last != first && !isBlank(last[-1])) {
            --last;
        }
        takeWords(first, last, reals, numbers);
        kept = static_cast<std::size_t>(end - last);
        std::memmove(block.data(), last, kept);
    }
    takeWords(block.data(), block.data() + kept, reals, numbers);
    ::close(file);
    return count == 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> words(argv + 1, argv + argc);
    if (words.size() == 1 && words[0] == "nothing") {
        return 0;
    }
    std::int64_t reals = std::numeric_limits<std::int64_t>::max();
    if (words.size() == 3) {
        std::from_chars(words[2].data(), words[2].data() + words[2].size(), reals);
    }
    Numbers numbers;
    if (words.size() < 2 || words[0] != "numbers" || !takeFile(argv[2], reals, numbers)) {
        std::cerr << "bare_loops numbers FILE [REALS], or bare_loops nothing\n";
        return 1;
    }
    std::cout << numbers.count << ' ' << numbers.sum << '\n';
    return 0;
}

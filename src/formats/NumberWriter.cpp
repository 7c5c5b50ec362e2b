#include "NumberWriter.h"

#include <algorithm>
#include <new>
#include <utility>

#include "NumberPortions.h"
#include "parallel.h"

namespace velmora {

namespace {

// The longest number: sign, digit, point, the digits behind it, "e+308"; and the longest integer.
constexpr std::size_t numberSize = NumberWriter::maxPrecision + 16;
/// More than one that hands out the numbers and writes the text can keep at work.
constexpr std::size_t mostThreads = 8;

} // namespace

NumberWriter::NumberWriter(SafeFile& file, int precision, NumberNotation notation, std::size_t blockSize)
    : file_(file), precision_(precision < 0 ? 6 : std::min(precision, maxPrecision)),
      format_(notation == NumberNotation::General ? std::chars_format::general : std::chars_format::scientific),
      block_(std::make_unique_for_overwrite<char[]>(std::max(blockSize, numberSize))), cursor_(block_.get()),
      end_(cursor_ + std::max(blockSize, numberSize)) {}

NumberWriter::~NumberWriter() = default;

// With several threads, room for one number or a word more.
void NumberWriter::makeRoom(std::size_t size) {
    if (portions_ != nullptr) {
        portions_->makeRoom();
        if (portions_->isFull()) {
            blockIsFull();
        }
    } else if (static_cast<std::size_t>(end_ - cursor_) < size) {
        blockIsFull();
        beginPortions();
    }
}

void NumberWriter::blockIsFull() {
    flush();
    if (report_) {
        reportWritten();
    }
}

void NumberWriter::beginPortions() {
    constexpr int mostDigits = 32; // of more the threads would take too much memory
    if (!mayUseThreads_ || written_ < portionSizes().textBefore) {
        return;
    }
    mayUseThreads_ = false;
    const std::size_t threads = std::min(threadCount(), mostThreads);
    if (threads > 1 && precision_ <= mostDigits) {
        try {
            portions_ = std::make_unique<NumberPortions>(threads, portionSizes().numbers, precision_, format_);
        } catch (const std::bad_alloc&) {
            // One thread goes on.
        }
    }
}

void NumberWriter::reportTo(ReportProgress report, std::int64_t numbers) {
    report_ = std::move(report);
    numbersExpected_ = numbers;
    numbersWritten_ = numbersReported_ = 0;
}

// A large file has more blocks than progress reports are worth.
void NumberWriter::reportWritten() {
    constexpr std::int64_t steps = 200;
    const std::int64_t written = std::min(numbersWritten_, numbersExpected_);
    if (written > numbersReported_ && (written - numbersReported_) * steps >= numbersExpected_) {
        numbersReported_ = written;
        report_(static_cast<double>(written) / static_cast<double>(numbersExpected_));
    }
}

void NumberWriter::writeDouble(double value) {
    makeRoom(numberSize);
    ++numbersWritten_;
    if (portions_ != nullptr) {
        portions_->addDouble(value);
    } else {
        cursor_ = std::to_chars(cursor_, end_, value, format_, precision_).ptr;
    }
}

void NumberWriter::writeInt(std::int64_t value) {
    makeRoom(numberSize);
    ++numbersWritten_;
    if (portions_ != nullptr) {
        portions_->addInt(value);
    } else {
        cursor_ = std::to_chars(cursor_, end_, value).ptr;
    }
}

void NumberWriter::writeChar(char value) {
    makeRoom(1);
    if (portions_ != nullptr) {
        portions_->addChar(value);
    } else {
        *cursor_++ = value;
    }
}

void NumberWriter::writeText(std::string_view text) {
    while (!text.empty()) {
        makeRoom(std::min(text.size(), numberSize));
        std::size_t size = 0;
        if (portions_ != nullptr) {
            size = portions_->addText(text);
        } else {
            size = std::min(text.size(), static_cast<std::size_t>(end_ - cursor_));
            cursor_ = std::copy_n(text.data(), size, cursor_);
        }
        text.remove_prefix(size);
    }
}

void NumberWriter::writeQuoted(std::string_view text) {
    writeChar('"');
    for (std::size_t quote = text.find('"'); quote != std::string_view::npos; quote = text.find('"')) {
        writeText(text.substr(0, quote));
        writeChar('\'');
        text.remove_prefix(quote + 1);
    }
    writeText(text);
    writeChar('"');
}

bool NumberWriter::flush() {
    if (portions_ != nullptr) {
        return portions_->flushInto(file_);
    }
    written_ += static_cast<std::size_t>(cursor_ - block_.get());
    const bool written = file_.write({block_.get(), static_cast<std::size_t>(cursor_ - block_.get())});
    cursor_ = block_.get();
    return written;
}

} // namespace velmora

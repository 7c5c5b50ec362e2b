// Reads one file by a library of others and writes what it finds to its standard output, or the other way round; the
// program that started it keeps its own memory, whatever becomes of this process. Arguments: "read" or "write", format,
// path, bytes of memory, seconds, and the options of Import.

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FileBytes.h"
#include "folder_limit.h"
#include "reader_work.h"
#include "reading_child.h"

namespace {

using namespace velmora;

constexpr int badUsage = 1;
constexpr std::size_t argumentCount = 11;

template <class T>
T numberOf(const std::string& text, T fallback) {
    T value{};
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && stop == text.data() + text.size() ? value : fallback;
}

void limit(int resource, std::uint64_t most) {
    const rlimit limits = {most, most};
    ::setrlimit(static_cast<__rlimit_resource>(resource), &limits);
}

// A sanitizer's own memory is a multiple of any limit.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool sanitized = true;
#elif defined(__has_feature)
constexpr bool sanitized = __has_feature(address_sanitizer);
#else
constexpr bool sanitized = false;
#endif

void limitMyself(bool reads, std::uint64_t memory, std::uint64_t seconds) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (!sanitized) {
        limit(RLIMIT_AS, memory);
    }
    limit(RLIMIT_CORE, 0);
    if (reads) {
        limit(RLIMIT_FSIZE, 0); // what reads writes no file
    }
    // The signal comes a second before the end that cannot be caught, and tells why.
    const rlimit cpu = {seconds, seconds + 1};
    ::setrlimit(RLIMIT_CPU, &cpu);
}

/// The stream for the answer, out of the way of libraries that talk.
int takeOutput() {
    const int answer = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    return answer;
}

bool writeAll(int descriptor, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t count = ::write(descriptor, bytes, size);
        if (count <= 0) {
            return false;
        }
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

/// The system could not read the file.
class Unreadable : public std::exception {};

/// Reads the file once. A library takes an error of the disk for the end of the file, or for a fault in it; behind this
/// what it reads is in the system's memory.
void tryTheDisk(const std::filesystem::path& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return; // the library tells what it cannot open
    }
    struct stat status {};
    std::vector<char> bytes(std::size_t{1} << 20);
    ssize_t count = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) ? 1 : 0;
    while (count > 0 || (count < 0 && errno == EINTR)) {
        count = ::read(descriptor, bytes.data(), bytes.size());
    }
    ::close(descriptor);
    if (count < 0) {
        throw Unreadable();
    }
}

void read(const ReaderWork& work, [[maybe_unused]] ForeignWriter& out) {
    tryTheDisk(work.path);
#ifdef VELMORA_READS_VRML
    if (work.format == "vrml2" || work.format == "inventor") {
        readVrml(work, out);
        return;
    }
#endif
#ifdef VELMORA_READS_CGNS
    if (work.format == "cgns") {
        readCgns(work, out);
        return;
    }
#endif
#ifdef VELMORA_READS_CAD
    if (work.format == "step" || work.format == "iges") {
        readCad(work, out);
        return;
    }
#endif
    throw Refusal("no reader for " + work.format);
}

void write(const ReaderWork& work) {
    ForeignCollector collector(memoryForImport());
    std::vector<char> bytes(std::size_t{1} << 16);
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count <= 0) {
            break;
        }
        if (!collector.take({bytes.data(), static_cast<std::size_t>(count)})) {
            break;
        }
    }
    if (!collector.isWhole()) {
        throw Refusal("what shall be written is not whole");
    }
#ifdef VELMORA_READS_CGNS
    if (work.format == "cgns") {
        writeCgns(work, collector.file());
        return;
    }
#endif
    throw Refusal("no writer for " + work.format);
}

ReaderWork workOf(const std::vector<std::string>& arguments) {
    ReaderWork work;
    work.format = arguments[2];
    work.path = arguments[3];
    work.options.volumeFaces = arguments[6] == "1";
    work.options.cadPatches = arguments[7] == "1";
    work.options.chord = numberOf(arguments[8], work.options.chord);
    work.options.sections = numberOf(arguments[9], work.options.sections);
    work.options.points = numberOf(arguments[10], work.options.points);
    return work;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    if (arguments.size() != argumentCount || (arguments[1] != "read" && arguments[1] != "write")) {
        return badUsage;
    }
    const bool reads = arguments[1] == "read";
    limitMyself(reads, numberOf<std::uint64_t>(arguments[4], 0), numberOf<std::uint64_t>(arguments[5], 0));
    keepToFolderOf(arguments[3], !reads);
    try {
        if (!reads) {
            write(workOf(arguments));
            return 0;
        }
        const int answer = takeOutput();
        ForeignWriter out([answer](const char* bytes, std::size_t size) { return writeAll(answer, bytes, size); });
        read(workOf(arguments), out);
        out.end();
        ::_exit(0); // libraries that clean up at the end may fail at that too
    } catch (const std::bad_alloc&) {
        ::_exit(childOutOfMemory);
    } catch (const Unreadable&) {
        ::_exit(childUnreadable);
    } catch (...) {
        ::_exit(childRefused);
    }
}

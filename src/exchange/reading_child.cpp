#include "reading_child.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <system_error>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "FileBytes.h"

extern char** environ;

namespace velmora {

namespace {

using Clock = std::chrono::steady_clock;

class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    int number() const { return number_; }
    void close() {
        if (number_ >= 0) {
            ::close(number_);
            number_ = -1;
        }
    }

private:
    int number_;
};

/// A process that is gone when the object is.
class Child {
public:
    /// `input` and `output` become its standard streams; its errors go nowhere.
    Child(const std::vector<std::string>& arguments, int input, int output) {
        std::vector<char*> list;
        list.reserve(arguments.size() + 1);
        for (const std::string& argument : arguments) {
            list.push_back(const_cast<char*>(argument.c_str())); // taken so, never changed
        }
        list.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        if (input >= 0) {
            posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
        } else {
            posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        }
        if (output >= 0) {
            posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
        } else {
            posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        }
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        if (::posix_spawn(&id_, list[0], &actions, nullptr, list.data(), environ) != 0) {
            id_ = -1;
        }
        posix_spawn_file_actions_destroy(&actions);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() {
        if (id_ > 0) {
            ::kill(id_, SIGKILL);
            wait();
        }
    }

    bool isStarted() const { return id_ > 0; }
    /// Waits for its end and tells how it came.
    int wait() {
        int status = 0;
        while (::waitpid(id_, &status, 0) < 0 && errno == EINTR) {
        }
        id_ = -1;
        return status;
    }
    /// The same, but no longer than to that time; false, and nothing known, then.
    bool waitUntil(Clock::time_point end, int& status) {
        constexpr useconds_t pause = 2000;
        for (;;) {
            const pid_t id = ::waitpid(id_, &status, WNOHANG);
            if (id == id_ || (id < 0 && errno != EINTR)) {
                id_ = -1;
                return true;
            }
            if (Clock::now() >= end) {
                return false;
            }
            ::usleep(pause);
        }
    }

private:
    pid_t id_ = -1;
};

ChildEnd endOf(int status) {
    if (WIFEXITED(status)) {
        return WEXITSTATUS(status) == 0                  ? ChildEnd::Whole
               : WEXITSTATUS(status) == childRefused     ? ChildEnd::Refused
               : WEXITSTATUS(status) == childOutOfMemory ? ChildEnd::OutOfMemory
               : WEXITSTATUS(status) == childUnreadable  ? ChildEnd::Unreadable
                                                         : ChildEnd::Died;
    }
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU ? ChildEnd::TooLong : ChildEnd::Died;
}

std::string textOf(double value) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

/// What both kinds of work begin with: what to do, and the limits.
std::vector<std::string> argumentsFor(const std::filesystem::path& program, const char* work, const std::string& format,
                                      const std::filesystem::path& path, const ImportOptions& options) {
    const std::uint64_t memory = options.childMemory == 0 ? memoryForImport() : options.childMemory;
    return {program.string(),
            work,
            format,
            path.string(),
            std::to_string(memory),
            std::to_string(options.childSeconds),
            std::to_string(options.volumeFaces ? 1 : 0),
            std::to_string(options.cadPatches ? 1 : 0),
            textOf(options.chord),
            std::to_string(options.sections),
            std::to_string(options.points)};
}

struct ReaderName {
    const char* program;
    const char* package;
};

ReaderName readerNameOf(const std::string& format) {
    return format == "step" || format == "iges" ? ReaderName{"velmora-cad-reader", "velmora-cad"}
                                                : ReaderName{"velmora-reader", "velmora-readers"};
}

/// The folder of the library that holds this code: of the Python module, say, which another program has loaded. Empty
/// for a program that was started by a name alone, which says nothing of a folder.
std::filesystem::path folderOfThisCode() {
    static const char inHere = 0;
    Dl_info info{};
    if (::dladdr(&inHere, &info) == 0 || info.dli_fname == nullptr || info.dli_fname[0] != '/') {
        return {};
    }
    return std::filesystem::path(info.dli_fname).parent_path();
}

} // namespace

std::string missingReader(const std::string& format) {
    const ReaderName name = readerNameOf(format);
    return std::string("The program ") + name.program + " of the package " + name.package +
           ", which works on such files, is missing";
}

std::filesystem::path readerProgram(const std::string& format) {
    return helperProgram(readerNameOf(format).program);
}

std::filesystem::path helperProgram(const char* name) {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    const std::filesystem::path own = folderOfThisCode();
    for (const std::filesystem::path& place :
         {own.empty() ? own : own / name, folder / name, folder.parent_path() / "libexec/velmora" / name,
          std::filesystem::path(VELMORA_LIBEXEC) / name}) {
        if (!place.empty() && ::access(place.c_str(), X_OK) == 0) {
            return place;
        }
    }
    return {};
}

ChildEnd readInChild(const std::filesystem::path& program, const std::string& format, const std::filesystem::path& path,
                     const ImportOptions& options, ForeignFile& file, const ReportProgress& report) {
    std::array<int, 2> ends{};
    if (program.empty() || ::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return ChildEnd::NoProgram;
    }
    const Descriptor from(ends[0]);
    Descriptor into(ends[1]);
    const Clock::time_point last = Clock::now() + std::chrono::seconds(options.childSeconds);
    Child child(argumentsFor(program, "read", format, path, options), -1, into.number());
    into.close();
    if (!child.isStarted()) {
        return ChildEnd::NoProgram;
    }
    constexpr int patience = 100; // milliseconds
    ForeignCollector collector(memoryForImport());
    std::vector<char> bytes(std::size_t{1} << 16);
    for (bool open = true; open;) {
        if (Clock::now() >= last) {
            return ChildEnd::TooLong;
        }
        pollfd ready = {from.number(), POLLIN, 0};
        const int count = ::poll(&ready, 1, patience);
        if (count > 0) {
            const ssize_t size = ::read(from.number(), bytes.data(), bytes.size());
            if (size > 0 && !collector.take({bytes.data(), static_cast<std::size_t>(size)})) {
                return collector.isTooMuch() ? ChildEnd::OutOfMemory : ChildEnd::Died;
            }
            open = size > 0 || (size < 0 && errno == EINTR);
        }
        if (report) {
            report(0.6 * collector.progress());
        }
    }
    int status = 0;
    if (!child.waitUntil(last, status)) {
        return ChildEnd::TooLong;
    }
    const ChildEnd end = endOf(status);
    file = std::move(collector.file());
    return end == ChildEnd::Whole && !collector.isWhole() ? ChildEnd::Died : end;
}

ChildEnd feedChild(const std::vector<std::string>& arguments, const std::function<void(const SendBytes& send)>& write) {
    std::array<int, 2> ends{};
    if (arguments.front().empty() || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return ChildEnd::NoProgram;
    }
    Descriptor into(ends[0]);
    Descriptor from(ends[1]);
    Child child(arguments, from.number(), -1);
    from.close();
    if (!child.isStarted()) {
        return ChildEnd::NoProgram;
    }
    write([&into](const char* bytes, std::size_t size) {
        while (size > 0) {
            const ssize_t count = ::send(into.number(), bytes, size, MSG_NOSIGNAL);
            if (count < 0 && errno != EINTR) {
                return false;
            }
            bytes += count > 0 ? count : 0;
            size -= count > 0 ? static_cast<std::size_t>(count) : 0;
        }
        return true;
    });
    into.close();
    return endOf(child.wait());
}

ChildEnd writeInChild(const std::filesystem::path& program, const std::string& format,
                      const std::filesystem::path& path, const std::function<void(ForeignWriter& writer)>& write) {
    return feedChild(argumentsFor(program, "write", format, path, {}), [&write](const SendBytes& send) {
        ForeignWriter writer(send);
        write(writer);
        writer.end();
    });
}

} // namespace velmora

#include "Process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <fstream>
#include <stdexcept>

extern char** environ;

namespace velmora::test {

namespace {

constexpr int patience = 60'000; // milliseconds

struct Pipe {
    int reading = -1;
    int writing = -1;

    Pipe() {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        reading = ends[0];
        writing = ends[1];
    }
};

void closeOnce(int& descriptor) {
    if (descriptor >= 0) {
        close(descriptor);
        descriptor = -1;
    }
}

pid_t start(std::vector<std::string> arguments, const std::filesystem::path& folder, const Pipe& input,
            const Pipe& output, const Pipe& errors) {
    std::vector<char*> words;
    words.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        words.push_back(argument.data());
    }
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.reading, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.writing, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors.writing, STDERR_FILENO);
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t restored;
    sigemptyset(&restored);
    sigaddset(&restored, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &restored);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    pid_t id = -1;
    const int failure = posix_spawn(&id, words[0], &actions, &attributes, words.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) {
        throw std::runtime_error("cannot start " + arguments[0]);
    }
    return id;
}

} // namespace

Process::Process(const std::vector<std::string>& arguments, const std::filesystem::path& folder) {
    // A program that ends early must not take the test with it.
    std::signal(SIGPIPE, SIG_IGN);
    Pipe input;
    Pipe output;
    Pipe errors;
    id_ = start(arguments, folder, input, output, errors);
    closeOnce(input.reading);
    closeOnce(output.writing);
    closeOnce(errors.writing);
    input_ = input.writing;
    output_ = output.reading;
    errors_ = errors.reading;
}

Process::~Process() {
    closeOnce(input_);
    closeOnce(output_);
    closeOnce(errors_);
    if (id_ > 0) {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
}

void Process::write(const std::string& text) {
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = ::write(input_, text.data() + written, text.size() - written);
        if (count < 0) {
            return;
        }
        written += static_cast<std::size_t>(count);
    }
}

void Process::closeInput() {
    closeOnce(input_);
}

bool Process::fillBuffer() {
    pollfd waiting{output_, POLLIN, 0};
    if (poll(&waiting, 1, patience) <= 0) {
        return false;
    }
    std::array<char, 65536> block{};
    const ssize_t count = read(output_, block.data(), block.size());
    if (count > 0) {
        buffer_.append(block.data(), static_cast<std::size_t>(count));
    }
    return count > 0;
}

std::optional<std::string> Process::readLine() {
    std::size_t end = buffer_.find('\n');
    while (end == std::string::npos) {
        if (!fillBuffer()) {
            return std::nullopt;
        }
        end = buffer_.find('\n');
    }
    std::string line = buffer_.substr(0, end);
    buffer_.erase(0, end + 1);
    return line;
}

std::vector<std::string> Process::readLines() {
    std::vector<std::string> lines;
    while (auto line = readLine()) {
        lines.push_back(std::move(*line));
    }
    return lines;
}

int Process::wait() {
    int status = 0;
    waitpid(id_, &status, 0);
    id_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::int64_t Process::mostMemory() const {
    std::ifstream status("/proc/" + std::to_string(id_) + "/status");
    const std::string key = "VmHWM:"; // in KiB
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(key)) {
            return 1024 * std::stoll(line.substr(key.size()));
        }
    }
    return -1;
}

std::string Process::errors() {
    std::string text;
    std::array<char, 4096> block{};
    for (ssize_t count = 0; (count = read(errors_, block.data(), block.size())) > 0;) {
        text.append(block.data(), static_cast<std::size_t>(count));
    }
    return text;
}

ProcessResult runProcess(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                         const std::string& input) {
    Process process(arguments, folder);
    process.write(input);
    process.closeInput();
    ProcessResult result;
    result.lines = process.readLines();
    result.status = process.wait();
    result.errors = process.errors();
    return result;
}

} // namespace velmora::test

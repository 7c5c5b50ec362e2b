#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora::test {

/// A program that was started, with its standard streams in the hands of the test. It is ended with the object.
class Process {
public:
    /// `arguments` begins with the path of the program; it runs in `folder`.
    Process(const std::vector<std::string>& arguments, const std::filesystem::path& folder);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    /// Writes to its standard input; what it no longer reads is dropped.
    void write(const std::string& text);
    void closeInput();
    /// The next line of its standard output, without the line feed; none at the end of the output or when no line
    /// comes within a minute.
    std::optional<std::string> readLine();
    /// All lines up to the end of the output.
    std::vector<std::string> readLines();
    /// Waits for the end: the exit status, or 128 plus the number of the signal.
    int wait();
    /// The most memory that it has held so far, in bytes; to be asked before wait().
    std::int64_t mostMemory() const;
    /// What it wrote to its standard error; to be asked after wait().
    std::string errors();

private:
    bool fillBuffer();

    pid_t id_ = -1;
    int input_ = -1;
    int output_ = -1;
    int errors_ = -1;
    std::string buffer_;
};

/// What a program left behind.
struct ProcessResult {
    int status = -1;
    std::vector<std::string> lines; ///< of its standard output
    std::string errors;             ///< its standard error
};

/// Runs a program to its end, with `input` as its standard input.
ProcessResult runProcess(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                         const std::string& input = "");

} // namespace velmora::test

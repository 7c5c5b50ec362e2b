#pragma once

#include <cstdint>
#include <string>

namespace velmora {

/// What the interchange readers and writers raise, by value: a text, a number for the class, and the place. It has
/// no common base with the standard library's exceptions; the interchange facade alone catches it and shows
/// `message()`.
class GenericError {
public:
    /// `file` is the source unit's name without a folder, `line` the line of the raise site.
    GenericError(std::int32_t code, std::string file, std::int32_t line, std::string message = "...");

    /// The whole report for the user: name, message, file and line.
    std::string message() const;
    /// What kind of error it is, as the report shows it.
    std::string name() const { return name_; }
    /// The message alone, without name and place.
    const std::string& text() const { return message_; }
    std::int32_t code() const { return code_; }
    const std::string& file() const { return file_; }
    std::int32_t line() const { return line_; }

protected:
    /// For the classes of the family: `code` and `name` take the place of the base's.
    void become(std::int32_t code, const char* name);

private:
    std::string message_;
    std::int32_t code_;
    std::string file_;
    std::int32_t line_;
    std::string name_ = "Unknown Exception";
};

/// Outside of what can be counted.
class IndexError : public GenericError {
public:
    IndexError(std::string file, std::int32_t line, std::string message = "...");
};

/// A file that cannot be opened, or one of a version that is not read.
class FileError : public GenericError {
public:
    FileError(std::string file, std::int32_t line, std::string message = "...");
};

/// A method that was given what it cannot work on.
class AlgoError : public GenericError {
public:
    AlgoError(std::string file, std::int32_t line, std::string message = "...");
};

/// The machine has not enough memory.
class SystemError : public GenericError {
public:
    SystemError(std::string file, std::int32_t line, std::string message = "...");
};

/// A read or a write that failed.
class IOError : public GenericError {
public:
    IOError(std::string file, std::int32_t line, std::string message = "...");
};

/// The end of the file where more was wanted.
class EOFError : public IOError {
public:
    EOFError(std::string file, std::int32_t line, std::string message = "...");
};

/// A value that is no number or cannot be meant.
class ValueError : public GenericError {
public:
    ValueError(std::string file, std::int32_t line, std::string message = "...");
};

/// A number that is not finite.
class InfinityError : public ValueError {
public:
    InfinityError(std::string file, std::int32_t line, std::string message = "...");
};

/// Text that does not follow the format.
class ParseError : public GenericError {
public:
    ParseError(std::string file, std::int32_t line, std::string message = "...");
};

} // namespace velmora

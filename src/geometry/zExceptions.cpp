#include "zExceptions.h"

#include <utility>

namespace velmora {

GenericError::GenericError(std::int32_t code, std::string file, std::int32_t line, std::string message)
    : message_(std::move(message)), code_(code), file_(std::move(file)), line_(line) {}

void GenericError::become(std::int32_t code, const char* name) {
    code_ = code;
    name_ = name;
}

std::string GenericError::message() const {
    return "\n--- Error Message ---\n\n" + name_ + ": " + message_ + "\n\nIn file:\n'" + file_ + "'\n\nLine No " +
           std::to_string(line_);
}

IndexError::IndexError(std::string file, std::int32_t line, std::string message)
    : GenericError(1, std::move(file), line, std::move(message)) {
    become(1, "Index Error");
}

FileError::FileError(std::string file, std::int32_t line, std::string message)
    : GenericError(2, std::move(file), line, std::move(message)) {
    become(2, "File Error");
}

AlgoError::AlgoError(std::string file, std::int32_t line, std::string message)
    : GenericError(3, std::move(file), line, std::move(message)) {
    become(3, "Algorithm Error");
}

SystemError::SystemError(std::string file, std::int32_t line, std::string message)
    : GenericError(4, std::move(file), line, std::move(message)) {
    become(4, "System Error");
}

IOError::IOError(std::string file, std::int32_t line, std::string message)
    : GenericError(10, std::move(file), line, std::move(message)) {
    become(10, "Input-Output Error");
}

EOFError::EOFError(std::string file, std::int32_t line, std::string message)
    : IOError(std::move(file), line, std::move(message)) {
    become(11, "End Of File Error");
}

ValueError::ValueError(std::string file, std::int32_t line, std::string message)
    : GenericError(12, std::move(file), line, std::move(message)) {
    become(12, "Value Error");
}

InfinityError::InfinityError(std::string file, std::int32_t line, std::string message)
    : ValueError(std::move(file), line, std::move(message)) {
    become(14, "Infinity Error");
}

ParseError::ParseError(std::string file, std::int32_t line, std::string message)
    : GenericError(15, std::move(file), line, std::move(message)) {
    become(15, "Parsing Error");
}

} // namespace velmora

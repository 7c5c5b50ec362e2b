#pragma once

#include <ostream>

#include "json_values.h"

namespace velmora {

/// Writes events as they happen. An event is an object whose first member, "event", names its kind.
class EventPrinter {
public:
    EventPrinter() = default;
    EventPrinter(const EventPrinter&) = delete;
    EventPrinter& operator=(const EventPrinter&) = delete;
    virtual ~EventPrinter() = default;

    virtual void print(const Json& event) = 0;
};

/// One object a line, flushed. Bytes that are no UTF-8 come out as replacement characters.
class JsonEventPrinter : public EventPrinter {
public:
    /// `out` must outlive the printer.
    explicit JsonEventPrinter(std::ostream& out) : out_(out) {}
    void print(const Json& event) override;

private:
    std::ostream& out_;
};

/// Text for people: what is said, asked and printed, menus and errors, and what was lost of a file. Other events stay
/// silent.
class TextEventPrinter : public EventPrinter {
public:
    /// `out` must outlive the printer.
    explicit TextEventPrinter(std::ostream& out) : out_(out) {}
    void print(const Json& event) override;

private:
    void printLoss(const Json& read);
    void printItems(const Json& items, const std::string& indent);

    std::ostream& out_;
};

} // namespace velmora

#include "EventPrinter.h"

#include <algorithm>

#include "visible_text.h"

namespace velmora {

namespace {

std::string oneLine(const Json& value) {
    return visibleJson(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

const std::string& textOf(const Json& event, const char* member) {
    return event.at(member).get_ref<const std::string&>();
}

/// An error takes one line, whatever bytes of the script it repeats.
std::string onOneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c >= 0 && c < ' '; }, ' ');
    return visibleText(text);
}

} // namespace

void JsonEventPrinter::print(const Json& event) {
    out_ << oneLine(event) << '\n' << std::flush;
}

void TextEventPrinter::print(const Json& event) {
    const std::string& kind = textOf(event, "event");
    if (kind == "message") {
        out_ << "message: " << visibleText(textOf(event, "text"), true) << '\n';
    } else if (kind == "status" || kind == "title") {
        out_ << kind << ": " << visibleText(textOf(event, "text")) << '\n';
    } else if (kind == "question") {
        out_ << "question: " << visibleText(textOf(event, "text")) << " -> " << textOf(event, "answer") << '\n';
    } else if (kind == "menu") {
        out_ << "menu: " << textOf(event, "name") << '\n';
        printItems(event.at("items"), "  ");
    } else if (kind == "print") {
        out_ << "print " << onOneLine(textOf(event, "what")) << ": " << oneLine(event.at("value")) << '\n';
    } else if (kind == "echo") {
        out_ << visibleText(textOf(event, "text")) << '\n';
    } else if (kind == "read") {
        printLoss(event);
    } else if (kind == "error") {
        out_ << "error: line " << oneLine(event.at("line")) << ": " << onOneLine(textOf(event, "text")) << '\n';
    }
    out_ << std::flush;
}

/// What stands in the model as it stood in the file needs no word.
void TextEventPrinter::printLoss(const Json& read) {
    if (read.at("complete") == true && read.at("lossless") == true) {
        return;
    }
    out_ << "read: " << visibleText(textOf(read, "path")) << ": ";
    const char* separator = "kept ";
    for (const auto& [kind, kept] : read.at("kept").items()) {
        out_ << separator << kept << " of " << read.at("found").value(kind, kept) << ' ' << kind;
        separator = ", ";
    }
    out_ << '\n';
    for (const char* list : {"changed", "reasons"}) {
        for (const Json& text : read.at(list)) {
            out_ << "  " << visibleText(text.get_ref<const std::string&>()) << '\n';
        }
    }
}

void TextEventPrinter::printItems(const Json& items, const std::string& indent) {
    for (const Json& item : items) {
        if (item.contains("items")) {
            out_ << indent << textOf(item, "text") << '\n';
            printItems(item.at("items"), indent + "  ");
        } else {
            out_ << indent << textOf(item, "text") << " (" << textOf(item, "command") << ')'
                 << (item.at("on").get<bool>() ? "" : " off") << '\n';
        }
    }
}

} // namespace velmora

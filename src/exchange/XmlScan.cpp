#include "XmlScan.h"

#include <new>
#include <utility>

#include <expat.h>

namespace velmora {

namespace {

/// Namespaces stand before a name, divided by this.
constexpr char divider = '|';

std::string_view localName(std::string_view name) {
    const std::size_t place = name.rfind(divider);
    return place == std::string_view::npos ? name : name.substr(place + 1);
}

} // namespace

const char* XmlAttributes::find(std::string_view name) const {
    for (const char* const* entry = list_; *entry != nullptr; entry += 2) {
        if (localName(*entry) == name) {
            return entry[1];
        }
    }
    return nullptr;
}

std::string_view XmlAttributes::textOf(std::string_view name) const {
    const char* const value = find(name);
    return value == nullptr ? "" : value;
}

XmlScan::XmlScan(Begin begin, End end)
    : begin_(std::move(begin)), end_(std::move(end)), parser_(XML_ParserCreateNS(nullptr, divider)) {
    if (parser_ == nullptr) {
        throw std::bad_alloc();
    }
    XML_SetUserData(parser_, this);
    XML_SetElementHandler(parser_, &XmlScan::onBegin, &XmlScan::onEnd);
}

XmlScan::~XmlScan() {
    XML_ParserFree(parser_);
}

bool XmlScan::take(std::string_view piece, bool isLast) {
    good_ = good_ && XML_Parse(parser_, piece.data(), static_cast<int>(piece.size()), isLast ? 1 : 0) == XML_STATUS_OK;
    if (thrown_ != nullptr) {
        std::rethrow_exception(std::exchange(thrown_, nullptr));
    }
    return good_;
}

void XmlScan::stop() {
    XML_StopParser(parser_, XML_FALSE);
}

// The library's own frames, through which nothing may be thrown, lie in between.
void XmlScan::guarded(const std::function<void()>& listen) {
    try {
        if (thrown_ == nullptr) {
            listen();
        }
    } catch (...) {
        thrown_ = std::current_exception();
        stop();
    }
}

void XmlScan::onBegin(void* scan, const char* name, const char** attributes) {
    auto* const self = static_cast<XmlScan*>(scan);
    self->guarded([=] { self->begin_(localName(name), XmlAttributes(attributes)); });
}

void XmlScan::onEnd(void* scan, const char* name) {
    auto* const self = static_cast<XmlScan*>(scan);
    self->guarded([=] { self->end_(localName(name)); });
}

} // namespace velmora

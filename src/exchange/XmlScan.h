#pragma once

#include <exception>
#include <functional>
#include <string_view>

struct XML_ParserStruct;

namespace velmora {

/// The attributes of an element: names and values in turn, a null at the end.
class XmlAttributes {
public:
    explicit XmlAttributes(const char* const* list) : list_(list) {}

    /// The value of that name, whatever its namespace; null without one. A NUL stands behind it.
    const char* find(std::string_view name) const;
    /// Its text, empty without one; a NUL stands behind it too.
    std::string_view textOf(std::string_view name) const;

private:
    const char* const* list_;
};

/// Walks over XML as it comes, and tells of its elements by their names without namespaces. What a listener throws
/// comes out of `take`.
class XmlScan {
public:
    using Begin = std::function<void(std::string_view name, const XmlAttributes& attributes)>;
    using End = std::function<void(std::string_view name)>;

    XmlScan(Begin begin, End end);
    ~XmlScan();
    XmlScan(const XmlScan&) = delete;
    XmlScan& operator=(const XmlScan&) = delete;

    /// The next piece, or the last one; false once it is no XML, or was stopped.
    bool take(std::string_view piece, bool isLast);
    /// Nothing more is told of the text.
    void stop();

private:
    static void onBegin(void* scan, const char* name, const char** attributes);
    static void onEnd(void* scan, const char* name);
    void guarded(const std::function<void()>& listen);

    Begin begin_;
    End end_;
    XML_ParserStruct* parser_;
    std::exception_ptr thrown_;
    bool good_ = true;
};

} // namespace velmora

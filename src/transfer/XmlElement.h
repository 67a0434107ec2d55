#pragma once

#include <cstdint>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "model/DateTime.h"
#include "transfer/XmlText.h"

namespace vortan {

/// What messages about a file need to know of it.
struct XmlSource {
    std::string fileName;
    LineStarts lines;
};

/// An element of a file and its value. A value that is not what is asked for is a fault that tells line and
/// element; an empty one counts as missing, which is for the caller to test.
class XmlElement {
  public:
    XmlElement(pugi::xml_node node, const XmlSource& source) : node_(node), source_(source) {}

    pugi::xml_node Node() const { return node_; }
    const XmlSource& Source() const { return source_; }
    /// The name without the prefix of its namespace.
    std::string_view Name() const { return LocalName(node_.name()); }
    std::int32_t Line() const { return source_.lines.LineAt(node_.offset_debug()); }
    /// As the file has it, without the blanks and line breaks around it.
    std::string_view Value() const;
    /// Whether it has neither a value nor elements.
    bool Empty() const;

    std::string Text() const { return CleanText(node_.child_value()); }
    std::int32_t Int() const;
    double Number() const;
    bool Bool() const;
    /// "2014-10-17T08:00:00"; a fraction of a second and a zone are dropped.
    DateTime Date() const;
    /// Minutes of a duration "PT8H0M0S".
    double Minutes() const;
    /// Minutes since midnight of a time "08:00:00", rounded.
    std::int32_t TimeOfDay() const;

    [[noreturn]] void Fail(const std::string& expected) const;
    static std::string_view LocalName(std::string_view name) {
        const auto colon = name.find(':');
        return colon == std::string_view::npos ? name : name.substr(colon + 1);
    }

  private:
    pugi::xml_node node_;
    const XmlSource& source_;
};

/// Raises the fault about `line` of a file.
[[noreturn]] void XmlFault(const std::string& fileName, std::int32_t line, const std::string& what);

}  // namespace vortan

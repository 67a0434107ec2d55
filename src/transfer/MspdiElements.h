#pragma once

#include <string_view>
#include <unordered_map>

#include "transfer/MsProject.h"
#include "transfer/XmlElement.h"

/// What the parts of the reader of XML use in common.
namespace vortan {

/// Sets a member from the element of a name.
template <class T>
using Members = std::unordered_map<std::string_view, void (*)(T&, const XmlElement&)>;

template <class T>
void ReadMember(const Members<T>& members, T& object, const XmlElement& element) {
    const auto found = members.find(element.Name());
    if (found != members.end() && !element.Empty()) found->second(object, element);
}

template <class F>
void ForEachElement(const XmlElement& parent, const F& f) {
    for (pugi::xml_node node : parent.Node().children())
        if (node.type() == pugi::node_element) f(XmlElement(node, parent.Source()));
}

/// The children of that name of a child of that name.
template <class F>
void ForEachIn(const XmlElement& list, std::string_view name, const F& f) {
    ForEachElement(list, [&](const XmlElement& each) {
        if (each.Name() == name) f(each);
    });
}

MCalendar ReadMspdiCalendar(const XmlElement& element);

}  // namespace vortan

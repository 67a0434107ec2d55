#pragma once

#include <variant>

#include "model/Link.h"

namespace vortan {

class Vassignment;
class Vdependency;
class Vproject;
class Vresource;
class Vshift;
class Vtask;
class Vtemplate;

/// What happens to an object of a plan.
enum class ChangeKind {
    Value,     ///< a field gets another value, in whatever journal
    Joined,    ///< the object is new in its list
    Left,      ///< it is no longer in its list, and as a rule goes back to its pool
    Refiled,   ///< it stands under another number or name
    Journals,  ///< a project or template has a journal more, less, or of another date
};

using AnyObject = std::variant<Link<Vproject>, Link<Vtemplate>, Link<Vtask>, Link<Vdependency>,
                               Link<Vassignment>, Link<Vresource>, Link<Vshift>>;

/// A change that was made. The link reads as deleted when the object has gone since.
struct Change {
    AnyObject object;
    ChangeKind kind;

    friend bool operator==(const Change&, const Change&) = default;
};

/// The one event behind all changes of a plan: told by every setter and every Delete, before they write what
/// differs (of an object that joins: when it has). The project or template that holds the object is `Dirty`
/// from then on, a solve is asked for, and listeners hear of it when the command ends. An object that nothing
/// in memory holds, as one that is being entered, can change without any of that.
///
/// An added journal asks for no solve: whoever moves all projects to it does, when the last has moved.
template <class T>
void Changing(T& object, ChangeKind kind);

/// Writes a field that is the same in all journals.
template <class T, class Value>
void LetPlain(T& object, Value& field, const Value& value) {
    if (field == value) return;
    Changing(object, ChangeKind::Value);
    field = value;
}

}  // namespace vortan

#pragma once

namespace vortan {

/// Visits, in a ForEachField, a field that joined its class when plans without it had been written. Such
/// fields stand behind all others, in the order in which they joined. `usual` is what Reset gives them and
/// what a record without them means: a file holds the field only where it has another value.
///
/// A visitor that makes no difference between such a field and others has no Optional.
template <class Visitor, class Field, class T>
void VisitOptional(Visitor& visit, const char* name, Field& field, const T& usual) {
    if constexpr (requires { visit.Optional(name, field, usual); }) {
        visit.Optional(name, field, usual);
    } else {
        visit(name, field);
    }
}

/// Gives one value to a field, in all journals if it is one per journal.
template <class Field, class T>
void SetField(Field& field, const T& value) {
    if constexpr (requires { field.SetSingle(value); }) {
        field.SetSingle(value);
    } else {
        field = value;
    }
}

/// Resets what VisitOptional visits.
struct ResetOptionalFields {
    template <class Field>
    void operator()(const char*, Field&) const {}
    template <class Field, class T>
    void Optional(const char*, Field& field, const T& usual) const {
        SetField(field, usual);
    }
};

}  // namespace vortan

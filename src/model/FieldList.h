#pragma once

#include "model/Journaled.h"

namespace vortan {

/// Visitors over the fields of one object that follow a change in the number of journals.
struct ResizeField {
    int count, current;
    template <class Field>
    void operator()(const char*, Field& field) const {
        if constexpr (IsJournaled<Field>::value) field.Resize(count, current);
    }
};
struct FitField {
    int count;
    template <class Field>
    void operator()(const char*, Field& field) const {
        if constexpr (IsJournaled<Field>::value) field.Fit(count);
    }
};

/// Gives one value to a field, in all journals if it is one per journal.
template <class Field, class T>
void SetField(Field& field, const T& value) {
    if constexpr (requires { field.SetSingle(value); }) {
        field.SetSingle(value);
    } else {
        field = value;
    }
}

/// For a class T that lists its stored fields once, in the order of the file, in a static
/// `Fields(self, visit)`. It calls `visit(name, field, usual)` for each, `usual` being what Reset gives it.
///
/// A field that joined its class when plans without it had been written stands behind all others, in the
/// order in which they joined, as `visit.Optional(name, field, usual)`: a file holds it only where it has
/// another value.
template <class T>
class FieldList {
  public:
    /// Calls `visit(name, field)` for every stored field, and `visit.Optional(name, field, usual)` instead
    /// where there is such a function and the field is one of those.
    template <class Visitor>
    void ForEachField(Visitor&& visit) {
        T::Fields(static_cast<T&>(*this), Visit<Visitor>{visit});
    }
    template <class Visitor>
    void ForEachField(Visitor&& visit) const {
        T::Fields(static_cast<const T&>(*this), Visit<Visitor>{visit});
    }
    /// Calls `visit(name, field, usual)` for every stored field.
    template <class Visitor>
    void ForEachFieldUsual(Visitor&& visit) const {
        T::Fields(static_cast<const T&>(*this), UsualVisit<Visitor>{visit});
    }
    template <class Visitor>
    void ForEachFieldUsual(Visitor&& visit) {
        T::Fields(static_cast<T&>(*this), UsualVisit<Visitor>{visit});
    }

  protected:
    void ResetFields() { T::Fields(static_cast<T&>(*this), ResetVisit()); }

  private:
    template <class Visitor>
    struct Visit {
        Visitor& visit;
        template <class Field, class Usual>
        void operator()(const char* name, Field& field, const Usual&) const {
            visit(name, field);
        }
        template <class Field, class Usual>
        void Optional(const char* name, Field& field, const Usual& usual) const {
            if constexpr (requires { visit.Optional(name, field, usual); }) {
                visit.Optional(name, field, usual);
            } else {
                visit(name, field);
            }
        }
    };
    template <class Visitor>
    struct UsualVisit {
        Visitor& visit;
        template <class Field, class Usual>
        void operator()(const char* name, Field& field, const Usual& usual) const {
            visit(name, field, usual);
        }
        template <class Field, class Usual>
        void Optional(const char* name, Field& field, const Usual& usual) const {
            visit(name, field, usual);
        }
    };
    struct ResetVisit {
        template <class Field, class Usual>
        void operator()(const char*, Field& field, const Usual& usual) const {
            SetField(field, usual);
        }
        template <class Field, class Usual>
        void Optional(const char*, Field& field, const Usual& usual) const {
            SetField(field, usual);
        }
    };
};

}  // namespace vortan

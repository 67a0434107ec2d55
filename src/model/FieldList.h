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

/// For a class T that lists its stored fields once, in the order of the file: a static `Fields(self, visit)`
/// that calls `visit(name, field, value when reset)` for each.
template <class T>
class FieldList {
  public:
    /// Calls `visit(name, field)` for every stored field.
    template <class Visitor>
    void ForEachField(Visitor&& visit) {
        T::Fields(static_cast<T&>(*this),
                  [&](const char* name, auto& field, const auto&) { visit(name, field); });
    }
    template <class Visitor>
    void ForEachField(Visitor&& visit) const {
        T::Fields(static_cast<const T&>(*this),
                  [&](const char* name, const auto& field, const auto&) { visit(name, field); });
    }

  protected:
    void ResetFields() {
        T::Fields(static_cast<T&>(*this), [](const char*, auto& field, const auto& value) {
            if constexpr (IsJournaled<std::remove_reference_t<decltype(field)>>::value) {
                field.SetSingle(value);
            } else {
                field = value;
            }
        });
    }
};

}  // namespace vortan

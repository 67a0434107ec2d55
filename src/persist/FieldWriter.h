#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/Vproject.h"
#include "model/Vtask.h"
#include "model/Workspace.h"

namespace vortan {

/// Appends a text as one token of a line. A line break cannot stand in a line: it is the one thing in a text
/// that a file does not keep, and becomes a blank.
void AppendToken(std::string& out, std::string_view text);

/// Writes a field a call, as a visitor of ForEachField: two blanks, the name, and one value, or one per
/// journal where they differ.
class FieldWriter {
  public:
    using ShiftNames = std::unordered_map<const Vshift*, std::string>;

    explicit FieldWriter(std::string& out) : out_(out) {}

    /// For the resources of a template; a shift that is not among them is written as none.
    void SetShiftNames(const ShiftNames* names) { shiftNames_ = names; }
    /// For the records below a project.
    void SetProject(const Vproject* project) { project_ = project; }

    void Tag(const char* tag);
    void Dates(const char* name, const std::vector<DateTime>& dates);
    template <class T>
    void operator()(const char* name, const T& value) {
        Begin(name);
        out_ += ',';
        Value(value);
        out_ += "\r\n";
    }
    template <class T>
    void operator()(const char* name, const Journaled<T>& field) {
        Begin(name);
        const int count = field.AllEqual() ? 1 : field.Count();
        for (int i = 0; i < count; ++i) {
            out_ += ',';
            Value(field.At(i));
        }
        out_ += "\r\n";
    }
    void operator()(const char* name, const JournaledInclude& field) {
        (*this)(name, static_cast<const Journaled<bool>&>(field));
    }
    /// A field that the record lacks where it holds what is usual.
    template <class T, class Usual>
    void Optional(const char* name, const Journaled<T>& field, const Usual& usual) {
        if (!field.AllEqual() || !(field.At(0) == T(usual))) (*this)(name, field);
    }
    template <class T, class Usual>
    void Optional(const char* name, const T& value, const Usual& usual) {
        if (!(value == T(usual))) (*this)(name, value);
    }

  private:
    void Begin(const char* name);
    void Value(const std::string& value);
    void Value(bool value);
    void Value(std::uint8_t value);
    void Value(std::int32_t value);
    void Value(float value);
    void Value(double value);
    void Value(Money value);
    void Value(DateTime value);
    void Value(SolveRule value) { Value(static_cast<std::int32_t>(value)); }
    void Value(Rank value) { Value(static_cast<std::int32_t>(value)); }
    void Value(const Link<Vproject>& link);
    void Value(const Link<Vtask>& link);
    void Value(const Link<Vresource>& link);
    void Value(const Link<Vshift>& link);
    void Numbered(const std::string& owner, std::int32_t number);

    std::string& out_;
    const ShiftNames* shiftNames_ = nullptr;
    const Vproject* project_ = nullptr;
};

}  // namespace vortan

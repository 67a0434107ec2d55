#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/DateTime.h"
#include "model/Money.h"

namespace vortan {

/// Writes one JSON value without blanks. Objects and arrays are written by functions that write what is in
/// them: json.Object([&] { json.Member("status", text); }).
class JsonWriter {
  public:
    template <class Body>
    void Object(Body&& body) {
        Begin('{');
        body();
        End('}');
    }
    template <class Body>
    void Array(Body&& body) {
        Begin('[');
        body();
        End(']');
    }
    void Value(std::nullptr_t) { Raw("null"); }
    void Value(bool value) { Raw(value ? "true" : "false"); }
    void Value(std::int64_t value) { Raw(std::to_string(value)); }
    void Value(std::int32_t value) { Value(std::int64_t{value}); }
    /// With as many digits as it takes to read the same number.
    void Value(double value);
    void Value(std::string_view text);
    void Value(const char* text) { Value(std::string_view(text)); }
    void Value(const std::string& text) { Value(std::string_view(text)); }
    /// As the number of its day.
    void Value(DateTime moment) { Value(moment.Days()); }
    void Value(Money amount) { Value(amount.ToDouble()); }

    /// Of an object: its value is to follow.
    void Name(const char* name);
    template <class T>
    void Member(const char* name, const T& value) {
        Name(name);
        Value(value);
    }
    /// Null unless `has`.
    template <class T>
    void MemberIf(bool has, const char* name, const T& value) {
        Name(name);
        has ? Value(value) : Value(nullptr);
    }
    template <class Body>
    void ArrayMember(const char* name, Body&& body) {
        Name(name);
        Array(body);
    }
    template <class Body>
    void ObjectMember(const char* name, Body&& body) {
        Name(name);
        Object(body);
    }

    /// What was written, as a line.
    std::string Line() const { return out_ + "\n"; }

  private:
    void Raw(std::string_view value);
    void Begin(char bracket);
    void End(char bracket);

    std::string out_;
    bool comma_ = false;  ///< the next value is not the first of its object or array
};

/// The number as a JSON text has it.
std::string JsonNumber(double value);

}  // namespace vortan

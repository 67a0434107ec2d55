#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "model/DateTime.h"
#include "model/Money.h"

/// What a user types into a field of a task or resource, read by the rules that hold wherever it is typed: in
/// an entry form as in a cell of a table.
namespace vortan {

class Vproject;
class Vresource;
class Vtask;
class Vtemplate;

/// The highest number that a task or a resource can have.
inline constexpr std::int32_t kHighestId = 999999999;

/// The value; or none, and a sentence that says why, under a title for a box.
template <class T>
struct Typed {
    std::optional<T> value;
    std::string refusal, title;
};

/// `what` names the field in the sentence.
Typed<DateTime> TypedDate(const std::string& text);
Typed<Money> TypedMoney(const std::string& text, const std::string& what, const std::string& symbol);
Typed<double> TypedNumber(const std::string& text, const std::string& what);
Typed<std::int32_t> TypedWhole(const std::string& text, const std::string& what, std::int32_t least,
                               std::int32_t most);
/// In days, from a number with a unit.
Typed<double> TypedOffset(const std::string& text);
/// Above 0, not above 1.
Typed<double> TypedEfficiency(const std::string& text);
/// A number that no other task of the project has, also of those that only other journals have.
Typed<std::int32_t> TypedTaskId(const std::string& text, const Vproject& project, const Vtask* task);
/// The same of a resource.
Typed<std::int32_t> TypedResourceId(const std::string& text, const Vtemplate& owner,
                                    const Vresource* resource);

}  // namespace vortan

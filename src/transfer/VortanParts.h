#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "transfer/MsProject.h"
#include "transfer/VortanCode.h"

/// What writing and reading the marked texts share. A text is "VORTAN1:", a check sum of the rest, a colon,
/// and sections with a letter each:
///
///   n  TaskID or ResourceID          b  name, c  notes, where the row cannot show them
///   t  own fields                    d  dependencies      a  assignments    (of a task)
///   p  project                       m  template, h  shift (in the first row)
///   k  place of its template         r  own fields        w  shift and work days   (of a resource)
///
/// Fields are a letter by their place in the record, and the value; those that hold what is usual are left
/// out. Behind the letter of a section that says more exactly what the row shows stands a check sum of what
/// the row showed: when somebody has changed that since, the row is right and the section is passed over.
namespace vortan {

inline constexpr std::string_view kVortanMark = "VORTAN1:";

constexpr char FieldLetter(int place) {
    return static_cast<char>(place < 26 ? 'a' + place : 'A' + place - 26);
}

/// A marked text with its body; none if it is not ours, or damaged.
std::string SealVortan(const std::string& body);
std::optional<std::string_view> OpenVortan(std::string_view text);

/// Fields of a record, by their places, that a section does not tell.
class FieldSet {
  public:
    FieldSet& Add(int first, int last) {
        for (int place = first; place <= last; ++place) bits_ |= std::uint64_t{1} << place;
        return *this;
    }
    bool Has(int place) const { return (bits_ >> place & 1) != 0; }

  private:
    std::uint64_t bits_ = 0;
};

// Places of fields in their records.
inline constexpr int kTaskSubproject = 0, kTaskDescription = 1, kTaskLaborCost = 9, kTaskLateFinish = 13;
inline constexpr int kDependencyDate = 1;
inline constexpr int kResourceDescription = 0, kResourceShift = 8, kResourceLastDay = 17;

/// What the sections "t", "r" and "w" leave to others. A row that stands for a subproject has its own name.
FieldSet NotOfTask(bool showsSubproject, bool ownsSubproject);
FieldSet NotOfResource();
FieldSet NotOfResourceDays();

// What a row shows, as a check sum.
std::uint32_t NameSum(std::string_view shown);
std::uint32_t EstimateSum(const MTask& row, const std::vector<const MAssignment*>& assignments);
std::uint32_t LinkSum(const MTask& row);
std::uint32_t AssignmentSum(const std::vector<const MAssignment*>& assignments);
std::uint32_t ResourceSum(const MResource& row);
std::uint32_t CalendarSum(const MCalendar* calendar);
/// The calendar that tells the days of a resource: the base of its own, where that has none.
const MCalendar* BaseCalendar(const MProject& file, const MResource& row);

/// A text as the file can show it: one line, no outer blanks.
std::string ShownName(const std::string& text);
std::string ShownNotes(const std::string& text);

}  // namespace vortan

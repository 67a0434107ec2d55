#pragma once

#include <string>
#include <string_view>

/// How dates, times and numbers look to a user and are typed: the habits of a country. Files, journals of
/// faults and what programs read do not follow them.
namespace vortan {

/// As they stand here, those of the United States.
struct Conventions {
    enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay };

    DateOrder order = DateOrder::MonthDayYear;
    char dateSeparator = '/';
    bool twoDigits = false;    ///< 09/03/2001, not 9/3/2001
    bool halfDayClock = true;  ///< 8:05:00 AM, not 08:05:00
    std::string decimalPoint = ".";
    std::string groupSeparator = ",";  ///< empty: no groups

    /// Takes the order of the parts, their separator and their digits from a pattern such as "dd.MM.yy",
    /// "M/d/yyyy" or "%d.%m.%Y". What the pattern leaves open stays.
    void TakeDatePattern(std::string_view pattern);
    /// Takes the signs of numbers over if they are some that texts can be read back with: a point or a
    /// comma, and for groups something else.
    void TakeNumberSigns(std::string_view point, std::string_view groups);

    bool operator==(const Conventions&) const = default;
};

/// Those in force. One value for the whole process, not to be changed while another thread writes texts.
const Conventions& TheConventions();

/// Puts conventions in force for its lifetime; without arguments, the ones above, for texts that programs
/// read.
class UseConventions {
  public:
    explicit UseConventions(Conventions conventions = {});
    ~UseConventions();
    UseConventions(const UseConventions&) = delete;
    UseConventions& operator=(const UseConventions&) = delete;

  private:
    Conventions before_;
};

/// The text of a number, which has a point and no groups, with the decimal sign in force.
std::string LocalNumber(std::string plain);
/// The reverse for what a user typed: with a point and without groups. A point is read as one, also where it
/// parts groups, unless exactly three digits follow. What is no number stays none.
std::string PlainTyped(std::string_view text);

}  // namespace vortan

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "model/DateTime.h"

/// A plan as Microsoft Project tells it: plain data, with the names of its own object library where that has
/// the member. Texts are UTF-8. Dates are without zone, not set is date 0. Durations, work and lags are
/// minutes. Money is in the plan's currency, as the file has it.
namespace vortan {

/// How a duration or a lag is told. Elapsed ones count all hours of the calendar, others working time.
/// The numbers are those of the format.
enum class MFormat : std::int32_t {
    None = 0,  ///< not said
    Minutes = 3,
    ElapsedMinutes = 4,
    Hours = 5,
    ElapsedHours = 6,
    Days = 7,
    ElapsedDays = 8,
    Weeks = 9,
    ElapsedWeeks = 10,
    Months = 11,
    ElapsedMonths = 12,
    Percent = 19,
    ElapsedPercent = 20,
    Null = 21,
    // 35 to 53 are the same with a question mark: an estimated duration.
};
constexpr std::int32_t kMEstimatedFormat = 32;  ///< what an estimated duration adds to its format
/// The format without the question mark; what is none counts as None.
MFormat PlainFormat(std::int32_t format);
bool IsElapsed(MFormat format);
bool IsPercent(MFormat format);

enum class MLinkType : std::int32_t { FF = 0, FS = 1, SF = 2, SS = 3 };
/// "FF", "FS", "SF", "SS".
const char* LinkTypeText(MLinkType type);

/// A task waits for another.
struct MLink {
    std::int32_t PredecessorUID = 0;
    MLinkType Type = MLinkType::FS;
    double Lag = 0;                ///< minutes, or percent by the format; negative is a lead
    std::int32_t LagFormat = 7;    ///< MFormat, with its question mark
    bool CrossProject = false;     ///< the predecessor is in another file:
    std::string CrossProjectName;  ///< path, backslash, its ID there
};

struct MBaseline {
    std::int32_t Number = 0;  ///< 0 to 10
    DateTime Start, Finish;
    double Duration = 0;
    std::int32_t DurationFormat = 0;
    double Work = 0;
    double Cost = 0;
};

enum class MConstraint : std::int32_t {
    AsSoonAsPossible = 0,
    AsLateAsPossible = 1,
    MustStartOn = 2,
    MustFinishOn = 3,
    StartNoEarlierThan = 4,
    StartNoLaterThan = 5,
    FinishNoEarlierThan = 6,
    FinishNoLaterThan = 7,
};

/// A row of the task table, in the order of the file; OutlineLevel tells the tree. UID 0 with level 0 is the
/// project's own summary row.
struct MTask {
    std::int32_t UID = 0, ID = 0;
    std::string Name, Notes, WBS;
    std::int32_t OutlineLevel = 1;
    bool Summary = false, Milestone = false, Active = true, Manual = false, IsNull = false, Estimated = false;
    bool ExternalTask = false;
    std::int32_t Type = 0;  ///< 0 fixed units, 1 fixed duration, 2 fixed work
    bool EffortDriven = false;
    std::string Subproject;  ///< the file of an inserted project, or empty
    DateTime Start, Finish, ManualStart, ManualFinish;
    double Duration = 0;              ///< elapsed minutes if the format is elapsed
    std::int32_t DurationFormat = 7;  ///< MFormat, with its question mark
    double Work = 0;
    double Duration1 = 0, Duration2 = 0, Duration3 = 0;  ///< custom fields
    double Number1 = 0;                                  ///< custom field
    std::string Text30;                                  ///< custom field; see VortanText.h
    double FixedCost = 0, Cost = 0;
    std::int32_t ConstraintType = 0;  ///< MConstraint
    DateTime ConstraintDate, Deadline;
    double LevelingDelay = 0;  ///< elapsed minutes
    std::int32_t PercentComplete = 0, PercentWorkComplete = 0;
    DateTime ActualStart, ActualFinish;
    double ActualWork = 0, ActualCost = 0;
    std::int32_t Priority = 500;
    std::int32_t CalendarUID = -1;  ///< of the task's own calendar, or -1
    bool IgnoreResourceCalendar = false;
    bool Recurring = false;
    std::vector<MLink> Links;
    std::vector<MBaseline> Baselines;
    std::int32_t Line = 0;  ///< of the file that it was read from; 0: none
};

/// One period of one of the rate tables A to E. The first standard rate of table A is
/// MResource::StandardRate.
struct MRate {
    std::int32_t Table = 0;  ///< 0 is A to 4 E
    DateTime From, To;
    double StandardRate = 0, OvertimeRate = 0, CostPerUse = 0;
    std::int32_t StandardRateFormat = 2, OvertimeRateFormat = 2;
};

/// Money per unit of time, as the format numbers them.
enum class MRateFormat : std::int32_t {
    Minute = 1,
    Hour = 2,
    Day = 3,
    Week = 4,
    Month = 5,
    Year = 7,
    Material = 8,  ///< per unit of material
};

enum class MResourceType : std::int32_t { Material = 0, Work = 1, Cost = 2 };

struct MResource {
    std::int32_t UID = 0, ID = 0;
    std::string Name, Group, Code, Notes, MaterialLabel;
    std::int32_t Type = 1;  ///< MResourceType
    bool IsNull = false;
    double MaxUnits = 1;
    double StandardRate = 0, OvertimeRate = 0, CostPerUse = 0;
    std::int32_t StandardRateFormat = 2, OvertimeRateFormat = 2;  ///< MRateFormat: what the rate is per
    std::int32_t CalendarUID = -1;  ///< of its own calendar, which has a base; or -1
    std::string Text30;             ///< custom field; see VortanText.h
    std::vector<MRate> Rates;
    bool HasAvailability = false;  ///< units that change with time
    std::int32_t Line = 0;
};

struct MAssignment {
    std::int32_t UID = 0, TaskUID = 0;
    std::int32_t ResourceUID = 0;  ///< -65535 is nobody
    double Units = 1;              ///< share of the resource; 1 is all of its time. For a material the amount
    std::array<bool, 11> Flag{};   ///< custom fields Flag1 to Flag10, by their numbers
    DateTime Start, Finish;
    double Work = 0, Cost = 0;
    double PercentWorkComplete = 0;
    double ActualWork = 0;
    double OvertimeWork = 0, Delay = 0, LevelingDelay = 0;
    std::int32_t WorkContour = 0;    ///< 0 is flat
    std::int32_t CostRateTable = 0;  ///< 0 is A to 4 E
    std::string Text30;
    std::int32_t Line = 0;

    /// Whether the flags are work days of ours: the last one says so, and one of the others is a day.
    bool HasDays() const {
        return Flag[10] && std::find(Flag.begin() + 1, Flag.begin() + 10, true) != Flag.begin() + 10;
    }
};

/// Minutes since midnight, `to` up to 1440.
struct MWorkingTime {
    std::int32_t From = 0, To = 0;
};

/// What a calendar says of a weekday, or of a stretch of days.
struct MDay {
    bool Given = false;  ///< false: as in the base calendar
    bool Working = false;
    std::vector<MWorkingTime> Times;
};

struct MException {
    std::string Name;
    DateTime From, To;  ///< whole days, both included
    MDay Day;
    std::int32_t Type = 1;  ///< 1 is daily: every day of the stretch
    std::int32_t Occurrences = 0;
    std::int32_t Line = 0;
};

struct MCalendar {
    std::int32_t UID = 0;
    std::string Name;
    bool IsBaseCalendar = true;
    std::int32_t BaseCalendarUID = -1;  ///< -1 or 0: none
    std::array<MDay, 8> Weekday{};      ///< 1 is Sunday to 7 Saturday; 0 is not used
    std::vector<MException> Exceptions;
    bool HasWorkWeeks = false;  ///< weeks of their own kind, which are not read
    std::int32_t Line = 0;
};

/// Something that a file holds and nothing here asks for.
struct MUnread {
    std::string What;  ///< "Custom field Text5"
    std::int32_t Count = 0;
};

struct MProject {
    std::string Name, Title;
    DateTime ProjectStart, ProjectFinish;
    bool ScheduleFromStart = true;
    std::int32_t MinutesPerDay = 480, MinutesPerWeek = 2400, DaysPerMonth = 20;
    std::int32_t DefaultStartTime = 480, DefaultFinishTime = 1020;  ///< minutes since midnight
    std::string CurrencySymbol;
    std::int32_t CalendarUID = -1;
    std::vector<MCalendar> Calendars;
    std::vector<MTask> Tasks;
    std::vector<MResource> Resources;
    std::vector<MAssignment> Assignments;
    std::vector<MUnread> Unread;  ///< by kind
};

}  // namespace vortan

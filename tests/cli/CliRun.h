#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Cli.h"
#include "model/ValueText.h"
#include "support/PlanFiles.h"
#include "support/ScriptedPlatform.h"

namespace vortan {

/// What a run of the batch tool left.
struct CliOutcome {
    int exitCode = 0;
    std::string out, err;
};

/// Runs commands in a directory of their own.
class CliFixture : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* variable : {"XDG_CONFIG_HOME", "XDG_STATE_HOME"})
            ::setenv(variable, scratch_.Directory().c_str(), 1);
    }
    static CliOutcome Run(const std::vector<std::string>& arguments, int width = 0) {
        std::ostringstream out, err;
        CliOutcome outcome;
        outcome.exitCode = RunCli(arguments, CliStreams{out, err, false, width});
        outcome.out = out.str();
        outcome.err = err.str();
        return outcome;
    }
    /// Runs what must go well.
    static std::string Done(const std::vector<std::string>& arguments, int width = 0) {
        const CliOutcome outcome = Run(arguments, width);
        EXPECT_EQ(outcome.exitCode, kExitDone) << outcome.out << outcome.err;
        EXPECT_EQ(outcome.err, "");
        return outcome.out;
    }
    /// Runs what must fail, with no result printed. Returns the complaint.
    static std::string Refused(const std::vector<std::string>& arguments) {
        const CliOutcome outcome = Run(arguments);
        EXPECT_EQ(outcome.exitCode, kExitUsage) << outcome.out << outcome.err;
        EXPECT_EQ(outcome.out, "");
        return outcome.err;
    }
    std::string PathOf(const std::string& name) const { return scratch_.Directory() + "/" + name; }
    /// A file with these bytes. Returns its path.
    std::string FileWith(const std::string& name, std::string_view bytes) const {
        WriteBytes(PathOf(name), bytes);
        return PathOf(name);
    }

  private:
    ScriptedPlatform scratch_;
};

inline void ExpectPart(const std::string& text, const std::string& part) {
    EXPECT_NE(text.find(part), std::string::npos) << "\"" << part << "\" is not in\n" << text;
}
inline void ExpectNoPart(const std::string& text, const std::string& part) {
    EXPECT_EQ(text.find(part), std::string::npos) << "\"" << part << "\" is in\n" << text;
}

inline std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

/// One dependency of a task of the plan below; on a date if `taskID` is 0.
struct DependencyPart {
    int taskID = 0;
    int from = 100, to = 0;
    std::string offset = "0";
    std::string date = "09/03/2001 08:00am";
};

struct AssignmentPart {
    int resourceID;
    int hours;
};

struct TaskPart {
    int taskID;
    std::string description;
    int effortUnits;
    int minutes;
    std::vector<DependencyPart> dependencies;
    std::vector<AssignmentPart> assignments;
};

/// Writes the records of the plan below.
class ShedWriter {
  public:
    std::string Text() const { return text_; }

    void Template() {
        Line("TEMPLATE\r\n  TemplateName,Crew\r\n  Description,\"\"\r\n  ViewPassword,\"\"");
        Line(
            "  ModifyPassword,\"\"\r\n  CurrentIndex,0\r\n  NumJournals,1\r\n  JournalDates,09/03/2001 "
            "12:00am");
        Line("SHIFT\r\n  ShiftName,Standard\r\n  BurdenedMultiplier,1.5\r\n  OvertimeMultiplier,1.5");
        Line("  OffDayMultiplier,2\r\n  HolidayMultiplier,3");
        for (int hour = 0; hour < 24; ++hour) {
            const bool works = (hour >= 8 && hour < 12) || (hour >= 13 && hour < 17);
            Line("  " + FormatHour(hour, true) + "," + std::string(12, works ? 'N' : 'X'));
        }
        Resource(1, "Ann", 50);
        Resource(2, "Bob", 40);
    }
    void Project(int solveRules) {
        Line("PROJECT\r\n  ProjectName,Shed\r\n  Description,Garden shed\r\n  ViewPassword,\"\"");
        Line("  ModifyPassword,\"\"\r\n  PlanIndex,0\r\n  CurrentIndex,0\r\n  NumJournals,1");
        Line("  JournalDates,09/03/2001 12:00am\r\n  Priority,1\r\n  SolveRules," +
             std::to_string(solveRules));
        Line("  Parent,\"\"\r\n  Manager,\"\"");
    }
    void Task(const TaskPart& task) {
        const std::string minutes = std::to_string(task.minutes);
        Line("TASK\r\n  TaskID," + std::to_string(task.taskID) + "\r\n  Subproject,\"\"");
        Line("  Description," + task.description + "\r\n  Include,True");
        Line("  EffortUnits," + std::to_string(task.effortUnits) + "\r\n  Optimistic," + minutes);
        Line("  MostLikely," + minutes + "\r\n  Pessimistic," + minutes + "\r\n  Efficiency,.85");
        Line("  MaterialCost,0\r\n  LaborCost,0");
        for (const char* date : {"EarlyStart", "EarlyFinish", "LateStart", "LateFinish"})
            Line(std::string("  ") + date + ",12/30/1899 12:00am");
        for (const DependencyPart& each : task.dependencies) Dependency(each);
        for (const AssignmentPart& each : task.assignments) {
            Line("ASSIGNMENT\r\n  Include,True\r\n  ResourceRequired,Crew," +
                 std::to_string(each.resourceID));
            Line("  Hours," + std::to_string(each.hours));
            WorkDays();
        }
    }

  private:
    void Line(const std::string& content) { text_ += content + "\r\n"; }
    void WorkDays() {
        for (int day = 0; day < 9; ++day)
            Line(std::string("  WorkOn") + DayName(day) + (day >= 2 && day <= 6 ? ",True" : ",False"));
    }
    void Resource(int resourceID, const std::string& name, int rate) {
        Line("RESOURCE\r\n  ResourceID," + std::to_string(resourceID) + "\r\n  Description," + name);
        Line("  Include,True\r\n  Department,None\r\n  Title,\"\"\r\n  BurdenedRate," + std::to_string(rate));
        Line("  OvertimeRate,90\r\n  OffDayRate,100\r\n  HolidayRate,120\r\n  Shift,Standard");
        WorkDays();
    }
    void Dependency(const DependencyPart& part) {
        const bool onDate = part.taskID == 0;
        Line("DEPENDENCY\r\n  Include,True\r\n  DepDate," + (onDate ? part.date : "12/30/1899 12:00am"));
        Line("  TaskRequired," + (onDate ? "\"\"" : "Shed," + std::to_string(part.taskID)));
        Line("  FromPercent," + std::to_string(part.from) + "\r\n  ToPercent," + std::to_string(part.to));
        Line("  Offset," + part.offset);
    }

    std::string text_;
};

/// A project "Shed" of one journal, on a template "Crew" with Ann (1, 50 an hour) and Bob (2, 40 an hour),
/// who work from 8 to 12 and from 1 to 5, Monday to Friday.
inline std::string ShedPlan(int solveRules, const std::vector<TaskPart>& tasks) {
    ShedWriter writer;
    writer.Template();
    writer.Project(solveRules);
    for (const TaskPart& task : tasks) writer.Task(task);
    return writer.Text();
}

constexpr int kEffortHours = -60;
constexpr int kCalendarDays = 1440;

/// The shed from Monday 3 September 2001 on. Ann digs for six days and only then comes to the pipes; Bob
/// draws mornings, builds half of the walls, and waits for the permit.
inline std::string UsualShed(int solveRules = 1) {
    return ShedPlan(solveRules,
                    {{1, "Dig", kEffortHours, 48 * 60, {{}}, {{1, 8}}},
                     {2, "Pipes", kEffortHours, 16 * 60, {{}}, {{1, 8}}},
                     {3, "Drawings", kEffortHours, 12 * 60, {{}}, {{2, 4}}},
                     {4, "Permit", kCalendarDays, 3 * 1440, {{3, 100, 0, "1"}}, {}},
                     {5, "Walls", kEffortHours, 16 * 60, {{3}, {4, 100, 50}}, {{2, 8}}},
                     {6, "Paint", kEffortHours, 4 * 60, {{1}, {2, 100, 0, "-.25"}, {4}, {5}}, {{1, 4}}}});
}

}  // namespace vortan

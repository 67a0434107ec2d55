#include <gtest/gtest.h>

#include "model/Fault.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "persist/Records.h"
#include "solve/Solver.h"
#include "support/ScriptedPlatform.h"
#include "transfer/Transfer.h"

namespace vortan {
namespace {

std::string Tag(const std::string& name, const std::string& value) {
    return "<" + name + ">" + value + "</" + name + ">";
}
/// A plan from Monday 9/3/2001 on.
std::string Plan(const std::string& tasks, const std::string& rest = "") {
    return "<?xml version=\"1.0\"?>\n<Project xmlns=\"http://schemas.microsoft.com/project\">" +
           Tag("Name", "P") + Tag("StartDate", "2001-09-03T08:00:00") + "\n" + Tag("Tasks", tasks) + rest +
           "</Project>";
}
/// UID is 100 more than the ID.
std::string Task(int id, const std::string& more = "", int level = 1) {
    return Tag("Task", Tag("UID", std::to_string(id + 100)) + Tag("ID", std::to_string(id)) +
                           Tag("Name", "T" + std::to_string(id)) +
                           Tag("OutlineLevel", std::to_string(level)) + Tag("Start", "2001-09-04T08:00:00") +
                           Tag("Duration", "PT24H0M0S") + more) +
           "\n";
}
std::string From(int id, int type, int lag = 0, int format = 7) {
    return Tag("PredecessorLink",
               Tag("PredecessorUID", std::to_string(id + 100)) + Tag("Type", std::to_string(type)) +
                   Tag("LinkLag", std::to_string(lag)) + Tag("LagFormat", std::to_string(format)));
}
std::string Resource(int id, const std::string& name, const std::string& more = "") {
    return Tag("Resource",
               Tag("UID", std::to_string(id)) + Tag("ID", std::to_string(id)) + Tag("Name", name) + more);
}
std::string Assignment(int task, int resource, const std::string& units, const std::string& more = "") {
    return Tag("Assignment", Tag("TaskUID", std::to_string(task + 100)) +
                                 Tag("ResourceUID", std::to_string(resource)) + Tag("Units", units) + more);
}
std::string Team(const std::string& resources, const std::string& assignments) {
    return Tag("Resources", resources) + Tag("Assignments", assignments);
}

struct Import {
    ScriptedPlatform platform;
    Workspace workspace{platform};
    Solver solver{workspace};
    Transfer transfer{workspace};

    bool Read(const std::string& text) { return transfer.ImportText(text, "p.xml"); }
    /// "1 3d" with dependencies "9/4", "2:75>0+1" behind it, the dummy aside.
    std::string Tasks(const Vproject& project) const {
        std::string text;
        for (const Vtask* task : project.TaskList()) {
            if (task->Description() == "Computer-generated dummy") continue;
            text += (text.empty() ? "" : "; ") + task->Key();
            for (const Vdependency* each : task->DependencyList()) {
                const Vtask* from = each->TaskRequired();
                text += " " +
                        (from ? from->Key() + ":" + std::to_string(each->FromPercent())
                              : FormatShortDate(each->DepDate())) +
                        (from || each->ToPercent() ? ">" + std::to_string(each->ToPercent()) : "");
                if (each->Offset() != 0)
                    text += (each->Offset() > 0 ? "+" : "") + PlainNumber(each->Offset());
            }
        }
        return text;
    }
    std::string Tasks() const { return Tasks(*workspace.ThisProject()); }
    bool Solves() {
        solver.RestartSolve();
        solver.SolveTimerTick();
        return solver.Mode() == SolveMode::Idle;
    }
    void ExpectLoss(const std::string& part) const {
        EXPECT_NE(transfer.LastLosses().Text().find(part), std::string::npos) << part << " in\n"
                                                                              << transfer.LastLosses().Text();
    }
};

TEST(Import, LinksKeepKindAndLag) {
    const struct {
        std::string more, expected;
    } cases[] = {
        {From(1, 1), "1:100>0"},
        {From(1, 1, 4800), "1:100>0+1"},    // a working day
        {From(1, 3, 24000, 9), "1:0>0+7"},  // a working week
        {From(1, 1, 28800), "1:100>0+8"},   // and a day of the next
        {From(1, 1, -2400, 5), "1:100>0-0.5"},
        {From(1, 1, 14400, 8), "1:100>0+1"},  // elapsed
        {From(1, 1, -25, 19), "1:75>0"},
        {From(1, 3, 50, 19), "1:50>0"},
        {From(1, 1, 50, 19), "1:100>0+1.5"},  // of three days
        {From(1, 0, 4800) + Tag("ConstraintType", "4") + Tag("ConstraintDate", "2001-09-10T08:00:00"),
         "9/10/2001 1:100>100+1"},
        {Tag("ConstraintType", "6") + Tag("ConstraintDate", "2001-09-10T17:00:00"), "9/4/2001 9/10/2001>100"},
        {Tag("ConstraintType", "7") + Tag("ConstraintDate", "2001-09-10T17:00:00"), "9/4/2001"},
        {From(1, 1) + Tag("Manual", "1"), "1:100>0 9/4/2001"},
        {From(9, 1), "9/4/2001"},  // from nowhere
        {From(2, 1), "9/4/2001"},  // from itself
    };
    for (const auto& each : cases) {
        Import import;
        ASSERT_TRUE(import.Read(Plan(Task(1) + Task(2, each.more))));
        EXPECT_EQ(import.Tasks(), "1 9/4/2001; 2 " + each.expected);
        EXPECT_TRUE(import.Solves()) << each.expected << import.solver.SolveMessage();
    }
}

TEST(Import, SummaryTasksBecomeSubprojectsWhoseFirstTasksWait) {
    Import import;
    ASSERT_TRUE(import.Read(Plan(Task(1) + Task(2, From(1, 1) + Tag("Notes", "Why")) + Task(3, "", 2) +
                                 Task(4, From(3, 1), 2) + Task(5, From(2, 1)))));
    EXPECT_EQ(import.Tasks(), "1 9/4/2001; 2; 5 2:100>0");
    const Vproject& inner = *import.workspace.ProjectList().Find("T2");
    EXPECT_EQ(inner.BuildNodeText(), "T2: Why");
    EXPECT_EQ(import.Tasks(inner), "3 9/4/2001 1:100>0; 4 3:100>0");
    import.ExpectLoss("Task 2 T2: Link FS from Task 1 T1");
    EXPECT_TRUE(import.Solves()) << import.solver.SolveMessage();
}

TEST(Import, CirclesAreCutAndListed) {
    // By tasks, by their starts, by a task that waits for what it is in, and by the default dependency of the
    // first.
    for (const std::string& tasks :
         {Task(1, From(3, 1)) + Task(2, From(1, 1)) + Task(3, From(2, 1)),
          Task(1, From(2, 3)) + Task(2, From(1, 3)), Task(1) + Task(2, From(3, 1)) + Task(3, From(2, 1), 2),
          Task(1, From(2, 0)) + Task(2, From(1, 3))}) {
        Import import;
        import.transfer.ToStartAnswer = 6;
        ASSERT_TRUE(import.Read(Plan(tasks)));
        import.ExpectLoss("It closes a circle");
        EXPECT_TRUE(import.Solves()) << import.solver.SolveMessage() << tasks;
    }
}

TEST(Import, EstimatesAndAssignmentsFollowUnits) {
    Import import;
    const std::string custom =
        "<ExtendedAttribute><FieldID>188743767</FieldID><Value>-60</Value></ExtendedAttribute>";
    const std::string flags = [] {
        std::string text;
        for (const char* id : {"255852668", "255852669", "255852666"})  // Flag2, Flag3, Flag10
            text += Tag("ExtendedAttribute", Tag("FieldID", id) + Tag("Value", "1"));
        return text;
    }();
    ASSERT_TRUE(import.Read(Plan(
        Task(1) + Task(2) + Task(3, custom) + Task(4, Tag("DurationFormat", "8")) +
            Task(5, Tag("Duration", "-PT8H")) + Task(6, Tag("Duration", "PT99999999999H")) +
            Task(7, Tag("IsNull", "1")) + Task(8, Tag("Active", "0")),
        Team(Resource(
                 1, "Ann",
                 Tag("StandardRate", "4000") + Tag("StandardRateFormat", "5") + Tag("CostPerUse", "700")) +
                 Resource(2, "Bob") + Resource(3, "Cement", Tag("Type", "0") + Tag("StandardRate", "2.5")),
             Assignment(2, 1, "1") + Assignment(2, 2, "1") + Assignment(3, 1, "0.5", flags) +
                 Assignment(2, 3, "4")))));
    std::string text;
    for (const Vtask* task : import.workspace.ThisProject()->TaskList())
        text += task->Key() + " " + std::to_string(task->EffortUnits()) + " " +
                std::to_string(task->MostLikely()) + " " + PlainNumber(task->MaterialCost().ToDouble()) +
                "; ";
    // The three working days of 1440 minutes; 25 an hour is 4000 a month of 160 hours.
    EXPECT_EQ(
        text.substr(0, text.find("7 -60")),
        "1 1440 6048 0; 2 -480 2880 17; 3 -60 720 3.5; 4 1440 1440 0; 5 1440 0 0; 6 1440 2147483647 0; ");
    const Vtask& third = *import.workspace.ThisProject()->FindTask(3);
    EXPECT_EQ(third.AssignmentList()[0]->BuildNodeText(), "1: Ann @10 SuMo");
    EXPECT_EQ(import.workspace.ThisTemplate()->FindResource(1)->BurdenedRate(), Money::FromDouble(25));
    for (const char* part :
         {"Task 5 T5: Duration: It is negative", "Empty row", "Inactive task", "Material resource"})
        import.ExpectLoss(part);
}

TEST(Import, CalendarsBecomeShiftsAndWorkDays) {
    const auto day = [](int type, const std::string& from, const std::string& to) {
        return Tag("WeekDay",
                   Tag("DayType", std::to_string(type)) + Tag("DayWorking", "1") +
                       Tag("WorkingTimes", Tag("WorkingTime", Tag("FromTime", from) + Tag("ToTime", to))));
    };
    const std::string calendars =
        Tag("Calendars",
            Tag("Calendar",
                Tag("UID", "1") + Tag("Name", "Late") +
                    Tag("WeekDays", day(2, "20:00:00", "00:00:00") + day(3, "20:00:00", "00:00:00") +
                                        day(4, "08:02:00", "09:00:00")) +
                    Tag("Exceptions",
                        Tag("Exception", Tag("Name", "Feast") +
                                             Tag("TimePeriod", Tag("FromDate", "2001-12-25T00:00:00") +
                                                                   Tag("ToDate", "2001-12-25T23:59:00"))))) +
                Tag("Calendar", Tag("UID", "2") + Tag("Name", "Ann") + Tag("BaseCalendarUID", "1")));
    Import import;
    ASSERT_TRUE(
        import.Read(Plan("", calendars + Tag("Resources", Resource(1, "Ann", Tag("CalendarUID", "2")) +
                                                              Resource(2, "Bob", Tag("CalendarUID", "1"))))));
    const Vresource& ann = *import.workspace.ThisTemplate()->FindResource(1);
    EXPECT_EQ(ann.Shift()->ShiftName(), "Late");
    EXPECT_EQ(ann.Shift(), import.workspace.ThisTemplate()->FindResource(2)->Shift());
    EXPECT_EQ(ann.Shift()->Matrix(19) + ann.Shift()->Matrix(20) + ann.Shift()->Matrix(23),
              std::string(12, 'X') + std::string(24, 'N'));
    EXPECT_TRUE(ann.WorkDay(2) && ann.WorkDay(4) && !ann.WorkDay(7));
    for (const char* part : {"Feast 12/25/2001", "Hours of Wednesday: 8:02-9:00", "steps of five minutes"})
        import.ExpectLoss(part);
}

TEST(Import, SamePersonIsFoundAndTakenNumbersAreReplaced) {
    Import import;
    ASSERT_TRUE(import.Read(Plan("", Tag("Resources", Resource(1, "Ann") + Resource(2, "Bob")))));
    import.platform.ExpectBox("Using Active Template", BoxAnswer::Cancel, "active template (Resources).");
    EXPECT_FALSE(import.transfer.ImportMSProject("p.xml"));
    ASSERT_TRUE(
        import.Read(Plan(Task(1) + Task(1), Team(Resource(1, "Ann") + Resource(2, "Cid") + Resource(3, "Dan"),
                                                 Assignment(1, 2, "1")))));
    std::string text;
    for (const Vresource* each : import.workspace.ThisTemplate()->ResourceList())
        text += each->BuildNodeText() + "; ";
    EXPECT_EQ(text, "1: Ann; 2: Bob; 3: Dan; 4: Cid; ");
    EXPECT_EQ(import.workspace.ThisProject()->ProjectName(), "P(B)");
    EXPECT_EQ(
        import.workspace.ThisProject()->FindTask(1)->AssignmentList()[0]->ResourceRequired()->Description(),
        "Cid");
    EXPECT_EQ(import.Tasks(), "1 9/4/2001; 2 9/4/2001");
}

TEST(Import, ToStartQuestionComesOnceInARun) {
    for (const BoxAnswer answer : {BoxAnswer::Yes, BoxAnswer::No}) {
        Import import;
        import.platform.ExpectBox("Confirm Add To-Start Dependencies", answer);
        for (int run = 0; run < 2; ++run) {
            ASSERT_TRUE(import.Read(Plan(Task(1) + Task(2, From(1, 0)) + Task(3, From(1, 2)))));
            EXPECT_EQ(import.Tasks(), answer == BoxAnswer::Yes
                                          ? "1 9/4/2001; 2 1:100>100 1:100>0; 3 1:0>100 1:100>0"
                                          : "1 9/4/2001; 2 1:100>100; 3 1:0>100");
        }
    }
}

TEST(Import, CancelLeavesNothingWhereverItComes) {
    const std::string text =
        Plan(Task(1) + Task(2, "", 2), Team(Resource(1, "Ann") + Resource(7, "New"), Assignment(2, 1, "1")));
    Import import;
    ASSERT_TRUE(import.Read(text));
    const std::string before = SaveRecords(import.workspace);
    int asked = 0, at = 0;
    import.transfer.Cancelled = [&] { return ++asked > at;
};
for (; !import.Read(text); ++at, asked = 0) EXPECT_EQ(SaveRecords(import.workspace), before) << at;
EXPECT_GT(at, 5);
EXPECT_NE(SaveRecords(import.workspace), before);
}  // namespace

TEST(Import, BadFilesAreToldByLineAndLeaveNothing) {
    const std::string good =
        Plan(Task(1) + Task(2, From(1, 1)), Team(Resource(1, "Ann"), Assignment(1, 1, "1")));
    Import import;
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_THROW(import.Read(good.substr(0, size)), Fault) << size;
        ASSERT_TRUE(import.workspace.ProjectList().empty() && import.workspace.TemplateList().empty());
    }
    const struct {
        std::string text, part;
    } cases[] = {
        {"plain text", "line 1: there is no plan"},
        {"<html><body/></html>", "the root element is html"},
        {"<Project xmlns=\"http://schemas.microsoft.com/developer/msbuild/2003\"/>",
         "not a plan of Microsoft Project"},
        {"<!DOCTYPE Project [<!ENTITY a \"aaa\"><!ENTITY b \"&a;&a;\">]>\n" + good.substr(22), "DOCTYPE"},
        {Plan(Task(1) + Task(2, Tag("Start", "2001-02-30T08:00:00"))),
         "line 4: element Project/Tasks/Task/Start is \"2001-02-30T08:00:00\""},
        {Plan(Task(1, Tag("Duration", "8 hours"))), "line 3: element Project/Tasks/Task/Duration"},
        {Plan(Task(1, Tag("Priority", "99999999999"))), "which is not a whole number"},
        {Plan(Task(1, "<Name>x</Nam>")), "line 3: the file is not XML"},
    };
    for (const auto& each : cases) {
        try {
            import.Read(each.text);
            ADD_FAILURE() << each.part;
        } catch (const Fault& fault) {
            EXPECT_NE(fault.Description().find(each.part), std::string::npos) << fault.Description();
            EXPECT_EQ(fault.Description().find("p.xml, line "), 0U);
        }
        EXPECT_TRUE(import.workspace.ProjectList().empty());
    }
}

TEST(Import, EncodingsAndOddTextsAreRead) {
    const std::string name = "Caf\xC3\xA9";
    const std::string text = Plan(Task(1, Tag("Name", name + "&#10;&lt;b&gt;&#1;")));
    std::string latin = Plan(Task(1, Tag("Name", "Caf\xE9")));
    latin.insert(latin.find("?>"), " encoding=\"ISO-8859-1\"");
    std::string wide = "\xFF\xFE";
    for (const char c : Plan(Task(1, Tag("Name", "Caf\x01")))) {
        wide += c == '\x01' ? '\xE9' : c;
        wide += '\0';
    }
    const std::pair<std::string, std::string> cases[] = {
        {text, name + " <b>"}, {"\xEF\xBB\xBF" + text, name + " <b>"}, {latin, name}, {wide, name}};
    for (const auto& [bytes, expected] : cases) {
        Import import;
        ASSERT_TRUE(import.Read(bytes));
        EXPECT_EQ(import.workspace.ThisProject()->FindTask(1)->Description(), expected);
    }
}

}  // namespace vortan
}  // namespace vortan

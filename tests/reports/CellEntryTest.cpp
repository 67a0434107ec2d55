#include "reports/CellEntry.h"

#include <gtest/gtest.h>

#include "model/LinkText.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "persist/FileCommands.h"
#include "support/Paths.h"
#include "support/ScriptedPlatform.h"
#include "support/TextPlan.h"

namespace vortan {
namespace {

constexpr const char* kPlan =
    "template Crew; resource 1 \"Ann\" $50; resource 2 \"(old) Bob\"; resource 3 \"Ann\"; "
    "project Shed rule 1; task 1 \"Dig\" work 480 start=9/3/2001_8:00 by 1; task 2 \"Pour\" work 960 by 1; "
    "task 3 \"Dry\" work 60";

TEST(LinkText, WhatIsTypedIsWhatIsThere) {
    ScriptedPlatform platform;
    Workspace workspace(platform);
    MakePlan(workspace, kPlan);
    Vproject& shed = *workspace.ThisProject();
    Vtask& pour = *shed.FindTask(2);
    const std::pair<const char*, const char*> dependencies[] = {
        {"1", "1"},
        {" 1 50-0% + 2 days ;3;", "1 50%-0% +2d; 3"},
        {"1 100%-100% -4h; 2001-09-03 8:00", "1 100%-100% -4h; 9/3/2001 8:00:00 AM"},
        {"9/3/2001 5:30 PM 0%-100% +1.5w", "9/3/2001 5:30:00 PM 0%-100% +1.5w"},
        {"", ""}};
    for (const auto& [typed, line] : dependencies) {
        ASSERT_EQ(DependencyRefusal(&pour, shed, typed), "") << typed;
        TakeDependencyLine(pour, typed);
        EXPECT_EQ(DependencyLine(pour), line);
    }
    const std::pair<const char*, const char*> assignments[] = {
        {"2", "2"},  // brackets name a template
        {"2 @3.5 mofr", "2 @3.5 MoFr"},
        {"1 50%; 3 -", "1 @4; 3 -"},  // two have the name
        {"", ""}};
    for (const auto& [typed, line] : assignments) {
        ASSERT_EQ(AssignmentRefusal(&pour, workspace, typed), "") << typed;
        TakeAssignmentLine(pour, typed);
        EXPECT_EQ(AssignmentLine(pour), line);
    }
}

TEST(LinkText, RefusesWithTheReason) {
    ScriptedPlatform platform;
    Workspace workspace(platform);
    MakePlan(workspace, kPlan);
    const Vproject& shed = *workspace.ThisProject();
    const Vtask* pour = shed.FindTask(2);
    const std::pair<const char*, const char*> dependencies[] = {{"2", "itself"},
                                                                {"9", "no task 9 in project Shed"},
                                                                {"(House) 1", "no project \"House\""},
                                                                {"soon", "no dependency"},
                                                                {"1 101%-0%", "percents"},
                                                                {"1 x", "neither percents nor an offset"},
                                                                {"1 +2 fathoms", "duration"}};
    for (const auto& [typed, part] : dependencies)
        EXPECT_NE(DependencyRefusal(pour, shed, typed).find(part), std::string::npos) << typed;
    EXPECT_EQ(DependencyRefusal(pour, shed, "9", {9}), "");
    const std::pair<const char*, const char*> assignments[] = {
        {"Ann", "no resource \"Ann\" in template Crew"},
        {"1 @x", "hours a day"},
        {"(Navy) 1", "no template"}};
    for (const auto& [typed, part] : assignments)
        EXPECT_NE(AssignmentRefusal(pour, workspace, typed).find(part), std::string::npos) << typed;
}

/// Everything in the examples, typed again as it is shown, leaves all objects as they were.
TEST(LinkText, ReadBackChangesNothing) {
    for (const char* name : {"programme.vta", "house.vta"}) {
        ScriptedPlatform platform;
        Workspace workspace(platform);
        Settings settings(platform);
        FileCommands(workspace, settings).LoadFile(ExampleFile(name));
        ASSERT_TRUE(workspace.ThisProject());
        int items = 0;
        for (Vtask* task : workspace.ThisProject()->TaskList()) {
            items += static_cast<int>(DependencyLine(*task).size() + AssignmentLine(*task).size());
            TakeDependencyLine(*task, DependencyLine(*task));
            TakeAssignmentLine(*task, AssignmentLine(*task));
        }
        EXPECT_GT(items, 100);
        EXPECT_FALSE(workspace.ThisProject()->Dirty()) << name;
    }
}

TEST(CellEntry, ABlockIsTakenAsAWholeOrNotAtAll) {
    ScriptedPlatform platform;
    Workspace workspace(platform);
    MakePlan(workspace, kPlan);
    Vproject& shed = *workspace.ThisProject();
    const CellEntry entry(workspace, CellEntry::Sheet::Tasks, 0.5);
    const RowSubject pour = Link<Vtask>(shed.FindTask(2));
    // New rows speak of each other; the second has a number of its own, which the first must not get.
    std::vector<CellEntry::Cell> cells = {{{}, 0, 1, "Roof"},    {{}, 0, 5, "2; 4 50%-0%"},
                                          {{}, 1, 0, "4"},       {{}, 1, 2, "1;2;3 weeks"},
                                          {pour, 2, 2, "1.5 h"}, {pour, 2, 4, "2"}};
    const auto refusals = entry.Check(cells);
    ASSERT_EQ(refusals.size(), 1u);
    EXPECT_EQ(refusals[0].cell, 5u);
    EXPECT_EQ(refusals[0].text, "The efficiency must be above 0 and not above 1.");
    EXPECT_EQ(shed.TaskList().size(), 3u);
    cells.back().text = "1";
    entry.Take(cells);
    ASSERT_EQ(shed.TaskList().size(), 5u);
    const Vtask &roof = *shed.FindTask(5), &weeks = *shed.FindTask(4);
    EXPECT_EQ(roof.Description() + "|" + DependencyLine(roof), "Roof|2; 4 50%-0%");
    EXPECT_EQ(roof.Efficiency(), 0.5);
    EXPECT_EQ(
        FormatEffort(weeks.EffortUnits(), weeks.Optimistic(), weeks.MostLikely(), weeks.Pessimistic(), true),
        "1;2;3 weeks");
    EXPECT_EQ(weeks.EffortUnits(), -2400);
    EXPECT_EQ(shed.FindTask(2)->MostLikely(), 90);
    const std::vector<CellEntry::Cell> twice = {{{}, 0, 0, "7"}, {{}, 1, 0, "7"}, {pour, 2, 0, "1"}};
    EXPECT_EQ(entry.Check(twice).size(), 2u);
}

TEST(CellEntry, ResourcesFollowTheirForm) {
    ScriptedPlatform platform;
    Workspace workspace(platform);
    MakePlan(workspace, kPlan);
    Vresource& ann = *workspace.ThisTemplate()->FindResource(1);
    const CellEntry entry(workspace, CellEntry::Sheet::Resources, 0);
    const RowSubject row = Link<Vresource>(&ann);
    const struct {
        int column;
        const char *text, *refusal;
    } cases[] = {{0, "2", "The Resource ID 2 is already in use."},
                 {2, "", "The department must be filled in."},
                 {5, "much", "The overtime rate must be an amount of money."},
                 {8, "Night", "There is no shift \"Night\"."},
                 {9, "x", "A day must be Y or n."},
                 {18, "x", "There is no such column."},
                 {2, "Yard", ""},
                 {5, "$12.50", ""},
                 {8, "Standard", ""},
                 {9, "n", ""},    // Monday
                 {15, "y", ""}};  // Sunday
    for (const auto& each : cases) {
        const CellEntry::Cell cell{row, 0, each.column, each.text};
        const auto refusals = entry.Check({&cell, 1});
        ASSERT_EQ(refusals.empty() ? "" : refusals[0].text, each.refusal);
        if (refusals.empty()) entry.Take({&cell, 1});
    }
    EXPECT_EQ(ann.Department(), "Yard");
    EXPECT_EQ(ann.OvertimeRate(), Money::FromDouble(12.5));
    EXPECT_TRUE(!ann.WorkDay(2) && ann.WorkDay(1) && ann.WorkDay(3));
}

}  // namespace
}  // namespace vortan

// What an export writes, and what comes back of a file that somebody has changed meanwhile.

#include <gtest/gtest.h>

#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "support/LoadedPlan.h"
#include "support/PlanFiles.h"
#include "transfer/Transfer.h"
#include "transfer/WorkingTime.h"

namespace vortan {

namespace {

struct Export : LoadedPlan {
    explicit Export(const std::string& words, bool solve = true) {
        Make(words);
        if (solve) Solve();
    }
    std::string Name() const { return platform.Directory() + "/plan.xml"; }
    std::string Losses() const { return transfer.LastLosses().Text(); }
    const MTask& Row(std::size_t at) {
        file = {};
        EXPECT_TRUE(transfer.ExportToMSProject(Name()));
        EXPECT_TRUE(ReadMspdi(FileBytes(Name()), Name(), file, {}));
        return file.Tasks.at(at);
    }
    Transfer transfer{workspace};
    MProject file;
};

constexpr const char* kCrew =
    "template Crew; resource 1 \"Ann\" $50; resource 2 \"Bob\" $40; project Shed rule 1; ";

TEST(Export, DurationsAreThoseOfTheTeamOrOfTheCalendar) {
    const std::string start = " start=9/3/2001_8:00 ";
    struct {
        std::string words;
        double minutes;
        MFormat format;
    } const cases[] = {{"work 2400" + start + "by 1", 2400, MFormat::Days},
                       {"work 2400" + start + "by 1 by 2", 1200, MFormat::Days},
                       {"clock 1440" + start, 1440, MFormat::ElapsedDays}};
    for (const auto& each : cases) {
        Export plan(kCrew + ("task 1 \"Dig\" " + each.words));
        const MTask& row = plan.Row(1);
        EXPECT_EQ(row.Duration, each.minutes) << each.words;
        EXPECT_EQ(PlainFormat(row.DurationFormat), each.format) << each.words;
        EXPECT_EQ(row.Duration2, 0) << each.words;
        EXPECT_FALSE(row.Manual) << each.words;
        EXPECT_EQ(row.ConstraintType, 4) << each.words;
        EXPECT_EQ(DateText(row.ConstraintDate), "2001-09-03 08:00") << each.words;
    }
    Export three(std::string(kCrew) + "task 1 \"Dig\" work 480/960/1440" + start + "by 1 by 2");
    EXPECT_EQ(three.Row(1).Duration1, 240);
    EXPECT_EQ(three.Row(1).Duration3, 720);
}

TEST(Export, LinksKeepKindPercentAndOffset) {
    struct {
        const char* words;
        MLinkType type;
        double lag;
        int format;
        const char* loss;
    } const cases[] = {{"after 1", MLinkType::FS, 0, 7, ""},
                       {"after 1:0>0", MLinkType::SS, 0, 7, ""},
                       {"after 1:100>100", MLinkType::FF, 0, 7, ""},
                       {"after 1:0>100", MLinkType::SF, 0, 7, ""},
                       {"after 1+1.5", MLinkType::FS, 2160, 8, ""},
                       {"after 1:75>0", MLinkType::FS, -25, 19, ""},
                       {"after 1:30>0", MLinkType::SS, 30, 19, ""},
                       {"after 1:50>0-1", MLinkType::FS, -1440, 8, "either a percentage or a lag"},
                       {"after 1>60", MLinkType::FF, 0, 7, "ends at the start or the finish"}};
    for (const auto& each : cases) {
        Export plan(std::string(kCrew) + "task 1 \"Dig\" work 480 start by 1; task 2 \"Fill\" work 480 " +
                    "start by 2 " + each.words + "; task 3 \"End\" days 0 after 1 after 2");
        const MTask& row = plan.Row(2);
        ASSERT_EQ(row.Links.size(), 1U) << each.words;
        EXPECT_EQ(row.Links[0].Type, each.type) << each.words;
        EXPECT_EQ(row.Links[0].Lag, each.lag) << each.words;
        EXPECT_EQ(row.Links[0].LagFormat, each.format) << each.words;
        if (*each.loss)
            EXPECT_NE(plan.Losses().find(each.loss), std::string::npos) << plan.Losses();
        else
            EXPECT_EQ(plan.Losses(), "") << each.words;
    }
}

/// What somebody changed in the file is right; all else is as exact as before.
TEST(Export, ChangedRowsWinAndCutTextsAreTold) {
    Export plan(std::string(kCrew) +
                "task 1 \"Dig\" work 480 start=9/3/2001_8:00 by 1; task 2 \"Fill\" work 481 " +
                "after 1+1 by 2@3.3");
    plan.workspace.ThisProject()->FindTask(2)->SetEfficiency(0.123456789);
    plan.Row(0);
    const std::string whole = FileBytes(plan.Name());
    const auto reread = [&](const std::string& from, const std::string& to, auto&& look) {
        std::string text = whole;
        const std::size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos);
        WriteBytes(plan.Name(), text.replace(at, from.size(), to));
        LoadedPlan back;
        Transfer in(back.workspace);
        EXPECT_TRUE(in.ImportMSProject(plan.Name()));
        look(*back.workspace.ThisProject()->FindTask(2), in.LastLosses().Text());
    };
    reread("<LinkLag>14400<", "<LinkLag>28800<", [](const Vtask& task, const std::string&) {
        EXPECT_EQ(task.DependencyList().at(0)->Offset(), 2);
        EXPECT_EQ(task.Efficiency(), 0.123456789);
        EXPECT_EQ(task.MostLikely(), 481);
    });
    reread("<Name>Fill<", "<Name>Level<", [](const Vtask& task, const std::string& losses) {
        EXPECT_EQ(task.Description(), "Level");
        EXPECT_EQ(losses, "");
    });
    reread(";d", ";", [](const Vtask&, const std::string& losses) {
        EXPECT_NE(losses.find("changed or cut"), std::string::npos) << losses;
    });
}

TEST(Export, OddTextsAndDatesGoThere) {
    Export plan(
        "template Crew; resource 1 \"Ann\"; project Shed rule 1; task 1 \"Dig\" days 480 "
        "start=12/1/2149_8:00; "
        "task 2 \"Fill\" days 480 after 1+60",
        false);
    const std::string odd = " a<script>&amp;\t\x01\xE2\x82\xAC]]> ";
    plan.workspace.ThisProject()->FindTask(1)->SetDescription(odd);
    plan.workspace.ThisProject()->SetViewPassword("secret");
    plan.Solve();
    const std::string before = SaveRecords(plan.workspace);
    EXPECT_EQ(plan.Row(1).Name, "a<script>&amp;  \xE2\x82\xAC]]>");
    EXPECT_EQ(DateText(plan.file.Tasks.at(2).Finish), "2149-12-31 23:59");
    EXPECT_NE(plan.Losses().find("passwords"), std::string::npos);
    EXPECT_EQ(FileBytes(plan.Name()).find("secret"), std::string::npos);
    EXPECT_TRUE(plan.workspace.ThisProject()->Dirty());  // since something was lost
    LoadedPlan back;
    Transfer in(back.workspace);
    EXPECT_TRUE(in.ImportMSProject(plan.Name()));
    EXPECT_EQ(back.workspace.ThisProject()->FindTask(1)->Description(), odd);
    back.workspace.ThisProject()->SetViewPassword("secret");
    back.Solve();
    EXPECT_EQ(FirstDifference(SaveRecords(back.workspace), before), "");
}

TEST(Export, WaitsForAnotherProjectAreListedAndDated) {
    Export plan(std::string(kCrew) +
                "task 1 \"Dig\" work 480 start by 1; project Road rule 1; "
                "task 1 \"Pave\" work 480 start=9/5/2001_8:00 by 2; project Shed; task 2 \"Fill\" work 480 "
                "after Road/1 by 1; "
                "task 3 \"End\" days 0 after 1 after 2");
    const MTask& row = plan.Row(2);
    EXPECT_TRUE(row.Links.empty());
    EXPECT_EQ(DateText(row.ConstraintDate), "2001-09-05 17:00");
    EXPECT_NE(plan.Losses().find("not part of the export"), std::string::npos);
}

TEST(Export, CancelKeepsTheOldFileAndWholeOnesAreSaved) {
    Export plan(std::string(kCrew) + "task 1 \"Dig\" work 480 start by 1");
    WriteBytes(plan.Name(), "old");
    plan.transfer.Cancelled = [] { return true; };
    EXPECT_FALSE(plan.transfer.ExportToMSProject(plan.Name()));
    EXPECT_EQ(FileBytes(plan.Name()), "old");
    EXPECT_TRUE(plan.workspace.ThisProject()->Dirty());
    plan.transfer.Cancelled = nullptr;
    EXPECT_TRUE(plan.transfer.ExportToMSProject(plan.Name()));
    EXPECT_FALSE(plan.workspace.ThisProject()->Dirty());
}

TEST(WorkingTime, CountsBetweenAnyMoments) {
    std::array<MDay, 8> week{};
    for (std::size_t day = 2; day <= 6; ++day) week[day] = {true, true, {{480, 720}, {780, 1020}}};
    const WorkingTime hours(week);
    const auto at = [](int day, int minute) {
        return std::int64_t{37135 + day} * 1440 + minute;
    };  // 9/1, a Saturday
    EXPECT_EQ(hours.PerWeek(), 2400);
    EXPECT_EQ(hours.Between(at(0, 0), at(9, 600)), 2520);
    EXPECT_EQ(hours.Forward(at(2, 720)), at(2, 780));
    EXPECT_EQ(hours.Forward(at(6, 1020)), at(9, 480));
    EXPECT_EQ(hours.Back(at(9, 480)), at(6, 1020));
    EXPECT_EQ(hours.StartOf(at(9, 600), 180), at(6, 960));
    EXPECT_EQ(hours.EndOf(at(6, 960), 180), at(9, 600));
    EXPECT_EQ(hours.EndOf(at(6, 960), 60), at(6, 1020));
}

}  // namespace

}  // namespace vortan

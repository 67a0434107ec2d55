#include "reports/WebPage.h"

#include <QRegularExpression>

#include "cli/CliRun.h"
#include "model/JournalCommands.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "solve/IterativeSolve.h"
#include "support/LoadedPlan.h"

namespace vortan {
namespace {

constexpr const char* kRoof = R"(
    template Crew; resource 1 "Ann" $77.77; resource 2 "Bob" $40
    project Roof "Of the shed" rule 1
    task 1 "Frame" work 960 start=9/3/2001_8:00 by 1; task 2 "Tiles" work 480 after 1 by 2)";

struct Page : LoadedPlan {
    explicit Page(const std::string& words) {
        Make(words);
        Solve();
    }
    std::string Html(bool costs = true, const IterativeResults& results = {}) {
        Settings settings(platform);
        return WebPageOf({workspace, settings, solver, results, costs});
    }
};

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST(WebPage, NamesAreTextsAndNothingIsAskedFor) {
    Page plan(kRoof);
    plan.Task("Roof", 1)->SetDescription("<script>alert(1)</script>");
    plan.Task("Roof", 2)->SetDescription("Tiles\" onclick=\"x\n</title>");
    plan.Resource("Crew", 1)->SetDescription("=A1&<b>");
    plan.workspace.ThisProject()->SetDescription("</style><img src=x>");
    plan.Solve();
    const std::string page = plan.Html();
    ExpectPart(page, "1: &lt;script&gt;alert(1)&lt;/script&gt;");
    ExpectPart(page, "&#8203;=A1&amp;&lt;b&gt;");
    ExpectPart(page, "Tiles&quot; onclick=&quot;x<br>&lt;/title&gt;");
    EXPECT_EQ(CountOf(page, "<script"), 1u);
    for (const char* part : {"http:", "https:", "<b>", "<img", "src=\"", "url(", "@import"})
        ExpectNoPart(page, part);
    EXPECT_FALSE(QString::fromStdString(page).contains(
        QRegularExpression("<[a-z]+ [^>]*\\son[a-z]+=|href=[^#\"]|href=\"[^#]")));
}

TEST(WebPage, WithoutCostsNoAmountIsInIt) {
    Page plan(kRoof);
    plan.platform.currencySymbol = "Q";
    plan.Task("Roof", 2)->SetMaterialCost(Money::FromDouble(4321.09));
    plan.workspace.ThisProject()->SetViewPassword("sesame");
    plan.workspace.ThisTemplate()->SetModifyPassword("sesame");
    plan.Solve();
    const std::string with = plan.Html(true), without = plan.Html(false);
    for (const char* amount : {"Q1,244.32", "Q4,641.09", "Q4,321.09", "Labor cost", ">Cost"}) {
        ExpectPart(with, amount);
        ExpectNoPart(without, amount);
    }
    for (const char* secret : {"sesame", "77.77", "Q40"}) ExpectNoPart(with + without, secret);
    EXPECT_FALSE(
        QString::fromStdString(without).contains(QRegularExpression("Q-?[0-9]|[0-9],[0-9]{3}[^0-9]")));
}

TEST(WebPage, ThePlanStandsBesideTheCurrentJournal) {
    Page plan(kRoof);
    plan.Make("task 3 \"Paint\" work 480 after 2 by 2");
    plan.Solve();
    AddJournalEverywhere(plan.workspace, FromParts({2001, 9, 4}));
    plan.Task("Roof", 1)->SetMostLikely(1440);
    plan.Task("Roof", 3)->Delete();
    plan.Make("project Roof; task 4 \"Clean\" work 60 after 2 by 1");
    plan.Solve();
    for (int i = 0; i < 2; ++i) {
        const std::string page = plan.Html();
        ExpectPart(page, "The project finishes ");
        ExpectPart(page, "<th scope=row>Finish<td>9/6/2001 5:00 PM<td>9/7/2001 9:00 AM<td>+16 hours");
        ExpectPart(page,
                   "1: Frame<td>Ann<td data-v=1440>24 hours<td>9/3/2001 8:00 AM<td>9/5/2001 5:00 PM"
                   "<td>9/3/2001 8:00 AM<td>9/4/2001 5:00 PM<td>&#8203;+1 day<td>");
        ExpectPart(page, "3: Paint<td>no longer in the project<td");
        ExpectPart(page, "<td>not in the plan<td>");
        ExpectPart(page, "The blue line stands at 9/4/2001,");
        ExpectPart(page, "<title>9/3/2001 8:00 AM - 9/5/2001 5:00 PM</title>");
    }
}

TEST(WebPage, ShowsWhatIsBelowTheProjectAndNoOtherOne) {
    Page plan(std::string(kRoof) + R"(
        project Secret "Merger" rule 1; task 1 "Talks" work 480 start=9/3/2001_8:00 by 2
        project House; task 1 is Roof start=9/3/2001_8:00)");
    plan.workspace.SetThisProject(plan.workspace.FindOrCreateProject("House"));
    const std::string page = plan.Html();
    for (const char* part : {"2: Tiles<td>Roof<td>Bob", "<th scope=row>2: Bob<td>2: Tiles<td>Roof<td>"})
        ExpectPart(page, part);
    for (const char* part : {"Talks", "Merger"}) ExpectNoPart(page, part);
}

TEST(WebPage, TheRiskCurveIsThatOfThisSolution) {
    Page plan(kRoof);
    IterativeSolve iterative(plan.workspace, plan.solver);
    ASSERT_TRUE(iterative.RiskSolve(true, 20, nullptr).done);
    plan.Solve();
    ExpectNoPart(plan.Html(), "id=risk>");
    const std::string page = plan.Html(false, iterative.Results());
    ExpectPart(page, "Of 20 runs with other estimates:");
    ExpectPart(page, "<li>80% finish by 9/5/2001 5:00 PM</li>");
    plan.Task("Roof", 1)->SetMostLikely(1440);
    plan.Solve();
    ExpectNoPart(plan.Html(false, iterative.Results()), "id=risk>");
}

TEST(WebPage, StaysSmall) {
    std::string words = kRoof;
    for (int i = 3; i <= 2000; ++i)
        words += "; task " + std::to_string(i) + " \"A task with a usual name\" work 480 after " +
                 std::to_string(i - 1) + " by " + std::to_string(i % 2 + 1);
    Page plan(words);
    const std::string page = plan.Html();
    EXPECT_EQ(CountOf(page, "<th scope=row>"), 2000u + 2 + 2000);
    EXPECT_LT(page.size(), 2000u * 800);
}

using PublishCommand = CliFixture;

TEST_F(PublishCommand, WritesAPageOfAHaltedPlanToo) {
    const std::string plan = FileWith("shed.vta", UsualShed()), halted = FileWith("halted.vta", UsualShed(0)),
                      out = PathOf("page.html");
    EXPECT_EQ(Done({"publish", plan, "-o", out, "--no-costs"}), "");
    ExpectPart(FileBytes(out), "<section id=gantt>");
    const CliOutcome outcome = Run({"publish", halted, "-o", out});
    EXPECT_EQ(outcome.exitCode, kExitHalted);
    ExpectPart(outcome.err, "Overtime needed: Task 2");
    const std::string page = FileBytes(out);
    ExpectPart(page, "<p>Overtime needed: Task 2");
    ExpectNoPart(page, "<section id=gantt>");
    ExpectPart(Refused({"publish", plan, "-o", plan}), "must end in .html");
}

}  // namespace
}  // namespace vortan

#include "cli/CliRun.h"
#include "reports/ReportKinds.h"
#include "support/Json.h"
#include "support/LoadedPlan.h"

namespace vortan {
namespace {

using ReportCommand = CliFixture;

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST_F(ReportCommand, PrintsATableOrData) {
    const std::string plan = FileWith("shed.vta", UsualShed());
    const std::string text = Done({"report", "loading-by-resource", plan});
    EXPECT_TRUE(text.starts_with("Loading summary\n\nResource ")) << text;
    ExpectPart(text, "2: Bob    Shed: Garden shed  5: Walls");
    ExpectPart(Done({"report", "loading-by-day", plan, "--month", "2001-10"}),
               "Loading by the day, October 2001\n");
    const QJsonValue json = ParseJson(Done({"report", "tasks", plan, "--json"}));
    EXPECT_EQ(json["kind"].toString().toStdString(), "tasks");
    EXPECT_EQ(json["rows"].toArray().size(), 10u);
}

TEST_F(ReportCommand, WritesEveryKindOfFile) {
    const std::string plan = TestFile("golden/reports/plan2.vta");
    const auto bytes = [&](const std::string& ending) {
        const std::string out = PathOf("report" + ending);
        EXPECT_EQ(Done({"report", "loading-by-day", plan, "-o", out}), "");
        return FileBytes(out);
    };
    EXPECT_TRUE(bytes(".csv").starts_with("\xEF\xBB\xBFResource,Project/Task,December 2001"));
    EXPECT_TRUE(bytes(".html").starts_with("<!DOCTYPE html>"));
    EXPECT_TRUE(bytes(".xlsx").starts_with("PK"));
    EXPECT_TRUE(bytes(".PDF").starts_with("%PDF"));
    EXPECT_TRUE(bytes(".png").starts_with("\x89PNG"));
    EXPECT_EQ(bytes(".json"), Done({"report", "loading-by-day", plan, "--json"}));
    // The month stands once over each of its weeks.
    EXPECT_EQ(CountOf(bytes(".svg"), ">December 2001<"), 4u);
}

TEST_F(ReportCommand, WhatIsMissingIsTold) {
    const std::string shed = FileWith("shed.vta", UsualShed()), halted = FileWith("halted.vta", UsualShed(0)),
                      empty =
                          FileWith("empty.vta", PlanText("template Crew; resource 1; project Shed rule 1"));
    struct Case {
        const char* kind;
        std::string plan;
        int exitCode;
        const char* complaint;
        bool printed;
    };
    for (const Case& each : {Case{"update", shed, 1, "Plan Equals Current: This spreadsheet requires", false},
                             Case{"summary", halted, 1, "Overtime needed: Task 2", false},
                             Case{"update", halted, 1, "Overtime needed: Task 2", false},
                             Case{"overtime", halted, 1, "Overtime needed: Task 2", false},
                             Case{"overload", halted, 1, "Overtime needed: Task 2", false},
                             Case{"loading-by-resource", halted, 0, "booked before the solve halted", true},
                             Case{"loading-by-day", halted, 0, "booked before the solve halted", true},
                             Case{"resources", halted, 0, "", true}, Case{"tasks", halted, 0, "", true},
                             Case{"date-dependencies", halted, 0, "", true},
                             Case{"overload", shed, 0, "The requested spreadsheet contained no data.", false},
                             Case{"summary", empty, 0, "", true}}) {
        const CliOutcome outcome = Run({"report", each.kind, each.plan});
        EXPECT_EQ(outcome.exitCode, each.exitCode) << each.kind;
        ExpectPart(outcome.err, each.complaint);
        EXPECT_EQ(outcome.err.empty(), !*each.complaint) << each.kind << outcome.err;
        EXPECT_EQ(!outcome.out.empty(), each.printed) << each.kind;
    }
    ExpectPart(Refused({"report", "tasks", shed, "-o", PathOf("x.doc")}),
               "Its name must end in .csv, .xlsx, .html, .pdf, .svg, .png or .json.");
    for (const char* month : {"2002-13", "2002", "x", "2002-1-1", "99-01"})
        ExpectPart(Refused({"report", "loading-by-day", shed, "--month", month}), "is not a month");
    EXPECT_EQ(Run({"report", "tasks", shed, "--month", "2002-01"}).exitCode, kExitUsage);
}

}  // namespace
}  // namespace vortan

#include "cli/CliRun.h"
#include "support/Paths.h"

namespace vortan {
namespace {

class SolveCommandTest : public CliFixture {};

std::string Golden(const std::string& name) {
    return TestFile("golden/solve/" + name + ".vta");
}

TEST_F(SolveCommandTest, TheTableShowsDatesSlackAndCost) {
    const std::string expected =
        "Shed: Garden shed\n"
        "Journal 9/3/2001 [Plan only]; Normal only, extend if more needed\n"
        "\n"
        "Id  Description  Start               Finish                  Slack  Labor cost\n"
        "------------------------------------------------------------------------------\n"
        " 1  Dig          9/3/2001 8:00 AM    9/10/2001 5:00 PM   1.75 days   $2,400.00\n"
        " 2  Pipes        9/3/2001 8:00 AM    9/12/2001 5:00 PM           0     $800.00\n"
        " 3  Drawings     9/3/2001 8:00 AM    9/5/2001 12:00 PM   1.75 days     $480.00\n"
        " 4  Permit       9/6/2001 12:00 PM   9/9/2001 12:00 PM   1.75 days       $0.00\n"
        " 5  Walls        9/5/2001 12:00 PM   9/10/2001 5:00 PM   1.75 days     $640.00\n"
        " 6  Paint        9/12/2001 11:00 AM  9/13/2001 12:00 PM          0     $200.00\n"
        "------------------------------------------------------------------------------\n"
        "    Total        9/3/2001 8:00 AM    9/13/2001 12:00 PM              $4,520.00\n"
        "\n"
        "Solve complete\n";
    EXPECT_EQ(Done({"solve", FileWith("shed.vta", UsualShed())}), expected);
}

TEST_F(SolveCommandTest, EveryHaltSaysWhatToDo) {
    struct Case {
        const char* plan;
        const char* status;
        std::vector<const char*> advice;
    };
    const Case cases[] = {
        {"m03", "Journal sync error", {"beta at 11/2/2001", "Nowhere without any journal"}},
        {"m07", "Subproject is claimed by project Bridge 10", {"Task 38", "Take one of the two links away"}},
        {"m11", "must be either 0% or 100%", {"Task 11", "40% of task 12", "its start (0%)"}},
        {"m12",
         "Overtime needed",
         {"wants 8 hours of resource 180", "on 3/10/2004", "can have 0", "of task 5"}},
        {"m15", "Missing prerequisite", {"Task 1", "depends on task 3", "Delete the dependency"}},
        {"m19", "Missing to-start dependency", {"Task 43", "a start date or a dependency"}},
        {"m23", "Effort without resources", {"Task 13", "Assign a resource"}},
        {"m27", "No working time", {"Task 11", "Check hours, work days, shifts"}},
        {"m31", "Circular dependency", {"is required by task 33", "which is required by task 36"}},
        {"m35", "Dangling tasks", {"task 63", "task 62", "one last task only"}},
        {"m43", "Overload detected", {"and can have 6.51", "because of task 28", "up to 24 hours"}},
        {"m47", "Overload > 24 hours", {"wants 24 hours", "extends or has no limit"}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.plan);
        const CliOutcome outcome = Run({"solve", Golden(each.plan)});
        EXPECT_EQ(outcome.exitCode, kExitHalted);
        const auto status = outcome.out.rfind(std::string("\n") + each.status + ": ");
        ASSERT_NE(status, std::string::npos) << outcome.out;
        for (const char* part : each.advice) ExpectPart(outcome.out.substr(status), part);
    }
    std::string open = "project P rule 1";
    for (const char* task : {"1", "2", "3", "4", "5", "6", "7", "8", "9"})
        open += std::string("; task ") + task + " clock 60 start";
    ExpectPart(Run({"solve", FileWith("open.vta", PlanText(open))}).out,
               "task 7: <stub> (project P) and 2 more");
}

TEST_F(SolveCommandTest, AHaltedTaskHasNoFinish) {
    const std::string out = Run({"solve", FileWith("shed.vta", UsualShed(0))}).out;
    ExpectPart(out, " 2  Pipes        9/3/2001 8:00 AM  halted ");
    ExpectPart(out, " 3  Drawings     -                 - ");
    ExpectPart(out, "    Total        9/3/2001 8:00 AM  9/10/2001 5:00 PM ");
}

TEST_F(SolveCommandTest, TheSavedPlanSolvesToTheSame) {
    const std::string plan = FileWith("shed.vta", UsualShed());
    for (const char* name : {"out.vta", "out.vtb"}) {
        const std::string first = Done({"solve", plan, "--json", "--save", PathOf(name)});
        EXPECT_EQ(Done({"solve", PathOf(name), "--json"}), first);
    }
    ExpectPart(FileBytes(PathOf("out.vta")), "  EarlyFinish,09/10/2001 05:00pm\r\n");
    ExpectPart(Run({"solve", plan, "--save", PathOf("no/such/out.vta")}).err, "out.vta");
    EXPECT_EQ(Run({"solve", plan, "--save", PathOf("no/such/out.vta")}).exitCode, kExitUsage);
}

TEST_F(SolveCommandTest, SeveralFilesShareOneMemory) {
    const std::string one = FileWith("one.vta", SmallPlan("One") + StartsOnADate());
    const std::string two = FileWith("two.vta", SmallPlan("Two") + DependencyOn("One", 1));
    const std::string out = Done({"solve", one, two, "--project", "Two"});
    ExpectPart(out, "One: Small\n");
    ExpectPart(out, "Dig          9/3/2001 9:00 AM  9/3/2001 10:00 AM");
    ExpectPart(Done({"solve", ExampleFile("programme.vta"), "--journal", "1/11/2027"}), "7/12/2027 9:00 AM");
}

TEST_F(SolveCommandTest, TheExamplesEndAsTheirReadmeSays) {
    const std::string readme = FileBytes(ExampleFile("README.md"));
    for (const std::string name : {"house", "launch", "programme", "overtime"}) {
        SCOPED_TRACE(name);
        const int exitCode = name == "overtime" ? kExitHalted : kExitDone;
        const std::string status = name == "overtime" ? "Overtime needed" : "Solve complete";
        const std::string plan = ExampleFile(name + ".vta");
        const CliOutcome outcome = Run({"solve", plan, "--save", PathOf("again.vta")});
        EXPECT_EQ(outcome.exitCode, exitCode);
        ExpectPart(outcome.out, "\n" + status + (exitCode == kExitDone ? "\n" : ": "));
        EXPECT_TRUE(FileBytes(PathOf("again.vta")) == FileBytes(plan)) << "the file holds other results";
        const auto section = readme.find("## " + name + ".vta");
        ASSERT_NE(section, std::string::npos);
        const auto told = readme.find("Status: ", section);
        EXPECT_EQ(readme.substr(told + 9, status.size()), status);
    }
}

}  // namespace
}  // namespace vortan

#include "cli/CliRun.h"
#include "support/Paths.h"

namespace vortan {
namespace {

class WhyCommandTest : public CliFixture {
  protected:
    std::string Why(int taskID, const std::string& plan, std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"why", FileWith("why.vta", plan), "--task", std::to_string(taskID)});
        return Run(more).out;
    }
    std::string WhyJson(int taskID, const std::string& plan) { return Why(taskID, plan, {"--json"}); }
};

TEST_F(WhyCommandTest, TheWholeStoryOfAWaitingTask) {
    EXPECT_EQ(
        Why(5, UsualShed()),
        "Task 5: Walls (project Shed)\n"
        "9/5/2001 12:00 PM to 9/10/2001 5:00 PM\n"
        "\n"
        "Its part from 0% to 50% starts at 9/5/2001 12:00 PM, when task 3: Drawings is done.\n"
        "Its part from 50% to 100% starts at 9/9/2001 12:00 PM, when task 4: Permit is done.\n"
        "It stood still:\n"
        "  9/6/2001 12:00 PM to 9/9/2001 12:00 PM (3 days): waiting at 50% until task 4: Permit is done\n"
        "  9/5/2001 12:00 PM to 9/10/2001 1:00 PM, 4 times, 1.04 days in all: outside the normal time of "
        "the shift\n"
        "  9/9/2001 12:00 PM to 9/10/2001, 12 hours: no work day of its assignments\n"
        "It holds nothing back: task 6: Paint waits for it, with 1.75 days of room.\n"
        "It has 1.75 days of slack.\n");
}

TEST_F(WhyCommandTest, EveryCauseIsNamed) {
    struct Case {
        int taskID, solveRules;
        const char* text;
        const char* json;
    };
    const Case cases[] = {
        {1, 1, "9/8/2001 to 9/10/2001, 2 days: no work day of its assignments", "\"cause\":\"noWorkDay\""},
        {1, 1, "outside the normal time of the shift", "\"cause\":\"outsideShift\""},
        {2, 1, "resource 1: Ann is held by task 1: Dig",
         "\"cause\":\"held\",\"template\":\"Crew\",\"resource\":1,\"holder\":{\"project\":\"Shed\",\"task\":"
         "1}"},
        {3, 1,
         "9/3/2001 1:00 PM to 9/4/2001 5:00 PM, 2 times, 8 hours in all: the hours assigned for the day are "
         "worked",
         "\"cause\":\"hoursUsed\""},
        {5, 1, "waiting at 50% until task 4: Permit is done",
         "\"cause\":\"waiting\",\"percent\":50,\"dependency\":{\"taskRequired\":{\"project\":\"Shed\","
         "\"task\":4}"},
        {2, 6, "counted as worked, though task 1: Dig holds the resource", "\"cause\":\"unbooked\""},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.text);
        ExpectPart(Why(each.taskID, UsualShed(each.solveRules)), each.text);
        ExpectPart(WhyJson(each.taskID, UsualShed(each.solveRules)), each.json);
    }
    ExpectNoPart(Why(1, UsualShed()), "held by");
    ExpectNoPart(WhyJson(1, UsualShed()), "\"held\"");
}

TEST_F(WhyCommandTest, WhatDecidedTheStartIsTold) {
    // The dependencies of task 2 on task 1, which works 8 hours from Monday morning on.
    const std::string start = "start=9/3/2001_8:00";
    const std::pair<std::string, const char*> cases[] = {
        {start, "It starts at 9/3/2001 8:00 AM, the date set for it.\n"},
        {start + "+2",
         "It starts at 9/5/2001 8:00 AM, 2 days after the date set for it (9/3/2001 8:00 AM).\n"},
        {"after 1", "It starts at 9/3/2001 5:00 PM, when task 1: Dig is done.\n"},
        {start + " after 1:50", "It starts at 9/3/2001 12:00 PM, when task 1: Dig reaches 50%.\n"},
        {"after 1:0", "It starts at 9/3/2001 8:00 AM, when task 1: Dig begins.\n"},
        {"after 1+1.5",
         "It starts at 9/5/2001 5:00 AM, 1.5 days after task 1: Dig is done (9/3/2001 5:00 PM).\n"},
        {"after 1-.125",
         "It starts at 9/3/2001 2:00 PM, 3 hours before task 1: Dig is done (9/3/2001 5:00 PM).\n"},
        {start + " after 1>25",
         "Its part from 25% to 100% starts at 9/3/2001 5:00 PM, when task 1: Dig is done.\n"},
        {start + " after 1:0>75",
         "Its part from 75% to 100% starts at 9/4/2001 12:00 PM, as soon as the part before it is done.\n"},
    };
    for (const auto& [dependencies, text] : cases) {
        const std::string words =
            "template Crew; resource 1; resource 2; project Shed rule 1; task 1 \"Dig\" work 480 " + start +
            " by 1; task 2 work 960 " + dependencies + " by 2; task 3 work 60 after 1 after 2 by 1";
        ExpectPart(Why(2, PlanText(words)), text);
    }
}

TEST_F(WhyCommandTest, FollowersAndSlackAreTold) {
    const std::string pipes = Why(2, UsualShed());
    ExpectPart(
        pipes,
        "It holds back:\n  task 6: Paint (9/12/2001 11:00 AM)\nIt has no slack: any delay moves the end");
    const std::string drawings = Why(3, UsualShed());
    ExpectPart(drawings,
               "It holds back:\n  task 4: Permit (9/6/2001 12:00 PM)\n  task 5: Walls (9/5/2001 12:00 PM)\n");
    ExpectPart(drawings, "It has 1.75 days of slack.\n");
    ExpectPart(Why(6, UsualShed()), "Nothing waits for it.\n");
    ExpectPart(WhyJson(3, UsualShed()), "\"follower\":{\"project\":\"Shed\",\"task\":5}");
    ExpectPart(Done({"why", ExampleFile("programme.vta"), "--task", "8"}),
               "It ends 1.87 months later than the plan allows.");
}

TEST_F(WhyCommandTest, OnlyTheLastTaskOfASubprojectHoldsItBack) {
    const std::string plan = ExampleFile("launch.vta");
    const std::string fair = Done({"why", plan, "--project", "Marketing", "--task", "7"});
    ExpectNoPart(fair, "It holds back:");
    ExpectPart(Done({"why", plan, "--project", "Marketing", "--task", "8"}),
               "It holds back:\n  task 3: Marketing: Campaign, packaging and web (project Launch)");
    ExpectPart(Done({"why", plan, "--task", "2"}), "It stands for a subproject");
}

TEST_F(WhyCommandTest, AHaltIsToldWithTheTask) {
    const std::string plan = FileWith("halts.vta", UsualShed(0));
    const CliOutcome halted = Run({"why", plan, "--task", "2"});
    EXPECT_EQ(halted.exitCode, kExitHalted);
    for (const char* part :
         {"From 9/3/2001 8:00 AM on\n", "Ann is held by task 1: Dig", "not placed to its end",
          "\nOvertime needed: Task 2: Pipes (project Shed) wants 8 hours of resource 1: Ann"})
        ExpectPart(halted.out, part);
    ExpectPart(Run({"why", plan, "--task", "6"}).out, "It was not placed.\n");
    ExpectPart(Run({"why", plan, "--task", "2", "--json"}).out, "\"status\":\"Overtime needed\"");
}

}  // namespace
}  // namespace vortan

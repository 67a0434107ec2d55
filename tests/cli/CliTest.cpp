#include "cli/Cli.h"

#include "cli/CliRun.h"
#include "cli/TextTable.h"
#include "persist/PackedText.h"
#include "support/Paths.h"

namespace vortan {
namespace {

class CliTest : public CliFixture {};

TEST_F(CliTest, EveryCommandHasItsHelp) {
    const std::string help = Done({"--help"});
    for (const char* command :
         {"solve", "convert", "check", "journal", "why", "risk", "crash", "chart", "report"}) {
        ExpectPart(help, std::string("\n  ") + command + " ");
        ExpectPart(Done({command, "--help"}), std::string("vortan-cli ") + command);
    }
    ExpectPart(Done({"solve", "--help"}), "--save OUT ");
    ExpectPart(Done({"chart", "gantt", "--help"}), "-o,--output OUT REQUIRED");
    ExpectPart(Done({"--version"}), ", commit ");
}

TEST_F(CliTest, WhatCannotBeDoneIsRefusedWithTheReason) {
    const std::string plan = FileWith("shed.vta", UsualShed()), empty = FileWith("empty.vta", "");
    const std::string halting = FileWith("h.vta", UsualShed(0)), programme = ExampleFile("programme.vta");
    // A plan whose rule halts, but which needs no halt as it stands.
    const std::string calm = FileWith(
        "calm.vta",
        PlanText(
            "template Crew; resource 1; project Shed \"Garden shed\" rule 2; task 1 work 480 start by 1"));
    const struct {
        std::vector<std::string> arguments;
        const char* reason;
        int exitCode = kExitUsage;
    } cases[] = {
        {{}, "--help"},
        {{"frob", plan}, "There is no command \"frob\""},
        {{"solve"}, "FILE is required"},
        {{"solve", plan, "--frob"}, "--frob"},
        {{"solve", plan, "--journal"}, "--journal"},
        {{"solve", programme, "--project", "Shed"}, "no project \"Shed\" in memory. There are: Billing."},
        {{"solve", programme, "--journal", "2027-02-02"}, "It has: 1/11/2027, 4/12/2027."},
        {{"solve", programme, "--journal", "soon"}, "\"soon\" is not a date"},
        {{"convert", plan}, "OUT is required"},
        {{"convert", plan, PathOf("out.txt")}, "out.txt"},
        {{"why", plan}, "--task is required"},
        {{"why", plan, "--task", "two"}, "two"},
        {{"why", plan, "--task", "7"}, "no task 7 in project Shed"},
        {{"why", plan, "--task", "1", "--project", "Barn"}, "no project \"Barn\""},
        {{"journal", plan, "--add", "9/3/2001"}, "already exists"},
        {{"journal", plan, "--add", "someday"}, "is not a date"},
        {{"journal", plan, "--activate", "9/4/2001"}, "has no journal of 9/4/2001"},
        {{"journal", plan, "--plan", "9/4/2001"}, "has no journal of 9/4/2001"},
        {{"journal", empty, "--add", "9/4/2001"}, "There is no project"},
        {{"risk", plan, "-n", "0"}, "from 1 to 1,000,000"},
        {{"risk", plan, "-n", "many"}, "--iterations"},
        {{"risk", plan, "--project", "Barn"}, "no project \"Barn\""},
        {{"risk", halting}, "Overtime needed: ", kExitHalted},
        {{"crash", plan, "--increment", "2"}, "from 0.1 to 1.0"},
        {{"crash", calm}, "The project Shed: Garden shed has a solve rule that halts", kExitHalted},
        {{"crash"}, "FILE"},
    };
    for (const auto& [arguments, reason, exitCode] : cases) {
        const CliOutcome outcome = Run(arguments);
        EXPECT_EQ(outcome.exitCode, exitCode) << reason;
        EXPECT_EQ(outcome.out, "");
        ExpectPart(outcome.err, reason);
    }
}

/// The commands that read a plan, with the file as their second word.
const std::vector<std::vector<std::string>> kReaders = {
    {"solve", "FILE"}, {"check", "FILE"}, {"journal", "FILE"},           {"why", "FILE", "--task", "1"},
    {"risk", "FILE"},  {"crash", "FILE"}, {"convert", "FILE", "out.vtb"}};

TEST_F(CliTest, ALocaleThatTheSystemDoesNotKnowIsRefused) {
    const std::string plan = FileWith("shed.vta", UsualShed());
    const CliOutcome usual = Run({"solve", plan});
    for (const char* known : {"C", "C.UTF-8"})
        EXPECT_EQ(Run({"--locale", known, "solve", plan}).out, usual.out) << known;
    const CliOutcome unknown = Run({"solve", plan, "--locale", "xx_YY"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_EQ(unknown.err, "This system does not know a locale \"xx_YY\".\n");
}

TEST_F(CliTest, AFileThatCannotBeReadIsRefusedByEveryCommand) {
    const std::pair<std::string, std::string> files[] = {
        {PathOf("missing.vta"), PathOf("missing.vta")},
        {FileWith("plan.txt", UsualShed()), "does not have a recognized type"},
        {PathOf("Vortan.cfg"), "does not have a recognized type"}};
    for (const auto& [file, complaint] : files) {
        for (std::vector<std::string> arguments : kReaders) {
            arguments[1] = file;
            ExpectPart(Refused(arguments), complaint);
        }
    }
}

TEST_F(CliTest, NoLineIsWiderThanTheTerminal) {
    for (const char* command : {"solve", "risk", "crash"}) {
        for (const std::string& plan : {ExampleFile("house.vta"), ExampleFile("launch.vta"),
                                        ExampleFile("programme.vta"), TestFile("golden/solve/m12.vta")}) {
            for (const int width : {60, 80, 100}) {
                std::istringstream lines(Run({command, plan}, width).out);
                for (std::string line; std::getline(lines, line);) EXPECT_LE(TextWidth(line), width) << line;
            }
        }
    }
    // Where the time of day has no room, the day and the whole description are still there.
    ExpectPart(Done({"solve", ExampleFile("launch.vta")}, 80), "Product definition ");
}

TEST_F(CliTest, ADamagedFileIsNamedWithItsLine) {
    const std::string damaged =
        FileWith("bad.vta", Replaced(UsualShed(), "  EffortUnits,1440", "  EffortUnit,1440"));
    for (std::vector<std::string> arguments : kReaders) {
        if (arguments[0] == "check" || arguments[0] == "convert") continue;
        arguments[1] = damaged;
        ExpectPart(Refused(arguments), "Error reading file " + damaged +
                                           ": read \"EffortUnit\" when expecting \"EffortUnits\"\nLine ");
    }
}

TEST_F(CliTest, ADamagedPackedFileIsSolvedWithAWarningOrRefused) {
    std::string packed = PackText(UsualShed());
    const CliOutcome cutOff = Run({"solve", FileWith("cut.vtb", packed.substr(0, packed.size() / 2))});
    EXPECT_EQ(cutOff.exitCode, kExitUsage);
    ExpectPart(cutOff.err, "The packed file was cut off before its end.");
    packed.back() = static_cast<char>(packed.back() ^ 1);
    const CliOutcome changed = Run({"solve", FileWith("sum.vtb", packed)});
    EXPECT_EQ(changed.exitCode, kExitDone);
    ExpectPart(changed.err, "sum.vtb is damaged: its check sum does not match.");
    ExpectPart(changed.out, "Solve complete");
}

}  // namespace
}  // namespace vortan

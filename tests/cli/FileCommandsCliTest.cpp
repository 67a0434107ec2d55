#include <filesystem>

#include "cli/CliRun.h"
#include "persist/PackedText.h"
#include "support/Paths.h"

namespace vortan {
namespace {

class ConvertCommandTest : public CliFixture {};
class CheckCommandTest : public CliFixture {};
class JournalCommandTest : public CliFixture {};

TEST_F(ConvertCommandTest, ThereAndBackChangesNothing) {
    for (const std::string& plan : {ExampleFile("house.vta"), FileWith("odd.vta", "no plan,\n\n at all")}) {
        EXPECT_EQ(Done({"convert", plan, PathOf("packed.vtb")}), "");
        EXPECT_EQ(Done({"convert", PathOf("packed.vtb"), PathOf("back.vta")}), "");
        EXPECT_TRUE(FileBytes(PathOf("back.vta")) == FileBytes(plan));
    }
}

TEST_F(ConvertCommandTest, ADamagedPackedFileIsNotConverted) {
    const std::string packed = FileBytes(TestFile("golden/packed/p1.vtb"));
    std::string changed = packed;
    changed[packed.size() / 2] = static_cast<char>(changed[packed.size() / 2] ^ 0x10);
    for (const std::string& bytes : {changed, packed.substr(0, packed.size() / 2)}) {
        ExpectPart(Refused({"convert", FileWith("bad.vtb", bytes), PathOf("out.vta")}), "is damaged");
        EXPECT_FALSE(std::filesystem::exists(PathOf("out.vta")));
    }
}

TEST_F(CheckCommandTest, AGoodFileIsCounted) {
    EXPECT_EQ(Done({"check", FileWith("shed.vta", UsualShed())}),
              "1 template, 1 shift, 2 resources\n"
              "1 project, 6 tasks, 10 dependencies, 5 assignments\n"
              "Template Crew: 1 journal (9/3/2001)\n"
              "Project Shed: 1 journal (9/3/2001), active 9/3/2001 [Plan only]\n"
              "No damage found\n");
    Done({"convert", PathOf("shed.vta"), PathOf("shed.vtb")});
    ExpectPart(Done({"check", PathOf("shed.vtb")}), "The check sum matches.\nNo damage found\n");
    ExpectPart(Done({"check", ExampleFile("programme.vta")}),
               "2 journals (1/11/2027, 4/12/2027), active 4/12/2027");
}

TEST_F(CheckCommandTest, DamageIsToldWithWhatCouldBeRead) {
    const std::string plan = UsualShed();
    const std::string packed = PackText(plan);
    const std::string bad = Replaced(plan, "  EffortUnits,1440", "  EffortUnit,1440");
    const std::string cut = plan.substr(0, plan.find("  EffortUnits,1440") + 13);
    const std::string half = packed.substr(0, packed.size() / 2);
    const std::string sum = packed.substr(0, packed.size() - 1) + static_cast<char>(packed.back() ^ 1);
    const std::tuple<const char*, std::string, std::vector<const char*>> cases[] = {
        {"bad.vta", bad, {"1 template, 1 shift, 2 resources", "bad.vta", "\nLine "}},
        {"cut.vta", cut, {"1 project, ", "Error reading file"}},
        {"cut.vtb", half, {"cut off before its end"}},
        {"sum.vtb", sum, {"The check sum does not match."}},
        {"new.vta", plan + "NOTE\r\n", {"1 project, 6 tasks", "a newer version", "\nLine "}},
    };
    for (const auto& [name, bytes, parts] : cases) {
        SCOPED_TRACE(name);
        const CliOutcome outcome = Run({"check", FileWith(name, bytes)});
        EXPECT_EQ(outcome.exitCode, kExitUsage);
        for (const char* part : parts) ExpectPart(outcome.out, part);
        const bool newer = std::string_view(name) == "new.vta";
        EXPECT_TRUE(outcome.out.ends_with(newer ? "\nWritten by a newer version\n" : "\nDamaged\n"))
            << outcome.out;
    }
}

TEST_F(CheckCommandTest, WhatLinksNameAndNoRecordCompletesIsTold) {
    const std::string plan = Replaced(UsualShed(), "TaskRequired,Shed,1\r\n", "TaskRequired,Barn,7\r\n");
    const std::string out =
        Done({"check", FileWith("stubs.vta", Replaced(plan, "Shift,Standard", "Shift,Night"))});
    for (const char* part :
         {"Never completed: task 7 of project Barn\n", "Night", "Project Barn: no journals\n"})
        ExpectPart(out, part);
    ExpectNoPart(out, "Never completed: task 1 ");
    ExpectPart(Done({"check", FileWith("empty.vta", "")}), "0 projects, 0 tasks");
    ExpectPart(Done({"check", FileWith("blank.vta", UsualShed() + "\r\n\r\n\r\n\r\nPROJECT\r\n")}),
               "Text behind a blank line is not read: line ");
}

TEST_F(JournalCommandTest, JournalsAreListed) {
    EXPECT_EQ(Done({"journal", ExampleFile("programme.vta")}),
              "Project Billing\n"
              "  1/11/2027 [Plan]\n"
              "  4/12/2027 [Current]\n"
              "Template Renewal office\n"
              "  1/11/2027\n"
              "  4/12/2027 [Current]\n");
}

TEST_F(JournalCommandTest, AJournalIsAddedMadeThePlanAndActivated) {
    const std::string plan = FileWith("shed.vta", UsualShed());
    const std::string out = PathOf("out.vta");
    const auto journals = [&] {
        const std::string text = Done({"journal", out});
        return text.substr(0, text.find("Template"));
    };
    Done({"journal", plan, "--add", "2001-09-10", "--save", out});
    EXPECT_EQ(journals(), "Project Shed\n  9/3/2001 [Plan]\n  9/10/2001 [Current]\n");
    const std::tuple<const char*, const char*, const char*> steps[] = {
        {"--plan", "9/10/2001", "  9/3/2001\n  9/10/2001 [Plan only]\n"},
        {"--plan", "9/3/2001", "  9/3/2001 [Plan]\n  9/10/2001 [Current]\n"},
        {"--plan", "9/10/2001", "  9/3/2001\n  9/10/2001 [Plan only]\n"},
        {"--activate", "9/3/2001", "  9/3/2001 [Current]\n  9/10/2001 [Plan]\n"},
    };
    for (const auto& [option, date, expected] : steps) {
        Done({"journal", out, option, date, "--save", out});
        Done({"journal", out, "--add", "9/17/2001"});
        EXPECT_EQ(journals(), std::string("Project Shed\n") + expected)
            << "nothing is written without --save";
    }
    ExpectPart(Done({"solve", out, "--journal", "9/10/2001"}), "Journal 9/10/2001 [Plan only]");
}

}  // namespace
}  // namespace vortan

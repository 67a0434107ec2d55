#include "cli/Cli.h"

#include "cli/CliRun.h"
#include "persist/PackedText.h"

namespace vortan {
namespace {

class CliTest : public CliFixture {};

TEST_F(CliTest, EveryCommandHasItsHelp) {
    const std::pair<std::vector<std::string>, std::vector<const char*>> cases[] = {
        {{"--help"}, {"solve", "convert", "check", "journal", "why", "Exit code: 0 done"}},
        {{"solve", "--help"}, {"FILE", "--json", "--save OUT", "--journal DATE", "--project NAME"}},
        {{"convert", "--help"}, {"IN", "OUT"}},
        {{"check", "--help"}, {"FILE"}},
        {{"journal", "--help"}, {"--add DATE", "--plan DATE", "--activate DATE", "--save OUT"}},
        {{"why", "--help"}, {"--task N", "--json", "--project NAME"}},
    };
    for (const auto& [arguments, parts] : cases) {
        const std::string help = Done(arguments);
        for (const char* part : parts) ExpectPart(help, part);
    }
    EXPECT_NE(Done({"--version"}), "");
}

TEST_F(CliTest, AWrongCommandLineIsRefusedWithTheReason) {
    const std::string plan = FileWith("shed.vta", UsualShed());
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{}, "--help"},
        {{"frob", plan}, "There is no command \"frob\""},
        {{"solve"}, "FILE is required"},
        {{"solve", plan, "--frob"}, "--frob"},
        {{"solve", plan, "--journal"}, "--journal"},
        {{"convert", plan}, "OUT is required"},
        {{"why", plan}, "--task is required"},
        {{"why", plan, "--task", "two"}, "two"},
        {{"why", plan, "--task", "7"}, "no task 7 in project Shed"},
        {{"why", plan, "--task", "1", "--project", "Barn"}, "no project \"Barn\""},
    };
    for (const auto& [arguments, reason] : cases) ExpectPart(Refused(arguments), reason);
}

TEST_F(CliTest, AFileThatCannotBeReadIsRefusedByEveryCommand) {
    const std::string missing = PathOf("missing.vta");
    const std::string text = FileWith("plan.txt", UsualShed());
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"solve"}, {"check"}, {"journal"}, {"why", "--task", "1"}}) {
        std::vector<std::string> arguments = command;
        arguments.insert(arguments.begin() + 1, missing);
        ExpectPart(Refused(arguments), missing);
        arguments[1] = text;
        ExpectPart(Refused(arguments), "does not have a recognized type");
    }
    ExpectPart(Refused({"convert", missing, PathOf("out.vtb")}), missing);
    ExpectPart(Refused({"convert", text, PathOf("out.vtb")}), "does not have a recognized type");
    ExpectPart(Refused({"convert", FileWith("shed.vta", UsualShed()), PathOf("out.txt")}), "out.txt");
}

TEST_F(CliTest, ADamagedFileIsNamedWithItsLine) {
    const std::string damaged =
        FileWith("bad.vta", Replaced(UsualShed(), "  EffortUnits,1440", "  EffortUnit,1440"));
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"solve", damaged},
                                                      {"why", damaged, "--task", "1"},
                                                      {"journal", damaged}}) {
        const std::string complaint = Refused(arguments);
        ExpectPart(complaint,
                   "Error reading file " + damaged + ": read \"EffortUnit\" when expecting \"EffortUnits\"");
        ExpectPart(complaint, "\nLine ");
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

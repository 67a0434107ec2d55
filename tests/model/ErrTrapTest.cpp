#include "model/ErrTrap.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "model/Fault.h"
#include "model/ValueText.h"
#include "support/ScriptedPlatform.h"

namespace vortan {
namespace {

class ErrTrapTest : public testing::Test {
  protected:
    std::string Log() {
        std::ifstream file(platform.Directory() + "/ErrTrap.log");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Expect(BoxAnswer answer, const std::string& text) {
        platform.ExpectBox("Internal Error", answer, text);
    }

    std::string Header(const std::string& message, const std::string& section, const std::string& action) {
        return std::string(79, '-') + "\n" + message +
               "\n\n"
               "Time:         09/03/01 12:00:00pm\n"
               "Section:      " +
               section +
               "\nExe file:     vortan-of-tests\n"
               "Exe version:  " +
               GetAppVersion() +
               "\nExe date:     \n"
               "User action:  " +
               action + "\n";
    }

    ErrTrapTest() { platform.programFile = "vortan-of-tests"; }

    ScriptedPlatform platform;
    ErrTrap errTrap{platform};
};

void Inner() {
    const Section here("Vfile:ExpectToken");
    { const Section passedThrough("Vfile:ReadToken"); }
    Refuse("Assertion failed");
}
void Middle() {
    const Section here("Vproject:LoadData");
    Inner();
}
void Outer() {
    const Section here("Main:OpenFile");
    Middle();
}

TEST_F(ErrTrapTest, ACommandWithoutFaultLeavesNoTrace) {
    EXPECT_TRUE(errTrap.RunCommand("Main:OpenMenu_Click", [] { const Section here("Main:OpenFile"); }));
    EXPECT_EQ(Log(), "");
    EXPECT_TRUE(platform.statusMessages.empty());
}

TEST_F(ErrTrapTest, AbortLogsTheCallChainOutermostFirst) {
    Expect(BoxAnswer::Abort, "Internal error 10000: Assertion failed");
    EXPECT_FALSE(errTrap.RunCommand("Main:OpenMenu_Click", Outer));
    EXPECT_EQ(Log(), Header("Internal error 10000: Assertion failed", "Vfile:ExpectToken", "[Abort]") +
                         "Call chain:\n  Main:OpenMenu_Click\n  Main:OpenFile\n  Vproject:LoadData\n"
                         "  Vfile:ExpectToken\n");
    EXPECT_EQ(platform.statusMessages, std::vector<std::string>{""});
}

TEST_F(ErrTrapTest, RetryRunsTheWholeCommandAgain) {
    Expect(BoxAnswer::Retry, "");
    Expect(BoxAnswer::Ignore, "");  // which logs no chain
    int runs = 0;
    EXPECT_FALSE(errTrap.RunCommand("Main:OpenMenu_Click", [&] {
        if (++runs < 3) Outer();
    }));
    EXPECT_EQ(runs, 2);
    const std::string message = "Internal error 10000: Assertion failed";
    EXPECT_EQ(Log(), Header(message, "Vfile:ExpectToken", "[Retry]") +
                         Header(message, "Vfile:ExpectToken", "[Ignore]"));
}

TEST_F(ErrTrapTest, AFaultAlreadyShownEndsTheCommandSilently) {
    EXPECT_FALSE(errTrap.RunCommand("Main:OpenMenu_Click", [] { throw Fault(Fault::kUnwinding, ""); }));
    EXPECT_EQ(Log(), "");
}

TEST_F(ErrTrapTest, AFaultCaughtOnTheWayLeavesNothingInTheChain) {
    Expect(BoxAnswer::Abort, "second");
    errTrap.RunCommand("Main:OpenMenu_Click", [] {
        try {
            Outer();
        } catch (const Fault&) {
        }
        const Section here("Main:OpenAgain");
        Refuse("second");
    });
    EXPECT_NE(Log().find("Call chain:\n  Main:OpenMenu_Click\n  Main:OpenAgain\n"), std::string::npos)
        << Log();
}

TEST_F(ErrTrapTest, ACommandWithinACommandEndsAlone) {
    Expect(BoxAnswer::Abort, "inner");
    Expect(BoxAnswer::Abort, "outer");
    EXPECT_FALSE(errTrap.RunCommand("Main:SolveTimer_Timer", [&] {
        const Section here("Solve:DoEverything");
        EXPECT_FALSE(errTrap.RunCommand("Main:AutoBackupTimer_Timer", [] { Refuse("inner"); }));
        Refuse("outer");
    }));
    const std::string log = Log();
    EXPECT_NE(log.find("Call chain:\n  Main:AutoBackupTimer_Timer\n-"), std::string::npos) << log;
    EXPECT_NE(log.find("Call chain:\n  Main:SolveTimer_Timer\n  Solve:DoEverything\n"), std::string::npos)
        << log;
}

TEST_F(ErrTrapTest, WorkCanWaitUntilTheLastBoxIsAnswered) {
    Expect(BoxAnswer::Retry, "outer");
    Expect(BoxAnswer::Abort, "inner");
    Expect(BoxAnswer::Abort, "outer");
    std::string heard;
    errTrap.BoxAnswered = [&] { heard += errTrap.BoxOpen() ? "open " : "answered "; };
    platform.onBox = [&] {
        heard += errTrap.BoxOpen() ? "box " : "none ";
        if (heard == "box ") errTrap.RunCommand("Main:ResizeTimer_Timer", [] { Refuse("inner"); });
    };
    errTrap.RunCommand("Main:OpenMenu_Click", [] { Refuse("outer"); });
    EXPECT_EQ(heard, "box box answered box answered ");
    EXPECT_FALSE(errTrap.BoxOpen());
}

TEST_F(ErrTrapTest, StepsTellOfAllTheirFaults) {
    Expect(BoxAnswer::Abort, "Internal error 10000: Assertion failed\n\nInternal error 5: second");
    int done = 0;
    errTrap.RunCommand("Main:OpenMenu_Click", [&] {
        const Section here("Main:LoadFile");
        Steps steps;
        steps.Do(Outer);
        steps.Do([] {
            const Section also("Main:NewThisProject");
            throw std::out_of_range("second");
        });
        steps.Do([&] { ++done; });
        steps.End();
    });
    EXPECT_EQ(done, 1);
    EXPECT_TRUE(
        Log().ends_with("Call chain:\n  Main:OpenMenu_Click\n  Main:LoadFile\n  Main:OpenFile\n"
                        "  Vproject:LoadData\n  Vfile:ExpectToken\n"))
        << Log();
}

void Descend(int depth, const std::function<void()>& bottom) {
    const Section here("Main:Descend");
    if (depth == 0) return bottom();
    Descend(depth - 1, bottom);
}

TEST_F(ErrTrapTest, AVeryDeepFaultStillNamesTheCommand) {
    Expect(BoxAnswer::Abort, "deep");
    EXPECT_FALSE(errTrap.RunCommand("Main:OpenMenu_Click", [] { Descend(5000, [] { Refuse("deep"); }); }));
    EXPECT_NE(Log().find("Call chain:\n  Main:OpenMenu_Click\n  Main:Descend\n"), std::string::npos);
}

TEST_F(ErrTrapTest, ALogThatCannotBeWrittenIsDoneWithout) {
    platform.logDirectory = platform.Directory() + "/missing";
    Expect(BoxAnswer::Abort, "");
    EXPECT_FALSE(errTrap.RunCommand("Main:OpenMenu_Click", Outer));
    EXPECT_FALSE(std::filesystem::exists(platform.logDirectory));
}

TEST_F(ErrTrapTest, TheDateOfTheProgramFileIsLogged) {
    platform.programFile = platform.Directory() + "/program";
    std::ofstream(platform.programFile) << "x";
    errTrap.WriteErrorLog("message", "Main:Start", BoxAnswer::Ignore);
    const std::string log = Log();
    const auto at = log.find("Exe date:     ");
    ASSERT_NE(at, std::string::npos);
    const std::string date = log.substr(at + 14, log.find('\n', at) - at - 14);
    EXPECT_TRUE(ParseDate(date)) << date;
}

}  // namespace
}  // namespace vortan

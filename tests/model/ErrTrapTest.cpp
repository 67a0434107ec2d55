#include "model/ErrTrap.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "model/Fault.h"
#include "model/ValueText.h"
#include "support/ScriptedPlatform.h"

namespace vortan {
namespace {

class ErrTrapTest : public testing::Test {
  protected:
    ErrTrapTest() { platform.programFile = "vortan-of-tests"; }
    std::string Log() {
        std::ifstream file(platform.Directory() + "/ErrTrap.log");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Expect(BoxAnswer answer, const std::string& text) {
        platform.ExpectBox("Internal Error", answer, text);
    }
    bool Run(const std::function<void()>& command) {
        return errTrap.RunCommand("Main:OpenMenu_Click", command);
    }

    ScriptedPlatform platform;
    ErrTrap errTrap{platform};
};

void Inner() {
    const Section here("Vfile:ExpectToken");
    { const Section passedThrough("Vfile:ReadToken"); }
    Refuse("Assertion failed");
}
void Outer() {
    const Section here("Main:OpenFile");
    Inner();
}
void Descend(int depth, const std::function<void()>& bottom) {
    const Section here("Main:Descend");
    depth == 0 ? bottom() : Descend(depth - 1, bottom);
}

TEST_F(ErrTrapTest, WhatShowsNoBoxLeavesNoTrace) {
    EXPECT_TRUE(Run([] { const Section here("Main:OpenFile"); }));
    EXPECT_TRUE(platform.statusMessages.empty());
    EXPECT_FALSE(Run([] { throw Fault(Fault::kUnwinding, ""); })) << "a fault that was shown already";
    EXPECT_EQ(Log(), "");
    platform.logDirectory = platform.Directory() + "/missing";
    Expect(BoxAnswer::Abort, "");
    EXPECT_FALSE(Run(Outer));
    EXPECT_FALSE(std::filesystem::exists(platform.logDirectory));
}

TEST_F(ErrTrapTest, RetryRunsTheWholeCommandAgainAndEachAnswerIsLogged) {
    Expect(BoxAnswer::Retry, "Internal error 10000: Assertion failed");
    Expect(BoxAnswer::Ignore, "");  // which logs no chain
    Expect(BoxAnswer::Abort, "");
    int runs = 0;
    EXPECT_FALSE(Run([&] { ++runs, Outer(); }));
    EXPECT_EQ(runs, 2);
    EXPECT_FALSE(Run(Outer));
    std::string expected;
    for (const char* answer : {"Retry", "Ignore", "Abort"}) {
        expected += std::string(79, '-') +
                    "\nInternal error 10000: Assertion failed\n\nTime:         09/03/01 12:00:00pm\n"
                    "Section:      Vfile:ExpectToken\nExe file:     vortan-of-tests\nExe version:  " +
                    GetAppVersion() + "\nExe date:     \nUser action:  [" + answer + "]\n";
    }
    EXPECT_EQ(Log(), expected + "Call chain:\n  Main:OpenMenu_Click\n  Main:OpenFile\n  Vfile:ExpectToken\n");
    EXPECT_EQ(platform.statusMessages.back(), "");
}

TEST_F(ErrTrapTest, TheChainIsThatOfTheFault) {
    int done = 0;
    const auto caught = [] {
        EXPECT_THROW(Outer(), Fault);
        const Section here("Main:OpenAgain");
        Refuse("second");
    };
    const auto nested = [&] {
        const Section here("Solve:DoEverything");
        EXPECT_FALSE(errTrap.RunCommand("Main:AutoBackupTimer_Timer", [] { Refuse("inner"); }));
        Refuse("outer");
    };
    const auto steps = [&] {
        const Section here("Main:LoadFile");
        Steps all;
        all.Do(Outer);
        all.Do([] { throw std::out_of_range("second"); });
        all.Do([&] { ++done; });
        all.End();
    };
    const struct {
        std::function<void()> command;
        std::vector<const char*> boxes;
        const char* chain;
    } cases[] = {
        {caught, {"second"}, "  Main:OpenAgain\n"},
        {nested, {"inner", "outer"}, "  Solve:DoEverything\n"},
        {steps,
         {"Internal error 10000: Assertion failed\n\nInternal error 5: second"},
         "  Main:LoadFile\n  Main:OpenFile\n  Vfile:ExpectToken\n"},
    };
    for (const auto& each : cases) {
        for (const char* text : each.boxes) Expect(BoxAnswer::Abort, text);
        EXPECT_FALSE(Run(each.command));
        EXPECT_TRUE(Log().ends_with(std::string("Call chain:\n  Main:OpenMenu_Click\n") + each.chain))
            << Log();
    }
    EXPECT_NE(Log().find("Call chain:\n  Main:AutoBackupTimer_Timer\n-"), std::string::npos);
    EXPECT_EQ(done, 1);
    Expect(BoxAnswer::Abort, "deep");
    EXPECT_FALSE(Run([] { Descend(5000, [] { Refuse("deep"); }); }));
    EXPECT_NE(Log().find("Call chain:\n  Main:OpenMenu_Click\n  Main:Descend\n"), std::string::npos);
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
    Run([] { Refuse("outer"); });
    EXPECT_EQ(heard, "box box answered box answered ");
    EXPECT_FALSE(errTrap.BoxOpen());
}

TEST_F(ErrTrapTest, TheDateOfTheProgramFileIsLogged) {
    platform.programFile = platform.Directory() + "/program";
    std::ofstream(platform.programFile) << "x";
    errTrap.WriteErrorLog("message", "Main:Start", BoxAnswer::Ignore);
    const std::string log = Log();
    const auto at = log.find("Exe date:     ") + 14;
    EXPECT_TRUE(ParseDate(log.substr(at, log.find('\n', at) - at))) << log;
}

}  // namespace
}  // namespace vortan

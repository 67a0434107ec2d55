#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Cli.h"
#include "model/ValueText.h"
#include "support/PlanFiles.h"
#include "support/ScriptedPlatform.h"
#include "support/TextPlan.h"

namespace vortan {

/// What a run of the batch tool left.
struct CliOutcome {
    int exitCode = 0;
    std::string out, err;
};

/// Runs commands in a directory of their own.
class CliFixture : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* variable : {"XDG_CONFIG_HOME", "XDG_STATE_HOME"})
            ::setenv(variable, scratch_.Directory().c_str(), 1);
    }
    static CliOutcome Run(const std::vector<std::string>& arguments, int width = 0) {
        std::ostringstream out, err;
        CliOutcome outcome;
        outcome.exitCode = RunCli(arguments, CliStreams{out, err, false, width});
        outcome.out = out.str();
        outcome.err = err.str();
        return outcome;
    }
    /// Runs what must go well.
    static std::string Done(const std::vector<std::string>& arguments, int width = 0) {
        const CliOutcome outcome = Run(arguments, width);
        EXPECT_EQ(outcome.exitCode, kExitDone) << outcome.out << outcome.err;
        EXPECT_EQ(outcome.err, "");
        return outcome.out;
    }
    /// Runs what must fail, with no result printed. Returns the complaint.
    static std::string Refused(const std::vector<std::string>& arguments) {
        const CliOutcome outcome = Run(arguments);
        EXPECT_EQ(outcome.exitCode, kExitUsage) << outcome.out << outcome.err;
        EXPECT_EQ(outcome.out, "");
        return outcome.err;
    }
    std::string PathOf(const std::string& name) const { return scratch_.Directory() + "/" + name; }
    /// A file with these bytes. Returns its path.
    std::string FileWith(const std::string& name, std::string_view bytes) const {
        WriteBytes(PathOf(name), bytes);
        return PathOf(name);
    }

  private:
    ScriptedPlatform scratch_;
};

inline void ExpectPart(const std::string& text, const std::string& part) {
    EXPECT_NE(text.find(part), std::string::npos) << "\"" << part << "\" is not in\n" << text;
}
inline void ExpectNoPart(const std::string& text, const std::string& part) {
    EXPECT_EQ(text.find(part), std::string::npos) << "\"" << part << "\" is in\n" << text;
}

inline std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

/// The shed from Monday 3 September 2001 on. Ann digs for six days and only then comes to the pipes; Bob
/// draws mornings, builds half of the walls, and waits for the permit.
inline std::string UsualShed(int solveRules = 1) {
    return PlanText(
        "template Crew; resource 1 \"Ann\" $50; resource 2 \"Bob\" $40; project Shed \"Garden shed\" rule " +
        std::to_string(solveRules) + R"(
        task 1 "Dig" work 2880 start=9/3/2001_8:00 by 1
        task 2 "Pipes" work 960 start=9/3/2001_8:00 by 1
        task 3 "Drawings" work 720 start=9/3/2001_8:00 by 2@4
        task 4 "Permit" days 4320 after 3+1
        task 5 "Walls" work 960 after 3 after 4>50 by 2
        task 6 "Paint" work 240 after 1 after 2-.25 after 4 after 5 by 1@4)");
}

}  // namespace vortan

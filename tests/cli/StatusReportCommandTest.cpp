#include "cli/CliRun.h"
#include "reports/StatusReport.h"
#include "support/Paths.h"

namespace vortan {
namespace {

using StatusReportCommandTest = CliFixture;

TEST_F(StatusReportCommandTest, MarksGoOnFromReportToReport) {
    const std::string plan = ExampleFile("programme.vta"), out = PathOf("out.rtf");
    const std::string layout = TestFile("../../data/StatusReportLayout.rtf");
    EXPECT_EQ(Done({"report", "status", plan, "-o", out, "--document", layout, "--marks", "YR,-Y"}), "");
    const std::string first = FileBytes(out);
    // Both pictures are PNGs of 1512 by 945 pixels, and different.
    const std::string head = "89504e470d0a1a0a0000000d49484452000005e8000003b1";
    const std::size_t budget = first.find(head), gantt = first.find(head, budget + 1);
    ASSERT_NE(gantt, std::string::npos);
    EXPECT_NE(first.substr(budget, 1000), first.substr(gantt, 1000));
    EXPECT_EQ(
        Done({"report", "status", plan, "-o", out, "--copy-previous", "--earned-value", "--marks=--,-G"}),
        "");
    EXPECT_EQ(FileBytes(out + ".bak"), first);
    const StatusReport report(FileBytes(out));
    std::string marks;
    for (const StatusRow& row : report.Rows) marks += {row.previous, row.present};
    EXPECT_EQ(marks, "RRYGGGGGGG");
    EXPECT_EQ(FileBytes(out).find(first.substr(budget, 1000)), std::string::npos);
    EXPECT_NE(FileBytes(out).find(first.substr(gantt, 1000)), std::string::npos);
}

TEST_F(StatusReportCommandTest, WhatCannotBeDoneLeavesTheDocument) {
    const std::string out = FileWith("out.rtf", "{\\rtf1 No table}"), plan = ExampleFile("house.vta");
    const auto refuse = [&](const std::vector<std::string>& more, const char* why) {
        std::vector<std::string> words{"report", "status", plan, "-o", out};
        words.insert(words.end(), more.begin(), more.end());
        ExpectPart(Run(words).err, why);
        EXPECT_EQ(FileBytes(out), "{\\rtf1 No table}");
    };
    refuse({"--document", plan}, "house.vta is no RTF document.");
    refuse({"--document", PathOf("none.rtf")}, "could not be read");
    ExpectPart(Refused({"report", "status", plan, "-o", plan}), "must end in .rtf");
    refuse({"--marks", "G"}, "is not a pair of marks");
    refuse({"--marks", "GG"}, "more marks than rows");
    refuse({"--document", TestFile("../../data/StatusReportLayout.rtf"), "--marks", "GX"}, "is no mark");
    refuse({"--journal", "1999-01-01"}, "has no journal");
    refuse({}, "has no table with four columns");
    EXPECT_EQ(Run({"report", "status", ExampleFile("overtime.vta"), "-o", out}).exitCode, kExitHalted);
}

}  // namespace
}  // namespace vortan

#include "cli/CliRun.h"
#include "support/Json.h"

namespace vortan {
namespace {

class IterativeCommandsTest : public CliFixture {
  protected:
    static std::string Spread(std::string plan) {
        // The walls may take half as long again.
        const auto walls = plan.find("Description,Walls");
        return plan.replace(plan.find("Pessimistic,960", walls), 15, "Pessimistic,4320");
    }
    static std::vector<std::string> Lines(const std::string& text) {
        std::istringstream in(text);
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        return lines;
    }
};

TEST_F(IterativeCommandsTest, RiskPrintsTheChances) {
    const std::string plan = FileWith("shed.vta", Spread(UsualShed()));
    for (const bool detailed : {false, true}) {
        std::vector<std::string> arguments{"risk", plan, "-n", "200"};
        if (detailed) arguments.emplace_back("--detailed");
        const std::string table = Done(arguments);
        const auto lines = Lines(table);
        ASSERT_EQ(lines.size(), 14U) << table;
        EXPECT_EQ(lines[0], "Shed: Garden shed");
        ExpectPart(lines[1], detailed ? "200 detailed iterations" : "200 quick iterations");
        ExpectPart(lines[5], "5 %");
        ExpectPart(lines[11], "95 %");
        EXPECT_EQ(lines[13], "Most likely  9/13/2001 12:00 PM   $4,520.00");
        arguments.emplace_back("--json");
        const std::string text = Done(arguments);
        const Json json = Json::Parse(text);
        EXPECT_EQ(json["iterations"].Int(), 200);
        EXPECT_DOUBLE_EQ(json["mostLikely"]["date"].Number(), 37147.5);
        EXPECT_DOUBLE_EQ(json["mostLikely"]["cost"].Number(), 4520);
        const auto& results = json["results"].Items();
        ASSERT_EQ(results.size(), 200U);
        EXPECT_GT(results[199]["date"].Number(), results[0]["date"].Number());
        // The line of 80 % has the finish of run 160.
        ExpectPart(lines[9], FormatShortDate(DateTime(results[159]["date"].Number())));
        EXPECT_EQ(Done(arguments), text);
        arguments.insert(arguments.end(), {"--seed", "7"});
        EXPECT_NE(Done(arguments), text);
    }
}

TEST_F(IterativeCommandsTest, CrashPrintsTheSteps) {
    const std::string plan = FileWith("shed.vta", UsualShed());
    const auto lines = Lines(Done({"crash", plan, "--detailed", "--increment", "0.5"}));
    ASSERT_GT(lines.size(), 6U);
    EXPECT_EQ(lines[1], "Detailed crash in steps of 0.5 of a team");
    ExpectPart(lines[5], "As planned");
    ExpectPart(lines[5], "9/13/2001 12:00 PM");
    ExpectPart(lines[6], "0-100 %");
    ExpectPart(lines[6], "x1.5 ");
    const Json json = Json::Parse(Done({"crash", plan, "--detailed", "--increment", "0.5", "--json"}));
    const auto& steps = json["steps"].Items();
    ASSERT_EQ(steps.size(), lines.size() - 5);
    for (const char* name : {"project", "task", "from", "to", "multiplier"})
        EXPECT_TRUE(steps[0][name].IsNull()) << name;
    EXPECT_DOUBLE_EQ(steps[0]["endDate"].Number(), 37147.5);
    EXPECT_DOUBLE_EQ(steps[0]["totalCost"].Number(), 4520);
    EXPECT_EQ(steps[1]["project"].Text(), "Shed");
    EXPECT_EQ(steps[1]["multiplier"].Number(), 1.5);
    EXPECT_EQ(steps[1]["to"].Int(), 100);
    EXPECT_LT(steps.back()["endDate"].Number(), 37147);
    // What is not a power of two is printed as it was typed.
    ExpectPart(Done({"crash", plan, "--increment", "0.1", "--json"}), "\"multiplier\":1.1,");
}

}  // namespace
}  // namespace vortan

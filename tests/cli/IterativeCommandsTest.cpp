#include "cli/CliRun.h"
#include "cli/Session.h"
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
    for (const std::string detail : {"quick", "detailed"}) {
        std::vector<std::string> arguments{"risk", plan, "-n", "199"};
        if (detail == "detailed") arguments.emplace_back("--detailed");
        const auto lines = Lines(Done(arguments));
        ASSERT_EQ(lines.size(), 14U);
        EXPECT_EQ(lines[0], "Shed: Garden shed");
        ExpectPart(lines[1], "199 " + detail + " iterations");
        EXPECT_EQ(lines[13], "Most likely  9/13/2001 12:00 PM   $4,520.00");
        arguments.emplace_back("--json");
        const std::string text = Done(arguments);
        const QJsonValue json = ParseJson(text);
        EXPECT_EQ(json["iterations"].toInt(), 199);
        EXPECT_DOUBLE_EQ(json["mostLikely"]["date"].toDouble(), 37147.5);
        EXPECT_DOUBLE_EQ(json["mostLikely"]["cost"].toDouble(), 4520);
        const QJsonArray results = json["results"].toArray();
        ASSERT_EQ(results.size(), 199);
        EXPECT_GT(results[198]["date"].toDouble(), results[0]["date"].toDouble());
        // At least 95 % of 199 are 190 runs.
        ExpectPart(lines[5], "5 %");
        ExpectPart(lines[11], "95 %");
        ExpectPart(lines[11], MomentText(AddMinutes(DateTime(results[189]["date"].toDouble()), 0)));
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
    for (const char* part : {"As planned", "9/13/2001 12:00 PM"}) ExpectPart(lines[5], part);
    for (const char* part : {"0-100 %", "x1.5 "}) ExpectPart(lines[6], part);
    const QJsonValue json = ParseJson(Done({"crash", plan, "--detailed", "--increment", "0.5", "--json"}));
    const QJsonArray steps = json["steps"].toArray();
    ASSERT_EQ(static_cast<std::size_t>(steps.size()), lines.size() - 5);
    for (const char* name : {"project", "task", "from", "to", "multiplier"})
        EXPECT_TRUE(steps[0][name].isNull()) << name;
    EXPECT_DOUBLE_EQ(steps[0]["endDate"].toDouble(), 37147.5);
    EXPECT_DOUBLE_EQ(steps[0]["totalCost"].toDouble(), 4520);
    EXPECT_EQ(steps[1]["project"].toString(), "Shed");
    EXPECT_EQ(steps[1]["multiplier"].toDouble(), 1.5);
    EXPECT_EQ(steps[1]["to"].toInt(), 100);
    EXPECT_LT(steps.last()["endDate"].toDouble(), 37147);
    // What is not a power of two is printed as it was typed.
    ExpectPart(Done({"crash", plan, "--increment", "0.1", "--json"}), "\"multiplier\":1.1,");
}

TEST_F(IterativeCommandsTest, ShortenSavesTheOrderThatItFound) {
    // Bob's long job waits for Ann's short one, which by its number comes last.
    const std::string plan = FileWith(
        "plan.vta",
        PlanText("template Crew; resource 1; resource 2; project P rule 1; task 1 work 4800 start by 1;"
                 "task 2 work 480 start by 1; task 3 work 4800 after 2 by 2; task 4 work 0 after 1 after 3"));
    const std::string saved = PathOf("out.vta");
    const QJsonValue json = ParseJson(Done({"shorten", plan, "--json", "--moves", "20", "--save", saved}));
    EXPECT_TRUE(json["better"].toBool());
    EXPECT_TRUE(json["optimal"].toBool());
    EXPECT_EQ(json["finish"], json["bound"]);
    EXPECT_DOUBLE_EQ(json["finishBefore"].toDouble() - json["finish"].toDouble(), 14);
    EXPECT_EQ(json["ranks"].toArray().size(), 4);
    ExpectPart(FileBytes(saved), "SolveRank,");
    ExpectPart(Done({"shorten", saved}), "None was better");
    ExpectPart(Done({"shorten", saved, "--told"}), "ranks");
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--seconds", "0"},
                                                  {"--moves", "1.5"},
                                                  {"--for", "fun"},
                                                  {"--save", "out.txt"}}) {
        std::vector<std::string> arguments = {"shorten", plan};
        arguments.insert(arguments.end(), wrong.begin(), wrong.end());
        EXPECT_NE(Refused(arguments), "") << wrong[0];
    }
}

}  // namespace
}  // namespace vortan

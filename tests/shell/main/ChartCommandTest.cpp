#include <QFile>
#include <QImage>

#include "cli/CliRun.h"
#include "paint/Text.h"
#include "persist/Settings.h"
#include "support/Json.h"
#include "support/Paths.h"

namespace vortan {
namespace {

class ChartCommandTest : public CliFixture {
  protected:
    QByteArray Drawn(const std::string& plan, const char* name, const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments{"chart", "gantt", plan, "-o", PathOf(name)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        EXPECT_EQ(Done(arguments), "");
        QFile file(QString::fromStdString(PathOf(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        return file.readAll();
    }
};

TEST_F(ChartCommandTest, WritesPicturesAndPages) {
    const std::string house = ExampleFile("house.vta");
    EXPECT_TRUE(Drawn(house, "house.svg").contains("Slab cures"));
    EXPECT_GT(QImage::fromData(Drawn(house, "HOUSE.PNG"), "PNG").width(), 1000);
    EXPECT_EQ(Drawn(house, "house.pdf").count("/Type /Page\n"), 3);
    EXPECT_EQ(Drawn(house, "house.pdf", {"--fit"}).count("/Type /Page\n"), 1);
    const std::string programme = ExampleFile("programme.vta");
    EXPECT_TRUE(Drawn(programme, "now.svg").contains("Projected"));
    EXPECT_FALSE(Drawn(programme, "plan.svg", {"--journal", "1/11/2027"}).contains("Projected"));
}

TEST_F(ChartCommandTest, TheUsersPreferencesHold) {
    const std::string launch = ExampleFile("launch.vta");
    EXPECT_EQ(Drawn(launch, "chart.svg").count("Dependencies"), 2) << "a column, and the key of arrows";
    ScriptedPlatform user;
    Settings settings(user);
    settings.WriteSettings("DependencyArrowsCombo", "None");
    ASSERT_TRUE(settings.WriteConfigFile());
    std::filesystem::create_directory(PathOf("vortan"));
    std::filesystem::copy_file(user.Directory() + "/Vortan.cfg", PathOf("vortan/Vortan.cfg"));
    EXPECT_EQ(Drawn(launch, "chart.svg").count("Dependencies"), 1);

    WriteBytes(PathOf("vortan/Vortan.cfg"), "not packed at all");
    const CliOutcome damaged = Run({"chart", "gantt", launch, "-o", PathOf("chart.svg")});
    EXPECT_EQ(damaged.exitCode, kExitDone);
    ExpectPart(damaged.err, "Warning: ");
}

TEST_F(ChartCommandTest, RiskAndCrashDrawTheirCurves) {
    const std::pair<const char*, const char*> cases[] = {{"risk", "Most likely"}, {"crash", "Total cost"}};
    for (const auto& [command, label] : cases) {
        EXPECT_NE(Done({command, ExampleFile("house.vta"), "-o", PathOf("curve.svg")}), "");
        QFile file(QString::fromStdString(PathOf("curve.svg")));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_TRUE(file.readAll().contains(label)) << command;
        ExpectPart(Refused({command, ExampleFile("house.vta"), "-o", "curve.doc"}), "must end in .svg");
    }
}

TEST_F(ChartCommandTest, OptionsChooseWhatTheDataHold) {
    const std::string shed = FileWith("shed.vta", UsualShed());
    const std::string programme = ExampleFile("programme.vta"), house = ExampleFile("house.vta");
    const auto data = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "chart");
        arguments.emplace_back("--json");
        return ParseJson(Done(arguments));
    };
    const auto texts = [](const QJsonValue& list, const char* member) {
        std::string all;
        for (const QJsonValue item : list.toArray()) all += item[member].toString().toStdString() + ";";
        return all;
    };
    const std::pair<std::vector<std::string>, const char*> histograms[] = {
        {{}, "Ann;Bob;"},
        {{"--only", " Bob ,Nobody's"}, "Bob;"},
        {{"--only", "\"Bob\",1"}, "Ann;Bob;"},
        {{"--only", "None"}, "Ann;Bob;"},
        {{"--by-department"}, "None;"}};
    for (const auto& [options, rows] : histograms) {
        std::vector<std::string> arguments{"chart", "histogram", shed, "--json", "--scale", "month"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const QJsonValue histogram = ParseJson(Run(arguments).out);
        EXPECT_EQ(texts(histogram["rows"], "label"), rows);
        EXPECT_EQ(histogram["periods"].toArray().size(), 1u);
    }
    const std::pair<std::vector<std::string>, const char*> budgets[] = {
        {{"--cost", "total"}, "Plan Total;Current Total;"},
        {{"--current", "--cost", "labor,material"}, "Current Material;Current Labor;"},
        {{"--plan", "--earned-value", "--cost", "labor"}, "BCWS;BCWP;ACWP;"}};
    for (const auto& [options, curves] : budgets) {
        std::vector<std::string> arguments{"budget", programme};
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_EQ(texts(data(arguments)["curves"], "label"), curves);
    }
    EXPECT_TRUE(data({"budget", programme})["curves"].toArray().at(1)["cut"].toBool());
    EXPECT_FALSE(data({"budget", programme, "--past-today"})["curves"].toArray().at(1)["cut"].toBool());
    EXPECT_EQ(data({"budget", programme, "--journal", "1/11/2027"})["curves"].toArray().size(), 3u);
    // Plans that are loaded together, and the one to show.
    const std::string barn =
        FileWith("barn.vta", S(Q(UsualShed()).replace("Shed", "Barn").replace("Crew", "Barn")));
    EXPECT_EQ(data({"budget", shed, barn, "--project", "Barn"})["project"].toString().toStdString(), "Barn");
    EXPECT_EQ(data({"histogram", shed, barn})["template"].toString().toStdString(), "Crew");
    EXPECT_EQ(data({"histogram", shed, barn, "--template", "Barn"})["template"].toString().toStdString(),
              "Barn");
    EXPECT_EQ(Done({"chart", "budget", shed, "-o", PathOf("b.csv"), "--cost", "total"}), "");
    EXPECT_TRUE(FileBytes(PathOf("b.csv")).starts_with("Date,Plan Total\r\n9/4/2001,"));
    EXPECT_TRUE(Drawn(house, "h.svg", {"--scale", "month"}).contains("Slab cures"));
}

TEST_F(ChartCommandTest, RefusalsSayWhy) {
    const std::string house = ExampleFile("house.vta");
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"chart"}, "subcommand"},
        {{"chart", "gantt", house}, "--output is required"},
        {{"chart", "gantt", house, "-o", "house.gif"}, "must end in .svg, .png or .pdf"},
        {{"chart", "gantt", house, "-o", PathOf("none/house.svg")}, "none/house.svg\" could not be written"},
        {{"chart", "gantt", PathOf("none.vta"), "-o", PathOf("a.svg")}, "none.vta"},
        {{"chart", "gantt", house, "-o", PathOf("a.svg"), "--project", "Barn"}, "no project \"Barn\""},
        {{"chart", "gantt", house, "-o", PathOf("a.svg"), "--json"}, "--json"},
        {{"chart", "gantt", house, "-o", "house.json"}, "must end in .svg, .png or .pdf"},
        {{"chart", "budget", house}, "--output is required"},
        {{"chart", "budget", house, "-o", "house.gif"}, ".pdf, .json or .csv"},
        {{"chart", "budget", house, "--json", "--by-department"}, "--by-department"},
        {{"chart", "budget", house, "--json", "--cost", "labor,wages"}, "\"wages\" is no cost"},
        {{"chart", "histogram", house, "--json", "--plan"}, "--plan"},
        {{"chart", "histogram", house, "--json", "--scale", "year"}, "\"year\" is no time scale"},
        {{"chart", "histogram", house, "--json", "--template", "Barn"}, "There are: Hillside Builders."},
        {{"chart", "histogram", FileWith("p.vta", SmallPlan("Shed")), "--json"}, "There is no template"},
    };
    for (const auto& [arguments, reason] : cases) ExpectPart(Refused(arguments), reason);
    for (const char* kind : {"gantt", "histogram", "budget"}) {
        const CliOutcome halted = Run({"chart", kind, ExampleFile("overtime.vta"), "-o", PathOf("a.svg")});
        EXPECT_EQ(halted.exitCode, kExitHalted);
        ExpectPart(halted.err, "Overtime needed");
    }
    const CliOutcome empty = Run({"chart", "histogram", house, "--only", "Nobody", "-o", PathOf("e.svg")});
    EXPECT_EQ(empty.exitCode, kExitHalted);
    ExpectPart(empty.err, "has no department or resource \"Nobody\"");
    ExpectPart(empty.err, "There are no resources to display.");
    EXPECT_FALSE(std::filesystem::exists(PathOf("e.svg")));
}

}  // namespace
}  // namespace vortan

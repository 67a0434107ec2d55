#include <QFile>
#include <QImage>

#include "cli/CliRun.h"
#include "persist/Settings.h"
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

TEST_F(ChartCommandTest, RefusalsSayWhy) {
    const std::string house = ExampleFile("house.vta");
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"chart"}, "subcommand"},
        {{"chart", "gantt", house}, "--output is required"},
        {{"chart", "gantt", house, "-o", "house.gif"}, "must end in .svg, .png or .pdf"},
        {{"chart", "gantt", house, "-o", PathOf("none/house.svg")}, "none/house.svg\" could not be written"},
        {{"chart", "gantt", PathOf("none.vta"), "-o", PathOf("a.svg")}, "none.vta"},
        {{"chart", "gantt", house, "-o", PathOf("a.svg"), "--project", "Barn"}, "no project \"Barn\""},
    };
    for (const auto& [arguments, reason] : cases) ExpectPart(Refused(arguments), reason);
    const CliOutcome halted = Run({"chart", "gantt", ExampleFile("overtime.vta"), "-o", PathOf("a.svg")});
    EXPECT_EQ(halted.exitCode, kExitHalted);
    ExpectPart(halted.err, "Overtime needed");
}

}  // namespace
}  // namespace vortan

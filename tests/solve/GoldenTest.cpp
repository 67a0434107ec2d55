#include "cli/CliRun.h"
#include "cli/SolveJson.h"
#include "support/Json.h"
#include "support/LoadedPlan.h"
#include "support/Paths.h"

namespace vortan {
namespace {

/// Of dates, in days, and of money.
auto Tolerance(double money) {
    return [money](const QString& name) {
        return name.endsWith("ost") ? money : name.endsWith("Hours") ? 1e-9 : 1e-7;
    };
}

bool Requires(const Vtask& task, const Vtask* required) {
    if (task.Subproject()) return required->Project() == task.Subproject();
    const auto& list = task.DependencyList();
    return std::any_of(list.begin(), list.end(), [&](const Vdependency* dependency) {
        return dependency->Include() && dependency->TaskRequired() == required;
    });
}

/// Any task of a circle may be named; each must be required by the next.
void ExpectCircle(const Solver& solver) {
    const auto& circle = solver.Circle();
    ASSERT_FALSE(circle.empty());
    EXPECT_NE(std::find(circle.begin(), circle.end(), solver.Problem()->task), circle.end());
    for (std::size_t i = 0; i < circle.size(); ++i)
        EXPECT_TRUE(Requires(*circle[(i + 1) % circle.size()].Get(), circle[i].Get()));
}

struct GoldenTest : CliFixture, testing::WithParamInterface<std::string> {};

TEST_P(GoldenTest, SolvesToTheKnownAnswer) {
    const LoadedPlan plan(FileBytes(TestFile("golden/solve/" + GetParam() + ".vta")));
    QJsonObject golden = ParseJson(FileBytes(TestFile("golden/solve/" + GetParam() + ".json"))).toObject();
    QJsonObject solved = ParseJson(SolveJson(plan.workspace, plan.solver)).toObject();
    if (golden["status"] == "Circular dependency") {
        ExpectCircle(plan.solver);
        for (QJsonObject* each : {&golden, &solved}) each->remove("problem");
    }
    EXPECT_EQ(JsonDifference(solved, golden, Tolerance(0.001)), "");
}

struct GoldenCrashTest : GoldenTest {};

TEST_P(GoldenCrashTest, TakesTheKnownSteps) {
    const std::string stem = TestFile("golden/crash/" + GetParam());
    std::vector<std::string> arguments{"crash", stem.substr(0, stem.rfind('.')) + ".vta", "--json",
                                       "--increment", "0.25"};
    if (stem.ends_with(".detailed")) arguments.emplace_back("--detailed");
    const QJsonValue golden = ParseJson(FileBytes(stem + ".json"));
    EXPECT_EQ(JsonDifference(ParseJson(Done(arguments)), golden, Tolerance(0.01)), "");
}

/// The stems of the files with that extension.
std::vector<std::string> StemsIn(const char* directory, const char* extension) {
    std::vector<std::string> names;
    for (const std::string& path : FilesIn(TestFile(directory), extension))
        names.push_back(std::filesystem::path(path).stem().string());
    return names;
}

std::string NameOfCase(const testing::TestParamInfo<std::string>& test) {
    std::string name = test.param;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Plans, GoldenTest, testing::ValuesIn(StemsIn("golden/solve", ".vta")), NameOfCase);
INSTANTIATE_TEST_SUITE_P(Plans, GoldenCrashTest, testing::ValuesIn(StemsIn("golden/crash", ".json")),
                         NameOfCase);

}  // namespace
}  // namespace vortan

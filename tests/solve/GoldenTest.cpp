#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "support/Json.h"
#include "support/LoadedPlan.h"
#include "support/Paths.h"

namespace vortan {
namespace {

constexpr double kDays = 1e-7, kMoney = 0.001;

struct GoldenTest : testing::TestWithParam<std::string> {
    void SetUp() override {
        golden = Json::Parse(ReadTextFile(TestFile("golden/solve/" + GetParam() + ".json")));
        plan.Load(ReadTextFile(TestFile("golden/solve/" + GetParam() + ".vta")));
        plan.Solve();
    }

    void CompareProblem() {
        const auto& problem = plan.solver.Problem();
        ASSERT_EQ(problem.has_value(), plan.solver.Mode() == SolveMode::Halted);
        if (!problem) return;
        if (!golden["problemDate"].IsNull()) {
            EXPECT_NEAR(problem->problemDate.Days(), golden["problemDate"].Number(), kDays);
            EXPECT_NEAR(problem->requestedHours, golden["requestedHours"].Number(), 1e-9);
            EXPECT_NEAR(problem->assignedHours, golden["assignedHours"].Number(), 1e-9);
        }
        const Json& wanted = golden["problem"];
        if (wanted.IsNull()) {
            EXPECT_FALSE(problem->task || problem->dependency || problem->assignment);
            return;
        }
        Vtask* task = plan.Task(wanted["project"].Text(), wanted["task"].Int());
        ASSERT_TRUE(task);
        if (wanted["kind"].Text() == "task") {
            CompareProblemTask(*problem, task);
        } else if (wanted["kind"].Text() == "dependency") {
            EXPECT_EQ(problem->dependency.Get(),
                      task->DependencyList().at(static_cast<std::size_t>(wanted["index"].Int())));
        } else {
            EXPECT_EQ(problem->assignment.Get(),
                      task->AssignmentList().at(static_cast<std::size_t>(wanted["index"].Int())));
        }
    }

    static bool Requires(const Vtask& task, const Vtask* required) {
        if (task.Subproject()) return required->Project() == task.Subproject();
        const auto& list = task.DependencyList();
        return std::any_of(list.begin(), list.end(), [&](const Vdependency* dependency) {
            return dependency->Include() && dependency->TaskRequired() == required;
        });
    }

    void CompareProblemTask(const SolveProblem& problem, Vtask* task) {
        if (problem.message != "Circular dependency") {
            EXPECT_EQ(problem.task.Get(), task);
            return;
        }
        // Any task of the circle may be named; each must be required by the next.
        const auto& circle = plan.solver.Circle();
        ASSERT_FALSE(circle.empty());
        EXPECT_NE(std::find(circle.begin(), circle.end(), problem.task), circle.end());
        for (std::size_t i = 0; i < circle.size(); ++i) {
            EXPECT_TRUE(Requires(*circle[(i + 1) % circle.size()].Get(), circle[i].Get()));
        }
    }

    void CompareSlices() {
        const auto& order = golden["order"].Items();
        ASSERT_EQ(static_cast<std::size_t>(plan.solver.SliceCount()), order.size());
        for (std::size_t i = 0; i < order.size(); ++i) {
            const Json& wanted = order[i];
            const Vslice slice = plan.solver.Slice(static_cast<std::int32_t>(i));
            SCOPED_TRACE("slice " + std::to_string(i) + ": " + slice.BuildNodeText());
            ASSERT_EQ(slice.task, plan.Task(wanted["project"].Text(), wanted["task"].Int()));
            EXPECT_EQ(slice.fromPercent, wanted["from"].Int());
            EXPECT_EQ(slice.toPercent, wanted["to"].Int());
            EXPECT_NEAR(slice.earlyStart.Days(), wanted["earlyStart"].Number(), kDays);
            EXPECT_NEAR(slice.earlyFinish.Days(), wanted["earlyFinish"].Number(), kDays);
            EXPECT_NEAR(slice.lateStart.Days(), wanted["lateStart"].Number(), kDays);
            EXPECT_NEAR(slice.lateFinish.Days(), wanted["lateFinish"].Number(), kDays);
            EXPECT_NEAR(slice.laborCost.ToDouble(), wanted["laborCost"].Number(), kMoney);
        }
    }

    void CompareTasks() {
        std::size_t count = 0;
        for (const Vproject* project : plan.workspace.ProjectList()) count += project->TaskList().size();
        EXPECT_EQ(count, golden["tasks"].Items().size());
        for (const Json& wanted : golden["tasks"].Items()) {
            const Vtask* task = plan.Task(wanted["project"].Text(), wanted["task"].Int());
            ASSERT_TRUE(task);
            SCOPED_TRACE("task " + wanted["project"].Text() + " " + task->BuildNodeText());
            EXPECT_EQ(task->Include(), wanted["included"].Flag());
            EXPECT_NEAR(task->EarlyStart().Days(), wanted["earlyStart"].Number(), kDays);
            EXPECT_NEAR(task->EarlyFinish().Days(), wanted["earlyFinish"].Number(), kDays);
            EXPECT_NEAR(task->LateStart().Days(), wanted["lateStart"].Number(), kDays);
            EXPECT_NEAR(task->LateFinish().Days(), wanted["lateFinish"].Number(), kDays);
            EXPECT_NEAR(task->LaborCost().ToDouble(), wanted["laborCost"].Number(), kMoney);
            EXPECT_NEAR(task->MaterialCost().ToDouble(), wanted["materialCost"].Number(), kMoney);
        }
    }

    void CompareSlots() {
        struct Held {
            std::string pool;
            std::int32_t resource;
            Vslot slot;
        };
        std::vector<Held> held;
        for (const Vtemplate* pool : plan.workspace.TemplateList()) {
            for (const Vresource* resource : pool->ResourceList()) {
                for (const Vslot& slot : plan.solver.HeldSlots(*resource)) {
                    held.push_back({pool->TemplateName(), resource->ResourceID(), slot});
                }
            }
        }
        std::stable_sort(held.begin(), held.end(), [](const Held& a, const Held& b) {
            return std::tie(a.pool, a.resource) < std::tie(b.pool, b.resource);
        });
        std::vector<const Json*> wanted;
        for (const Json& slot : golden["slots"].Items()) wanted.push_back(&slot);
        std::sort(wanted.begin(), wanted.end(), [](const Json* a, const Json* b) {
            const auto key = [](const Json& slot) {
                return std::tuple(slot["template"].Text(), slot["resource"].Int(), slot["start"].Number());
            };
            return key(*a) < key(*b);
        });
        ASSERT_EQ(held.size(), wanted.size());
        for (std::size_t i = 0; i < held.size(); ++i) {
            const Vslot& slot = held[i].slot;
            const Json& expected = *wanted[i];
            SCOPED_TRACE("resource " + std::to_string(held[i].resource) + ": " + slot.BuildNodeText());
            ASSERT_EQ(held[i].pool, expected["template"].Text());
            ASSERT_EQ(held[i].resource, expected["resource"].Int());
            EXPECT_NEAR(slot.startTime.Days(), expected["start"].Number(), kDays);
            EXPECT_NEAR(slot.endTime.Days(), expected["end"].Number(), kDays);
            EXPECT_EQ(slot.slotType, expected["type"].Int());
            EXPECT_EQ(slot.taskRequired, plan.Task(expected["project"].Text(), expected["task"].Int()));
            EXPECT_NEAR(slot.laborCost.ToDouble(), expected["cost"].Number(), kMoney);
        }
    }

    Json golden;
    LoadedPlan plan;
};

TEST_P(GoldenTest, SolvesToTheKnownAnswer) {
    EXPECT_EQ(plan.solver.SolveMessage(), golden["status"].Text());
    EXPECT_EQ(static_cast<int>(plan.solver.Mode()), golden["mode"].Int());
    CompareProblem();
    CompareSlices();
    CompareTasks();
    CompareSlots();
}

std::vector<std::string> GoldenNames() {
    std::vector<std::string> names;
    for (const std::string& path : FilesIn(TestFile("golden/solve"), ".vta")) names.push_back(StemOf(path));
    return names;
}

INSTANTIATE_TEST_SUITE_P(Plans, GoldenTest, testing::ValuesIn(GoldenNames()),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace vortan

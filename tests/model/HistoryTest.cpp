#include "model/History.h"

#include "model/JournalCommands.h"
#include "support/ModelBench.h"
#include "support/PlanFiles.h"
#include "support/PlanGenerator.h"

namespace vortan {
namespace {

/// A planner who does anything that commands can do, at random.
class Planner {
  public:
    Planner(std::uint64_t seed) : random_(seed) {
        PlanKnobs knobs = MixedKnobs(seed);
        knobs.journals = 2;
        LoadText(workspace, GeneratePlan(seed, knobs));
        workspace.SetThisProject(workspace.ProjectList()[0]);
        workspace.SetThisTemplate(workspace.TemplateList()[0]);
        history.SetKept(true);
    }
    std::string Bytes() { return SaveRecords(workspace); }

    void Command() {
        for (int i = random_.Between(1, 3); i > 0; --i) Act();
        history.EndStep();
    }

    ScriptedPlatform platform;
    Workspace workspace{platform};
    History& history = workspace.TheHistory();

  private:
    template <class List>
    auto Any(const List& list) -> decltype(list[0]) {
        return list[static_cast<std::size_t>(random_.Between(0, static_cast<int>(list.size()) - 1))];
    }
    Vproject& AnyProject() { return *Any(workspace.ProjectList()); }
    Vtemplate& AnyTemplate() { return *Any(workspace.TemplateList()); }
    /// One that is there; made if there is none.
    Vtask& AnyTask() {
        Vproject& project = AnyProject();
        return project.TaskList().empty() ? *project.FindOrCreateTask(1) : *Any(project.TaskList());
    }
    Vresource& AnyResource() {
        Vtemplate& all = AnyTemplate();
        return all.ResourceList().empty() ? *all.FindOrCreateResource(1) : *Any(all.ResourceList());
    }
    std::string Word() { return "W" + std::to_string(random_.Between(1, 9999)); }

    void Act() {
        Vtask& task = AnyTask();
        switch (random_.Between(0, 20)) {
            case 20:
                // A plan is merged, whose objects have the names of those that are here.
                if (random_.Chance(10)) LoadText(workspace, GeneratePlan(7, MixedKnobs(7)));
                return;
            case 0:
                return task.SetDescription(Word());
            case 1:
                return task.SetMostLikely(random_.Between(0, 9999));
            case 2:
                return task.SetTaskID(task.Project()->HighestTaskID() + random_.Between(1, 3));
            case 3:
                return task.Delete();
            case 4: {
                auto* dependency = workspace.NewVObject<Vdependency>();
                dependency->SetTask(&task);
                return dependency->SetTaskRequired(&AnyTask());
            }
            case 5: {
                auto* assignment = workspace.NewVObject<Vassignment>();
                assignment->SetTask(&task);
                return assignment->SetResourceRequired(&AnyResource());
            }
            case 6:
                if (!task.DependencyList().empty())
                    Any(task.DependencyList())->SetTask(Any(task.Project()->TaskList()));
                return;
            case 7:
                if (!task.DependencyList().empty()) Any(task.DependencyList())->Delete();
                return;
            case 8:
                if (!task.AssignmentList().empty())
                    Any(task.AssignmentList())->SetHours(random_.Between(0, 24));
                return;
            case 9:
                return AnyResource().SetDepartment(Word());
            case 10:
                return AnyResource().Delete();
            case 11: {
                Vshift& shift = *AnyTemplate().FindOrCreateShift(Word());
                shift.SetMatrix(8, Word());
                return AnyResource().SetShift(&shift);
            }
            case 12: {
                Vtemplate& all = AnyTemplate();
                if (all.ShiftList().size() > 1) Any(all.ShiftList())->Delete();
                return;
            }
            case 13:
                return AnyProject().SetProjectName(Word());
            case 14:
                if (workspace.ProjectList().size() > 2) {
                    Vproject& gone = AnyProject();
                    gone.Delete();
                    workspace.FreeVobject(&gone);
                    if (!workspace.ThisProject()) workspace.SetThisProject(workspace.ProjectList()[0]);
                }
                return;
            case 15: {
                Vproject& made = *workspace.FindOrCreateProject(Word());
                made.AddJournal(workspace.ThisProject()->Journal());
                return task.SetSubproject(&made);
            }
            case 16:
                return AddJournalEverywhere(workspace, DateTime(random_.Between(36000, 38000)));
            case 17:
                return AnyProject().SetManager(&AnyResource());
            case 18:
                if (workspace.TemplateList().size() > 1) {
                    Vtemplate& gone = AnyTemplate();
                    gone.Delete();
                    workspace.FreeVobject(&gone);
                    workspace.SetThisTemplate(workspace.TemplateList()[0]);
                } else {
                    workspace.FindOrCreateTemplate(Word())->AddJournal(workspace.ThisProject()->Journal());
                }
                return;
            default:
                if (AnyProject().NumJournals() > 1) {
                    Vproject& project = AnyProject();
                    project.SetPlanIndex(random_.Between(0, project.NumJournals() - 1));
                }
                return;
        }
    }

    FixedRandom random_;
};

TEST(History, TakesAllBackAndDoesItAgainToTheLastByte) {
    for (std::uint64_t seed = 1; seed <= 16; ++seed) {
        SCOPED_TRACE(seed);
        Planner planner(seed);
        History& history = planner.history;
        // Each round goes a part of the way back and takes another turn there.
        std::vector<std::string> states = {planner.Bytes()};
        for (int round = 0; round < 4; ++round) {
            for (int i = 0; i < 30; ++i) {
                planner.Command();
                if (planner.Bytes() != states.back()) states.push_back(planner.Bytes());
            }
            const std::size_t last = states.size() - 1, back = round == 3 ? 0 : states.size() / 2;
            const auto isAt = [&](std::size_t place) { return planner.Bytes() == states[place]; };
            // A command that changed nothing that is saved is a step all the same.
            const auto go = [&](std::size_t from, std::size_t to) {
                while (from != to) {
                    ASSERT_TRUE(from > to ? history.Undo() : history.Redo());
                    if (isAt(from)) continue;
                    from += from > to ? std::size_t(-1) : 1;
                    ASSERT_EQ(planner.Bytes(), states[from]) << from << " of " << last;
                }
            };
            go(last, back);
            if (testing::Test::HasFatalFailure()) return;
            go(back, last);
            if (testing::Test::HasFatalFailure()) return;
            ASSERT_EQ(ModelFaults(planner.workspace), "");
            go(last, back);
            states.resize(back + 1);
        }
    }
}

TEST(History, TellsItsStepsAndKeepsAsMuchAsItMay) {
    ModelBench bench;
    Vproject& house = *bench.Project("House", 2);
    Vtask& dig = *house.FindOrCreateTask(7);
    Vdependency& needs = *bench.Dependency(house.FindOrCreateTask(8), &dig);
    History& history = bench.workspace.TheHistory();
    history.SetKept(true);
    const auto step = [&](auto&& command) {
        command();
        history.EndStep();
        return history.UndoName();
    };
    EXPECT_EQ(step([&] { house.FindOrCreateTask(9)->SetDescription("Roof"); }), "New task 9");
    EXPECT_EQ(step([&] { dig.SetEfficiency(0.5); }), "Change task 7");
    EXPECT_EQ(step([&] { bench.Assignment(&dig, nullptr); }), "New assignment of task 7");
    EXPECT_EQ(step([&] { house.SetPriority("2"); }), "Change project House");
    bench.solver.restarts = 0;
    EXPECT_EQ(step([&] { dig.Delete(); }), "Delete task 7");
    EXPECT_EQ(step([] {}), "Delete task 7");
    EXPECT_TRUE(needs.TaskRequiredDeleted());

    house.SetDirty(false);
    EXPECT_TRUE(history.Undo());
    EXPECT_EQ(needs.TaskRequired(), &dig) << "the same task is there again";
    EXPECT_EQ(history.RedoName() + ", " + history.UndoName(), "Delete task 7, Change project House");
    EXPECT_TRUE(house.Dirty() && bench.solver.restarts > 1);
    EXPECT_TRUE(history.Redo() && needs.TaskRequiredDeleted() && !history.Redo());
    EXPECT_TRUE(history.Undo() && history.Undo());
    step([&] { house.SetPriority("3"); });
    EXPECT_EQ(history.RedoName(), "") << "another turn was taken";

    // A plan that is cleared away, or a step that is too large, leaves nothing to take back.
    history.SetLimit(history.Bytes());
    step([&] { dig.SetMostLikely(5); });
    EXPECT_LE(history.Bytes(), 4000U);
    int steps = 0;
    while (history.Undo()) ++steps;
    EXPECT_TRUE(steps > 0 && steps < 5) << steps << ": the oldest are forgotten";
    history.SetLimit(10);
    step([&] { dig.Delete(); });
    EXPECT_FALSE(history.Undo());
    EXPECT_EQ(history.Bytes(), 0U);
}

}  // namespace
}  // namespace vortan

#include "model/Change.h"

#include "support/ModelBench.h"

namespace vortan {
namespace {

/// A plan of three journals, the second active, in which nothing has changed yet, and a screen that hears of
/// changes.
class ChangeTest : public testing::Test, public Listener {
  protected:
    ChangeTest() {
        const Workspace::Quiet quiet(model.workspace);
        resource->SetShift(shift);
        for (JournalOwner* owner : Owners()) owner->SetCurrentIndex(1);
        dependency = model.Dependency(task, nullptr);
        assignment = model.Assignment(task, nullptr);
        model.workspace.AddListener(this);
    }
    std::vector<JournalOwner*> Owners() { return {project, other, pool}; }
    void ObjectsChanged(const std::vector<Change>& changes) override { heard = changes; }

    /// What `command` changed; the owners of it, and nobody else, must be dirty then.
    std::vector<Change> ChangesOf(const std::function<void()>& command,
                                  const std::vector<JournalOwner*>& dirty) {
        for (JournalOwner* owner : Owners()) owner->SetDirty(false);
        model.workspace.DeliverChanges();
        model.solver.restarts = 0;
        heard.clear();
        command();
        model.workspace.DeliverChanges();
        for (JournalOwner* owner : Owners())
            EXPECT_EQ(owner->Dirty(), std::find(dirty.begin(), dirty.end(), owner) != dirty.end());
        return heard;
    }
    template <class T>
    static Change Of(T* object, ChangeKind kind = ChangeKind::Value) {
        return {Link<T>(object), kind};
    }

    ModelBench model;
    Vproject *project = model.Project("P", 3), *other = model.Project("Q", 3);
    Vtemplate* pool = model.Template("T", 3);
    Vtask* task = project->FindOrCreateTask(1);
    Vresource* resource = pool->FindOrCreateResource(1);
    Vshift* shift = pool->FindOrCreateShift("Day");
    Vdependency* dependency = nullptr;
    Vassignment* assignment = nullptr;
    std::vector<Change> heard;
};

TEST_F(ChangeTest, EverySetterTellsOnceOfWhatDiffers) {
    Vshift* night = pool->FindOrCreateShift("Night");
    const auto money = Money::FromUnits(7);
    const auto row = [&](const char* what, auto* object, JournalOwner* owner, auto&& write,
                         ChangeKind kind = ChangeKind::Value) {
        EXPECT_EQ(ChangesOf(write, {owner}), std::vector{Of(object, kind)}) << what;
        EXPECT_GT(model.solver.restarts, 0) << what;
        EXPECT_TRUE(ChangesOf(write, {}).empty()) << what;
        EXPECT_EQ(model.solver.restarts, 0) << what;
    };
    const auto project_ = [&](const char* what, auto&& write) { row(what, project, project, write); };
    project_("Description", [&] { project->SetDescription("x"); });
    project_("ViewPassword", [&] { project->SetViewPassword("x"); });
    project_("ModifyPassword", [&] { project->SetModifyPassword("x"); });
    project_("PlanIndex", [&] { project->SetPlanIndex(2); });
    project_("Priority", [&] { project->SetPriority("9"); });
    project_("SolveRules", [&] { project->SetSolveRules(SolveRule::Unlimited); });
    project_("Parent", [&] { project->SetParent(other); });
    project_("Manager", [&] { project->SetManager(resource); });
    row(
        "ProjectName", project, project, [&] { project->SetProjectName("R"); }, ChangeKind::Refiled);

    const auto task_ = [&](const char* what, auto&& write) { row(what, task, project, write); };
    task_("Description", [&] { task->SetDescription("x"); });
    task_("SolveRank", [&] { task->SetSolveRank(7); });
    task_("Include", [&] { task->SetInclude(false); });
    task_("EffortUnits", [&] { task->SetEffortUnits(60); });
    task_("Optimistic", [&] { task->SetOptimistic(1); });
    task_("MostLikely", [&] { task->SetMostLikely(2); });
    task_("Pessimistic", [&] { task->SetPessimistic(3); });
    task_("Efficiency", [&] { task->SetEfficiency(1); });
    task_("MaterialCost", [&] { task->SetMaterialCost(money); });
    row(
        "TaskID", task, project, [&] { task->SetTaskID(5); }, ChangeKind::Refiled);

    const auto dependency_ = [&](const char* what, auto&& write) { row(what, dependency, project, write); };
    dependency_("Include", [&] { dependency->SetInclude(false); });
    dependency_("DepDate", [&] { dependency->SetDepDate(DateTime(9)); });
    dependency_("TaskRequired", [&] { dependency->SetTaskRequired(task); });
    dependency_("FromPercent", [&] { dependency->SetFromPercent(50); });
    dependency_("ToPercent", [&] { dependency->SetToPercent(50); });
    dependency_("Offset", [&] { dependency->SetOffset(-1); });

    const auto assignment_ = [&](const char* what, auto&& write) { row(what, assignment, project, write); };
    assignment_("Include", [&] { assignment->SetInclude(false); });
    assignment_("ResourceRequired", [&] { assignment->SetResourceRequired(resource); });
    assignment_("Hours", [&] { assignment->SetHours(1); });

    const auto resource_ = [&](const char* what, auto&& write) { row(what, resource, pool, write); };
    resource_("Description", [&] { resource->SetDescription("x"); });
    resource_("Include", [&] { resource->SetInclude(false); });
    resource_("Department", [&] { resource->SetDepartment(" x"); });
    resource_("Title", [&] { resource->SetTitle("x"); });
    resource_("BurdenedRate", [&] { resource->SetBurdenedRate(money); });
    resource_("OvertimeRate", [&] { resource->SetOvertimeRate(money); });
    resource_("OffDayRate", [&] { resource->SetOffDayRate(money); });
    resource_("HolidayRate", [&] { resource->SetHolidayRate(money); });
    resource_("Shift", [&] { resource->SetShift(night); });
    row(
        "ResourceID", resource, pool, [&] { resource->SetResourceID(5); }, ChangeKind::Refiled);
    for (int day = 0; day < kDayKinds; ++day) {
        assignment_("WorkDay", [&] { assignment->SetWorkDay(day, day < 2 || day > 6); });
        resource_("WorkDay", [&] { resource->SetWorkDay(day, day < 2 || day > 6); });
    }

    const auto shift_ = [&](const char* what, auto&& write) { row(what, shift, pool, write); };
    shift_("BurdenedMultiplier", [&] { shift->SetBurdenedMultiplier(9); });
    shift_("OvertimeMultiplier", [&] { shift->SetOvertimeMultiplier(9); });
    shift_("OffDayMultiplier", [&] { shift->SetOffDayMultiplier(9); });
    shift_("HolidayMultiplier", [&] { shift->SetHolidayMultiplier("x"); });
    shift_("Matrix", [&] { shift->SetMatrix(0, "NNNNNNNNNNNN"); });
    row(
        "ShiftName", shift, pool, [&] { shift->SetShiftName("Late"); }, ChangeKind::Refiled);
    const auto pool_ = [&](const char* what, auto&& write) { row(what, pool, pool, write); };
    pool_("Description", [&] { pool->SetDescription("x"); });
    pool_("ViewPassword", [&] { pool->SetViewPassword("x"); });
    pool_("ModifyPassword", [&] { pool->SetModifyPassword("x"); });
    row(
        "TemplateName", pool, pool, [&] { pool->SetTemplateName("U"); }, ChangeKind::Refiled);

    // The list above has every field but for the results: each now differs between the journals.
    const std::string results = "LaborCost EarlyStart EarlyFinish LateStart LateFinish";
    const auto complete = [&](const auto& object) {
        object.ForEachField([&](const char* name, const auto& field) {
            if constexpr (IsJournaled<std::decay_t<decltype(field)>>::value) {
                EXPECT_NE(field.IsArray(), results.find(name) != std::string::npos) << name;
            }
        });
    };
    complete(*project);
    complete(*task);
    complete(*dependency);
    complete(*assignment);
    complete(*resource);
}

TEST_F(ChangeTest, OneWriteInTheFirstJournalWipesWhatLaterOnesHold) {
    task->SetOptimistic(5);
    project->SetCurrentIndex(0);
    EXPECT_EQ(ChangesOf([&] { task->SetOptimistic(0); }, {project}), std::vector{Of(task)});
    EXPECT_EQ(InJournals(project, [&] { return task->Optimistic(); }), "0 0 0");
}

TEST_F(ChangeTest, JoiningAndLeavingIsTold) {
    Vtask* made = model.workspace.NewVObject<Vtask>();
    Vdependency* first = model.workspace.NewVObject<Vdependency>();
    first->SetTask(made);
    made->SetProject(project);
    EXPECT_TRUE(ChangesOf([&] { made->SetOptimistic(1), first->SetOffset(1); }, {}).empty())
        << "what is being entered changes no plan";
    using enum ChangeKind;
    EXPECT_EQ(ChangesOf([&] { made->SetTaskID(2); }, {project}), std::vector{Of(made, Joined)});
    Vdependency* second = nullptr;
    const auto join = [&] { second = model.Dependency(made, task); };
    const auto joined = ChangesOf(join, {project});
    EXPECT_EQ(joined, (std::vector{Of(second, Joined), Of(second)}));
    // Made in the second journal, they end in all that have them.
    const auto gone = std::vector{Of(made), Of(first, Left), Of(second, Left), Of(made, Left)};
    EXPECT_EQ(ChangesOf([&] { made->Delete(); }, {project}), gone);
    EXPECT_TRUE(std::get<Link<Vtask>>(gone[0].object).IsDeleted());
    // The others are there in the first journal still.
    EXPECT_EQ(ChangesOf([&] { task->Delete(); }, {project}), std::vector{Of(task)});
    EXPECT_EQ(ChangesOf([&] { resource->Delete(); }, {pool}), std::vector{Of(resource)});
    EXPECT_EQ(ChangesOf([&] { shift->Delete(); }, {pool}), std::vector{Of(shift, Left)});
    EXPECT_TRUE(ChangesOf([&] { shift->SetMatrix(3, "N"); }, {}).empty());

    const auto ofDependency = std::vector{Of(dependency), Of(dependency, Left)};
    EXPECT_EQ(ChangesOf([&] { dependency->Delete(); }, {project}), ofDependency);
    const auto ofAssignment = std::vector{Of(assignment), Of(assignment, Left)};
    EXPECT_EQ(ChangesOf([&] { assignment->Delete(); }, {project}), ofAssignment);
    EXPECT_EQ(ChangesOf([&] { pool->Delete(); }, {pool}), std::vector{Of(pool, Left)});
}

TEST_F(ChangeTest, ASubprojectChangesWithTheTaskThatHoldsIt) {
    const auto both = std::vector{Of(task), Of(other)};
    EXPECT_EQ(ChangesOf([&] { task->SetSubproject(other); }, {project, other}), both);
    const auto left = std::vector{Of(other), Of(project, ChangeKind::Left)};
    EXPECT_EQ(ChangesOf([&] { project->Delete(); }, {project, other}), left);
    model.workspace.FreeVobject(project);
}

TEST_F(ChangeTest, ResultsJournalsAndFilesAskForNoSolve) {
    const auto results = [&] {
        task->SetEarlyStart(DateTime(1));
        task->SetEarlyFinish(DateTime(2));
        task->SetLateStart(DateTime(3));
        task->SetLateFinish(DateTime(4));
        task->SetLaborCost(Money::FromUnits(1));
        task->SetSubprojectCost(Money::FromUnits(2));
        dependency->SetFoundDate(DateTime(5));
    };
    EXPECT_TRUE(ChangesOf(results, {}).empty());
    EXPECT_EQ(InJournals(project, [&] { return task->EarlyStart().Days(); }), "0 1 1");
    EXPECT_EQ(InJournals(project, [&] { return dependency->DepDate().Days(); }), "0 5 5");
    const auto add = [&] { project->AddJournal(DateTime(2.5)); };
    EXPECT_EQ(ChangesOf(add, {project}), std::vector{Of(project, ChangeKind::Journals)});
    const auto read = [&] {
        const Workspace::Quiet quiet(model.workspace);
        project->FindOrCreateTask(7)->SetMostLikely(1);
    };
    EXPECT_TRUE(ChangesOf(read, {}).empty());
    EXPECT_EQ(model.solver.restarts, 0);
}

}  // namespace
}  // namespace vortan

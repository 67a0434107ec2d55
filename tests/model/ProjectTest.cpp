#include "support/ModelBench.h"

namespace vortan {
namespace {

std::string TaskIDs(const Vproject* project) {
    std::string all;
    for (const Vtask* task : project->TaskList()) all += task->Key() + " ";
    return all;
}

TEST(Task, NumbersAreUniqueAndInOrder) {
    ModelBench model;
    Vproject* project = model.Project("P");
    for (const int id : {5, 1, 3, 20}) project->FindOrCreateTask(id);
    Vtask* task = project->FindTask(5);
    EXPECT_EQ(TaskIDs(project), "1 3 5 20 ");
    EXPECT_EQ(RefusalOf([&] { task->SetTaskID(3); }), "This TaskID is already in use");
    task->SetTaskID(5);
    EXPECT_EQ(TaskIDs(project), "1 3 5 20 ");
    task->SetTaskID(2);
    EXPECT_EQ(TaskIDs(project), "1 2 3 20 ");
    EXPECT_EQ(project->FindTask(2), task);
    EXPECT_EQ(project->FindTask(5), nullptr);
    EXPECT_EQ(project->HighestTaskID(), 20);
    task->SetTaskID(0);
    EXPECT_EQ(TaskIDs(project), "1 3 20 ");
    EXPECT_EQ(task->Project(), nullptr);
    task->SetTaskID(0);
    EXPECT_EQ(model.Project("Empty")->HighestTaskID(), 0);
}

TEST(Task, ExistsFromTheJournalInWhichItWasMade) {
    ModelBench model;
    Vproject* project = model.Project("P", 3);
    project->SetCurrentIndex(2);
    Vtask* task = project->FindOrCreateTask(1);
    EXPECT_EQ(InJournals(project, [&] { return task->Include(); }), "0 0 1");
    EXPECT_EQ(project->HighestTaskID(), 1);
    project->SetCurrentIndex(0);
    EXPECT_EQ(project->HighestTaskID(), 1) << "tasks of other journals count";
    task->SetInclude(false);
    EXPECT_TRUE(task->Include()) << "one value for all journals stands for true";
}

struct DeleteCase {
    int madeIn, deletedIn;
    const char* left;  ///< empty: gone altogether
};

TEST(Task, DeletingKeepsEarlierJournals) {
    for (const DeleteCase& wanted : {DeleteCase{0, 0, ""}, DeleteCase{0, 1, "1 0 0"},
                                     DeleteCase{1, 2, "0 1 0"}, DeleteCase{1, 1, ""}, DeleteCase{2, 0, ""}}) {
        ModelBench model;
        Vproject* project = model.Project("P", 3);
        project->SetCurrentIndex(wanted.madeIn);
        Vtask* task = project->FindOrCreateTask(1);
        Vdependency* dependency = model.Dependency(task, nullptr);
        project->SetCurrentIndex(wanted.deletedIn);
        task->Delete();
        const bool gone = *wanted.left == 0;
        EXPECT_TRUE(project->TaskList().empty() == gone && (task->Id() == 0) == gone);
        EXPECT_EQ(dependency->Id() == 0, gone);
        if (gone) continue;
        EXPECT_EQ(InJournals(project, [&] { return task->Include(); }), wanted.left);
    }
}

/// In contrast to tasks, what was never changed goes from all journals.
TEST(Dependency, DeletingFromJournals) {
    for (const DeleteCase& wanted :
         {DeleteCase{0, 0, ""}, DeleteCase{0, 2, ""}, DeleteCase{1, 2, "0 1 0"}, DeleteCase{1, 1, ""}}) {
        ModelBench model;
        Vproject* project = model.Project("P", 3);
        Vtask* task = project->FindOrCreateTask(1);
        Vtemplate* pool = model.Template("T", 3);
        const auto activate = [&](int journal) {
            project->SetCurrentIndex(journal), pool->SetCurrentIndex(journal);
        };
        activate(wanted.madeIn);
        Vdependency* dependency = model.Dependency(task, nullptr);
        Vassignment* assignment = model.Assignment(task, nullptr);
        Vresource* resource = pool->FindOrCreateResource(1);
        activate(wanted.deletedIn);
        dependency->Delete(), assignment->Delete(), resource->Delete();
        const bool gone = *wanted.left == 0;
        EXPECT_EQ(task->DependencyList().size() + task->AssignmentList().size(), gone ? 0U : 2U);
        EXPECT_EQ(InJournals(pool, [&] { return resource->Include(); }), gone ? "0 0 0" : wanted.left);
        EXPECT_EQ(pool->FindResource(1), resource) << "a resource stays in its list";
        if (gone) continue;
        EXPECT_EQ(InJournals(project, [&] { return dependency->Include(); }), wanted.left);
        EXPECT_EQ(InJournals(project, [&] { return assignment->Include(); }), wanted.left);
    }
}

TEST(Dependency, NodeTexts) {
    ModelBench model;
    Vproject* project = model.Project("P");
    Vtask* mine = project->FindOrCreateTask(1);
    Vtask* near = project->FindOrCreateTask(2);
    near->SetDescription("Dig");
    Vtask* far = model.Project("Q")->FindOrCreateTask(3);
    far->SetDescription("");
    const std::tuple<Vtask*, double, int, int, double, const char*> cases[] = {
        {near, 0, 100, 0, 0, "2: Dig"},
        {near, 0, 100, 0, -1.5, "2: Dig - 1.5 days"},
        {near, 0, 0, 100, 1, "2: Dig: FS + 1 day"},
        {near, 0, 100, 30, 0, "2: Dig: PF"},
        {far, 0, 50, 0, 0, "(Q) 3: SP"},
        {nullptr, 37137, 100, 0, 0, "9/3/2001"},
        {nullptr, 0, 100, 0, 0, "12/30/1899"},
        {nullptr, 37137.5, 100, 100, 0, "9/3/2001 12:00:00 PM: FD"},
    };
    Vdependency* dependency = model.Dependency(mine, nullptr);
    for (const auto& [required, date, from, to, offset, text] : cases) {
        dependency->SetTaskRequired(required);
        dependency->SetDepDate(DateTime(date));
        dependency->SetFromPercent(static_cast<std::uint8_t>(from));
        dependency->SetToPercent(static_cast<std::uint8_t>(to));
        dependency->SetOffset(offset);
        EXPECT_EQ(dependency->BuildNodeText(), text);
    }
    dependency->SetTaskRequired(far);
    far->Delete();
    EXPECT_TRUE(dependency->TaskRequiredDeleted() && !dependency->TaskRequired());
    EXPECT_EQ(dependency->BuildNodeText(), "<deleted>: FF");
}

TEST(Project, SubprojectsHaveParentsAndOneMaster) {
    ModelBench model;
    Vproject *top = model.Project("Top", 2), *middle = model.Project("Middle", 2),
             *low = model.Project("Low", 2);
    low->SetDescription("Roof");
    Vtask* link = middle->FindOrCreateTask(1);
    link->SetSubproject(low);
    top->FindOrCreateTask(1)->SetSubproject(middle);
    EXPECT_EQ(link->BuildNodeText(), "1: Low: Roof");
    EXPECT_EQ(link->ImageType() + low->ImageType() + top->ImageType(), "ssp");
    EXPECT_EQ(low->Master(), top);
    EXPECT_TRUE(low->DescendsFrom(top) && low->DescendsFrom(low) && !top->DescendsFrom(low));
    low->SetCurrentIndex(1);
    middle->SetCurrentIndex(1);
    link->Delete();
    EXPECT_EQ(low->Master(), low) << "the link ends in this journal";
    low->SetCurrentIndex(0);
    middle->SetCurrentIndex(0);
    EXPECT_EQ(low->Master(), top);
    model.workspace.FreeVobject(top);
    EXPECT_EQ(low->Master(), middle) << "a parent that has gone is none";
}

TEST(Project, ParentsInACircleEnd) {
    ModelBench model;
    Vproject *a = model.Project("A"), *b = model.Project("B"), *c = model.Project("C");
    a->FindOrCreateTask(1)->SetSubproject(b);
    b->FindOrCreateTask(1)->SetSubproject(a);
    EXPECT_EQ(a->Master(), a);
    EXPECT_EQ(b->Master(), b);
    EXPECT_TRUE(a->DescendsFrom(b) && b->DescendsFrom(a) && !a->DescendsFrom(c));
    EXPECT_EQ(a->FindTask(1)->ControlDependency(), nullptr);
}

void SetDates(Vtask* task, double start, double finish, double slack) {
    task->SetEarlyStart(DateTime(start));
    task->SetEarlyFinish(DateTime(finish));
    task->SetLateStart(DateTime(start + slack));
    task->SetLateFinish(DateTime(finish + slack));
    task->SetLaborCost(Money::FromUnits(10));
    task->SetMaterialCost(Money::FromUnits(7));
}

TEST(Project, DatesAndCostsComeFromIncludedTasks) {
    ModelBench model;
    Vproject* project = model.Project("P", 2);
    EXPECT_EQ(project->LateFinish(), DateTime());
    SetDates(project->FindOrCreateTask(1), 100, 105, 3);
    SetDates(project->FindOrCreateTask(2), 102, 109, 2);
    project->SetCurrentIndex(1);
    SetDates(project->FindOrCreateTask(3), 90, 120, -1);
    const auto all = [&] {
        return std::vector{project->EarlyStart().Days(),         project->EarlyFinish().Days(),
                           project->LateStart().Days(),          project->LateFinish().Days(),
                           double(project->LaborCost().Units()), double(project->MaterialCost().Units())};
    };
    EXPECT_EQ(all(), (std::vector<double>{90, 120, 89, 119, 30, 21}));
    project->SetCurrentIndex(0);
    EXPECT_EQ(all(), (std::vector<double>{100, 109, 102, 111, 20, 14}));
}

TEST(Project, DateRangeCoversTheFirstJournal) {
    ModelBench model;
    DateTime start(1), finish(1);
    GetDateRange(model.workspace, start, finish, true);
    EXPECT_TRUE(!start.IsSet() && !finish.IsSet());
    Vproject* project = model.Project("P", 2);
    model.workspace.SetThisProject(project);
    project->SetCurrentIndex(1);
    Vtask* task = project->FindOrCreateTask(1);
    SetDates(task, 200, 210, 0);
    const auto range = [&](bool first) {
        GetDateRange(model.workspace, start, finish, first);
        EXPECT_EQ(project->CurrentIndex(), 1);
        return std::pair(start.Days(), finish.Days());
    };
    EXPECT_EQ(range(true), std::pair(200.0, 210.0)) << "a journal without tasks has no dates";
    project->SetCurrentIndex(0);
    SetDates(project->FindOrCreateTask(2), 190, 215, 0);
    project->SetCurrentIndex(1);
    SetDates(project->FindTask(2), 195, 206, 0);
    EXPECT_EQ(range(false), std::pair(195.0, 210.0));
    EXPECT_EQ(range(true), std::pair(190.0, 215.0));
}

TEST(Task, ControlDependencyIsTheLatestAtTheStart) {
    ModelBench model;
    Vproject *project = model.Project("P"), *sub = model.Project("Sub");
    Vtask *task = sub->FindOrCreateTask(4), *later = sub->FindOrCreateTask(5),
          *absent = sub->FindOrCreateTask(6);
    task->SetEarlyStart(DateTime(10));
    later->SetEarlyStart(DateTime(10));
    absent->SetEarlyStart(DateTime(1));
    absent->Delete();
    model.Dependency(later, nullptr, DateTime(99));
    EXPECT_EQ(task->ControlDependency(), nullptr);
    model.Dependency(task, nullptr, DateTime(8));
    Vdependency* control = model.Dependency(task, nullptr, DateTime(9));
    model.Dependency(task, nullptr, DateTime(9));
    model.Dependency(task, nullptr, DateTime(20))->SetToPercent(50);
    EXPECT_EQ(task->ControlDependency(), control);
    Vtask* link = project->FindOrCreateTask(1);
    link->SetSubproject(sub);
    EXPECT_EQ(link->ControlDependency(), control) << "of the first task among those that start first";
}

}  // namespace
}  // namespace vortan

#include <random>

#include "support/ModelBench.h"

namespace vortan {
namespace {

using Random = std::mt19937;

void Pick(Random& random, bool& value) {
    value = random() % 2 == 0;
}
void Pick(Random& random, std::int32_t& value) {
    value = static_cast<std::int32_t>(random() % 5) - 2;  // few values, so that journals often agree
    if (random() % 8 == 0) value = random() % 2 == 0 ? INT32_MIN : INT32_MAX;
}
void Pick(Random& random, double& value) {
    value = static_cast<double>(random() % 5) / 4 - 0.5;
}
void Pick(Random& random, std::string& value) {
    value = std::string(random() % 4 * 10, 'x');  // short ones and ones beyond any inner buffer
}

template <class T>
class JournaledRandomTest : public testing::Test {};
using Kinds = testing::Types<bool, std::int32_t, double, std::string>;
TYPED_TEST_SUITE(JournaledRandomTest, Kinds);

// The other side of the comparison keeps every value of every journal.
TYPED_TEST(JournaledRandomTest, AgreesWithOneValuePerJournal) {
    using T = TypeParam;
    Random random(20010903);
    Journaled<T> field;
    std::vector<T> naive(1);
    for (int step = 0; step < 5000; ++step) {
        const int count = static_cast<int>(naive.size());
        const int at = static_cast<int>(random() % naive.size());
        const auto place = naive.begin() + at;
        T value{};
        switch (random() % 5) {
            case 0:
            case 1:
                Pick(random, value);
                field.Let(value, at, count);
                std::fill(place, naive.end(), value);
                break;
            case 2:
                if (count == 9) break;
                naive.insert(place, T(naive[static_cast<std::size_t>(std::max(at - 1, 0))]));
                field.Resize(count + 1, at);
                break;
            case 3:
                if (count == 9) break;
                naive.push_back(T(naive.back()));
                field.Resize(count + 1, count);
                break;
            default:
                if (count == 1) break;
                naive.erase(place);
                field.Resize(count - 1, at);
        }
        bool allEqual = true;
        for (std::size_t i = 0; i < naive.size(); ++i) {
            ASSERT_EQ(field.At(static_cast<int>(i)), T(naive[i])) << "step " << step << ", journal " << i;
            allEqual = allEqual && naive[i] == naive[0];
        }
        ASSERT_EQ(field.AllEqual(), allEqual) << "step " << step;
        ASSERT_EQ(field.Count(), field.IsArray() ? static_cast<int>(naive.size()) : 1) << "step " << step;
    }
}

TEST(Journals, AddingCopiesTheNeighbourBefore) {
    const std::tuple<double, bool, const char*, const char*, int> cases[] = {
        {5, true, "5 10 20 30", "1 1 2 3", 0},   {15, true, "10 15 20 30", "1 1 2 3", 1},
        {25, true, "10 20 25 30", "1 2 2 3", 2}, {35, true, "10 20 30 35", "1 2 3 3", 3},
        {10, false, "10 20 30", "1 2 3", 0},     {30, false, "10 20 30", "1 2 3", 2}};
    for (const auto& [date, added, dates, values, current] : cases) {
        ModelBench model;
        Vproject* project = model.workspace.FindOrCreateProject("P");
        for (const double day : {30.0, 10.0, 20.0}) EXPECT_TRUE(project->AddJournal(DateTime(day)));
        Vtask* task = project->FindOrCreateTask(1);
        for (int i = 0; i < 3; ++i) {
            project->SetCurrentIndex(i);
            task->SetPessimistic(i + 1);
        }
        project->SetPlanIndex(1);
        EXPECT_EQ(project->AddJournal(DateTime(date)), added);
        EXPECT_EQ(project->CurrentIndex(), current);
        EXPECT_EQ(project->Journal().Days(), date);
        EXPECT_EQ(project->PlanIndex(), 1);
        EXPECT_EQ(InJournals(project, [&] { return project->Journal().Days(); }), dates);
        EXPECT_EQ(InJournals(project, [&] { return task->Pessimistic(); }), values);
    }
}

TEST(Journals, DeleteRemovesTheActiveOne) {
    ModelBench model;
    Vproject* project = model.Project("P", 3);
    project->SetPlanIndex(2);
    project->SetCurrentIndex(1);
    project->SetPriority("2");
    project->SetCurrentIndex(2);
    project->SetPriority("3");
    const auto priorities = [&] {
        return InJournals(project, [&] { return std::stoi(project->Priority()); });
    };
    EXPECT_EQ(priorities(), "1 2 3");
    project->DeleteJournal();
    EXPECT_EQ(priorities(), "1 2");
    EXPECT_EQ(project->CurrentIndex(), 1);
    EXPECT_EQ(project->PlanIndex(), 1) << "the plan must be a journal that there is";
    project->SetCurrentIndex(0);
    project->DeleteJournal();
    EXPECT_EQ(priorities(), "2");
    EXPECT_EQ(RefusalOf([&] { project->DeleteJournal(); }), "At least one journal must remain");
    EXPECT_EQ(project->NumJournals(), 1);
}

TEST(Journals, DatesAreChangedAndChosen) {
    ModelBench model;
    for (JournalOwner* owner : {static_cast<JournalOwner*>(model.Project("P", 3)),
                                static_cast<JournalOwner*>(model.Template("T", 3))}) {
        EXPECT_EQ(RefusalOf([&] { owner->ChangeJournal(DateTime(2)); }),
                  "The new date must be earlier than the next journal's date of 1/1/1900.");
        owner->ChangeJournal(DateTime(1.5));
        owner->SetCurrentIndex(1);
        EXPECT_EQ(RefusalOf([&] { owner->ChangeJournal(DateTime(1.5)); }),
                  "The new date must be later than the previous journal's date of 12/31/1899 12:00:00 PM.");
        EXPECT_EQ(owner->Journal(), DateTime(2));
        owner->SetJournal(DateTime(1.5));
        EXPECT_EQ(owner->CurrentIndex(), 0);
        EXPECT_EQ(RefusalOf([&] { owner->SetJournal(DateTime(9)); }), "The specified journal does not exist");
        EXPECT_EQ(owner->CurrentIndex(), 2);
        EXPECT_TRUE(owner->JournalDefined(DateTime(3)));
        EXPECT_FALSE(owner->JournalDefined(DateTime(1)));
        EXPECT_NE(RefusalOf([&] { owner->SetCurrentIndex(3); }), "none");
    }
}

// Every field of every class follows, or its values slip into the wrong journals.
TEST(Journals, AllFieldsFollowAddingAndDeleting) {
    ModelBench model;
    Vproject* project = model.Project("P", 3);
    Vtemplate* pool = model.Template("T", 3);
    Vresource* resource = pool->FindOrCreateResource(1);
    Vtask* task = project->FindOrCreateTask(1);
    Vdependency* dependency = model.Dependency(task, nullptr);
    Vassignment* assignment = model.Assignment(task, resource);
    const auto split = [](const char*, auto& field) {
        if constexpr (IsJournaled<std::remove_reference_t<decltype(field)>>::value)
            field.Let(field.At(0), 1, 3);
    };
    project->ForEachField(split);
    task->ForEachField(split);
    dependency->ForEachField(split);
    assignment->ForEachField(split);
    resource->ForEachField(split);
    EXPECT_EQ(ModelFaults(model.workspace), "") << "every row has a value for each journal";
    project->AddJournal(DateTime(2.5)), pool->AddJournal(DateTime(2.5));
    EXPECT_EQ(ModelFaults(model.workspace), "");
    project->DeleteJournal(), pool->DeleteJournal();
}

}  // namespace
}  // namespace vortan

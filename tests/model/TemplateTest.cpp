#include "support/ModelBench.h"

namespace vortan {
namespace {

TEST(Template, ResourceNumbersAreUniqueAndInOrder) {
    ModelBench model;
    Vtemplate* pool = model.Template("T", 2);
    for (const int id : {9, 1, 4}) pool->FindOrCreateResource(id);
    Vresource* resource = pool->FindResource(9);
    EXPECT_EQ(RefusalOf([&] { resource->SetResourceID(4); }), "The Resource ID 4 is already in use.");
    EXPECT_EQ(pool->FindResource(9), resource);
    resource->SetResourceID(2);
    EXPECT_EQ(pool->ResourceList()[1], resource);
    EXPECT_EQ(pool->HighestResourceID(), 4);
    EXPECT_EQ(resource->BuildNodeText(), "2: <stub>");
    pool->SetCurrentIndex(1);
    pool->FindOrCreateResource(30);
    EXPECT_EQ(pool->HighestResourceID(), 30);
    pool->SetCurrentIndex(0);
    EXPECT_EQ(pool->HighestResourceID(), 4) << "a resource of a later journal does not count";
    resource->SetResourceID(0);
    EXPECT_EQ(resource->Template(), nullptr);
    EXPECT_EQ(pool->ResourceList().size(), 3U);
}

TEST(Template, ResourceStartsWithTheFirstShift) {
    ModelBench model;
    Vtemplate* pool = model.Template("T");
    EXPECT_EQ(pool->FindOrCreateResource(1)->Shift(), nullptr);
    EXPECT_EQ(pool->FindResource(1)->NormalHours(), 0);
    Vshift* day = pool->FindOrCreateShift("Day");
    pool->FindOrCreateShift("Night");
    Vresource* resource = pool->FindOrCreateResource(2);
    EXPECT_EQ(resource->Shift(), day);
    for (const auto& [typed, stored] : {std::pair("  Paint ", "Paint"), std::pair("  ", "None")}) {
        resource->SetDepartment(typed);
        EXPECT_EQ(resource->Department(), stored);
    }
    day->Delete();
    EXPECT_EQ(resource->Shift(), day) << "it stays with those who work it";
    EXPECT_EQ(day->FormerName(), "Day");
}

TEST(Shift, NamesAreUniqueWithinATemplate) {
    ModelBench model;
    Vtemplate* pool = model.Template("T");
    Vshift* day = pool->FindOrCreateShift("Day");
    Vshift* night = pool->FindOrCreateShift("Night");
    EXPECT_NE(model.Template("U")->FindOrCreateShift("Day"), day);
    EXPECT_EQ(pool->FindOrCreateShift("Day"), day);
    EXPECT_EQ(RefusalOf([&] { night->SetShiftName("Day"); }), "The Shift name \"Day\" is already in use.");
    EXPECT_EQ(pool->ShiftList().Find("Night"), night);
    EXPECT_EQ(RefusalOf([&] { night->SetShiftName("Night"); }), "none");
    day->Delete();
    EXPECT_EQ(day->Template(), nullptr);
    night->SetShiftName("Day");
    EXPECT_EQ(pool->ShiftList().Find("Day"), night);
    EXPECT_EQ(pool->ShiftList().size(), 1U);
}

TEST(Shift, TheDay) {
    ModelBench model;
    Vshift* shift = model.Template("T")->FindOrCreateShift("Standard");
    std::string day;
    for (int period = 0; period < 288; period += 12) day += shift->Period(period);
    EXPECT_EQ(day, "XXXXXXXXNNNNBNNNNOOOOXXX");
    for (const int hour : {-1, 24}) {
        EXPECT_NE(RefusalOf([&] { shift->Matrix(hour); }), "none");
        EXPECT_NE(RefusalOf([&] { shift->SetMatrix(hour, "N"); }), "none");
    }
    EXPECT_FLOAT_EQ(shift->NormalHours(), 8);
    for (const auto& [hour, letters, hours] :
         {std::tuple(0, "NNNNXXXXXXXX", 8.3F), {0, "", 8.0F}, {23, "XXXXXXXXXXXN", 8.1F}, {0, "nz", 8.1F}}) {
        shift->SetMatrix(hour, letters);
        EXPECT_FLOAT_EQ(shift->NormalHours(), hours) << letters;
    }
    EXPECT_EQ(shift->Matrix(0), "nz");
    EXPECT_EQ(shift->Period(0), 'X') << "letters that mean nothing, and missing ones, are no working time";
    EXPECT_EQ(shift->Period(11), 'X');
}

TEST(Assignment, AResourceBringsItsDay) {
    ModelBench model;
    Vtemplate* pool = model.Template("T");
    Vshift* shift = pool->FindOrCreateShift("Standard");
    Vresource* crane = pool->FindOrCreateResource(2);
    crane->SetDescription("Crane");
    crane->SetWorkDay(0, true);
    crane->SetWorkDay(6, false);
    Vproject* project = model.Project("P", 2);
    Vassignment* assignment = model.Assignment(project->FindOrCreateTask(1), crane);
    EXPECT_EQ(assignment->BuildNodeText(), "2: Crane @8 HoMoTuWeTh");
    project->SetCurrentIndex(1);
    assignment->SetHours(2.5);
    assignment->SetWorkDay(0, false);
    EXPECT_EQ(assignment->BuildNodeText(), "2: Crane @2.5 MoTuWeTh");
    shift->SetMatrix(0, "NNNN");
    assignment->SetResourceRequired(crane);
    EXPECT_EQ(assignment->BuildNodeText(), "2: Crane @8.3 HoMoTuWeTh");
    project->SetCurrentIndex(0);
    EXPECT_EQ(assignment->Hours(), 8) << "earlier journals keep theirs";

    auto* loose = model.workspace.NewVObject<Vassignment>();
    loose->SetResourceRequired(crane);
    EXPECT_EQ(loose->ResourceRequired(), crane);
    EXPECT_EQ(loose->Hours(), 0) << "without a project nothing is taken over";
}

}  // namespace
}  // namespace vortan

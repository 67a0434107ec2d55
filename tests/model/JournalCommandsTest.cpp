#include "model/JournalCommands.h"

#include "support/ModelBench.h"

namespace vortan {
namespace {

/// Two projects of one master, one of its own, and a template; journals of days 1 and 2.
class JournalCommandsTest : public testing::Test {
  protected:
    JournalCommandsTest() {
        top->FindOrCreateTask(1)->SetSubproject(sub);
        model.workspace.SetThisProject(sub);
        model.workspace.AddListener(&screen);
    }
    void Answer(const char* text) { model.platform.ExpectInput({true, text}); }
    std::string Journals() const {
        std::string all;
        for (const JournalOwner* owner : std::initializer_list<const JournalOwner*>{top, sub, other, pool})
            all += std::to_string(static_cast<int>(owner->Journal().Days())) + "/" +
                   std::to_string(owner->NumJournals()) + " ";
        return all;
    }

    ModelBench model;
    Vproject *top = model.Project("Top", 2), *sub = model.Project("Sub", 2),
             *other = model.Project("Other", 2);
    Vtemplate* pool = model.Template("T", 2);
    struct Screen : Listener {
        void NewJournal() override { ++broadcasts; }
        int broadcasts = 0;
    } screen;
};

TEST_F(JournalCommandsTest, NewAddsToAllRelativesAndTemplates) {
    for (const InputAnswer& nothing : {InputAnswer{false, "1/2/1900"}, {true, ""}}) {
        model.platform.ExpectInput(nothing);
        EXPECT_FALSE(NewJournal(model.workspace));
    }
    EXPECT_EQ(Journals(), "1/2 1/2 1/2 1/2 ");
    EXPECT_EQ(screen.broadcasts, 0);
    for (const char* text : {"soon", "2/30/1900", "1/2/1900"}) Answer(text);
    EXPECT_TRUE(NewJournal(model.workspace));
    EXPECT_EQ(model.platform.beeps, 2);
    EXPECT_EQ(Journals(), "3/3 3/3 1/2 3/3 ");
    EXPECT_EQ(screen.broadcasts, 1);
}

TEST_F(JournalCommandsTest, NewOfAJournalThatThereIs) {
    Answer("12/31/1899");
    model.platform.ExpectBox("Journal Already Active", BoxAnswer::Ok,
                             "The active journal has a date of 12/31/1899.");
    EXPECT_FALSE(NewJournal(model.workspace));
    EXPECT_EQ(Journals(), "1/2 1/2 1/2 1/2 ");
    Answer("1/1/1900");
    model.platform.ExpectBox("Journal Already Exists", BoxAnswer::Ok,
                             "A journal with the date of 1/1/1900 already exists.  VORTAN will now make that "
                             "journal active.");
    EXPECT_FALSE(NewJournal(model.workspace));
    EXPECT_EQ(Journals(), "2/2 2/2 1/2 2/2 ");
}

TEST_F(JournalCommandsTest, NewWithoutAProject) {
    model.workspace.SetThisProject(nullptr);
    model.platform.ExpectBox("No Projects in Memory", BoxAnswer::Ok);
    EXPECT_FALSE(NewJournal(model.workspace));
    model.workspace.SetThisTemplate(pool);
    Answer("1/2/1900");
    EXPECT_TRUE(NewJournal(model.workspace));
    EXPECT_EQ(Journals(), "1/2 1/2 1/2 3/3 ");
}

TEST_F(JournalCommandsTest, SelectMovesRelativesAndTemplates) {
    SelectJournal(model.workspace, "<journal n/a>");
    SelectJournal(model.workspace, sub->JournalNodeText(0));
    EXPECT_EQ(screen.broadcasts, 0);
    SelectJournal(model.workspace, "1/1/1900 [Plan]");
    EXPECT_EQ(Journals(), "2/2 2/2 1/2 2/2 ");
    EXPECT_EQ(screen.broadcasts, 1);
    EXPECT_EQ(RefusalOf([&] { SelectJournal(model.workspace, "1/9/1900"); }),
              "The specified journal does not exist");
    model.workspace.SetThisProject(nullptr);
    model.workspace.SetThisTemplate(pool);
    SelectJournal(model.workspace, "12/31/1899");
    EXPECT_EQ(pool->CurrentIndex(), 0);
    EXPECT_EQ(screen.broadcasts, 2);
}

/// What is linked in a later journal alone moves along into earlier ones, and out of them again.
TEST_F(JournalCommandsTest, ProjectsThatAreTiedInALaterJournalStayTogether) {
    for (JournalOwner* owner : std::initializer_list<JournalOwner*>{top, sub, other, pool}) {
        owner->SetCurrentIndex(1);
        owner->SetDirty(false);
    }
    other->SetParent(top);
    Answer("12/29/1899 6:00 AM");
    EXPECT_TRUE(NewJournal(model.workspace));
    EXPECT_EQ(Journals(), "-1/3 -1/3 -1/3 -1/3 ");
    EXPECT_TRUE(pool->Dirty());
    EXPECT_EQ(other->Master(), other);
    for (Vproject* active : {sub, other}) {
        model.workspace.SetThisProject(active);
        SelectJournal(model.workspace, "1/1/1900");
        EXPECT_EQ(Journals(), "2/3 2/3 2/3 2/3 ");
        SelectJournal(model.workspace, "12/29/1899 [Current]");
        EXPECT_EQ(Journals(), "-1/3 -1/3 -1/3 -1/3 ");
    }
}

TEST_F(JournalCommandsTest, AJournalOfAFileMayHaveATime) {
    for (JournalOwner* owner : std::initializer_list<JournalOwner*>{top, sub})
        owner->AddJournal(DateTime(2.25));
    sub->SetCurrentIndex(0);
    SelectJournal(model.workspace, sub->JournalNodeText(2));
    EXPECT_EQ(sub->Journal(), DateTime(2.25));
    EXPECT_TRUE(pool->JournalDefined(DateTime(2.25)));
}

TEST_F(JournalCommandsTest, PlanIsSetInAllRelativesOrInNone) {
    top->SetCurrentIndex(1);
    EXPECT_EQ(RefusalOf([&] { SetAsPlan(model.workspace); }),
              "Project.Journal (1/1/1900) <> ThisProject.Journal (12/31/1899)");
    sub->SetCurrentIndex(1);
    for (int time = 1; time < 3; ++time) {
        for (Vproject* project : {top, sub, other}) project->SetDirty(false);
        SetAsPlan(model.workspace);
        EXPECT_EQ(std::vector({top->PlanIndex(), sub->PlanIndex(), other->PlanIndex()}),
                  std::vector({1, 1, 0}));
        EXPECT_TRUE(top->Dirty() && sub->Dirty() && !other->Dirty());
        EXPECT_EQ(screen.broadcasts, time);
    }
}

}  // namespace
}  // namespace vortan

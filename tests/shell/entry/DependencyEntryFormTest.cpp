#include "shell/entry/DependencyEntryForm.h"

#include "shell/entry/TaskEntryForm.h"
#include "shell/entry/TaskEntryFormBench.h"
#include "shell/trees/NodeCommands.h"

namespace vortan {
namespace {

class DependencyEntryFormTest : public TaskFormTest {
  protected:
    DependencyEntryFormTest() {
        other = workspace.FindOrCreateProject("Road");
        other->SetDescription("To the bridge");
        other->AddJournal(*ParseDate("9/3/2001"));
        clear = Task(4, "Clear", other);
        dig = Task(1, "Dig");
        pour = Task(2, "Pour");
        project->SetDirty(false);
    }
    void Add() {
        Select(pour);
        shell.main.TheTrees().Commands().AddDependency();
    }
    void Modify(Vdependency* dependency) {
        Select(dependency);
        DependencyEntryForm::StartModify(shell.desktop, *dependency);
    }
    std::string Sentence() {
        auto& box = shell.Find<QPlainTextEdit>("SentenceText");
        EXPECT_EQ(box.toolTip(), "Press [F1] for help");
        return S(box.toPlainText());
    }
    QComboBox& Tasks() { return shell.Find<QComboBox>("TaskRequiredCombo"); }
    QComboBox& Projects() { return shell.Find<QComboBox>("ProjectRequiredCombo"); }
    int Scroll(const char* name) { return shell.Find<QSlider>(name).value(); }
    void SetScroll(const char* name, int value) { shell.Find<QSlider>(name).setValue(value); }
    /// The caption of the one quick option that is chosen.
    std::string Quick() {
        std::string all;
        for (int i = 0; i < 12; ++i) {
            const auto& button = shell.Find<QAbstractButton>(QuickName(i));
            if (button.isChecked()) all += S(button.text());
        }
        return all;
    }
    static std::string QuickName(int index) { return "QuickOption(" + std::to_string(index) + ")"; }

    Vproject* other;
    Vtask *clear, *dig, *pour;
};

TEST_F(DependencyEntryFormTest, ATaskIsFoundByAPartOfItsText) {
    Add();
    shell.Click("QuickOption(0)");
    EXPECT_EQ(Sentence(), "2: Pour cannot start until prerequisite task  finishes.");
    shell.Type("TaskRequiredCombo", "dig");
    EXPECT_EQ(Tasks().completer()->currentCompletion(), "1: Dig");
    Tasks().setCurrentIndex(0);
    dig->SetInclude(false);              // in this journal; it can be kept all the same
    shell.Type("OffsetText", "3 days");  // without its option
    shell.Find<QWidget>("TaskRequiredCombo").setFocus();
    Ok();
    ASSERT_EQ(pour->DependencyList().size(), 1U);
    EXPECT_EQ(pour->DependencyList()[0]->TaskRequired(), dig);
    EXPECT_EQ(pour->DependencyList()[0]->Offset(), 0);
}

TEST_F(DependencyEntryFormTest, LoadsEachKind) {
    // What is not in this journal is not offered.
    other->AddJournal(*ParseDate("9/6/2001"));
    Task(9, "Later", other);
    other->SetCurrentIndex(0);
    auto* dependency = workspace.NewVObject<Vdependency>();
    dependency->SetTask(pour);
    const struct {
        Vtask* required;
        int to, from;
        double offset;
        const char *sentence, *code, *projectText;
    } cases[] = {
        {nullptr, 100, 30, 0, "2: Pour cannot finish until prerequisite date 9/7/2001.", "DF", "Bridge"},
        {nullptr, 20, 0, 1.5,
         "2: Pour cannot proceed beyond 20% until 1.5 days after prerequisite date 9/7/2001.", "DP",
         "Bridge"},
        {dig, 0, 0, -7, "2: Pour cannot start until 1 week before prerequisite task 1: Dig starts.", "SS",
         "Bridge"},
        {clear, 99, 1, 0,
         "2: Pour cannot proceed beyond 99% until prerequisite task 4: Clear is 1% complete.", "PP",
         "Road: To the bridge"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.sentence);
        dependency->SetTaskRequired(one.required);
        dependency->SetDepDate(*ParseDate("9/7/2001"));
        dependency->SetToPercent(static_cast<std::uint8_t>(one.to));
        dependency->SetFromPercent(static_cast<std::uint8_t>(one.from));
        dependency->SetOffset(one.offset);
        project->SetDirty(false);
        Modify(dependency);
        EXPECT_EQ(Sentence(), one.sentence);
        EXPECT_EQ(Quick(), one.code);
        EXPECT_EQ(S(Projects().currentText()), one.projectText);
        EXPECT_EQ(Value("OffsetText").empty(), one.offset == 0);
        const std::string before = dependency->BuildNodeText();
        EXPECT_FALSE(project->Dirty());
        Ok();
        EXPECT_FALSE(Open());
        EXPECT_EQ(dependency->BuildNodeText(), before);
        EXPECT_TRUE(project->Dirty());
        project->SetDirty(false);
    }
    Modify(dependency);
    EXPECT_EQ(Tasks().count(), 1);
}

TEST_F(DependencyEntryFormTest, QuickTypesAndScrollBarsFollowOneAnother) {
    Add();
    EXPECT_EQ(S(shell.Find<QWidget>("QuickOption(11)").toolTip()), "Partial-to-Partial");
    const struct {
        int quick;
        const char* code;
        int from, to;
        const char* sentence;
    } cases[] = {{0, "FS", 100, 0, "start until prerequisite task 1: Dig finishes."},
                 {1, "FF", 100, 100, "finish until prerequisite task 1: Dig finishes."},
                 {2, "SS", 0, 0, "start until prerequisite task 1: Dig starts."},
                 {3, "SF", 0, 100, "finish until prerequisite task 1: Dig starts."},
                 {4, "DS", 0, 0, "start until prerequisite date 9/3/2001."},
                 {5, "DF", 0, 100, "finish until prerequisite date 9/3/2001."},
                 {6, "PS", 50, 0, "start until prerequisite task 1: Dig is 50% complete."},
                 {7, "PF", 50, 100, "finish until prerequisite task 1: Dig is 50% complete."},
                 {8, "FP", 100, 50, "proceed beyond 50% until prerequisite task 1: Dig finishes."},
                 {9, "SP", 0, 50, "proceed beyond 50% until prerequisite task 1: Dig starts."},
                 {10, "DP", 0, 50, "proceed beyond 50% until prerequisite date 9/3/2001."},
                 {11, "PP", 50, 50, "proceed beyond 50% until prerequisite task 1: Dig is 50% complete."}};
    Tasks().setCurrentIndex(0);
    for (const auto& one : cases) {
        SCOPED_TRACE(one.code);
        shell.Click(QuickName(one.quick).c_str());
        EXPECT_EQ(Quick(), one.code);
        EXPECT_EQ(Scroll("FromScroll"), one.from);
        EXPECT_EQ(Scroll("ToScroll"), one.to);
        EXPECT_EQ(Sentence(), std::string("2: Pour cannot ") + one.sentence);
        EXPECT_EQ(Visible("FromOption(1)"), one.code[0] != 'D');
    }

    shell.Click("QuickOption(0)");
    SetScroll("FromScroll", 37);
    EXPECT_EQ(Quick(), "PS");
    EXPECT_EQ(S(shell.Find<QAbstractButton>("FromOption(1)").text().remove('&')), "is 37% complete");
    shell.Click("QuickOption(11)");  // keeps a part that is chosen
    EXPECT_EQ(Scroll("FromScroll"), 37);
    EXPECT_EQ(Scroll("ToScroll"), 50);
    SetScroll("ToScroll", 100);
    EXPECT_TRUE(Checked("ToOption(2)"));
    EXPECT_EQ(Quick(), "PF");
    shell.Click("ToOption(1)");
    EXPECT_EQ(Scroll("ToScroll"), 50);
    shell.Click("FromOption(2)");
    EXPECT_EQ(Scroll("FromScroll"), 100);
    EXPECT_EQ(Quick(), "FP");
    shell.Click("DateOption");
    EXPECT_EQ(Quick(), "DP");
    SetScroll("FromScroll", 5);
    EXPECT_EQ(Quick(), "DP");
    shell.Click("TaskOption");
    EXPECT_EQ(Quick(), "PP");
}

TEST_F(DependencyEntryFormTest, TheKeyOfAnOptionLeadsToItsBox) {
    Add();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&shell.Dialog()));
    const struct {
        Qt::Key key;
        const char *typed, *box, *told;
    } steps[] = {{Qt::Key_T, "2", "TaskRequiredCombo", "until prerequisite task 2 finishes."},
                 {Qt::Key_D, "9/5/2001", "DateText", "until prerequisite date 9/5/2001."},
                 {Qt::Key_A, "3 days", "OffsetText", "until 3 days after prerequisite date 9/5/2001."}};
    for (const auto& step : steps) {
        QTest::keyClick(&shell.Dialog(), step.key, Qt::AltModifier);
        EXPECT_EQ(shell.Focus(), step.box);
        QTest::keyClicks(shell.Dialog().focusWidget(), step.typed);
        EXPECT_EQ(Sentence(), std::string("2: Pour cannot start ") + step.told);
    }
    // The arrows go on along the options.
    shell.Find<QWidget>("OffsetOption(2)").setFocus();
    shell.Press(Qt::Key_Left);
    EXPECT_EQ(shell.Focus(), "OffsetOption(1)");
}

TEST_F(DependencyEntryFormTest, OffsetsAndTheirOptions) {
    Add();
    shell.Click("OffsetOption(1)");
    EXPECT_EQ(Value("OffsetText"), "0 days");
    Ok();
    Vdependency* dependency = pour->DependencyList().at(0);
    const struct {
        const char *click, *typed;
        double offset;
        const char* loaded;
    } cases[] = {{"OffsetOption(1)", "0 days", 0, ""},
                 {"OffsetOption(1)", "2 days", -2, "2 days"},
                 {"OffsetOption(2)", "36", 1.5, "1.5 days"},
                 {"OffsetOption(2)", "1 m", 30, "1 month"},
                 {"OffsetOption(2)", "90 min", 0.0625, "1.5 hours"},
                 {"OffsetOption(0)", "", 0, ""}};
    for (const auto& one : cases) {
        SCOPED_TRACE(one.typed);
        Modify(dependency);
        shell.Click(one.click);
        if (one.typed[0]) shell.Type("OffsetText", one.typed);
        Ok();
        EXPECT_EQ(dependency->Offset(), one.offset);
        Modify(dependency);
        EXPECT_EQ(Value("OffsetText"), one.loaded);
        EXPECT_EQ(Checked("OffsetOption(0)"), one.offset == 0);
        Cancel();
    }
}

TEST_F(DependencyEntryFormTest, ThePrerequisiteMayBeInAnotherProject) {
    Add();
    shell.Click("TaskOption");
    EXPECT_EQ(S(Projects().currentText()), "Bridge");
    Tasks().setCurrentIndex(0);
    Projects().setCurrentIndex(1);
    EXPECT_EQ(S(Tasks().currentText()), "");
    EXPECT_EQ(Tasks().count(), 1);
    shell.Type("TaskRequiredCombo", "4: Clear");
    SetScroll("FromScroll", 25);
    Ok();
    ASSERT_EQ(pour->DependencyList().size(), 1U);
    EXPECT_EQ(pour->DependencyList()[0]->BuildNodeText(), "(Road) 4: Clear: SP");
}

TEST_F(DependencyEntryFormTest, OnAScreenThatIsTooSmallOkStaysInReach) {
    const QFont usual = QApplication::font();
    QApplication::setFont(QFont(usual.family(), usual.pointSize() * 3));
    Add();
    const QRect screen = shell.Dialog().screen()->availableGeometry();
    const QWidget& ok = shell.Find<QWidget>("OkCommand");
    EXPECT_TRUE(screen.contains(QRect(ok.mapToGlobal(QPoint()), ok.size())));
    QApplication::setFont(usual);
}

}  // namespace
}  // namespace vortan

#include "shell/entry/DependencyEntryForm.h"

#include "shell/entry/FormBench.h"
#include "shell/entry/TaskEntryForm.h"
#include "shell/trees/NodeCommands.h"

namespace vortan {
namespace {

class DependencyEntryFormTest : public FormBench {
  protected:
    DependencyEntryFormTest() {
        MakePlan(workspace, R"(journals 9/3/2001 9/6/2001; project Road "To the bridge"; task 4 "Clear")");
        Activate(0);
    }
    void Add() {
        Select(pour);
        TheTrees().Commands().AddDependency();
    }
    void Modify(Vdependency* dependency) { FormBench::Modify<DependencyEntryForm>(dependency); }
    std::string Sentence() {
        auto& box = Find<QPlainTextEdit>("SentenceText");
        EXPECT_EQ(box.toolTip(), "Press [F1] for help");
        return S(box.toPlainText());
    }
    /// "FS 100 0": the captions of the quick options that are chosen, and both parts.
    std::string Quick() {
        std::string all;
        for (int i = 0; i < 12; ++i) {
            const auto& button = Find<QAbstractButton>(QuickName(i));
            if (button.isChecked()) all += S(button.text());
        }
        for (const char* bar : {"FromScroll", "ToScroll"})
            all += " " + std::to_string(Find<QSlider>(bar).value());
        return all;
    }
    static std::string QuickName(int index) { return "QuickOption(" + std::to_string(index) + ")"; }

    Vtask *dig = Task(1, "Dig"), *pour = Task(2, "Pour");
};

TEST_F(DependencyEntryFormTest, ATaskIsFoundByAPartOfItsText) {
    Add();
    Click("QuickOption(0)");
    EXPECT_EQ(Sentence(), "2: Pour cannot start until prerequisite task  finishes.");
    Type("TaskRequiredCombo", "dig");
    EXPECT_EQ(Combo("TaskRequiredCombo").completer()->currentCompletion(), "1: Dig");
    Combo("TaskRequiredCombo").setCurrentIndex(0);
    dig->SetInclude(false);        // in this journal; it can be kept all the same
    Type("OffsetText", "3 days");  // without its option
    Find<QWidget>("TaskRequiredCombo").setFocus();
    Ok();
    ASSERT_EQ(pour->DependencyList().size(), 1U);
    EXPECT_EQ(pour->DependencyList()[0]->TaskRequired(), dig);
    EXPECT_EQ(pour->DependencyList()[0]->Offset(), 0);
}

TEST_F(DependencyEntryFormTest, PercentagesAreTypedAsNumbers) {
    Add();
    Click("QuickOption(0)");
    Find<QSpinBox>("FromPercentText").setValue(37);
    EXPECT_EQ(Quick(), "PS 37 0");
    Find<QSlider>("ToScroll").setValue(100);
    EXPECT_EQ(Find<QSpinBox>("ToPercentText").value(), 100);
    Cancel();
}

TEST_F(DependencyEntryFormTest, LoadsEachKind) {
    // What is not in this journal is not offered.
    MakePlan(workspace,
             "project Road; at 9/6/2001; task 9; at 9/3/2001; project Bridge; task 2 start=9/7/2001");
    Vtask* clear = workspace.ProjectList().Find("Road")->FindTask(4);
    Vdependency* dependency = pour->DependencyList().front();
    const struct {
        Vtask* required;
        int to, from;
        double offset;
        const char *sentence, *code, *projectText;
    } cases[] = {
        {nullptr, 100, 30, 0, "finish until prerequisite date 9/7/2001.", "DF 30 100", "Bridge"},
        {nullptr, 20, 0, 1.5, "proceed beyond 20% until 1.5 days after prerequisite date 9/7/2001.",
         "DP 0 20", "Bridge"},
        {dig, 0, 0, -7, "start until 1 week before prerequisite task 1: Dig starts.", "SS 0 0", "Bridge"},
        {clear, 99, 1, 0, "proceed beyond 99% until prerequisite task 4: Clear is 1% complete.", "PP 1 99",
         "Road: To the bridge"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.sentence);
        dependency->SetTaskRequired(one.required);
        dependency->SetToPercent(static_cast<std::uint8_t>(one.to));
        dependency->SetFromPercent(static_cast<std::uint8_t>(one.from));
        dependency->SetOffset(one.offset);
        Modify(dependency);
        EXPECT_EQ(Sentence(), std::string("2: Pour cannot ") + one.sentence);
        EXPECT_EQ(Quick(), one.code);
        EXPECT_EQ(Chosen("ProjectRequiredCombo"), one.projectText);
        EXPECT_EQ(Value("OffsetText").empty(), one.offset == 0);
        const std::string before = dependency->BuildNodeText();
        Ok();
        EXPECT_EQ(dependency->BuildNodeText(), before);
    }
    Modify(dependency);
    EXPECT_EQ(Combo("TaskRequiredCombo").count(), 1);
}

TEST_F(DependencyEntryFormTest, QuickTypesAndScrollBarsFollowOneAnother) {
    Add();
    EXPECT_EQ(S(Find<QWidget>("QuickOption(11)").toolTip()), "Partial-to-Partial");
    const std::pair<const char*, const char*> cases[] = {
        {"FS 100 0", "start until prerequisite task 1: Dig finishes."},
        {"FF 100 100", "finish until prerequisite task 1: Dig finishes."},
        {"SS 0 0", "start until prerequisite task 1: Dig starts."},
        {"SF 0 100", "finish until prerequisite task 1: Dig starts."},
        {"DS 0 0", "start until prerequisite date 9/3/2001."},
        {"DF 0 100", "finish until prerequisite date 9/3/2001."},
        {"PS 50 0", "start until prerequisite task 1: Dig is 50% complete."},
        {"PF 50 100", "finish until prerequisite task 1: Dig is 50% complete."},
        {"FP 100 50", "proceed beyond 50% until prerequisite task 1: Dig finishes."},
        {"SP 0 50", "proceed beyond 50% until prerequisite task 1: Dig starts."},
        {"DP 0 50", "proceed beyond 50% until prerequisite date 9/3/2001."},
        {"PP 50 50", "proceed beyond 50% until prerequisite task 1: Dig is 50% complete."}};
    Combo("TaskRequiredCombo").setCurrentIndex(0);
    int quick = 0;
    for (const auto& [code, sentence] : cases) {
        Click(QuickName(quick++).c_str());
        EXPECT_EQ(Quick(), code);
        EXPECT_EQ(Sentence(), std::string("2: Pour cannot ") + sentence);
        EXPECT_EQ(Visible("FromOption(1)"), code[0] != 'D');
    }
    const auto slide = [this](const char* bar, int value) { Find<QSlider>(bar).setValue(value); };
    const std::pair<std::function<void()>, const char*> steps[] = {
        {[&] { Click("QuickOption(0)"), slide("FromScroll", 37); }, "PS 37 0"},
        {[&] { Click("QuickOption(11)"); }, "PP 37 50"},  // keeps a part that is chosen
        {[&] { slide("ToScroll", 100); }, "PF 37 100"},
        {[&] { Click("ToOption(1)"), Click("FromOption(2)"); }, "FP 100 50"},
        {[&] { Click("DateOption"); }, "DP 100 50"},
        {[&] { slide("FromScroll", 5); }, "DP 5 50"},
        {[&] { Click("TaskOption"); }, "PP 5 50"}};
    for (const auto& [act, code] : steps) {
        act();
        EXPECT_EQ(Quick(), code);
        if (Quick() == "PS 37 0") {
            EXPECT_EQ(S(Find<QAbstractButton>("FromOption(1)").text()), "&is 37% complete");
        }
        EXPECT_EQ(Checked("ToOption(2)"), Quick().ends_with(" 100"));
    }
}

TEST_F(DependencyEntryFormTest, TheKeyOfAnOptionLeadsToItsBox) {
    Add();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Dialog()));
    const struct {
        Qt::Key key;
        const char *typed, *box, *told;
    } steps[] = {{Qt::Key_T, "2", "TaskRequiredCombo", "until prerequisite task 2 finishes."},
                 {Qt::Key_D, "9/5/2001", "DateText", "until prerequisite date 9/5/2001."},
                 {Qt::Key_A, "3 days", "OffsetText", "until 3 days after prerequisite date 9/5/2001."}};
    for (const auto& step : steps) {
        QTest::keyClick(&Dialog(), step.key, Qt::AltModifier);
        EXPECT_EQ(Focus(), step.box);
        QTest::keyClicks(Dialog().focusWidget(), step.typed);
        EXPECT_EQ(Sentence(), std::string("2: Pour cannot start ") + step.told);
    }
    // The arrows go on along the options.
    Find<QWidget>("OffsetOption(2)").setFocus();
    Press(Qt::Key_Left);
    EXPECT_EQ(Focus(), "OffsetOption(1)");
}

TEST_F(DependencyEntryFormTest, OffsetsAndTheirOptions) {
    Add();
    Click("OffsetOption(1)");
    EXPECT_EQ(Value("OffsetText"), "0 days");
    Ok();
    Vdependency* dependency = pour->DependencyList().at(0);
    const std::tuple<const char*, double, const char*> cases[] = {
        {"OffsetOption(1)!;OffsetText=0 days", 0, ""},
        {"OffsetOption(1)!;OffsetText=2 days", -2, "2 days"},
        {"OffsetOption(2)!;OffsetText=36", 1.5, "1.5 days"},
        {"OffsetOption(2)!;OffsetText=1 m", 30, "1 month"},
        {"OffsetOption(2)!;OffsetText=90 min", 0.0625, "1.5 hours"},
        {"OffsetOption(0)!", 0, ""}};
    for (const auto& [steps, offset, loaded] : cases) {
        SCOPED_TRACE(steps);
        Modify(dependency);
        Do(steps);
        Ok();
        EXPECT_EQ(dependency->Offset(), offset);
        Modify(dependency);
        EXPECT_EQ(Value("OffsetText"), loaded);
        EXPECT_EQ(Checked("OffsetOption(0)"), offset == 0);
        Cancel();
    }
}

TEST_F(DependencyEntryFormTest, ThePrerequisiteMayBeInAnotherProject) {
    Add();
    Click("TaskOption");
    EXPECT_EQ(Chosen("ProjectRequiredCombo"), "Bridge");
    Combo("TaskRequiredCombo").setCurrentIndex(0);
    Combo("ProjectRequiredCombo").setCurrentIndex(1);
    EXPECT_EQ(Chosen("TaskRequiredCombo"), "");
    EXPECT_EQ(Combo("TaskRequiredCombo").count(), 1);
    Type("TaskRequiredCombo", "4: Clear");
    Find<QSlider>("FromScroll").setValue(25);
    Ok();
    ASSERT_EQ(pour->DependencyList().size(), 1U);
    EXPECT_EQ(pour->DependencyList()[0]->BuildNodeText(), "(Road) 4: Clear: SP");
}

TEST_F(DependencyEntryFormTest, OnAScreenThatIsTooSmallOkStaysInReach) {
    const QFont usual = QApplication::font();
    QApplication::setFont(QFont(usual.family(), usual.pointSize() * 3));
    Add();
    const QRect screen = Dialog().screen()->availableGeometry();
    const QWidget& ok = Find<QWidget>("OkCommand");
    EXPECT_TRUE(screen.contains(QRect(ok.mapToGlobal(QPoint()), ok.size())));
    QApplication::setFont(usual);
}

}  // namespace
}  // namespace vortan

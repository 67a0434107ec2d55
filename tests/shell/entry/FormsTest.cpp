#include <sstream>

#include "shell/trees/TreeBench.h"

namespace vortan {
namespace {

struct Refusal {
    const char *steps, *focus, *title, *text;
};

/// What all entry forms have in common: how a new object is made with one.
struct FormCase {
    const char *name, *button;
    PlanObject (*select)(TreeBench&);  // none: nothing needs to be selected
    const char *focus, *shown;         // shown as "Box=text;Box=text"
    std::vector<Refusal> refusals;
    const char* steps;  // to what can be saved
    std::string (*made)(TreeBench&);
    const char* result;
};

void PrintTo(const FormCase& form, std::ostream* out) {
    *out << form.name;
}

template <class... Values>
std::string Line(const Values&... values) {
    std::ostringstream line;
    ((line << values << '|'), ...);
    return line.str();
}

constexpr const char *kNumber = "Invalid Number", *kDate = "Invalid Date", *kAmount = "Invalid Amount";
constexpr const char* kTaskId = "The task ID must be a whole number from 1 to 999999999.";
constexpr const char* kRange = "The efficiency must be above 0 and not above 1.";
constexpr const char* kEstimate = "The estimate must be a number.";
constexpr const char* kPriority = "The priority must be a whole number from 0 to 255.";
constexpr const char* kResourceId = "The Resource ID must be a whole number from 1 to 999999999.";
constexpr const char* kFromList = "Please choose the prerequisite task from the list.";
constexpr const char* kDuration = R"(The offset must be a duration, such as "2 days" or "4 hours".)";
constexpr const char* kChoose = "Please choose a resource from the list.";

const FormCase kForms[] = {
    {"ProjectEntryForm",
     "Toolbar.Project",
     nullptr,
     "ProjectNameText",
     "InitialJournalText=9/6/2001",
     {{"ProjectNameText=   ", "ProjectNameText", "Project Name Is Blank",
       "The Project name must be filled in."},
      {"ProjectNameText=New;InitialJournalText=soon", "InitialJournalText", kDate, "Invalid date"},
      {"ProjectNameText=New;PriorityText=", "PriorityText", kNumber, kPriority},
      {"ProjectNameText=New;PriorityText=256", "PriorityText", kNumber, kPriority},
      {"ProjectNameText=New;PriorityText=-1", "PriorityText", kNumber, kPriority},
      {"ProjectNameText=New;PriorityText=1.5", "PriorityText", kNumber, kPriority}},
     "ProjectNameText= New;InitialJournalText=2027-01-04 5:00 pm;PriorityText=255;SolveRulesCombo#2",
     [](TreeBench& b) {
         const Vproject& made = *b.workspace.ThisProject();
         return Line(made.ProjectName(), FormatDate(made.Journal()), made.Priority(),
                     static_cast<int>(made.SolveRules()), made.Dirty());
     },
     " New|1/4/2027|255|2|1|"},
    {"TemplateEntryForm",
     "Toolbar.Template",
     nullptr,
     "TemplateNameText",
     "ViewPasswordText=",
     {{"", "TemplateNameText", "Template Name Is Blank", "The Template name must be filled in."},
      {"TemplateNameText=Crew", "TemplateNameText", "Template Name In Use",
       R"(There is already a template with the name "Crew")"}},
     "TemplateNameText=People;ModifyPasswordText=secret",
     [](TreeBench& b) {
         const Vtemplate& made = *b.workspace.ThisTemplate();
         return Line(b.SeenTemplate(), made.ModifyPassword(), FormatDate(made.Journal()), made.Dirty(),
                     S(b.main.findChild<QComboBox*>("TemplateCombo")->currentText()));
     },
     "People\n Standard\n|secret|9/3/2001|1|People|"},
    {"SubprojectEntryForm",
     "Toolbar.Subproject",
     [](TreeBench& b) {
         b.workspace.SetThisProject(b.beta);
         b.workspace.BroadcastNewThisProject();
         return PlanObject(b.wire);
     },
     "TaskIdText",
     "TaskIdText=2",
     {{"TaskIdText=0", "ProjectCombo", "No Project Selected",
       "Please select a parent project, or click [Cancel]."},
      {"ProjectCombo#1;TaskIdText=1", "TaskIdText", "Task ID In Use",
       "The task ID 1 is already in use by task 1: Wire."},
      {"ProjectCombo#1;TaskIdText=0", "TaskIdText", kNumber, kTaskId},
      {"ProjectCombo#0", "ProjectCombo", "Project Contains Itself",
       "The project Beta is itself a part of Alpha."}},
     "ProjectCombo#1;TaskIdText=9",
     [](TreeBench& b) { return Line(b.SeenProject(), b.beta->Dirty()); },
     "Alpha\n 3: Beta\n  1: Wire\n  +9: Gamma\n|1|"},
    {"TaskEntryForm",
     "Toolbar.Task",
     nullptr,
     "DescriptionText",
     "TaskIdText=11;EfficiencyText=0.85;MaterialCostText=$0.00",
     {{"TaskIdText=0", "TaskIdText", kNumber, kTaskId},
      {"TaskIdText=1000000000", "TaskIdText", kNumber, kTaskId},
      {"ToFinishOption!;TaskIdText=3", "TaskIdText", "Task ID In Use",
       "The task ID 3 is already in use by task 3: Beta."},
      {"TaskIdText=10", "TaskIdText", "Task ID In Use",
       "The task ID 10 is already in use by task 10, which has been deleted in this journal."},
      {"MaterialCostText=much", "MaterialCostText", kAmount, "The fixed cost must be an amount of money."},
      {"EfficiencyText=x", "EfficiencyText", kNumber, "The efficiency must be a number."},
      {"EfficiencyText=0", "EfficiencyText", kNumber, kRange},
      {"EfficiencyText=1.01", "EfficiencyText", kNumber, kRange},
      {"CalendarTimeOption!;EstimateText(4)=", "EstimateText(4)", kNumber, kEstimate},
      {"EstimateText(4)=-1", "EstimateText(4)", kNumber, "The estimate must not be negative."},
      {"SpecificDatesOption!;StartDateText=", "StartDateText", kDate, "Invalid date"},
      {"SpecificDatesOption!;StartDateText=2/29/2001", "StartDateText", kDate, "Invalid date"},
      {"SpecificDatesOption!;FinishDateText=soon", "FinishDateText", kDate, "Invalid date"}},
     "TaskIdText=999999999;DescriptionText=Pour;MaterialCostText=1250;EfficiencyText=1;"
     "EstimateText(4)=35791394",
     [](TreeBench& b) {
         const Vtask& made = *b.alpha->FindTask(999999999);
         return Line(b.Marked(), made.EffortUnits(), made.MostLikely(), made.MaterialCost().ToDouble(),
                     made.Efficiency(), b.alpha->Dirty());
     },
     "999999999: Pour;|-60|2147483640|1250|1|1|"},
    {"DependencyEntryForm",
     "Toolbar.Dependency",
     [](TreeBench& b) { return PlanObject(b.dig); },
     "DateText",
     "DateText=9/6/2001;OffsetText=",
     {{"DateText=", "DateText", kDate, "Invalid date"},
      {"DateText=13/1/2001", "DateText", kDate, "Invalid date"},
      {"TaskOption!;TaskRequiredCombo=", "TaskRequiredCombo", "Invalid Task", kFromList},
      {"TaskOption!;TaskRequiredCombo=Dig", "TaskRequiredCombo", "Invalid Task", kFromList},
      {"TaskOption!;TaskRequiredCombo=77: Dig", "TaskRequiredCombo", "Invalid Task", kFromList},
      {"TaskOption!;TaskRequiredCombo=1: Dig", "TaskRequiredCombo", "Invalid Task",
       "A task cannot depend on itself."},
      {"OffsetOption(1)!;OffsetText=", "OffsetText", "Invalid Duration", kDuration},
      {"OffsetOption(2)!;OffsetText=days", "OffsetText", "Invalid Duration", kDuration},
      {"OffsetOption(2)!;OffsetText=3 years", "OffsetText", "Invalid Duration", kDuration},
      {"OffsetOption(2)!;OffsetText=1.2.3 days", "OffsetText", "Invalid Duration", kDuration},
      {"OffsetOption(2)!;OffsetText=1e9 days", "OffsetText", "Invalid Duration", kDuration}},
     "TaskOption!;TaskRequiredCombo=2: Bulid;OffsetOption(1)!;OffsetText=3 days",  // the number counts
     [](TreeBench& b) { return Line(b.SeenProject().substr(0, 35), b.alpha->Dirty()); },
     "Alpha\n 1: Dig\n  2: Build - 3 days\n |1|"},
    {"AssignmentEntryForm",
     "Toolbar.Assignment",
     [](TreeBench& b) { return PlanObject(b.dig); },
     "ResourceIdCombo",
     "TaskText=1: Dig;HoursText=0",
     {{"ResourceIdCombo=", "ResourceIdCombo", "Missing Resource", kChoose},
      {"ResourceIdCombo=:", "ResourceIdCombo", "Missing Resource", kChoose},
      {"ResourceIdCombo=20", "ResourceIdCombo", "Missing Resource", kChoose},
      {"ResourceIdCombo=Crane", "ResourceIdCombo", "Missing Resource", kChoose},
      {"ResourceIdCombo=1;HoursText=", "HoursText", kNumber, "The hours a day must be a number."},
      {"ResourceIdCombo=1;HoursText=8h", "HoursText", kNumber, "The hours a day must be a number."}},
     "ResourceIdCombo=cid;HoursText=2.5;WorkDayCheck(0)!",
     [](TreeBench& b) { return Line(b.SeenProject().substr(0, 43), b.alpha->Dirty()); },
     "Alpha\n 1: Dig\n  10: Cid @2.5 HoMoTuWeThFr\n |1|"},
    {"ShiftEntryForm",
     "Toolbar.Shift",
     nullptr,
     "ShiftNameText",
     "OvertimeMultiplierText=1.5",
     {{"ShiftNameText=", "ShiftNameText", "Missing Name", "Name cannot be blank"},
      {"ShiftNameText=  ", "ShiftNameText", "Missing Name", "Name cannot be blank"},
      {"ShiftNameText= Standard ", "ShiftNameText", "Shift Name In Use",
       R"(The Shift name "Standard" is already in use.)"},
      {"ShiftNameText=Dusk;BurdenedMultiplierText=", "BurdenedMultiplierText", kNumber,
       "The burdened multiplier must be a number."},
      {"ShiftNameText=Dusk;OvertimeMultiplierText=1,5", "OvertimeMultiplierText", kNumber,
       "The overtime multiplier must be a number."},
      {"ShiftNameText=Dusk;OffDayMultiplierText=twice", "OffDayMultiplierText", kNumber,
       "The off day multiplier must be a number."}},
     "ShiftNameText= Dusk ;BurdenedMultiplierText=1.1;HolidayMultiplierText=none",
     [](TreeBench& b) {
         const Vshift& made = *b.crew->ShiftList().Find("Dusk");
         return Line(b.SeenTemplate().substr(0, 11), made.BurdenedMultiplier(), made.OvertimeMultiplier(),
                     made.HolidayMultiplier(), made.NormalHours(), b.crew->Dirty());
     },
     "Crew\n Dusk\n|1.1|1.5|none|8|1|"},
    {"ResourceEntryForm",
     "Toolbar.Resource",
     nullptr,
     "DescriptionText",
     "TemplateText=Crew;ResourceIdText=12",
     {{"ResourceIdText=", "ResourceIdText", kNumber, kResourceId},
      {"ResourceIdText=1.5", "ResourceIdText", kNumber, kResourceId},
      {"ResourceIdText=10", "ResourceIdText", "Resource ID In Use", "The Resource ID 10 is already in use."},
      {"ResourceIdText=;DepartmentCombo=", "DepartmentCombo", "Missing Department",
       "The department must be filled in."},
      {"BurdenedRateText=", "BurdenedRateText", kAmount, "The burdened rate must be an amount of money."},
      {"OvertimeRateText=much", "OvertimeRateText", kAmount, "The overtime rate must be an amount of money."},
      {"OffDayRateText=1e99", "OffDayRateText", kAmount, "The off day rate must be an amount of money."},
      {"HolidayRateText=$", "HolidayRateText", kAmount, "The holiday rate must be an amount of money."}},
     "DescriptionText=Crane;DepartmentCombo=yar;ShiftCombo#1;OvertimeRateText=1234.5;WorkDayCheck(7)!",
     [](TreeBench& b) {
         const Vresource& made = *b.crew->FindResource(12);
         return Line(b.NodeOf(b.crew->FindResource(12)).Parent->Text, made.BuildNodeText(),
                     made.Shift()->ShiftName(), made.OvertimeRate().ToDouble(), made.WorkDay(7),
                     b.crew->Dirty());
     },
     "yar|12: Crane|Night|1234.5|1|1|"},
};

/// The plan with a second journal, which is active; there is no task 10 in it, and a resource more.
struct FormsBench : TreeBench {
    FormsBench() {
        MakePlan(workspace, R"(project Delta ""; project Gamma ""; task 1 is Delta)");
        for (Vproject* project : workspace.ProjectList()) project->AddJournal(DateTime(37140));
        crew->AddJournal(DateTime(37140));
        MakePlan(workspace, R"(resource 11 "Dan" in yard)");
        last->SetInclude(false);
        workspace.BroadcastNewJournal();
        Clean();
    }
    void Clean() {
        for (Vproject* project : workspace.ProjectList()) project->SetDirty(false);
        crew->SetDirty(false);
    }
    /// What can be seen, and all of what would be saved.
    std::string Everything() {
        return Line(SeenProject(), SeenTemplate(), SaveRecords(workspace), alpha->Dirty(), beta->Dirty(),
                    crew->Dirty());
    }
};

class FormsTest : public ::testing::TestWithParam<FormCase> {};
INSTANTIATE_TEST_SUITE_P(All, FormsTest, ::testing::ValuesIn(kForms),
                         [](const auto& one) { return std::string(one.param.name); });

TEST_P(FormsTest, MakesAnObjectUponOkAlone) {
    const FormCase& form = GetParam();
    FormsBench bench;
    const auto open = [&] {
        if (form.select) bench.Select(form.select(bench));
        bench.Click(form.button);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&bench.Dialog()));
        EXPECT_EQ(S(bench.Dialog().objectName()), form.name);
        EXPECT_EQ(bench.Focus(), form.focus);

        EXPECT_EQ(
            bench.Dialog().windowFlags() & (Qt::WindowMinMaxButtonsHint | Qt::WindowContextHelpButtonHint),
            0);
        for (const QString& box : QString(form.shown).split(';'))
            EXPECT_EQ(bench.Value(S(box.section('=', 0, 0))), S(box.section('=', 1))) << S(box);
    };
    open();
    const std::string before = bench.Everything();
    bench.Press(Qt::Key_Escape);
    EXPECT_FALSE(bench.IsOpen(form.name));
    for (const Refusal& refusal : form.refusals) {
        SCOPED_TRACE(refusal.steps);
        open();
        bench.Do(refusal.steps);
        bench.ExpectRefused(refusal.title, refusal.text, refusal.focus);
        EXPECT_EQ(bench.Everything(), before);
        bench.Press(Qt::Key_Escape);
        EXPECT_EQ(bench.Everything(), before);
    }
    bench.Solve();
    open();
    bench.Do(form.steps);
    bench.Press(Qt::Key_Return);
    EXPECT_FALSE(bench.IsOpen(form.name));
    EXPECT_EQ(form.made(bench), form.result);
    EXPECT_EQ(bench.desktop.solver.Mode(), SolveMode::Restart);
}

TEST(Forms, OkChangesNothingThatWasNotTyped) {
    const std::tuple<PlanObject (*)(TreeBench&), const char*, const char*> cases[] = {
        {[](TreeBench& b) { return PlanObject(b.alpha); }, "ProjectEntryForm", "SolveRulesCombo"},
        {[](TreeBench& b) { return PlanObject(b.link); }, "SubprojectEntryForm", "TaskIdText"},
        {[](TreeBench& b) { return PlanObject(b.build); }, "TaskEntryForm", "DescriptionText"},
        {[](TreeBench& b) { return PlanObject(b.needsDig); }, "DependencyEntryForm", "TaskRequiredCombo"},
        {[](TreeBench& b) { return PlanObject(b.annBuilds); }, "AssignmentEntryForm", "HoursText"},
        {[](TreeBench& b) { return PlanObject(b.crew); }, "TemplateEntryForm", "TemplateNameText"},
        {[](TreeBench& b) { return PlanObject(b.crew->ShiftList()[1]); }, "ShiftEntryForm", "ShiftNameText"},
        {[](TreeBench& b) { return PlanObject(b.ann); }, "ResourceEntryForm", "DescriptionText"}};
    FormsBench bench;
    bench.build->SetMaterialCost(Money::FromUnits(12345));
    bench.build->SetEfficiency(1.0 / 3);
    bench.needsDig->SetOffset(-1.0 / 7);
    bench.ann->SetBurdenedRate(Money::FromUnits(333333));
    bench.NodeOf(bench.annBuilds);
    for (const auto& [object, form, focus] : cases) {
        for (const Qt::Key end : {Qt::Key_Escape, Qt::Key_Return}) {
            SCOPED_TRACE(form);
            bench.Clean();
            const std::string before = bench.Everything();
            bench.Select(object(bench));
            bench.trees.Commands().Modify();
            EXPECT_EQ(S(bench.Dialog().objectName()), form);
            EXPECT_EQ(bench.Focus(), focus);
            bench.Press(end);
            EXPECT_FALSE(bench.IsOpen(form));
            EXPECT_EQ(bench.alpha->Dirty() || bench.crew->Dirty(), end == Qt::Key_Return);
            bench.Clean();
            EXPECT_EQ(bench.Everything(), before);
        }
    }
}

TEST(Forms, NeedWhatTheObjectIsToBelongTo) {
    TreeBench bench;
    const auto refused = [&](const char* button, const char* title, const char* text) {
        bench.platform.ExpectBox(title, BoxAnswer::Ok, text);
        bench.Click(button);
        EXPECT_TRUE(bench.platform.AllBoxesCame()) << button;
        EXPECT_THROW(bench.Dialog(), std::runtime_error) << button;
    };
    for (const PlanObject& other : {PlanObject(bench.alpha), PlanObject(bench.link), PlanObject(bench.ann)}) {
        bench.Select(other);
        refused("Toolbar.Dependency", "No Task Selected", "Please click on a task first.");
        refused("Toolbar.Assignment", "Task Not Selected",
                "You must click on a task before trying to add a new assignment.");
    }
    Shell empty;
    for (const char* button : {"Toolbar.Task", "Toolbar.Subproject", "Toolbar.Assignment"}) {
        empty.platform.ExpectBox("No Projects in Memory", BoxAnswer::Ok);
        empty.Click(button);
    }
    for (const char* button : {"Toolbar.Shift", "Toolbar.Resource"}) {
        empty.platform.ExpectBox("No Templates in Memory", BoxAnswer::Ok);
        empty.Click(button);
    }
}

TEST(Forms, ChangesReachAsFarAsTheOptionSays) {
    Shell shell;
    Workspace& workspace = MakePlan(
        shell.desktop.workspace, R"(project Master; project Middle; project Leaf; project Side; project Other
        project Master; task 1 is Middle; task 2 is Side; project Middle; task 1 is Leaf)");
    workspace.SetThisProject(workspace.ProjectList().Find("Middle"));
    workspace.BroadcastNewThisProject();
    int rule = static_cast<int>(SolveRule::NormalExtend);
    for (const auto& [option, reached] : {std::pair("ApplyOption(0)", "Middle "),
                                          {"ApplyOption(1)", "Middle Leaf "},
                                          {"ApplyOption(2)", "Master Middle Leaf Side "}}) {
        ++rule;
        for (Vproject* project : workspace.ProjectList()) project->SetDirty(false);
        shell.Choose("ProjectModifyMenu");
        EXPECT_EQ(shell.Focus(), "SolveRulesCombo");
        shell.Find<QComboBox>("SolveRulesCombo").setCurrentIndex(rule);
        shell.Click(option);
        shell.Click("OkCommand");
        std::string changed, dirty;
        for (const Vproject* project : workspace.ProjectList()) {
            if (static_cast<int>(project->SolveRules()) == rule) changed += project->ProjectName() + " ";
            if (project->Dirty()) dirty += project->ProjectName() + " ";
        }
        EXPECT_EQ(changed, reached);
        EXPECT_EQ(dirty, reached);
    }
}

TEST(Forms, ATemplateTakesAnotherName) {
    Shell shell;
    Workspace& workspace = MakePlan(shell.desktop.workspace, "template Crew");
    Vtemplate* crew = workspace.ThisTemplate();
    workspace.BroadcastNewThisTemplate();
    for (const char* name : {"People", "Team"}) {
        shell.Choose("TemplateModifyMenu");
        shell.Do(std::string("TemplateNameText=") + name);
        shell.Press(Qt::Key_Return);
        EXPECT_EQ(crew->TemplateName(), name);
        EXPECT_EQ(shell.main.findChild<QComboBox*>("TemplateCombo")->currentText(), name);
        EXPECT_EQ(shell.NodeOf(crew).Text, name);
    }
}

}  // namespace
}  // namespace vortan

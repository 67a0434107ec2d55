#include "shell/problems/OverageForm.h"

#include <QGroupBox>

#include "charts/ZoomTable.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"
#include "shell/entry/AssignmentEntryForm.h"
#include "shell/entry/ProjectEntryForm.h"
#include "shell/trees/Trees.h"

namespace vortan {
namespace {

constexpr int kTextCharacters = 40;
constexpr int kTableLines = 12, kTableCharacters = 130;  // of the table without scrolling

}  // namespace

void OverageForm::Start(Desktop& desktop, Trees& trees) {
    const SolveProblem problem = *desktop.solver.Problem();
    auto* form = new OverageForm(desktop, trees, problem);
    const QFontMetrics metrics = form->fontMetrics();
    form->table_->Restart(
        desktop, form->objectName(),
        {kTableCharacters * metrics.averageCharWidth(), kTableLines * metrics.height() * 7 / 4},
        [form](Vwindow& table) { form->RedoLayout(table); });
    form->ShowWith(*form->modifyAssignment_);
    form->table_->LetShrink();
}

OverageForm::OverageForm(Desktop& desktop, Trees& trees, const SolveProblem& problem)
    : EntryForm(desktop, "OverageForm", "Over???? detected"),
      trees_(trees),
      assignment_(problem.assignment),
      problemDate_(problem.problemDate),
      modifyAssignment_(new QRadioButton("&Modify the assignment")),
      changeSolveRules_(new QRadioButton("Change &solve rules")),
      table_(new TableView) {
    setWindowTitle(Q(desktop_.solver.SolveMessage()));
    const Vassignment& assignment = *assignment_.Get();
    const Vresource* resource = assignment.ResourceRequired();
    const Vtemplate* owner = resource ? resource->Template() : nullptr;
    AddText("Template", "TemplateText", owner ? owner->BuildNodeText() : "");
    AddText("Resource", "ResourceText", resource ? resource->BuildNodeText() : "");
    AddText("Project", "ProjectText", assignment.Project()->BuildNodeText());
    AddText("Task", "TaskText", assignment.Task()->BuildNodeText());
    AddText("Beginning", "BeginningText", FormatDate(problemDate_));
    AddText("Requested hours", "RequestedHoursText", PlainNumber(problem.requestedHours));
    AddText("Assigned hours", "AssignedHoursText",
            FormatTwoDecimals(static_cast<float>(problem.assignedHours)));
    EndRows();

    auto* frame = new QGroupBox("Corrective action");
    auto* options = new QVBoxLayout(frame);
    modifyAssignment_->setObjectName("ModifyAssignmentOption");
    changeSolveRules_->setObjectName("ChangeSolveRulesOption");
    for (QRadioButton* option : {modifyAssignment_, changeSolveRules_}) {
        options->addWidget(option);
        StopAtChosen(*option);
    }
    modifyAssignment_->setChecked(true);
    Body().addWidget(frame);
    Body().addWidget(table_, 1);
}

void OverageForm::AddText(const QString& label, const QString& name, const std::string& value) {
    auto* box = new TextField(name, kTextCharacters);
    box->SetValue(value);
    box->setCursorPosition(0);
    box->setReadOnly(true);
    box->setFocusPolicy(Qt::ClickFocus);
    AddRow(label, box);
    SetLive(*box, false);
}

/// The whole day, of the resource that is short.
void OverageForm::RedoLayout(Vwindow& window) {
    StartZoomVwindow(window, false);
    if (const Vassignment* assignment = assignment_.Get(); assignment && assignment->ResourceRequired())
        FillInZoomVwindow(window, false, desktop_.solver, *assignment->ResourceRequired(), problemDate_);
    window.EndLayout(0, 0);
}

/// The form goes first, so that the one it leads to is not its own.
bool OverageForm::Finish() {
    const bool modify = modifyAssignment_->isChecked();
    Unload();
    Vassignment* assignment = assignment_.Get();
    if (!assignment || !assignment->Project()) return true;
    if (modify) {
        DoModify(*assignment);
    } else {
        DoAuthorize(*assignment);
    }
    return true;
}

void OverageForm::DoModify(Vassignment& assignment) {
    trees_.ShowInProjectTree(&assignment, *assignment.Project());
    AssignmentEntryForm::StartModify(desktop_, assignment);
}

void OverageForm::DoAuthorize(Vassignment& assignment) {
    trees_.SetDragNode(nullptr);
    ProjectEntryForm::StartModify(desktop_, *assignment.Project());
}

}  // namespace vortan

#include "shell/entry/TaskEntryForm.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <algorithm>
#include <utility>

#include "model/Characters.h"
#include "model/Conventions.h"
#include "model/Fault.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "paint/Text.h"

namespace vortan {
namespace {

/// A specific date of a task is a dependency on that date, without an offset.
bool IsSpecificDate(const Vdependency& dependency) {
    return dependency.Include() && !dependency.TaskRequired() && !dependency.TaskRequiredDeleted() &&
           dependency.Offset() == 0;
}
constexpr int kStartPercent = 0, kFinishPercent = 100;
constexpr int kDateWidth = 24;  // characters of a date with its time

}  // namespace

double TaskEntryForm::DefaultEfficiency(Desktop& desktop) {
    return TypedEfficiency(desktop.settings.ThePreferences().efficiency).value.value_or(0);
}

void TaskEntryForm::SetDefaultEfficiency(Desktop& desktop, Vtask& task) {
    if (const double efficiency = DefaultEfficiency(desktop); efficiency > 0) task.SetEfficiency(efficiency);
}

void TaskEntryForm::StartAdd(Desktop& desktop, Vproject& owner) {
    auto* task = desktop.workspace.NewVObject<Vtask>();
    SetDefaultEfficiency(desktop, *task);
    auto* form = new TaskEntryForm(desktop, *task, owner, true);
    form->taskId_->SetValue(std::to_string(std::int64_t{owner.HighestTaskID()} + 1));
    form->ShowWith(*form->description_);
}

void TaskEntryForm::StartModify(Desktop& desktop, Vtask& object) {
    auto* form = new TaskEntryForm(desktop, object, *object.Project(), false);
    form->ShowWith(*form->description_);
}

TaskEntryForm::TaskEntryForm(Desktop& desktop, Vtask& object, Vproject& owner, bool adding)
    : ObjectForm(desktop, "TaskEntryForm", "Task Data Entry", object, adding), owner_(&owner) {
    taskId_ = new TextField("TaskIdText", 10);
    description_ = new TextField("DescriptionText", 50);
    materialCost_ = new CurrencyField("MaterialCostText", CurrencySymbol());
    efficiency_ = new TextField("EfficiencyText", 10);
    AddRow("Task &ID", taskId_);
    AddRow("&Description", description_);
    AddRow("Fi&xed cost", materialCost_);
    AddRow("Efficienc&y", efficiency_);
    if (object.SolveRank() != 0) {
        auto* rank = new QLabel(QString::number(object.SolveRank()));
        rank->setObjectName("SolveRankLabel");
        rank->setToolTip("The place of the task in the order that Shorten has found");
        AddRow("Rank", rank);
    }
    for (TextField* field : {taskId_, efficiency_, static_cast<TextField*>(materialCost_)}) {
        field->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        field->setAlignment(Qt::AlignRight);
    }
    EndRows();
    Body().addWidget(BuildDurationFrame());

    const Vproject* project = object.Project();
    const bool manyRows = project && project->CurrentIndex() != project->PlanIndex();
    estimates_ = new EstimateGrid(FormatShortDate(desktop.workspace.ThisProject()->Journal()), manyRows);
    pages_ = new QStackedWidget;
    pages_->addWidget(estimates_);
    note_ = new QLabel("The dates of the task follow from its dependencies.");
    note_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    note_->setMargin(fontMetrics().height() / 2);
    auto* notePage = new QWidget;
    (new QVBoxLayout(notePage))->addWidget(note_);
    pages_->addWidget(notePage);
    Body().addWidget(BuildDates());
    Body().addWidget(pages_);
    Body().addStretch();

    for (QRadioButton* option : {effortDriven_, calendarTime_, specificDates_, toFinish_}) {
        connect(option, &QRadioButton::toggled, this, [this](bool checked) {
            if (checked) UpdateEnabled();
        });
    }
    LoadData();
}

QWidget* TaskEntryForm::BuildDurationFrame() {
    auto* frame = new QGroupBox("Duration");
    frame->setObjectName("DurationFrame");
    auto* row = new QHBoxLayout(frame);
    const auto option = [row](const char* name, const char* caption) {
        auto* made = new QRadioButton(caption);
        made->setObjectName(name);
        StopAtChosen(*made);
        row->addWidget(made);
        return made;
    };
    effortDriven_ = option("EffortDrivenOption", "&Effort-driven");
    calendarTime_ = option("CalendarTimeOption", "&Calendar time");
    specificDates_ = option("SpecificDatesOption", "&Specific dates");
    toFinish_ = option("ToFinishOption", "&To-finish dependencies");
    row->addStretch();
    return frame;
}

QWidget* TaskEntryForm::BuildDates() {
    auto* dates = new QWidget;
    startDate_ = new DateField("StartDateText", "Specific start date");
    finishDate_ = new DateField("FinishDateText", "Specific finish date");
    startLabel_ = new QLabel("Specific sta&rt date");
    finishLabel_ = new QLabel("Specific &finish date");
    startLabel_->setObjectName("SpecificStartLabel");
    finishLabel_->setObjectName("SpecificFinishLabel");
    startLabel_->setBuddy(&startDate_->Text());
    finishLabel_->setBuddy(&finishDate_->Text());
    startDate_->Text().installEventFilter(this);
    for (DateField* field : {startDate_, finishDate_}) {
        field->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        field->Text().setMinimumWidth(fontMetrics().averageCharWidth() * kDateWidth);
    }
    for (QLabel* label : {startLabel_, finishLabel_}) {
        QSizePolicy policy = label->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        label->setSizePolicy(policy);
    }
    auto* row = new QHBoxLayout(dates);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(startLabel_);
    row->addWidget(startDate_);
    row->addStretch();
    row->addWidget(finishLabel_);
    row->addWidget(finishDate_);
    return dates;
}

/// A double click into the start date means today.
bool TaskEntryForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &startDate_->Text() && event->type() == QEvent::MouseButtonDblClick) {
        startDate_->Text().SetValue(FormatShortDate(desktop_.platform.Now()));
        return true;
    }
    return EntryForm::eventFilter(watched, event);
}

void TaskEntryForm::LoadData() {
    taskId_->SetValue(std::to_string(object_->TaskID()));
    description_->SetValue(object_->Description());
    LoadDates();
    const std::int32_t units = object_->EffortUnits();
    materialCost_->SetValue(Currency(object_->MaterialCost()));
    efficiency_->SetValue(PlainNumber(object_->Efficiency()));
    const DateTime journal = desktop_.workspace.ThisProject()->Journal();
    estimates_->Load({object_->EffortMinutes(DateTime(), AddDays(journal, -1)), object_->Optimistic(),
                      object_->MostLikely(), object_->Pessimistic()},
                     units);
    (units < 0 ? effortDriven_ : units > 0 ? calendarTime_ : specificDates_)->setChecked(true);
}

void TaskEntryForm::LoadDates() {
    for (const Vdependency* dependency : object_->DependencyList()) {
        if (!IsSpecificDate(*dependency)) continue;
        const std::string date = FormatDate(dependency->DepDate());
        if (dependency->ToPercent() == kStartPercent) startDate_->Text().SetValue(date);
        if (dependency->ToPercent() == kFinishPercent) finishDate_->Text().SetValue(date);
    }
}

void TaskEntryForm::UpdateEnabled() {
    const bool dates = specificDates_->isChecked();
    estimates_->SetControl(effortDriven_->isChecked(), HasEstimates());
    pages_->setCurrentIndex(HasEstimates() ? 0 : 1);
    note_->setVisible(toFinish_->isChecked());
    startLabel_->setVisible(dates);
    finishLabel_->setVisible(dates);
    for (DateField* field : {startDate_, finishDate_}) {
        EnableTextBox(field->Text(), dates);
        field->Button().setEnabled(dates);
    }
}

bool TaskEntryForm::VerifyData() {
    if (!object_ || !owner_) AssertionFailed();
    const auto id = ValueOf(*taskId_, TypedTaskId(taskId_->Value(), *owner_.Get(), object_.Get()));
    if (!id) return false;
    const auto cost = ReadMoney(*materialCost_, "fixed cost", object_->MaterialCost());
    if (!cost) return false;
    const auto efficiency = ValueOf(*efficiency_, TypedEfficiency(efficiency_->Value()));
    if (!efficiency) return false;
    if (HasEstimates()) {
        if (const auto refusal = estimates_->VerifyData()) {
            return Complain(*refusal->field, refusal->text, refusal->title);
        }
    }
    entries_ = {*id, *cost, *efficiency, ParseDate(startDate_->Text().Value()),
                ParseDate(finishDate_->Text().Value())};
    return !specificDates_->isChecked() || VerifyDates();
}

/// One of the two dates can be left blank.
bool TaskEntryForm::VerifyDates() {
    const auto blank = [](DateField* field) { return Trim(field->Text().Value()).empty(); };
    const bool mustStart = !blank(startDate_) || blank(finishDate_);
    if (mustStart && !(entries_.startDate = ReadDate(startDate_->Text()))) return false;
    return blank(finishDate_) || (entries_.finishDate = ReadDate(finishDate_->Text()));
}

bool TaskEntryForm::SaveData() {
    const bool moved = object_->TaskID() != entries_.taskID;
    const Estimates& estimates = estimates_->Values();
    const auto totals = HasEstimates() ? estimates.Totals() : Estimates::Minutes();
    object_->SetTaskID(entries_.taskID);
    object_->SetDescription(description_->Value());
    object_->SetOptimistic(totals.optimistic);
    object_->SetMostLikely(totals.mostLikely);
    object_->SetPessimistic(totals.pessimistic);
    object_->SetMaterialCost(entries_.materialCost);
    object_->SetEfficiency(entries_.efficiency);
    const std::int32_t unit = estimates.GetUnits();
    object_->SetEffortUnits(effortDriven_->isChecked() ? -unit : calendarTime_->isChecked() ? unit : 0);
    SaveDates();
    return moved;
}

/// The first dependency on a start or finish takes the new date, others that say the same go.
void TaskEntryForm::SaveDates() {
    auto start = entries_.startDate, finish = entries_.finishDate;
    const auto all = object_->DependencyList();  // a copy: some may leave the list
    for (Vdependency* dependency : all) {
        const int percent = dependency->ToPercent();
        if (!IsSpecificDate(*dependency) || (percent != kStartPercent && percent != kFinishPercent)) continue;
        if (const auto date = std::exchange(percent == kStartPercent ? start : finish, std::nullopt)) {
            dependency->SetDepDate(*date);
        } else {
            dependency->Delete();
        }
    }
    const auto add = [this](const std::optional<DateTime>& date, std::uint8_t percent) {
        if (!date) return;
        auto* dependency = desktop_.workspace.NewVObject<Vdependency>();
        dependency->SetTask(object_.Get());
        dependency->SetDepDate(*date);
        dependency->SetToPercent(percent);
    };
    add(start, kStartPercent);
    add(finish, kFinishPercent);
}

}  // namespace vortan

#include "shell/entry/AssignmentEntryForm.h"

#include <QCompleter>
#include <QLineEdit>
#include <QSignalBlocker>
#include <cmath>

#include "model/Characters.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"

namespace vortan {

void AssignmentEntryForm::StartAdd(Desktop& desktop, Vtask& task) {
    auto* form = new AssignmentEntryForm(desktop, *desktop.workspace.NewVObject<Vassignment>(), task, true);
    form->ShowWith(*form->resource_);
}

void AssignmentEntryForm::StartModify(Desktop& desktop, Vassignment& object) {
    auto* form = new AssignmentEntryForm(desktop, object, *object.Task(), false);
    form->ShowWith(*form->hours_);
}

AssignmentEntryForm::AssignmentEntryForm(Desktop& desktop, Vassignment& object, Vtask& task, bool adding)
    : ObjectForm(desktop, "AssignmentEntryForm", "Assignment Data Entry", object, adding),
      task_(&task),
      template_(new QComboBox),
      resource_(new QComboBox),
      hours_(new TextField("HoursText", 8)),
      workDays_(new WorkDayChecks) {
    template_->setObjectName("TemplateCombo");
    for (const Vtemplate* one : desktop_.workspace.TemplateList()) {
        template_->addItem(Q(one->BuildNodeText()));
    }
    resource_->setObjectName("ResourceIdCombo");
    // A long list is searched by typing any part of the number or the name.
    resource_->setEditable(true);
    resource_->setInsertPolicy(QComboBox::NoInsert);
    resource_->completer()->setCompletionMode(QCompleter::PopupCompletion);
    resource_->completer()->setFilterMode(Qt::MatchContains);
    for (QComboBox* box : {template_, resource_}) {
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(36);
    }
    hours_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* taskText = new TextField("TaskText", 36);
    taskText->SetValue(task.BuildNodeText());
    taskText->setReadOnly(true);
    taskText->setFocusPolicy(Qt::ClickFocus);
    AddRow("Task", taskText);
    SetLive(*taskText, false);
    AddRow("&Template", template_);
    AddRow("&Resource", resource_);
    AddRow("&Hours a day", hours_);
    AddRow("&Work days", workDays_);
    LoadData();
    connect(template_, &QComboBox::activated, this,
            Command("AssignmentEntry:TemplateCombo_Click", [this] { TemplateComboClick(); }));
    const auto choose = Command("AssignmentEntry:ResourceIdCombo_Click", [this] { ResourceIdComboClick(); });
    connect(resource_, &QComboBox::activated, this, choose);
    connect(resource_->lineEdit(), &QLineEdit::editingFinished, this, choose);
}

void AssignmentEntryForm::LoadData() {
    Vresource* resource = object_->ResourceRequired();
    const Vtemplate* shown = resource ? resource->Template() : desktop_.workspace.ThisTemplate();
    template_->setCurrentIndex(shown ? template_->findText(Q(shown->BuildNodeText())) : -1);
    TemplateComboClick();
    if (resource) resource_->setCurrentText(Q(resource->BuildNodeText()));
    chosen_ = resource;
    hours_->SetValue(PlainNumber(object_->Hours()));
    for (int day = 0; day < kDayKinds; ++day) workDays_->SetValue(day, object_->WorkDay(day));
}

void AssignmentEntryForm::BuildResourceList() {
    const QSignalBlocker silent(*resource_);
    resource_->clear();
    const Vtemplate* active = desktop_.workspace.ThisTemplate();
    if (!active) return;
    for (const Vresource* resource : active->ResourceList()) {
        if (resource->Include()) resource_->addItem(Q(resource->BuildNodeText()));
    }
    resource_->setCurrentIndex(-1);
    resource_->clearEditText();
}

void AssignmentEntryForm::TemplateComboClick() {
    Workspace& workspace = desktop_.workspace;
    Vtemplate* chosen = workspace.TemplateList().Find(S(template_->currentText()));
    if (chosen && chosen != workspace.ThisTemplate()) {
        workspace.SetThisTemplate(chosen);
        workspace.BroadcastNewThisTemplate();
    }
    BuildResourceList();
}

/// The resource that the text of the box names: by its number, by its whole text, or by a part that no other
/// one has.
Vresource* AssignmentEntryForm::FindResource() const {
    const Vtemplate* active = desktop_.workspace.ThisTemplate();
    const std::string text(Trim(S(resource_->currentText())));
    if (!active || text.empty()) return nullptr;
    std::string_view rest = text;
    Vresource* byNumber = active->FindResource(TakeDigits(rest, 9));
    const bool offered = byNumber && (byNumber->Include() || byNumber == object_->ResourceRequired());
    if (offered && (rest.empty() || text == byNumber->BuildNodeText())) return byNumber;

    const int only = resource_->findText(Q(text), Qt::MatchContains);
    if (only < 0) return nullptr;
    int matches = 0;
    for (int i = 0; i < resource_->count() && matches < 2; ++i) {
        if (resource_->itemText(i).contains(Q(text), Qt::CaseInsensitive)) ++matches;
    }
    if (matches != 1) return nullptr;
    const std::string found = S(resource_->itemText(only));
    std::string_view number = found;
    return active->FindResource(TakeDigits(number, 9));
}

/// Shows the resource in full, and with it the working time that is usual for it. To confirm the resource
/// that is shown already leaves alone what was typed.
void AssignmentEntryForm::ResourceIdComboClick() {
    Vresource* resource = FindResource();
    if (!resource) return;
    resource_->setCurrentText(Q(resource->BuildNodeText()));
    if (resource == chosen_.Get()) return;
    chosen_ = resource;
    if (!resource->Include()) return;
    hours_->SetValue(PlainNumber(std::round(static_cast<double>(resource->NormalHours()) * 10) / 10));
    for (int day = 0; day < kDayKinds; ++day) workDays_->SetValue(day, resource->WorkDay(day));
}

bool AssignmentEntryForm::VerifyData() {
    // Where a click on Ok does not take the focus away, what was typed is not settled yet.
    if (resource_->hasFocus()) ResourceIdComboClick();
    resourceRead_ = FindResource();
    if (!resourceRead_) {
        return Complain(*resource_, "Please choose a resource from the list.", "Missing Resource");
    }
    const auto hours = ValueOf(*hours_, TypedNumber(hours_->Value(), "hours a day"));
    hoursRead_ = hours.value_or(0);
    return hours.has_value();
}

bool AssignmentEntryForm::SaveData() {
    object_->SetResourceRequired(resourceRead_);
    // Behind the resource, which brings hours and days of its own.
    object_->SetHours(hoursRead_);
    for (int day = 0; day < kDayKinds; ++day) object_->SetWorkDay(day, workDays_->Value(day));
    return false;
}

}  // namespace vortan

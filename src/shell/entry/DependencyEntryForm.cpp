#include "shell/entry/DependencyEntryForm.h"

#include <QLineEdit>
#include <algorithm>
#include <cmath>

#include "model/Characters.h"
#include "model/Conventions.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "paint/Text.h"

namespace vortan {
namespace {

constexpr int kStart = 0, kFinish = 100;  // percent
constexpr char kPointLetters[] = "SPF";   // by the index of the option

int PointOfLetter(char letter) {
    return letter == 'S' ? 0 : letter == 'P' ? 1 : 2;
}

/// The caption as the sentence has it, without the mark of its key.
std::string CaptionOf(const QButtonGroup& group) {
    return S(group.checkedButton()->text().remove('&'));
}

/// As SetLive, for a list that is drawn like a button.
void SetLiveList(QComboBox& list, bool live) {
    SetLive(list, live);
    QPalette palette = list.palette();
    const QPalette usual = list.parentWidget()->palette();
    palette.setBrush(QPalette::ButtonText, live ? usual.buttonText() : usual.placeholderText());
    list.setPalette(palette);
}

}  // namespace

void DependencyEntryForm::StartAdd(Desktop& desktop, Vtask& task) {
    auto* dependency = desktop.workspace.NewVObject<Vdependency>();
    dependency->SetDepDate(desktop.workspace.ThisProject()->Journal());
    auto* form = new DependencyEntryForm(desktop, *dependency, task, true);
    form->ShowWith(form->date_->Text());
}

void DependencyEntryForm::StartModify(Desktop& desktop, Vdependency& object) {
    auto* form = new DependencyEntryForm(desktop, object, *object.Task(), false);
    form->ShowWith(object.TaskRequired() ? static_cast<QWidget&>(*form->requiredTask_) : form->date_->Text());
}

DependencyEntryForm::DependencyEntryForm(Desktop& desktop, Vdependency& object, Vtask& task, bool adding)
    : ObjectForm(desktop, "DependencyEntryForm", "Dependency Entry", object, adding),
      task_(&task),
      subject_(task.BuildNodeText()) {
    BuildSentence();
    Body().addWidget(BuildToFrame());
    Body().addWidget(BuildOffsetFrame());
    Body().addWidget(BuildPrerequisiteFrame());
    Body().addWidget(BuildQuickFrame());
    LoadData();

    for (const Point* point : {&to_, &from_}) {
        connect(point->options, &QButtonGroup::idToggled, this, [this, point](int index, bool checked) {
            if (checked && !updating_) PointOptionClick(*point, index);
        });
        connect(point->scroll, &QSlider::valueChanged, this, [this] { UpdateScreen(); });
    }
    connect(offsetOptions_, &QButtonGroup::idToggled, this, [this](int index, bool checked) {
        if (checked) OffsetOptionClick(index);
    });
    connect(quickOptions_, &QButtonGroup::idToggled, this, [this](int index, bool checked) {
        if (checked && !updating_) QuickOptionClick(index);
    });
    connect(offset_, &QLineEdit::textChanged, this, [this] { UpdateSentence(); });
    connect(dateOption_, &QRadioButton::toggled, this, [this] { UpdateScreen(); });
    connect(&date_->Text(), &QLineEdit::textChanged, this, [this] { UpdateScreen(); });
    connect(project_, &QComboBox::currentIndexChanged, this, [this] { ProjectRequiredComboClick(); });
    connect(requiredTask_, &QComboBox::editTextChanged, this, [this] { UpdateScreen(); });
}

void DependencyEntryForm::LoadData() {
    const Vtask* required = object_->TaskRequired();
    const Vproject* shown = required ? required->Project() : task_->Project();
    QStringList texts;
    for (Vproject* project : desktop_.workspace.ProjectList()) {
        projects_.emplace_back(project);
        texts += Q(project->BuildNodeText());
    }
    project_->addItems(texts);
    const auto at = std::find_if(projects_.begin(), projects_.end(),
                                 [&](const Link<Vproject>& project) { return project.Get() == shown; });
    project_->setCurrentIndex(at == projects_.end() ? -1 : static_cast<int>(at - projects_.begin()));
    ProjectRequiredComboClick();
    if (required) {
        taskOption_->setChecked(true);
        const QString text = Q(required->BuildNodeText());
        requiredTask_->setCurrentIndex(
            requiredTask_->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
        requiredTask_->setEditText(text);
    } else {
        dateOption_->setChecked(true);
        date_->Text().SetValue(FormatDate(object_->DepDate()));
    }
    to_.scroll->setValue(object_->ToPercent());
    from_.scroll->setValue(object_->FromPercent());
    const double offset = object_->Offset();
    if (offset != 0) offset_->SetValue(FormatDuration(std::abs(offset), true));
    offsetOptions_->button(offset < 0 ? 1 : offset > 0 ? 2 : 0)->setChecked(true);
    UpdateScreen();
}

/// Offers the tasks of the chosen project.
void DependencyEntryForm::ProjectRequiredComboClick() {
    const int index = project_->currentIndex();
    const Vproject* project = index < 0 ? nullptr : projects_[static_cast<std::size_t>(index)].Get();
    QStringList texts;
    if (project) {
        for (const Vtask* task : project->TaskList()) {
            if (task->Include()) texts += Q(task->BuildNodeText());
        }
    }
    requiredTask_->clear();
    requiredTask_->addItems(texts);
    requiredTask_->setCurrentIndex(-1);
    requiredTask_->clearEditText();
}

void DependencyEntryForm::PointOptionClick(const Point& point, int index) {
    const int value = point.scroll->value();
    if (index != 1) {
        point.scroll->setValue(index == 0 ? kStart : kFinish);
    } else if (value == kStart || value == kFinish) {
        point.scroll->setValue((kStart + kFinish) / 2);
    }
}

void DependencyEntryForm::QuickOptionClick(int index) {
    const std::string letters = S(quickOptions_->button(index)->text());
    const char prerequisite = letters.front(), task = letters.back();
    if (prerequisite == 'D') {
        dateOption_->setChecked(true);
    } else {
        taskOption_->setChecked(true);
        from_.options->button(PointOfLetter(prerequisite))->setChecked(true);
    }
    to_.options->button(PointOfLetter(task))->setChecked(true);
    UpdateScreen();
}

void DependencyEntryForm::OffsetOptionClick(int index) {
    if (index == 0) {
        offset_->clear();
    } else if (offset_->text().isEmpty()) {
        offset_->setText("0 days");
    }
    UpdateScreen();
}

void DependencyEntryForm::UpdatePoint(const Point& point, const std::string& before,
                                      const std::string& behind) {
    const int value = point.scroll->value();
    const std::string percent = std::to_string(value) + "%";
    point.percent->setValue(value);
    point.options->button(1)->setText(Q(before + percent + behind));
    point.options->button(value == kStart ? 0 : value == kFinish ? 2 : 1)->setChecked(true);
}

/// Brings everything into line with the scroll bars and the two choices.
void DependencyEntryForm::UpdateScreen() {
    if (updating_) return;
    updating_ = true;
    const bool date = dateOption_->isChecked();
    SetLive(*offset_, offsetOptions_->checkedId() != 0);
    SetLive(date_->Text(), date);
    SetLive(*requiredTask_, !date);
    SetLiveList(*project_, !date);
    UpdatePoint(to_, "&proceed beyond ", "");
    UpdatePoint(from_, "&is ", " complete");
    from_.whole->setVisible(!date);
    UpdateSentence();
    const char code[] = {date ? 'D' : kPointLetters[from_.options->checkedId()],
                         kPointLetters[to_.options->checkedId()], '\0'};
    for (QAbstractButton* button : quickOptions_->buttons()) {
        if (button->text() == code) button->setChecked(true);
    }
    updating_ = false;
}

void DependencyEntryForm::UpdateSentence() {
    std::string text = subject_ + " cannot " + CaptionOf(*to_.options) + " until ";
    if (offsetOptions_->checkedId() != 0) text += offset_->Value() + " " + CaptionOf(*offsetOptions_) + " ";
    text += "prerequisite ";
    if (dateOption_->isChecked()) {
        text += "date " + date_->Text().Value();
    } else {
        text += "task " + S(requiredTask_->currentText()) + " " + CaptionOf(*from_.options);
    }
    text += ".";
    if (S(sentence_->toPlainText()) != text) sentence_->setPlainText(Q(text));
}

/// The task whose number stands in front of the text; none, with the user told, if there is no such task. One
/// that this journal does not have can be kept.
Vtask* DependencyEntryForm::ReadTask() {
    const QString text = requiredTask_->currentText();
    const int index = project_->currentIndex();
    const Vproject* project = index < 0 ? nullptr : projects_[static_cast<std::size_t>(index)].Get();
    Vtask* const task = project ? project->FindTask(ScanInt32(S(text))) : nullptr;
    if (!task) {
        Complain(*requiredTask_, "Please choose the prerequisite task from the list.", "Invalid Task");
        return nullptr;
    }
    if (task == task_.Get()) {
        Complain(*requiredTask_, "A task cannot depend on itself.", "Invalid Task");
        return nullptr;
    }
    return task;
}

std::optional<double> DependencyEntryForm::ReadOffset() {
    const int option = offsetOptions_->checkedId();
    if (option == 0) return 0;
    // A text that was not touched stands for the exact offset.
    const double stored = object_->Offset();
    if (stored != 0 && option == (stored < 0 ? 1 : 2) &&
        offset_->Value() == FormatDuration(std::abs(stored), true)) {
        return stored;
    }
    const auto days = ValueOf(*offset_, TypedOffset(offset_->Value()));
    if (!days) return std::nullopt;
    return option == 1 ? 0 - *days : *days;
}

bool DependencyEntryForm::VerifyData() {
    entries_ = {};
    const auto offset = ReadOffset();
    if (!offset) return false;
    entries_.offset = *offset;
    if (!dateOption_->isChecked()) return (entries_.required = ReadTask()) != nullptr;
    const auto date = ReadDate(date_->Text());
    if (date) entries_.date = *date;
    return date.has_value();
}

bool DependencyEntryForm::SaveData() {
    if (!entries_.required) object_->SetDepDate(entries_.date);
    object_->SetTaskRequired(entries_.required);
    object_->SetToPercent(static_cast<std::uint8_t>(to_.scroll->value()));
    object_->SetFromPercent(static_cast<std::uint8_t>(from_.scroll->value()));
    object_->SetOffset(entries_.offset);
    return false;
}

}  // namespace vortan

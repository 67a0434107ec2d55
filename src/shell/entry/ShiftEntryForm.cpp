#include "shell/entry/ShiftEntryForm.h"

#include <QLabel>
#include <utility>

#include "model/Characters.h"
#include "model/Conventions.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"

namespace vortan {
namespace {

constexpr std::pair<char, const char*> kGroups[] = {
    {'N', "&N = Normal"}, {'O', "&O = Overtime"}, {'B', "&B = Break"}, {'X', "&X = Overload"}};

constexpr int kFewestLetters = 10;  // of the name that can be seen

/// The digits of a float, not those of the nearest double.
std::string FloatText(float value) {
    return PlainNumber(ScanNumber(FormatNumber(value)));
}

/// The colour is what the button says; it stays when the button is shut off.
void SetColour(QPushButton& button, const QColor& colour) {
    QPalette palette = button.palette();
    palette.setColor(QPalette::Button, colour);
    palette.setColor(QPalette::ButtonText, Qt::black);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0, 0, 0, 170));
    button.setPalette(palette);
}

}  // namespace

void ShiftEntryForm::StartAdd(Desktop& desktop, Vtemplate& owner) {
    auto* form = new ShiftEntryForm(desktop, *desktop.workspace.NewVObject<Vshift>(), owner, true);
    form->ShowWith(*form->name_);
}

void ShiftEntryForm::StartModify(Desktop& desktop, Vshift& object) {
    auto* form = new ShiftEntryForm(desktop, object, *object.Template(), false);
    form->ShowWith(*form->name_);
}

ShiftEntryForm::ShiftEntryForm(Desktop& desktop, Vshift& object, Vtemplate& owner, bool adding)
    : ObjectForm(desktop, "ShiftEntryForm", "Shift Entry", object, adding), owner_(&owner) {
    // Beside each other: the grid alone is as high as a small screen.
    auto* halves = new QHBoxLayout;
    halves->addWidget(BuildFields());
    halves->addSpacing(fontMetrics().height());
    halves->addWidget(BuildDay(), 1);
    Body().addLayout(halves);
    LoadData();
    grid_->SelectionChanged = [this] { ShowSelection(); };
}

QWidget* ShiftEntryForm::BuildFields() {
    auto* fields = new QWidget;
    auto* column = new QVBoxLayout(fields);
    column->setContentsMargins(0, 0, 0, 0);
    auto* rows = new QFormLayout;
    const auto add = [&](const char* name, const char* caption, int characters) {
        auto* field = new TextField(name, characters);
        rows->addRow(caption, field);
        return field;
    };
    name_ = add("ShiftNameText", "&Shift name", 18);
    burdened_ = add("BurdenedMultiplierText", "B&urdened multiplier", 8);
    overtime_ = add("OvertimeMultiplierText", "O&vertime multiplier", 8);
    offDay_ = add("OffDayMultiplierText", "O&ff day multiplier", 8);
    holiday_ = add("HolidayMultiplierText", "&Holiday multiplier", 8);
    name_->setMinimumWidth(TextField({}, kFewestLetters).sizeHint().width());
    column->addLayout(rows);
    column->addStretch();
    selection_ = new QLabel("\n");
    selection_->setObjectName("SelectionLabel");
    column->addWidget(selection_);
    return fields;
}

QWidget* ShiftEntryForm::BuildDay() {
    auto* day = new QWidget;
    auto* column = new QVBoxLayout(day);
    column->setContentsMargins(0, 0, 0, 0);
    grid_ = new ShiftGrid;
    grid_->setAccessibleName("Kind of time in each five minutes of the day");
    column->addWidget(grid_, 1);
    auto* row = new QHBoxLayout;
    for (std::size_t i = 0; i < groupCommands_.size(); ++i) {
        const auto& [letter, caption] = kGroups[i];
        auto* button = new QPushButton(caption);
        button->setObjectName(QString("GroupCommand(%1)").arg(i));
        button->setFocusPolicy(Qt::TabFocus);
        button->setEnabled(false);
        SetColour(*button, ShiftGrid::LetterColour(letter));
        connect(button, &QPushButton::clicked, this, Command("ShiftEntry:GroupCommand_Click", [this, i] {
                    grid_->setFocus(Qt::OtherFocusReason);
                    grid_->ReplaceSelectedCells(kGroups[i].first);
                }));
        row->addWidget(button);
        groupCommands_[i] = button;
    }
    column->addLayout(row);
    return day;
}

void ShiftEntryForm::LoadData() {
    name_->SetValue(object_->ShiftName());
    burdened_->SetValue(FloatText(object_->BurdenedMultiplier()));
    overtime_->SetValue(FloatText(object_->OvertimeMultiplier()));
    offDay_->SetValue(FloatText(object_->OffDayMultiplier()));
    holiday_->SetValue(LocalNumber(object_->HolidayMultiplier()));
    for (int cell = 0; cell < ShiftGrid::kCells; ++cell) grid_->SetLetter(cell, object_->Period(cell));
}

bool ShiftEntryForm::VerifyData() {
    values_.name = Trim(name_->Value());
    if (values_.name.empty()) return Complain(*name_, "Name cannot be blank", "Missing Name");
    const Vshift* other = owner_->ShiftList().Find(values_.name);
    if (other && other != object_.Get()) {
        return Complain(*name_, "The Shift name \"" + values_.name + "\" is already in use.",
                        "Shift Name In Use");
    }
    const auto read = [&](TextField& field, const char* what, float& value) {
        const auto number = ValueOf(field, TypedNumber(field.Value(), what));
        if (number) value = ScanFloat(PlainTyped(field.Value()));
        return number.has_value();
    };
    return read(*burdened_, "burdened multiplier", values_.burdened) &&
           read(*overtime_, "overtime multiplier", values_.overtime) &&
           read(*offDay_, "off day multiplier", values_.offDay);
}

bool ShiftEntryForm::SaveData() {
    object_->SetShiftName(values_.name);
    object_->SetBurdenedMultiplier(values_.burdened);
    object_->SetOvertimeMultiplier(values_.overtime);
    object_->SetOffDayMultiplier(values_.offDay);
    object_->SetHolidayMultiplier(PlainTyped(holiday_->Value()));
    for (int hour = 0; hour < Vshift::kHours; ++hour) object_->SetMatrix(hour, grid_->Row(hour));
    return true;
}

/// The buttons and the look of Cancel follow the selection.
void ShiftEntryForm::ShowSelection() {
    const bool open = grid_->Selecting();
    selection_->setText(open ? "Selected:\n" + Q(grid_->SelectionText()) : QString("\n"));
    grid_->setAccessibleDescription(Q(grid_->SelectionText()));
    if (OkCommand().isEnabled() != open) return;
    OkCommand().setEnabled(!open);
    for (QPushButton* button : groupCommands_) button->setEnabled(open);
    QPalette look;
    if (open) {
        look.setColor(QPalette::Button, palette().color(QPalette::Highlight));
        look.setColor(QPalette::ButtonText, palette().color(QPalette::HighlightedText));
    }
    CancelCommand().setPalette(look);
    CancelCommand().setToolTip(open ? "Drop the selection" : "");
}

void ShiftEntryForm::CancelCommandClick() {
    if (!grid_->Selecting()) return Unload();
    grid_->ReplaceSelectedCells('\0');
}

}  // namespace vortan

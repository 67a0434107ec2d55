#include "shell/main/PreferencesForm.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>

#include "model/NumberText.h"
#include "paint/Text.h"

namespace vortan {
namespace {

/// The last word of a control's name: "Check", "Combo", "Option" or "Text" for a control with a setting.
QString GetControlType(const QString& name) {
    qsizetype at = name.size() - 1;
    while (at > 0 && name[at] > 'Z') --at;
    return name.mid(std::max<qsizetype>(at, 0));
}

QGroupBox* NewFrame(const char* name, const char* caption) {
    auto* frame = new QGroupBox(caption);
    frame->setObjectName(name);
    return frame;
}

template <class Control>
Control* NewButton(const char* name, const char* caption) {
    auto* control = new Control(caption);
    control->setObjectName(name);
    return control;
}

void AddCombo(QFormLayout& rows, const char* name, const char* caption, const QStringList& items) {
    auto* combo = new QComboBox;
    combo->setObjectName(name);
    combo->addItems(items);
    rows.addRow(caption, combo);
}

/// The kinds of dates that a chart can show for a dependency, and so on: the texts are stored as they stand.
QWidget* NewGanttFrame() {
    auto* frame = NewFrame("GanttFrame", "Mechanized GANTT options");
    auto* rows = new QFormLayout(frame);
    AddCombo(*rows, "DependencyArrowsCombo", "&Dependency arrows", {"None", "Control", "All"});
    AddCombo(*rows, "DateDependencyCombo", "Date de&pendency",
             {"Line to top of chart", "Short arrow pointing up", "Triangle pointing right", "Do not show"});
    rows->addRow(NewButton<QCheckBox>("SortByDateCheck", "&Sort by start date"));
    rows->addRow(NewButton<QCheckBox>("ListAllDepsCheck", "&List all dependencies"));
    AddCombo(*rows, "SubprojectDisplayCombo", "S&ubproject display",
             {"One level only", "All subprojects", "Tasks only (flatten)"});
    rows->addRow(NewButton<QCheckBox>("ListTaskLeaderCheck", "List &task leader"));
    rows->addRow(NewButton<QCheckBox>("ShowMarkersCheck", "L&atest time markers"));
    auto* shape = new QHBoxLayout;
    shape->addWidget(NewButton<QRadioButton>("MilestoneOption", "&Milestone"));
    shape->addWidget(NewButton<QRadioButton>("BarOption", "&Bar"));
    shape->addStretch();
    auto* label = new QLabel("Show tasks as");
    rows->addRow(label, shape);
    rows->addRow(NewButton<QCheckBox>("CriticalPathRedCheck", "&Critical path in red"));
    return frame;
}

}  // namespace

void PreferencesForm::Start(Desktop& desktop) {
    auto* form = new PreferencesForm(desktop);
    form->ShowWith(*form->findChild<QComboBox*>("AutomaticBackupCombo"));
}

PreferencesForm::PreferencesForm(Desktop& desktop) : EntryForm(desktop, "PreferencesForm", "Preferences") {
    auto* frame = NewFrame("MiscellaneousFrame", "Micellaneous");
    auto* rows = new QFormLayout(frame);
    AddCombo(*rows, "AutomaticBackupCombo", "Automatic bac&kup in minutes",
             {"off", "1", "2", "3", "5", "10", "20", "30"});
    rows->addRow("Schedule compression default &efficiency", new TextField("EfficiencyText", 8));
    rows->addRow(
        NewButton<QCheckBox>("ShowProjectManagerCheck", "Show project mana&ger on top line of printouts"));
    rows->addRow(NewButton<QCheckBox>(
        "AdjustColorsCheck",
        "Adjust colors for black and white &when copying to the clipboard and printing"));
    rows->addRow(NewButton<QCheckBox>("WrapTextCheck", "Wrap text and make &rows larger if needed"));
    Body().addWidget(frame);
    Body().addWidget(NewGanttFrame());
    LoadSettings();
}

void PreferencesForm::LoadSettings() {
    for (QWidget* control : findChildren<QWidget*>()) {
        const QString type = GetControlType(control->objectName());
        if (type != "Check" && type != "Option" && type != "Combo" && type != "Text") continue;
        const QString value = Q(desktop_.settings.ReadSettings(S(control->objectName())));
        if (auto* button = dynamic_cast<QAbstractButton*>(control)) {
            // Of an option pair only the chosen one is set: the other follows.
            if (value == "X" || (value == "-" && type == "Check")) button->setChecked(value == "X");
        } else if (auto* combo = dynamic_cast<QComboBox*>(control)) {
            if (value.isEmpty()) continue;
            // What was written by hand or by another version is kept.
            if (combo->findText(value, Qt::MatchFixedString | Qt::MatchCaseSensitive) < 0)
                combo->addItem(value);
            combo->setCurrentText(value);
        } else if (auto* text = dynamic_cast<QLineEdit*>(control)) {
            if (!value.isEmpty()) text->setText(value);
        }
    }
}

bool PreferencesForm::Finish() {
    for (QWidget* control : findChildren<QWidget*>()) {
        const QString type = GetControlType(control->objectName());
        if (type != "Check" && type != "Option" && type != "Combo" && type != "Text") continue;
        std::string value;
        if (const auto* button = dynamic_cast<QAbstractButton*>(control)) {
            value = button->isChecked() ? "X" : "-";
        } else if (const auto* combo = dynamic_cast<QComboBox*>(control)) {
            value = S(combo->currentText());
        } else if (const auto* text = dynamic_cast<QLineEdit*>(control)) {
            value = S(text->text());
        }
        desktop_.settings.WriteSettings(S(control->objectName()), value);
    }
    desktop_.workspace.BackupMinutes = ScanInt32(desktop_.settings.ReadSettings("AutomaticBackupCombo"));
    desktop_.workspace.BroadcastNewSolution();
    return true;
}

}  // namespace vortan

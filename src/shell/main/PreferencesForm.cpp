#include "shell/main/PreferencesForm.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>

#include "paint/Text.h"

namespace vortan {
namespace {

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

template <class Choice>
void AddChoice(QFormLayout& rows, const char* name, const char* caption) {
    QStringList items;
    for (const char* text : ChoiceTexts(Choice())) items << text;
    AddCombo(rows, name, caption, items);
}

QWidget* NewGanttFrame() {
    auto* frame = NewFrame("GanttFrame", "Mechanized GANTT options");
    auto* rows = new QFormLayout(frame);
    AddChoice<Arrows>(*rows, "DependencyArrowsCombo", "&Dependency arrows");
    AddChoice<DateDeps>(*rows, "DateDependencyCombo", "Date de&pendency");
    rows->addRow(NewButton<QCheckBox>("SortByDateCheck", "&Sort by start date"));
    rows->addRow(NewButton<QCheckBox>("ListAllDepsCheck", "&List all dependencies"));
    AddChoice<Subprojects>(*rows, "SubprojectDisplayCombo", "S&ubproject display");
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

// A preference in its control: what is on or off by its value, all else by its text in the settings, so that
// what was written by hand or by another version is kept.
void Show(QWidget& control, const QString& text) {
    if (text.isEmpty()) return;
    if (auto* combo = dynamic_cast<QComboBox*>(&control)) {
        if (combo->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive) < 0) combo->addItem(text);
        combo->setCurrentText(text);
    } else {
        dynamic_cast<QLineEdit&>(control).setText(text);
    }
}
QString ShownIn(const QWidget& control) {
    if (const auto* button = dynamic_cast<const QAbstractButton*>(&control)) {
        return button->isChecked() ? "X" : "-";
    }
    const auto* combo = dynamic_cast<const QComboBox*>(&control);
    return combo ? combo->currentText() : dynamic_cast<const QLineEdit&>(control).text();
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
    Preferences::ForEach(desktop_.settings.ThePreferences(), [this](const char* name, const auto& value) {
        auto* control = findChild<QWidget*>(name);
        if constexpr (std::is_same_v<decltype(value), const bool&>) {
            dynamic_cast<QAbstractButton&>(*control).setChecked(value);
        } else {
            Show(*control, Q(desktop_.settings.ReadSettings(name)));
        }
    });
}

bool PreferencesForm::Finish() {
    Preferences::ForEach(Preferences(), [this](const char* name, const auto&) {
        desktop_.settings.WriteSettings(name, S(ShownIn(*findChild<QWidget*>(name))));
    });
    desktop_.workspace.BackupMinutes = desktop_.settings.ThePreferences().backupMinutes;
    desktop_.workspace.BroadcastNewSolution();
    return true;
}

}  // namespace vortan

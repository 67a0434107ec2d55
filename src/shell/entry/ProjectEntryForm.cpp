#include "shell/entry/ProjectEntryForm.h"

#include <QGroupBox>
#include <QLabel>

#include "model/Characters.h"
#include "model/ValueText.h"
#include "model/Vresource.h"

namespace vortan {
namespace {

enum AppliesTo { kThisOnly, kSubprojects, kMaster };

}  // namespace

void ProjectEntryForm::StartAdd(Desktop& desktop) {
    auto* form = new ProjectEntryForm(desktop, *desktop.workspace.NewVObject<Vproject>(), true);
    form->ShowWith(*form->name_);
}

void ProjectEntryForm::StartModify(Desktop& desktop, Vproject& object) {
    auto* form = new ProjectEntryForm(desktop, object, false);
    form->ShowWith(*form->solveRules_);
}

ProjectEntryForm::ProjectEntryForm(Desktop& desktop, Vproject& object, bool adding)
    : ObjectForm(desktop, "ProjectEntryForm", "Project Data Entry", object, adding),
      name_(new TextField("ProjectNameText", 30)),
      description_(new TextField("DescriptionText", 40)),
      manager_(new TextField("ManagerText", 40)),
      priority_(new TextField("PriorityText", 5)),
      viewPassword_(new TextField("ViewPasswordText")),
      modifyPassword_(new TextField("ModifyPasswordText")),
      initialJournal_(new DateField("InitialJournalText", "Initial journal")),
      solveRules_(new QComboBox),
      applyFrame_(new QWidget) {
    solveRules_->setObjectName("SolveRulesCombo");
    for (int rule = 0; rule < kSolveRules; ++rule) solveRules_->addItem(SolveRuleText(SolveRule{rule}));
    applyFrame_->setObjectName("ApplyFrame");
    manager_->setReadOnly(true);
    manager_->setFocusPolicy(Qt::ClickFocus);
    manager_->setPlaceholderText("Drop a resource on the project to make it the manager");
    viewPassword_->setEchoMode(QLineEdit::Password);
    modifyPassword_->setEchoMode(QLineEdit::Password);
    LayOut();
    LoadData();
}

void ProjectEntryForm::LayOut() {
    AddRow("Project &name", name_);
    AddRow("&Description", description_);
    AddRow("Manager", manager_);
    if (adding_) {
        AddRow("&Initial journal", initialJournal_);
    } else {
        initialJournal_->setParent(this);
        initialJournal_->hide();
    }

    auto* section = new QGroupBox;
    auto* inner = new QVBoxLayout(section);
    auto* rows = new QFormLayout;
    rows->addRow("&Solve rules", solveRules_);
    auto* priority = new QHBoxLayout;
    priority->addWidget(priority_);
    priority->addWidget(new QLabel("Use 1 for the highest priority\nUse larger numbers for lower priority"),
                        1);
    rows->addRow("&Priority", priority);
    static_cast<QLabel*>(rows->labelForField(priority))->setBuddy(priority_);
    rows->addRow("&View password", viewPassword_);
    rows->addRow("&Modify password", modifyPassword_);
    rows->addRow("", NewRemark("Passwords are stored with the project and protect nothing."));
    inner->addLayout(rows);

    auto* apply = new QVBoxLayout(applyFrame_);
    apply->setContentsMargins(0, fontMetrics().height() / 2, 0, 0);
    apply->addWidget(new QLabel("Apply changes in this section to:"));
    const auto add = [&](AppliesTo whom, const char* caption) {
        auto* option = new QRadioButton(caption);
        option->setObjectName(QString("ApplyOption(%1)").arg(static_cast<int>(whom)));
        apply->addWidget(option);
        apply_[whom] = option;
    };
    add(kThisOnly, "&this project only");
    add(kSubprojects, "include su&bprojects");
    add(kMaster, "&all projects in this master");
    apply_[kThisOnly]->setChecked(true);
    inner->addWidget(applyFrame_);
    applyFrame_->setVisible(!adding_);
    Body().addWidget(section);
}

void ProjectEntryForm::LoadData() {
    name_->SetValue(object_->ProjectName());
    description_->SetValue(object_->Description());
    if (const Vresource* manager = object_->Manager()) manager_->SetValue(manager->BuildNodeText());
    solveRules_->setCurrentIndex(static_cast<int>(object_->SolveRules()));
    priority_->SetValue(object_->Priority());
    viewPassword_->SetValue(object_->ViewPassword());
    modifyPassword_->SetValue(object_->ModifyPassword());
    const Vproject* active = desktop_.workspace.ThisProject();
    initialJournal_->Text().SetValue(
        FormatDate(active ? active->Journal() : DateTime(desktop_.platform.Now().WholeDay())));
}

/// Whether the settings of the section reach a project.
bool ProjectEntryForm::Chosen(const Vproject& project) const {
    if (&project == object_.Get()) return true;
    if (apply_[kThisOnly]->isChecked()) return false;
    if (apply_[kMaster]->isChecked()) return project.DescendsFrom(object_->Master());
    return project.DescendsFrom(object_.Get());
}

bool ProjectEntryForm::VerifyData() {
    if (Trim(name_->Value()).empty()) {
        return Complain(*name_, "The Project name must be filled in.", "Project Name Is Blank");
    }
    if (adding_) {
        const auto journal = ReadDate(initialJournal_->Text());
        if (!journal) return false;
        journalRead_ = DateTime(journal->WholeDay());
    }
    const auto priority = ValueOf(*priority_, TypedWhole(priority_->Value(), "priority", 0, 255));
    priorityRead_ = priority.value_or(0);
    return priority.has_value();
}

bool ProjectEntryForm::SaveData() {
    if (name_->Value() != object_->ProjectName()) object_->SetProjectName(name_->Value());
    object_->SetDescription(description_->Value());
    for (Vproject* project : desktop_.workspace.ProjectList()) {
        if (!Chosen(*project)) continue;
        project->SetPriority(std::to_string(priorityRead_));
        project->SetViewPassword(viewPassword_->Value());
        project->SetModifyPassword(modifyPassword_->Value());
        project->SetSolveRules(SolveRule{solveRules_->currentIndex()});
        project->SetDirty(true);
    }
    return false;
}

void ProjectEntryForm::Announce(Desktop::Saving what) {
    Workspace& workspace = desktop_.workspace;
    if (what == Desktop::Saving::Added) {
        object_->AddJournal(journalRead_);
        workspace.SetThisProject(object_.Get());
    }
    workspace.BroadcastNewThisProject();
}

}  // namespace vortan

#include "shell/main/SelectorBoxes.h"

#include <QSignalBlocker>
#include <QWheelEvent>

#include "model/JournalCommands.h"
#include "model/Vproject.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"

namespace vortan {
namespace {

/// The wheel passing over a box does not change what is active.
class SelectorBox : public QComboBox {
  protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

QComboBox* NewBox(const char* name, const char* toolTip) {
    auto* box = new SelectorBox;
    box->setObjectName(name);
    box->setToolTip(toolTip);
    box->setAccessibleName(toolTip);
    // The panel decides the width, whatever the names are.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(8);
    box->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return box;
}

}  // namespace

SelectorBoxes::SelectorBoxes(Desktop& desktop)
    : desktop_(desktop),
      project_(NewBox("ProjectCombo", "active project")),
      template_(NewBox("TemplateCombo", "active template")),
      journal_(NewBox("JournalCombo", "active journal")) {
    // What a journal is stands at the end of its text, and must not be cut off.
    journal_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    journal_->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    QObject::connect(project_, &QComboBox::textActivated, project_, [this](const QString& text) {
        desktop_.Run("Main:ProjectCombo_Click", [&] { ProjectComboClick(S(text)); });
    });
    QObject::connect(template_, &QComboBox::textActivated, template_, [this](const QString& text) {
        desktop_.Run("Main:TemplateCombo_Click", [&] { TemplateComboClick(S(text)); });
    });
    QObject::connect(journal_, &QComboBox::textActivated, journal_, [this](const QString& text) {
        const bool done =
            desktop_.Run("Main:JournalCombo_Click", [&] { SelectJournal(desktop_.workspace, S(text)); });
        if (!done) UpdateJournalCombo();
    });
}

void SelectorBoxes::UpdateProjectCombo() {
    const Vproject* active = desktop_.workspace.ThisProject();
    if (!active) return Apply(*project_, {"<no projects>"}, "<no projects>", false);
    QStringList names;
    for (const Vproject* project : desktop_.workspace.ProjectList()) {
        if (!project->Parent()) names << Q(project->ProjectName());
    }
    if (active->Parent()) names << Q(active->ProjectName());
    Apply(*project_, names, Q(active->ProjectName()), true);
}

void SelectorBoxes::UpdateTemplateCombo() {
    QStringList names;
    for (const Vtemplate* one : desktop_.workspace.TemplateList()) names << Q(one->TemplateName());
    if (const Vtemplate* active = desktop_.workspace.ThisTemplate()) {
        Apply(*template_, names, Q(active->TemplateName()), true);
    } else {
        Apply(*template_, names << "<no templates>", "<no templates>", false);
    }
}

void SelectorBoxes::UpdateJournalCombo() {
    const auto show = [&](const auto& owner) {
        QStringList texts;
        for (int i = 0; i < owner.NumJournals(); ++i) texts << Q(owner.JournalNodeText(i));
        Apply(*journal_, texts, Q(owner.JournalNodeText(owner.CurrentIndex())), true);
    };
    if (const Vproject* project = desktop_.workspace.ThisProject()) {
        show(*project);
    } else if (const Vtemplate* active = desktop_.workspace.ThisTemplate()) {
        show(*active);
    } else {
        Apply(*journal_, {"<journal n/a>"}, "<journal n/a>", false);
    }
    journal_->setToolTip("active journal\n" + journal_->currentText());
}

void SelectorBoxes::Lock(bool locked) {
    locked_ = locked;
    UpdateProjectCombo();
    UpdateTemplateCombo();
    UpdateJournalCombo();
}

void SelectorBoxes::Apply(QComboBox& box, const QStringList& items, const QString& shown, bool enabled) {
    const QSignalBlocker silent(box);
    box.clear();
    box.addItems(items);
    box.setCurrentText(shown);
    box.setEnabled(enabled && !locked_);
}

void SelectorBoxes::ProjectComboClick(const std::string& name) {
    Workspace& workspace = desktop_.workspace;
    const Vproject* active = workspace.ThisProject();
    Vproject* chosen = workspace.ProjectList().Find(name);
    if (!chosen || chosen == active) return;
    workspace.SetThisProject(chosen);
    workspace.BroadcastNewThisProject();
}

void SelectorBoxes::TemplateComboClick(const std::string& name) {
    Workspace& workspace = desktop_.workspace;
    Vtemplate* chosen = workspace.TemplateList().Find(name);
    if (!chosen || chosen == workspace.ThisTemplate()) return;
    workspace.SetThisTemplate(chosen);
    ShowTemplate();
}

}  // namespace vortan

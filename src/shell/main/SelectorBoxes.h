#pragma once

#include <QComboBox>
#include <functional>

#include "shell/desk/Desktop.h"

namespace vortan {

/// The three boxes of the status bar that choose the active project, template and journal.
class SelectorBoxes {
  public:
    /// The boxes belong to the layout that takes them.
    explicit SelectorBoxes(Desktop& desktop);

    QComboBox& ProjectCombo() { return *project_; }
    QComboBox& TemplateCombo() { return *template_; }
    QComboBox& JournalCombo() { return *journal_; }

    void UpdateProjectCombo();
    void UpdateTemplateCombo();
    void UpdateJournalCombo();
    /// While an entry form is open nothing can be chosen.
    void Lock(bool locked);

    /// Shows the template that has been chosen. Set by the main window.
    std::function<void()> ShowTemplate;

  private:
    void ProjectComboClick(const std::string& name);
    void TemplateComboClick(const std::string& name);
    void Apply(QComboBox& box, const QStringList& items, const QString& shown, bool enabled);

    Desktop& desktop_;
    QComboBox *project_, *template_, *journal_;
    bool locked_ = false;
};

}  // namespace vortan

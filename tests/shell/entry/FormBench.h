#pragma once

#include "model/ValueText.h"
#include "shell/Shell.h"
#include "support/TextPlan.h"

namespace vortan {

/// The forms of a template "Plant", which has the resource "7: Miller" of "Assembly", and of a project
/// "Bridge" without tasks. Its journals are 9/3/2001 and 9/6/2001; the first is the plan and active.
class FormBench : public ::testing::Test, protected Shell {
  protected:
    FormBench() {
        Activate(0);
        UseTemplate(workspace.ThisTemplate());
    }
    /// Makes a journal of the project active, with nothing to be saved.
    void Activate(int journal) {
        project->SetCurrentIndex(journal);
        workspace.BroadcastNewThisProject();
        project->SetDirty(false);
    }
    void UseTemplate(Vtemplate* one) {
        workspace.SetThisTemplate(one);
        workspace.BroadcastNewThisTemplate();
        one->SetDirty(false);
    }
    Vtask* Task(int id, const std::string& description, const std::string& more = "") {
        MakePlan(workspace, "task " + std::to_string(id) + " \"" + description + "\" " + more);
        workspace.BroadcastNewThisProject();
        return project->FindTask(id);
    }
    template <class Form>
    void Add() {
        Form::StartAdd(desktop, *workspace.ThisTemplate());
        WaitForForm();
    }
    template <class Form, class T>
    void Modify(T* object) {
        Select(object);
        Form::StartModify(desktop, *object);
        WaitForForm();
    }
    /// Boxes notice that the focus leaves them in the active window alone.
    void WaitForForm() { EXPECT_TRUE(QTest::qWaitForWindowActive(&Dialog())); }
    void Ok() { Press(Qt::Key_Return); }
    void Cancel() { Press(Qt::Key_Escape); }
    QComboBox& Combo(const char* name) { return Find<QComboBox>(name); }
    std::string Chosen(const char* combo) { return S(Combo(combo).currentText()); }
    std::string Values(const std::vector<const char*>& boxes) {
        std::string all;
        for (const char* box : boxes) all += (box == boxes.front() ? "" : " ") + Value(box);
        return all;
    }
    bool Enabled(const char* button) { return Find<QPushButton>(button).isEnabled(); }
    bool Checked(const char* option) { return Find<QAbstractButton>(option).isChecked(); }
    bool Visible(const char* control) { return Find<QWidget>(control).isVisible(); }

    Workspace& workspace = MakePlan(desktop.workspace, R"(journals 9/3/2001 9/6/2001
        template Plant; resource 7 "Miller" in Assembly; project Bridge "")");
    Vtemplate* plant = workspace.ThisTemplate();
    Vproject* project = workspace.ThisProject();
    Vresource* miller = plant->FindResource(7);
};

}  // namespace vortan

#pragma once

#include "model/ValueText.h"
#include "shell/Shell.h"

namespace vortan {

/// A project with two journals, 9/3/2001 and 9/6/2001, of which the first is the plan and active.
class TaskFormTest : public ::testing::Test {
  protected:
    TaskFormTest() {
        project = workspace.FindOrCreateProject("Bridge");
        project->SetDescription("");
        for (const char* date : {"9/3/2001", "9/6/2001"}) project->AddJournal(*ParseDate(date));
        Activate(0);
    }
    void Activate(int journal) {
        project->SetCurrentIndex(journal);
        workspace.SetThisProject(project);
        workspace.BroadcastNewThisProject();
        project->SetDirty(false);
    }
    Vtask* Task(int id, const char* description, Vproject* owner = nullptr) {
        auto* task = workspace.NewVObject<Vtask>();
        task->SetProject(owner ? owner : project);
        task->SetTaskID(id);
        task->SetDescription(description);
        workspace.BroadcastNewThisProject();
        return task;
    }
    void Select(PlanObject object) { shell.Select(object); }
    std::string Value(const char* field) { return shell.Value(field); }
    bool Checked(const char* option) { return shell.Find<QAbstractButton>(option).isChecked(); }
    bool Visible(const char* control) { return shell.Find<QWidget>(control).isVisible(); }
    bool Open() { return shell.IsOpen("TaskEntryForm") || shell.IsOpen("DependencyEntryForm"); }
    void Ok() { shell.Press(Qt::Key_Return); }
    void Cancel() { shell.Press(Qt::Key_Escape); }
    void ExpectRefused(const char* title, const char* text, const char* field) {
        shell.ExpectRefused(title, text, field);
        ASSERT_TRUE(Open());
        EXPECT_FALSE(project->Dirty());
    }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
    Vproject* project;
};

}  // namespace vortan

#pragma once

#include "shell/Shell.h"

namespace vortan {

/// The forms of a template "Plant" that has the shift "Standard" and the resource "7: Miller" of "Assembly".
class FormBench : public ::testing::Test {
  protected:
    FormBench() {
        miller->SetDescription("Miller");
        miller->SetDepartment("Assembly");
        UseTemplate(plant);
        plant->SetDirty(false);
    }
    Vtemplate* AddTemplate(const char* name) {
        Vtemplate* made = workspace.FindOrCreateTemplate(name);
        made->AddJournal(shell.platform.now);
        made->FindOrCreateShift("Standard");
        return made;
    }
    void UseTemplate(Vtemplate* one) {
        workspace.SetThisTemplate(one);
        workspace.BroadcastNewThisTemplate();
    }
    template <class T>
    Node& NodeOf(T* object) {
        return shell.NodeOf(object);
    }
    template <class Form>
    void Add() {
        Form::StartAdd(shell.desktop, *workspace.ThisTemplate());
        WaitForForm();
    }
    template <class Form, class T>
    void Modify(T* object) {
        shell.Select(object);
        Form::StartModify(shell.desktop, *object);
        WaitForForm();
    }
    /// Boxes notice that the focus leaves them in the active window alone.
    void WaitForForm() { EXPECT_TRUE(QTest::qWaitForWindowActive(&shell.Dialog())); }

    QComboBox& Combo(const char* name) { return shell.Find<QComboBox>(name); }
    std::string Value(const std::string& box) { return shell.Value(box); }
    std::string Values(const std::vector<const char*>& boxes) {
        std::string all;
        for (const char* box : boxes) all += (box == boxes.front() ? "" : " ") + Value(box);
        return all;
    }
    bool Enabled(const char* button) { return shell.Find<QPushButton>(button).isEnabled(); }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
    Vtemplate* plant = AddTemplate("Plant");
    Vresource* miller = plant->FindOrCreateResource(7);
};

}  // namespace vortan

#pragma once

#include "model/Vresource.h"
#include "model/Vtemplate.h"
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
        return shell.main.TheTrees().FindNodeFromObject(object);
    }
    template <class Form>
    void Add() {
        Form::StartAdd(shell.desktop, *workspace.ThisTemplate());
        WaitForForm();
    }
    template <class Form, class T>
    void Modify(T* object) {
        shell.main.TheTrees().SetDragNode(&NodeOf(object));
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

    struct Refused {
        const char *field, *text, *title, *fragment;
    };
    /// Ok is refused with a box, and the focus goes to where the fault is. Leaves the field as it was.
    void ExpectRefused(const Refused& one) {
        SCOPED_TRACE(std::string(one.field) + " " + one.text);
        auto* combo = qobject_cast<QComboBox*>(&shell.Find<QWidget>(one.field));
        const QString before = combo ? combo->currentText() : Q(Value(one.field));
        shell.Type(one.field, one.text);
        shell.ExpectRefused(one.title, one.fragment, one.field);
        shell.Type(one.field, before.toUtf8());
    }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
    Vtemplate* plant = AddTemplate("Plant");
    Vresource* miller = plant->FindOrCreateResource(7);
};

}  // namespace vortan

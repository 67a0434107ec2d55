#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QRegularExpression>
#include <QTest>
#include <string>

#include "paint/Text.h"
#include "shell/desk/Desktop.h"
#include "shell/main/MainForm.h"
#include "shell/trees/Trees.h"
#include "support/ScriptedPlatform.h"

namespace vortan {

/// A main window on a scripted platform: boxes are expected, not shown.
class Shell {
  public:
    Shell() {
        main.resize(1280, 800);
        main.show();
    }

    /// The control of that name, in the last form that was opened if it is there; fails if there is none.
    template <class T>
    T& Find(const char* name) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        T* found = nullptr;
        for (auto* dialog : main.findChildren<QDialog*>()) {
            T* here = dialog->isVisible() ? dialog->findChild<T*>(name) : nullptr;
            if (here) found = here;
        }
        if (!found) found = main.findChild<T*>(name);
        if (!found) throw std::runtime_error(std::string("There is no ") + name);
        return *found;
    }
    template <class T>
    T& Find(const std::string& name) {
        return Find<T>(name.c_str());
    }
    bool IsOpen(const char* form) { return main.findChild<QWidget*>(form) != nullptr; }

    /// Near the left end, where a check box has its box.
    void Click(const char* button) {
        auto& found = Find<QAbstractButton>(button);
        QTest::mouseClick(&found, Qt::LeftButton, {}, {found.height() / 2, found.height() / 2});
    }
    /// As a user types: the box takes the focus, which selects all of it, and gets the keys.
    void Type(const char* box, const char* text) {
        auto& field = Find<QWidget>(box);
        field.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&field, Qt::Key_Delete);
        QTest::keyClicks(&field, text);
    }
    /// Steps with semicolons between: "Button!" is clicked, "Box=text" typed, of "List#2" the third chosen.
    void Do(const std::string& steps) {
        for (const QString& step : Q(steps).split(';', Qt::SkipEmptyParts)) {
            const auto name = step.section(QRegularExpression("[!=#]"), 0, 0).toUtf8();
            const QString rest = step.mid(name.size() + 1);
            if (step[name.size()] == '!') Click(name);
            if (step[name.size()] == '=') Type(name, rest.toUtf8());
            if (step[name.size()] == '#') Find<QComboBox>(name.constData()).setCurrentIndex(rest.toInt());
        }
    }
    /// The entry form that is open, and the box in it that has the focus.
    QDialog& Dialog() {
        QDialog* found = nullptr;
        for (auto* dialog : main.findChildren<QDialog*>()) found = dialog->isVisible() ? dialog : found;
        if (!found) throw std::runtime_error("There is no entry form");
        return *found;
    }
    std::string Focus() { return S(Dialog().focusWidget()->objectName()); }
    void Press(Qt::Key key) { QTest::keyClick(Dialog().focusWidget(), key); }
    std::string Value(const std::string& box) { return S(Find<QLineEdit>(box).text()); }
    /// Ok is refused with a box, and the focus goes to where the fault is, with all of its text selected.
    void ExpectRefused(const char* title, const char* text, const char* field) {
        platform.ExpectBox(title, BoxAnswer::Ok);
        Click("OkCommand");
        EXPECT_TRUE(platform.AllBoxesCame()) << title;
        EXPECT_EQ(platform.boxTexts.back(), text);
        EXPECT_EQ(Focus(), field);
        QWidget* focus = Dialog().focusWidget();
        auto* combo = qobject_cast<QComboBox*>(focus);
        auto* line = combo ? combo->lineEdit() : qobject_cast<QLineEdit*>(focus);
        EXPECT_TRUE(!line || line->selectedText() == line->text()) << field;
    }
    /// Choosing from a menu.
    void Choose(const char* action) { main.Action(action).trigger(); }
    void Solve() {
        if (platform.solveTimerArmed) desktop.solver.SolveTimerTick();
    }

    ScriptedPlatform platform;
    Desktop desktop{platform};
    MainForm main{desktop};
};

}  // namespace vortan

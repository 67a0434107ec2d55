#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <string>

#include "paint/Text.h"
#include "shell/desk/Desktop.h"
#include "shell/main/MainForm.h"
#include "shell/trees/DragDrop.h"
#include "shell/trees/NodeCommands.h"
#include "shell/trees/NodeView.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/TemplateTreeForm.h"
#include "shell/trees/Trees.h"
#include "support/CheckModel.h"
#include "support/Paths.h"
#include "support/ScriptedPlatform.h"

namespace vortan {

/// What `open` gives, which opens a modal box; `answer` acts on the box once it is all there.
template <class Open>
auto InBox(Open&& open, const std::function<void(QWidget&)>& answer) {
    bool came = false;
    int ticks = 0;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        QWidget* box = QApplication::activeModalWidget();
        if (!box || came || !box->isVisible() || ++ticks < 4) return;
        came = true;
        answer(*box);
    });
    look.start(0);
    struct Check {
        const bool& came;
        ~Check() { EXPECT_TRUE(came) << "no box came"; }
    } const check{came};
    return open();
}

/// A user at the keyboard and the mouse of a main window.
class Driver {
  public:
    virtual ~Driver() = default;
    virtual MainForm& Window() = 0;

    /// The control of that name, in the last form that was opened if it is there; fails if there is none.
    template <class T>
    T& Find(const char* name) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        T* found = nullptr;
        for (auto* dialog : Window().findChildren<QDialog*>()) {
            T* here = dialog->isVisible() ? dialog->findChild<T*>(name) : nullptr;
            if (here) found = here;
        }
        if (!found) found = Window().findChild<T*>(name);
        if (!found) throw std::runtime_error(std::string("There is no ") + name);
        return *found;
    }
    template <class T>
    T& Find(const std::string& name) {
        return Find<T>(name.c_str());
    }
    bool IsOpen(const char* form) { return Window().findChild<QWidget*>(form) != nullptr; }

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
        for (auto* dialog : Window().findChildren<QDialog*>()) found = dialog->isVisible() ? dialog : found;
        if (!found) throw std::runtime_error("There is no entry form");
        return *found;
    }
    std::string Focus() { return S(Dialog().focusWidget()->objectName()); }
    void Press(Qt::Key key) { QTest::keyClick(Dialog().focusWidget(), key); }
    std::string Value(const std::string& box) { return S(Find<QLineEdit>(box).text()); }
    /// Choosing from a menu.
    void Choose(const char* action) { Window().Action(action).trigger(); }

    Trees& TheTrees() { return Window().TheTrees(); }
    std::array<TreeForm*, 2> Forms() { return {&TheTrees().ProjectTree(), &TheTrees().TemplateTree()}; }

    Node& NodeOf(PlanObject object) { return TheTrees().FindNodeFromObject(object); }
    NodeView& ViewOf(const Node& node) {
        return node.Tree == &TheTrees().ProjectTree().Tree() ? TheTrees().ProjectTree().View()
                                                             : TheTrees().TemplateTree().View();
    }
    QRect RectOf(const Node& node) { return ViewOf(node).visualRect(node.Tree->IndexOf(&node)); }
    /// A point on the node's line, in its viewport, where it is in sight then.
    QPoint PointOf(const Node& node) {
        ViewOf(node).scrollTo(node.Tree->IndexOf(&node));
        return RectOf(node).topLeft() + QPoint(30, RectOf(node).height() / 2);
    }

    void Click(const Node& node) {
        QTest::mouseClick(ViewOf(node).viewport(), Qt::LeftButton, {}, PointOf(node));
    }
    void DoubleClick(const Node& node) {
        Click(node);
        QTest::mouseDClick(ViewOf(node).viewport(), Qt::LeftButton, {}, PointOf(node));
    }
    void Key(const TreeForm& form, Qt::Key key) {
        QTest::keyClick(const_cast<TreeForm&>(form).View().viewport(), key);
    }

    /// One mouse event of a drag, as the widget gets it in which the button went down.
    void Mouse(QEvent::Type type, NodeView& source, const QPoint& global, Qt::MouseButtons held) {
        QMouseEvent event(type, source.viewport()->mapFromGlobal(global), global,
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, held, {});
        QApplication::sendEvent(source.viewport(), &event);
    }
    void BeginDrag(const Node& node) {
        const QPoint at = Global(node);
        Mouse(QEvent::MouseButtonPress, ViewOf(node), at, Qt::LeftButton);
        Mouse(QEvent::MouseMove, ViewOf(node), at + QPoint(1, 0), Qt::LeftButton);
        Mouse(QEvent::MouseMove, ViewOf(node), at + QPoint(QApplication::startDragDistance(), 0),
              Qt::LeftButton);
    }
    void Drag(const Node& from, const Node& onto) {
        NodeView& source = ViewOf(from);
        const QPoint at = Global(onto);
        BeginDrag(from);
        Mouse(QEvent::MouseMove, source, at, Qt::LeftButton);
        Mouse(QEvent::MouseButtonRelease, source, at, Qt::NoButton);
    }
    QPoint Global(const Node& node) { return ViewOf(node).viewport()->mapToGlobal(PointOf(node)); }

    /// The texts of the lines that are marked in both trees.
    std::string Marked() {
        std::string all;
        for (TreeForm* form : Forms()) {
            for (const QModelIndex& index : form->View().selectionModel()->selectedIndexes())
                all += NodeTree::NodeOf(index)->Text + ";";
        }
        return all;
    }
    void Select(PlanObject object) { TheTrees().SetDragNode(&NodeOf(object)); }
};

/// A main window on a scripted platform: boxes are expected, not shown.
class Shell : public Driver {
  public:
    Shell() {
        main.resize(1280, 800);
        main.show();
    }
    MainForm& Window() override { return main; }

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
    /// Opens a copy of an example: an opened plan is locked, and tests that run beside this one open it too.
    void OpenExample(const std::string& name) {
        const std::string copy = platform.Directory() + "/" + name;
        std::filesystem::copy_file(ExampleFile(name), copy);
        desktop.files.OpenFile(copy);
    }
    void Solve() {
        if (platform.solveTimerArmed) desktop.SolveTimerTick();
    }

    ScriptedPlatform platform;
    Desktop desktop{platform};
    MainForm main{desktop};
};

}  // namespace vortan

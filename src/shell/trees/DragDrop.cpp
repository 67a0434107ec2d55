#include "shell/trees/DragDrop.h"

#include <QApplication>
#include <QCursor>
#include <algorithm>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "paint/Text.h"
#include "shell/trees/NodeView.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/TemplateTreeForm.h"
#include "shell/trees/Trees.h"

namespace vortan {
namespace {

constexpr int kScrollPeriod = 50;  // milliseconds for a line

}  // namespace

DragDrop::DragDrop(Desktop& desktop, Trees& trees)
    : desktop_(desktop), trees_(trees), scrollTimer_(&trees.ProjectTree()) {
    scrollTimer_.setObjectName("ScrollTreeTimer");
    scrollTimer_.setInterval(kScrollPeriod);
    QObject::connect(&scrollTimer_, &QTimer::timeout, &scrollTimer_,
                     [this] { desktop_.Run("Main:ScrollTreeTimer_Timer", [this] { ScrollTick(); }); });
}

DragDrop::~DragDrop() {
    if (dragging_) QApplication::restoreOverrideCursor();
}

// ---- the mouse

void DragDrop::Down(NodeView& view, const QPoint& point, const QPoint& global, Qt::MouseButton button) {
    Cancel();
    trees_.SetDragNode(view.NodeAt(point));
    pressed_ = button == Qt::LeftButton && trees_.DragNode();
    pressedAt_ = global;
}

void DragDrop::Move(const QPoint& global, Qt::MouseButtons buttons) {
    scrollTag_.clear();
    scrollTimer_.stop();
    if (!buttons.testFlag(Qt::LeftButton) || !trees_.DragNode()) return Cancel();
    if (!dragging_) {
        if (!pressed_ || (global - pressedAt_).manhattanLength() < QApplication::startDragDistance()) return;
        dragging_ = true;
        over_ = nullptr;
        pointer_.reset();
        QApplication::setOverrideCursor(Qt::ForbiddenCursor);
    }
    TreeForm* form = FormAt(global);
    if (form && form != over_) form->setFocus();
    over_ = form;
    if (form) {
        Over(*form, global);
    } else {
        trees_.SetDropNode(nullptr);
        ShowPointer(false);
    }
}

void DragDrop::Over(TreeForm& form, const QPoint& global) {
    const QPoint point = form.View().viewport()->mapFromGlobal(global);
    Node* node = form.View().NodeAt(point);
    trees_.SetDropNode(node);
    ShowPointer(node != trees_.DragNode());
    trees_.ShowDropNode();
    TestScroll(form, point.y());
}

void DragDrop::Up(const QPoint& global, Qt::MouseButton button) {
    scrollTag_.clear();
    scrollTimer_.stop();
    if (button != Qt::LeftButton) return;
    if (!dragging_) {
        pressed_ = false;
        return;
    }
    TreeForm* form = FormAt(global);
    trees_.SetDropNode(form ? form->View().NodeAt(form->View().viewport()->mapFromGlobal(global)) : nullptr);
    if (trees_.DropNode() == trees_.DragNode()) return Cancel();
    End();
    HandleDragDrop();
    trees_.SetDropNode(nullptr);
    trees_.SetDragNode(trees_.DragNode());
}

void DragDrop::Cancel() {
    scrollTag_.clear();
    scrollTimer_.stop();
    pressed_ = false;
    if (!dragging_) return;
    End();
    trees_.SetDropNode(nullptr);
    trees_.SetDragNode(trees_.DragNode());
}

void DragDrop::End() {
    dragging_ = pressed_ = false;
    QApplication::restoreOverrideCursor();
}

TreeForm* DragDrop::FormAt(const QPoint& global) const {
    for (TreeForm* form :
         {static_cast<TreeForm*>(&trees_.ProjectTree()), static_cast<TreeForm*>(&trees_.TemplateTree())}) {
        const QWidget& viewport = *form->View().viewport();
        if (viewport.isVisible() && viewport.rect().contains(viewport.mapFromGlobal(global))) return form;
    }
    return nullptr;
}

void DragDrop::ShowPointer(bool allowed) {
    const NodeKind kind = allowed ? trees_.DragNode()->Image() : NodeKind::None;
    if (kind == pointer_) return;
    pointer_ = kind;
    ProjectTreeForm& form = trees_.ProjectTree();
    const QIcon& icon = form.Tree().Picture(kind);
    QApplication::changeOverrideCursor(
        QCursor(icon.pixmap(form.View().iconSize(), form.View().devicePixelRatio())));
}

// ---- scrolling at the edges

/// A line's height at the top and at the bottom scrolls.
void DragDrop::TestScroll(TreeForm& form, int y) {
    const NodeView& view = form.View();
    const int band = std::max(view.fontMetrics().height(), view.iconSize().height());
    if (y >= 0 && y <= band) {
        scrollTag_ = S(form.objectName().chopped(4)) + "Up";
    } else if (y >= view.viewport()->height() - band) {
        scrollTag_ = S(form.objectName().chopped(4)) + "Down";
    } else {
        return;
    }
    scrollTimer_.start();
}

void DragDrop::ScrollTick() {
    if (scrollTag_ == "ProjectTreeUp") {
        trees_.ProjectTree().View().ScrollLines(-1);
    } else if (scrollTag_ == "ProjectTreeDown") {
        trees_.ProjectTree().View().ScrollLines(1);
    } else if (scrollTag_ == "TemplateTreeUp") {
        trees_.TemplateTree().View().ScrollLines(-1);
    } else if (scrollTag_ == "TemplateTreeDown") {
        trees_.TemplateTree().View().ScrollLines(1);
    } else {
        scrollTimer_.stop();
    }
}

// ---- what a drop does

void DragDrop::HandleDragDrop() {
    if (!trees_.DragNode() || !trees_.DropNode()) return;
    using enum NodeKind;
    const NodeKind dragged = trees_.DragNode()->Image(), target = trees_.DropNode()->Image();
    if (dragged == Resource && (target == Project || target == Subproject)) {
        CopyProjectManager();
    } else if (dragged == Resource && (target == Task || target == Dependency)) {
        AssignResourceToTask();
    } else if ((dragged == Task || dragged == Subproject) && target == Task) {
        CreateTaskDependency();
    } else {
        desktop_.workspace.NotReadyYet();
    }
}

void DragDrop::AssignResourceToTask() {
    if (trees_.DropNode()->Image() == NodeKind::Dependency) trees_.SetDropNode(trees_.DropNode()->Parent);
    Vtask* task = std::get<Vtask*>(trees_.DropObject());
    Vresource* resource = std::get<Vresource*>(trees_.DragObject());
    auto* assignment = desktop_.workspace.NewVObject<Vassignment>();
    assignment->SetTask(task);
    assignment->SetResourceRequired(resource);
    trees_.ProjectTree().RebuildTaskSubTree(*task, true);
}

void DragDrop::CreateTaskDependency() {
    Vtask* task = std::get<Vtask*>(trees_.DropObject());
    Vtask* required = std::get<Vtask*>(trees_.DragObject());
    if (task == required) {
        desktop_.platform.MessageBox("A task cannot depend on itself.", "Dependency Refused",
                                     BoxIcon::Warning, BoxButtons::Ok);
        return;
    }
    auto* dependency = desktop_.workspace.NewVObject<Vdependency>();
    dependency->SetTask(task);
    dependency->SetTaskRequired(required);
    trees_.ProjectTree().RebuildTaskSubTree(*task, true);
}

void DragDrop::CopyProjectManager() {
    Vproject* project = trees_.FindProjectFromNode(*trees_.DropNode());
    const auto textOf = [](const PlanObject& object) {
        if (Vproject* const* master = std::get_if<Vproject*>(&object)) return (*master)->BuildNodeText();
        return std::get<Vtask*>(object)->BuildNodeText();
    };
    Vresource* resource = std::get<Vresource*>(trees_.DragObject());
    project->SetManager(resource);
    project->SetDirty(true);
    desktop_.platform.MessageBox(
        resource->BuildNodeText() + " is now the project manager for " + textOf(trees_.DropObject()),
        "Project Manager Assigned", BoxIcon::Information, BoxButtons::Ok);
}

}  // namespace vortan

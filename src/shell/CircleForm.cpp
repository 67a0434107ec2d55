#include "shell/CircleForm.h"

#include <QGroupBox>
#include <QLabel>
#include <algorithm>

#include "paint/Text.h"
#include "shell/NodeCommands.h"
#include "shell/ProblemDialogs.h"
#include "shell/Trees.h"
#include "solve/ProblemText.h"

namespace vortan {
namespace {

constexpr int kListCharacters = 100, kFewestLines = 3, kMostLines = 12;

}  // namespace

void CircleForm::Start(Desktop& desktop) {
    auto* form = new CircleForm(desktop);
    const bool any = std::any_of(form->dependencies_.begin(), form->dependencies_.end(),
                                 [](const Link<Vdependency>& one) { return bool(one); });
    if (any) return form->ShowWith(*form->list_);
    form->Unload();
    desktop.workspace.RestartSolve();
}

CircleForm::CircleForm(Desktop& desktop)
    : EntryForm(desktop, "CircleForm", "Circular Dependency"),
      list_(new QListWidget),
      open_(new QRadioButton("&Open the dependency")),
      delete_(new QRadioButton("&Delete the dependency")) {
    auto* label = new QLabel(
        "These tasks wait for each other in a circle.  Choose one of the dependencies that is to be changed "
        "or deleted:");
    label->setWordWrap(true);
    list_->setObjectName("DependencyList");
    list_->setWordWrap(true);
    Body().addWidget(label);
    Body().addWidget(list_, 1);
    const auto& circle = desktop_.solver.Circle();
    for (std::size_t i = 0; i < circle.size(); ++i) {
        const Vtask* required = circle[i].Get();
        const Vtask* task = circle[(i + 1) % circle.size()].Get();
        if (task && required) AddStep(*task, *required);
    }
    const auto first = std::find_if(dependencies_.begin(), dependencies_.end(),
                                    [](const Link<Vdependency>& one) { return bool(one); });
    if (first != dependencies_.end()) list_->setCurrentRow(static_cast<int>(first - dependencies_.begin()));
    const int lines = std::clamp(list_->count(), kFewestLines, kMostLines);
    list_->setMinimumSize(kListCharacters * fontMetrics().averageCharWidth(),
                          (lines + 1) * fontMetrics().height() * 5 / 4);

    auto* frame = new QGroupBox("Corrective action");
    auto* options = new QVBoxLayout(frame);
    open_->setObjectName("OpenOption");
    delete_->setObjectName("DeleteOption");
    for (QRadioButton* option : {open_, delete_}) {
        options->addWidget(option);
        StopAtChosen(*option);
    }
    open_->setChecked(true);
    Body().addWidget(frame);
    connect(list_, &QListWidget::itemDoubleClicked, this, [this] { OkCommand().click(); });
}

/// A line for each dependency between the two. A link waits for the tasks of its subproject without one.
void CircleForm::AddStep(const Vtask& task, const Vtask& required) {
    const auto add = [&](const std::string& text, Vdependency* dependency) {
        auto* item = new QListWidgetItem(Q("T" + NameTask(task).substr(1) + text), list_);
        if (!dependency) item->setFlags(Qt::NoItemFlags);
        dependencies_.emplace_back(dependency);
    };
    const auto before = dependencies_.size();
    for (Vdependency* dependency : task.DependencyList()) {
        if (task.Subproject() || !dependency->Include() || dependency->TaskRequired() != &required) continue;
        add(" requires " + dependency->BuildNodeText(), dependency);
    }
    if (dependencies_.size() == before) add(" stands for the project of " + NameTask(required), nullptr);
}

bool CircleForm::Finish() {
    const int row = list_->currentRow();
    if (row < 0) return Complain(*list_, "Please choose a dependency of the list.", "No Dependency Chosen");
    const Link<Vdependency> dependency = dependencies_[static_cast<std::size_t>(row)];
    const bool remove = delete_->isChecked();
    // The form goes first, so that the one it leads to is not its own.
    Unload();
    if (!dependency || !dependency->Project()) {
        desktop_.workspace.RestartSolve();
        return true;
    }
    ShowInProjectTree(desktop_, dependency.Get(), *dependency->Project());
    if (remove) {
        DeleteDependency(desktop_, *dependency.Get());
    } else {
        desktop_.trees->Commands().Modify();
    }
    return true;
}

}  // namespace vortan

#include "shell/pages/WhyPane.h"

#include <QCloseEvent>
#include <QSplitter>
#include <algorithm>

#include "model/ValueText.h"
#include "model/Vproject.h"
#include "paint/Text.h"
#include "solve/WhyText.h"

namespace vortan {
namespace {

constexpr std::size_t kMostListed = 200;  // tasks that moved
constexpr const char* kSetting = "WhyPane";

QString Escaped(const std::string& text) {
    return Q(text).toHtmlEscaped();
}

}  // namespace

WhyPane::WhyPane(Desktop& desktop) : QDockWidget("Why"), desktop_(desktop) {
    setObjectName("WhyPane");
    setFeatures(DockWidgetClosable);
    why_ = NewView("WhyText", "Why the selected task lies where it does");
    effect_ = NewView("EffectText", "What the last edit has changed");
    auto* beside = new QSplitter;
    beside->addWidget(why_);
    beside->addWidget(effect_);
    beside->setChildrenCollapsible(false);
    beside->setSizes({600, 400});
    setWidget(beside);
    setFocusProxy(why_);
    hide();
    desktop_.workspace.AddListener(this);
}

WhyPane::~WhyPane() {
    desktop_.solver.Watch(nullptr);
    desktop_.workspace.RemoveListener(this);
}

QTextBrowser* WhyPane::NewView(const char* name, const char* accessibleName) {
    auto* view = new QTextBrowser;
    view->setObjectName(name);
    view->setAccessibleName(accessibleName);
    view->setOpenLinks(false);
    connect(view, &QTextBrowser::anchorClicked, this, [this, view](const QUrl& url) {
        desktop_.Run("WhyPane:Link_Click", [&] {
            const auto& targets = view == why_ ? whyTargets_ : effectTargets_;
            const auto place = static_cast<std::size_t>(url.toString().toUInt());
            Vtask* task = place < targets.size() ? targets[place].Get() : nullptr;
            if (task && task->Project()) SelectTask(*task);
        });
    });
    return view;
}

void WhyPane::SetShown(bool shown) {
    if (shown == shown_) return;
    shown_ = shown;
    setVisible(shown);
    desktop_.settings.WriteSettings(kSetting, shown ? "X" : "-");
    followed_ = {};
    if (shown) {
        effect_->setHtml("<p>What the next edit changes stands here.</p>");
        if (desktop_.solver.Mode() == SolveMode::Idle) watch_.Compare(desktop_.workspace, desktop_.solver);
        Follow();
    } else {
        watch_.Forget();
        desktop_.solver.Watch(nullptr);
    }
}

void WhyPane::Restore() {
    if (desktop_.settings.ReadSettings(kSetting) == "X") SetShown(true);
}

void WhyPane::closeEvent(QCloseEvent* event) {
    desktop_.Run("WhyPane:Form_Close", [this] { SetShown(false); });
    event->accept();
}

void WhyPane::ObjectsChanged(const std::vector<Change>&) {
    edited_ = true;
}

void WhyPane::Follow() {
    if (!shown_) return;
    Vtask* task = SelectedTask();
    if (task && followed_.Get() != task) {
        desktop_.solver.Watch(task);
        desktop_.solver.RestartSolve();
    }
    followed_ = Link<Vtask>(task);
    TellWhy();
}

void WhyPane::SolveEnded() {
    const auto mode = [this] { return desktop_.solver.Mode(); };
    if (!shown_ || (mode() != SolveMode::Idle && mode() != SolveMode::Halted)) return;
    if (followed_.Get() == SelectedTask()) {
        TellWhy();
    } else {
        Follow();
    }
    if (mode() != SolveMode::Idle) return;
    const PlanEffect effect = watch_.Compare(desktop_.workspace, desktop_.solver);
    if (std::exchange(edited_, false) || !effect.IsNone()) TellEffect(effect);
}

QString WhyPane::LinkTo(const Vtask& task, const std::string& text, std::vector<Link<Vtask>>& targets) {
    targets.emplace_back(task.Project() ? task.Project()->FindTask(task.TaskID()) : nullptr);
    return QString("<a href=\"%1\">").arg(targets.size() - 1) + Escaped(text) + "</a>";
}

void WhyPane::TellWhy() {
    const Vtask* task = followed_.Get();
    const SolveMode mode = desktop_.solver.Mode();
    whyTargets_.clear();
    if (!task || !task->Project())
        return why_->setHtml("<p>Select a task to read why it lies where it does.</p>");
    if (mode != SolveMode::Idle && mode != SolveMode::Halted) return why_->setHtml("<p>Solving ...</p>");
    WhyNames names;
    names.task = [this](const Vtask& named, const std::string& text) {
        return S(LinkTo(named, text, whyTargets_));
    };
    names.plain = [](const std::string& text) { return S(Escaped(text)); };
    const QString text = Q(WhyText(*task, ExplainTask(desktop_.solver, *task), names));
    QString html;
    for (const QString& line : text.split('\n', Qt::SkipEmptyParts)) {
        const bool listed = line.startsWith("  ");
        const QString body = html.isEmpty() ? "<b>" + line + "</b>" : line.trimmed();
        html += QString("<p style=\"margin:1px 0 1px %1px\">").arg(listed ? 24 : 0) + body + "</p>";
    }
    if (mode == SolveMode::Halted) html += "<p>" + Escaped(desktop_.solver.SolveMessage()) + "</p>";
    why_->setHtml(html);
}

void WhyPane::TellEffect(const PlanEffect& effect) {
    effectTargets_.clear();
    QString html = "<p><b>" + Escaped(EffectText(effect)) + "</b></p>";
    const std::size_t listed = std::min(effect.moved.size(), kMostListed);
    if (listed > 0) html += "<table cellspacing=\"4\">";
    for (std::size_t i = 0; i < listed; ++i) {
        const PlanEffect::Moved& moved = effect.moved[i];
        const Vtask* task = moved.task.Get();
        if (!task) continue;
        html += "<tr><td>" + LinkTo(*task, task->BuildNodeText(), effectTargets_) + "</td><td>" +
                Escaped(MomentText(moved.finishBefore) + " -> " + MomentText(moved.finishNow)) + "</td></tr>";
    }
    if (listed > 0) html += "</table>";
    if (listed < effect.moved.size()) html += QString("<p>and %1 more</p>").arg(effect.moved.size() - listed);
    effect_->setHtml(html.replace("-&gt;", "&rarr;"));
}

}  // namespace vortan

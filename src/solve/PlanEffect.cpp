#include "solve/PlanEffect.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "model/ValueText.h"
#include "model/Vproject.h"
#include "solve/Solution.h"
#include "solve/WhyText.h"

namespace vortan {
namespace {

constexpr double kSameTime = 0.5 / kMinutesPerDay;  // what counts as the same time, days

bool Differ(DateTime a, DateTime b) {
    return std::abs(DaysBetween(a, b)) > kSameTime;
}

/// The day alone, where that tells them apart.
std::string FromTo(DateTime before, DateTime now) {
    const bool sameDay = FormatShortDate(before) == FormatShortDate(now);
    const auto text = [sameDay](DateTime date) { return sameDay ? MomentText(date) : FormatShortDate(date); };
    return text(before) + " -> " + text(now);
}

std::string Dearer(const char* what, Money by) {
    if (by == Money()) return "";
    const std::string amount = FormatCurrency(by, "$");
    return std::string("; ") + what + " " + (by > Money() ? "+" : "") + amount;
}

std::string Count(std::size_t count, const char* what) {
    return std::to_string(count) + (count == 1 ? " task " : " tasks ") + what;
}

}  // namespace

std::string EffectText(const PlanEffect& effect) {
    std::string text;
    for (const PlanEffect::Finish& finish : effect.finishes)
        text += "; Finish of " + finish.project + " " + FromTo(finish.before, finish.now);
    if (!effect.moved.empty()) text += "; " + Count(effect.moved.size(), "moved");
    if (effect.added > 0) text += "; " + Count(static_cast<std::size_t>(effect.added), "added");
    if (effect.removed > 0) text += "; " + Count(static_cast<std::size_t>(effect.removed), "removed");
    text += Dearer("labor", effect.labor) + Dearer("material", effect.material);
    if (text.empty()) return "Nothing moved";
    text.erase(0, 2);
    if (text.front() == 'l' || text.front() == 'm') text.front() = text.front() == 'l' ? 'L' : 'M';
    return text;
}

/// From what the passes left, which lies in a row, and not from the model, which lies all over memory.
void PlanWatch::Take(const Workspace& workspace, const Solver& solver, State& state) {
    state.tasks.clear();
    state.projects.clear();
    state.labor = state.material = Money();
    const Vproject* active = workspace.ThisProject();
    state.journal = active ? active->Journal() : DateTime();
    const Network& network = solver.Standing().network;
    const auto tasks = network.Tasks();
    const auto& clocks = solver.Standing().run.Clocks();
    if (clocks.size() < tasks.size()) return;
    state.tasks.reserve(tasks.size());
    for (const Network::Project& project : network.Projects()) {
        double last = 0;
        for (std::int32_t i = project.firstTask; i < project.firstTask + project.taskCount; ++i) {
            const Network::Task& task = tasks[static_cast<std::size_t>(i)];
            const ForwardRun::Clock& clock = clocks[static_cast<std::size_t>(i)];
            state.tasks.push_back({task.object, DateTime(clock.start), DateTime(clock.finish)});
            last = std::max(last, clock.finish);
            if (task.subproject >= 0) continue;
            state.labor += clock.laborCost;
            state.material += task.materialCost;
        }
        Vproject* object = project.object.Get();
        state.projects.push_back({project.object, object ? object->ProjectName() : "", DateTime(last)});
    }
}

/// Side by side as long as the same tasks stand there, which is nearly always; the others by their identity.
void PlanWatch::CompareTasks(const State& before, const State& now, PlanEffect& effect) {
    const auto compare = [&effect](const Entry& was, const Entry& is) {
        if (Differ(was.start, is.start) || Differ(was.finish, is.finish))
            effect.moved.push_back({is.task, was.start, was.finish, is.start, is.finish});
    };
    std::size_t same = 0;
    const std::size_t most = std::min(before.tasks.size(), now.tasks.size());
    for (; same < most && before.tasks[same].task == now.tasks[same].task; ++same)
        compare(before.tasks[same], now.tasks[same]);
    std::unordered_map<const Vtask*, const Entry*> others;
    for (std::size_t i = same; i < before.tasks.size(); ++i) {
        const Vtask* task = before.tasks[i].task.Get();  // none if it was deleted
        if (!task || !others.emplace(task, &before.tasks[i]).second) ++effect.removed;
    }
    for (std::size_t i = same; i < now.tasks.size(); ++i) {
        const auto was = others.find(now.tasks[i].task.Get());
        if (was == others.end()) {
            ++effect.added;
        } else {
            compare(*was->second, now.tasks[i]);
            others.erase(was);
        }
    }
    effect.removed += static_cast<std::int32_t>(others.size());
}

PlanEffect PlanWatch::Compare(const Workspace& workspace, const Solver& solver) {
    Take(workspace, solver, now_);
    PlanEffect effect;
    const auto sameProjects = [](const Sum& a, const Sum& b) { return a.project == b.project; };
    if (!isFirst_ && before_.journal == now_.journal &&
        std::equal(before_.projects.begin(), before_.projects.end(), now_.projects.begin(),
                   now_.projects.end(), sameProjects)) {
        for (std::size_t i = 0; i < now_.projects.size(); ++i) {
            const DateTime was = before_.projects[i].finish, is = now_.projects[i].finish;
            if (was.IsSet() && is.IsSet() && Differ(was, is))
                effect.finishes.push_back({now_.projects[i].name, was, is});
        }
        CompareTasks(before_, now_, effect);
        effect.labor = now_.labor - before_.labor;
        effect.material = now_.material - before_.material;
    }
    std::swap(before_, now_);
    isFirst_ = false;
    return effect;
}

}  // namespace vortan

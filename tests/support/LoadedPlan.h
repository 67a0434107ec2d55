#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "solve/Solver.h"
#include "support/CheckModel.h"
#include "support/PlanFiles.h"
#include "support/ScriptedPlatform.h"

namespace vortan {

/// A workspace with its solver and a platform on which no box may come, filled from the text of a .vta file.
/// The first project and template are made active.
class LoadedPlan {
  public:
    LoadedPlan() : solver(workspace) {}
    /// Loads and solves.
    explicit LoadedPlan(std::string_view text) : LoadedPlan() {
        Load(text);
        Solve();
    }

    /// Makes what the words of MakePlan tell.
    void Make(const std::string& words) { MakePlan(workspace, words); }
    /// Reads the records into what is there. A damaged text fails the test.
    void Load(std::string_view text);
    /// A whole solve, from the start.
    void Solve();
    bool Complete() const { return solver.Mode() == SolveMode::Idle; }

    /// None if there is no such project or task, or resource.
    Vtask* Task(const std::string& project, std::int32_t id) const;
    Vresource* Resource(const std::string& templateName, std::int32_t id) const;

    ScriptedPlatform platform;
    Workspace workspace{platform};
    Solver solver;
};

/// Everything that a solve leaves, one line a fact, with all digits: two solves agree exactly if the texts
/// are equal. Projects and templates are listed by name, whatever their order in memory.
std::string ResultText(const LoadedPlan& plan);
template <class List>
auto SortedByKey(const List& list) {
    std::vector<std::decay_t<decltype(*list.begin())>> items(list.begin(), list.end());
    std::sort(items.begin(), items.end(), [](auto* a, auto* b) { return a->Key() < b->Key(); });
    return items;
}
/// One line of it.
std::string FactLine(const std::string& name, std::initializer_list<double> values);
/// "Project/7"; "-" for none.
std::string NameOf(const Vtask* task);
/// The first line in which two such texts differ; empty: none.
std::string FirstDifference(const std::string& is, const std::string& should);

/// "2001-09-03 08:00"
std::string DateText(DateTime date);

}  // namespace vortan

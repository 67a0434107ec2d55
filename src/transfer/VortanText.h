#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/Workspace.h"
#include "transfer/Losses.h"
#include "transfer/MsProject.h"

/// What that program has no field for stands in Text30 of tasks and resources, marked, so that a plan that we
/// export and import again comes back equal.
namespace vortan {

/// Whether the text of a custom field is ours.
bool IsVortan(std::string_view text);

/// What an import has built so far, aside: no project is in ProjectList yet. Names are given when all joins.
struct ImportedPlan {
    struct Project {
        Vproject* project = nullptr;
        std::string name;            ///< that it shall have
        const MTask* row = nullptr;  ///< summary row; none for the top project
    };
    const MProject* file = nullptr;
    std::vector<Project> projects;                            ///< the top one first, parents before children
    std::unordered_map<std::int32_t, Vtask*> tasks;           ///< by UID; those of summary rows too
    std::unordered_map<std::int32_t, Vproject*> subprojects;  ///< by UID of the summary row
    Vtemplate* resources = nullptr;                           ///< new, or the active one
    bool newTemplate = false;
    std::string templateName;  ///< that a new one shall have
    std::unordered_map<std::int32_t, Vresource*>
        resourceOf;                         ///< by UID; old ones of the same name and ID too
    std::vector<Vassignment*> assignments;  ///< as in file->Assignments; none where left out
    /// By UID of the task: one for each of MTask::Links, none where left out.
    std::unordered_map<std::int32_t, std::vector<Vdependency*>> links;
    DateTime importDate;
};

/// Sets in the built plan what the marked texts of the file say, and takes out of `losses` what is not lost
/// because of that. Called once, when all else is built and nothing has joined. Texts that are damaged are
/// listed and left.
void ApplyVortan(ImportedPlan& plan, Losses& losses);

}  // namespace vortan

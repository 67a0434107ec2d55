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
/// The TaskID or ResourceID that an exported row had; 0 if the text does not tell or is damaged.
std::int32_t VortanNumber(std::string_view text);
/// Whether the text of a row tells its dependencies, since nobody has changed its links. Then there is
/// nothing to be made of those.
bool VortanTellsLinks(const MTask& row);

/// What an export has given a number to, or a place.
struct ExportedPlan {
    const MProject* file = nullptr;
    bool solved = false;  ///< the next solve finds the results of the journal in force again
    std::unordered_map<const Vtask*, std::int32_t> tasks;          ///< UIDs
    std::unordered_map<const Vresource*, std::int32_t> resources;  ///< UIDs
    std::unordered_map<const Vproject*, std::int32_t> projects;    ///< UIDs of summary rows, the top one's 0
    std::vector<const Vtemplate*> templates;                       ///< the active one first
    /// Of each template, in the order of `templates`: the list, then deleted ones that resources work.
    std::vector<std::vector<const Vshift*>> shifts;
};

/// The text for the row of a task; `links` and `assignments` are as the file shows them. For a row that
/// stands for a subproject, also what that is.
std::string EncodeTask(const ExportedPlan& plan, const MTask& row, const Vtask& task, bool ownsSubproject,
                       const std::vector<const MAssignment*>& assignments);
/// The text for the project's own summary row: the top project, the templates and their shifts.
std::string EncodeTop(const ExportedPlan& plan, const MTask& row, const Vproject& project);
std::string EncodeResource(const ExportedPlan& plan, const MResource& row, const Vresource& resource);

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
    /// Further templates that texts asked for, with the names that they shall have.
    struct Template {
        Vtemplate* made = nullptr;
        std::string name;
    };
    std::vector<Template> moreTemplates;
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

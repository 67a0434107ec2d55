#include "shell/desk/Removal.h"

#include "model/Vproject.h"
#include "model/Vtemplate.h"

namespace vortan {
namespace {

bool MayLose(Desktop& desktop, const JournalOwner& owner, const std::string& what) {
    if (!owner.Dirty()) return true;
    const BoxAnswer answer = desktop.platform.MessageBox(
        "Changes have been made to " + what +
            ".  These changes exist only in memory and will be lost unless they are saved to disk.\n\nDo you "
            "want to save all changes in memory to disk?",
        "Save All Changes To Disk", BoxIcon::Question, BoxButtons::YesNoCancel);
    if (answer == BoxAnswer::Cancel) return false;
    return answer != BoxAnswer::Yes || desktop.files.RequestSave();
}

}  // namespace

bool MayLose(Desktop& desktop, const Vproject& project) {
    return MayLose(desktop, project, "project " + project.ProjectName());
}
bool MayLose(Desktop& desktop, const Vtemplate& condemned) {
    return MayLose(desktop, condemned, "template " + condemned.TemplateName());
}

void RemoveProjects(Workspace& workspace, const std::vector<Vproject*>& removed) {
    for (Vproject* project : removed) {
        project->Delete();
        workspace.FreeVobject(project);
    }
    if (!workspace.ThisProject())
        workspace.SetThisProject(workspace.ProjectList().empty() ? nullptr : workspace.ProjectList()[0]);
    workspace.BroadcastNewThisProject();
}

void RemoveTemplate(Workspace& workspace, Vtemplate& removed) {
    removed.Delete();
    workspace.FreeVobject(&removed);
    workspace.SetThisTemplate(workspace.TemplateList().empty() ? nullptr : workspace.TemplateList()[0]);
    workspace.BroadcastNewThisTemplate();
}

}  // namespace vortan

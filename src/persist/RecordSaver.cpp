// Writing of records.

#include <unordered_set>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "persist/FieldWriter.h"
#include "persist/Records.h"

namespace vortan {

namespace {

/// The shifts that the record of a template must have, each under a name of its own: those of its list, and
/// others that its resources work, which have been deleted.
class SavedShifts {
  public:
    explicit SavedShifts(const Vtemplate& owner) {
        for (Vshift* shift : owner.ShiftList()) Add(*shift, shift->ShiftName());
        for (Vresource* resource : owner.ResourceList()) resource->ForEachField(*this);
    }
    const std::vector<Vshift*>& Shifts() const { return shifts_; }
    /// Without those that never had a name.
    const FieldWriter::ShiftNames& Names() const { return names_; }

    template <class Field>
    void operator()(const char*, const Field&) {}
    void operator()(const char*, const Journaled<Link<Vshift>>& field) {
        for (int i = 0; i < field.Count(); ++i) {
            Vshift* shift = field.At(i).Get();
            if (!shift || names_.contains(shift)) continue;
            std::string name = shift->ShiftName().empty() ? shift->FormerName() : shift->ShiftName();
            while (taken_.contains(name)) Workspace::FixNameConflict(name);
            if (!name.empty()) Add(*shift, name);
        }
    }

  private:
    void Add(Vshift& shift, const std::string& name) {
        shifts_.push_back(&shift);
        names_.emplace(&shift, name);
        taken_.insert(name);
    }

    std::vector<Vshift*> shifts_;
    FieldWriter::ShiftNames names_;
    std::unordered_set<std::string> taken_;
};

template <class Owner>
void SaveHead(FieldWriter& write, const char* tag, const char* nameField, const Owner& owner) {
    write.Tag(tag);
    write(nameField, owner.Key());
    write("Description", owner.Description());
    write("ViewPassword", owner.ViewPassword());
    write("ModifyPassword", owner.ModifyPassword());
}

void SaveJournals(FieldWriter& write, const JournalOwner& owner) {
    write("CurrentIndex", owner.CurrentIndex());
    write("NumJournals", owner.NumJournals());
    write.Dates("JournalDates", owner.JournalDates());
}

void SaveTemplate(FieldWriter& write, const Vtemplate& saved) {
    SaveHead(write, "TEMPLATE", "TemplateName", saved);
    SaveJournals(write, saved);
    const SavedShifts shifts(saved);
    for (Vshift* shift : shifts.Shifts()) {
        write.Tag("SHIFT");
        write("ShiftName", shifts.Names().at(shift));
        shift->ForEachField(write);
    }
    write.SetShiftNames(&shifts.Names());
    for (Vresource* resource : saved.ResourceList()) {
        write.Tag("RESOURCE");
        write("ResourceID", resource->ResourceID());
        resource->ForEachField(write);
    }
    write.SetShiftNames(nullptr);
}

void SaveProject(FieldWriter& write, Vproject& project) {
    SaveHead(write, "PROJECT", "ProjectName", project);
    write("PlanIndex", project.PlanIndex());
    SaveJournals(write, project);
    project.ForEachField(write);
    write.SetProject(&project);
    for (Vtask* task : project.TaskList()) {
        write.Tag("TASK");
        write("TaskID", task->TaskID());
        task->ForEachField(write);
        for (Vdependency* dependency : task->DependencyList()) {
            write.Tag("DEPENDENCY");
            dependency->ForEachField(write);
        }
        for (Vassignment* assignment : task->AssignmentList()) {
            write.Tag("ASSIGNMENT");
            assignment->ForEachField(write);
        }
    }
}

/// Collects the projects that a record mentions, in the order of its text.
class Mentions {
  public:
    void Add(Vproject* project) {
        if (project && !project->ProjectName().empty() && known_.insert(project).second)
            order_.push_back(project);
    }
    void AddRecord(Vproject& project) {
        Add(&project);
        project.ForEachField(*this);
        for (Vtask* task : project.TaskList()) {
            task->ForEachField(*this);
            for (Vdependency* dependency : task->DependencyList()) dependency->ForEachField(*this);
        }
    }
    const std::vector<Vproject*>& Order() const { return order_; }

    template <class Field>
    void operator()(const char*, const Field&) {}
    void operator()(const char*, const Link<Vproject>& link) { Add(link.Get()); }
    void operator()(const char*, const Journaled<Link<Vproject>>& field) {
        for (int i = 0; i < field.Count(); ++i) Add(field.At(i).Get());
    }
    void operator()(const char*, const Journaled<Link<Vtask>>& field) {
        for (int i = 0; i < field.Count(); ++i) {
            if (const Vtask* task = field.At(i).Get()) Add(task->Project());
        }
    }

  private:
    std::vector<Vproject*> order_;
    std::unordered_set<Vproject*> known_;
};

/// The order of the project records. A reader puts projects in memory in the order in which the text mentions
/// them first, so a record whose project was mentioned comes before one whose project was not. That way the
/// order in memory is that of the records, and saving again gives the same text.
std::vector<Vproject*> RecordOrder(Workspace& workspace) {
    Mentions mentions;
    std::size_t written = 0;
    const auto follow = [&](Vproject* next) {
        mentions.Add(next);
        for (; written < mentions.Order().size(); ++written) mentions.AddRecord(*mentions.Order()[written]);
    };
    if (workspace.ThisProject()) follow(workspace.ThisProject());
    for (Vproject* project : workspace.ProjectList()) follow(project);
    return mentions.Order();
}

}  // namespace

std::string SaveRecords(Workspace& workspace) {
    std::string out;
    FieldWriter write(out);
    const Vtemplate* active = workspace.ThisTemplate();
    if (active) SaveTemplate(write, *active);
    for (const Vtemplate* each : workspace.TemplateList()) {
        if (each != active) SaveTemplate(write, *each);
    }
    for (Vproject* project : RecordOrder(workspace)) SaveProject(write, *project);
    return out;
}

}  // namespace vortan

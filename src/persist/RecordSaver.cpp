// Writing of records.

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "model/NumberText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "persist/Records.h"

namespace vortan {

namespace {

void AppendValue(std::string& out, const std::string& value) {
    // A line break cannot stand in a line; it is the one thing in a text that a file does not keep.
    if (value.find_first_of("\r\n") == std::string::npos) {
        AppendQuoted(out, value);
        return;
    }
    std::string oneLine = value;
    std::replace_if(
        oneLine.begin(), oneLine.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    AppendQuoted(out, oneLine);
}
void AppendValue(std::string& out, bool value) {
    AppendNumber(out, value);
}
void AppendValue(std::string& out, std::uint8_t value) {
    AppendNumber(out, std::int32_t{value});
}
void AppendValue(std::string& out, std::int32_t value) {
    AppendNumber(out, value);
}
void AppendValue(std::string& out, float value) {
    AppendNumber(out, value);
}
void AppendValue(std::string& out, double value) {
    AppendNumber(out, value);
}
void AppendValue(std::string& out, Money value) {
    AppendNumber(out, value);
}
void AppendValue(std::string& out, DateTime value) {
    AppendFileDate(out, value);
}
void AppendValue(std::string& out, const Link<Vproject>& link) {
    AppendValue(out, link ? link->ProjectName() : std::string());
}
void AppendTask(std::string& out, const std::string& projectName, std::int32_t taskID) {
    AppendValue(out, projectName);
    if (projectName.empty()) return;
    out += ',';
    AppendNumber(out, taskID);
}
void AppendValue(std::string& out, const Link<Vresource>& link) {
    const Vtemplate* owner = link ? link->Template() : nullptr;
    AppendValue(out, owner ? owner->TemplateName() : std::string());
    if (!owner || owner->TemplateName().empty()) return;
    out += ',';
    AppendNumber(out, link->ResourceID());
}

/// The shifts that the record of a template must have, each under a name of its own: those of its list, and
/// others that its resources work, which have been deleted.
class ShiftNames {
  public:
    explicit ShiftNames(const Vtemplate& owner) {
        for (Vshift* shift : owner.ShiftList()) Add(*shift, shift->ShiftName());
        for (Vresource* resource : owner.ResourceList()) resource->ForEachField(*this);
    }
    const std::vector<Vshift*>& Shifts() const { return shifts_; }
    /// Empty for a shift that never had a name.
    std::string NameOf(const Vshift& shift) const {
        const auto at = names_.find(&shift);
        return at == names_.end() ? std::string() : at->second;
    }

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
    std::unordered_map<const Vshift*, std::string> names_;
    std::unordered_set<std::string> taken_;
};

/// Writes a field a call: two blanks, the name, and one value, or one per journal where they differ.
class FieldWriter {
  public:
    explicit FieldWriter(std::string& out) : out_(out) {}

    /// For the resources of a template.
    void SetShiftNames(const ShiftNames* names) { shiftNames_ = names; }
    /// For the records below a project.
    void SetProject(const Vproject* project) { project_ = project; }

    template <class T>
    void operator()(const char* name, const T& value) {
        Begin(name);
        out_ += ',';
        AppendValue(out_, value);
        out_ += "\r\n";
    }
    template <class T>
    void operator()(const char* name, const Journaled<T>& field) {
        Begin(name);
        const int count = field.AllEqual() ? 1 : field.Count();
        for (int i = 0; i < count; ++i) {
            out_ += ',';
            Value(field.At(i));
        }
        out_ += "\r\n";
    }
    void operator()(const char* name, const JournaledInclude& field) {
        (*this)(name, static_cast<const Journaled<bool>&>(field));
    }
    void Dates(const char* name, const std::vector<DateTime>& dates) {
        Begin(name);
        for (const DateTime date : dates) {
            out_ += ',';
            AppendFileDate(out_, date);
        }
        out_ += "\r\n";
    }
    void Tag(const char* tag) {
        out_ += tag;
        out_ += "\r\n";
    }

  private:
    template <class T>
    void Value(const T& value) {
        AppendValue(out_, value);
    }
    void Value(const Link<Vshift>& link) {
        AppendValue(out_, link ? shiftNames_->NameOf(*link.Get()) : std::string());
    }
    void Value(const Link<Vtask>& link) {
        if (link.IsDeleted()) return AppendTask(out_, project_->ProjectName(), kDeletedTask);
        const Vproject* project = link ? link->Project() : nullptr;
        AppendTask(out_, project ? project->ProjectName() : std::string(), link ? link->TaskID() : 0);
    }
    void Begin(const char* name) {
        out_ += "  ";
        out_ += name;
    }

    std::string& out_;
    const ShiftNames* shiftNames_ = nullptr;
    const Vproject* project_ = nullptr;
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
    const ShiftNames names(saved);
    for (Vshift* shift : names.Shifts()) {
        write.Tag("SHIFT");
        write("ShiftName", names.NameOf(*shift));
        shift->ForEachField(write);
    }
    write.SetShiftNames(&names);
    for (Vresource* resource : saved.ResourceList()) {
        write.Tag("RESOURCE");
        write("ResourceID", resource->ResourceID());
        resource->ForEachField(write);
    }
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

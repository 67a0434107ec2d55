// Writing of records.

#include <algorithm>
#include <unordered_set>

#include "model/NumberText.h"
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
void AppendValue(std::string& out, const Link<Vshift>& link) {
    AppendValue(out, link ? link->ShiftName() : std::string());
}
void AppendValue(std::string& out, const Link<Vtask>& link) {
    const Vproject* project = link ? link->Project() : nullptr;
    AppendValue(out, project ? project->ProjectName() : std::string());
    if (!project || project->ProjectName().empty()) return;
    out += ',';
    AppendNumber(out, link->TaskID());
}
void AppendValue(std::string& out, const Link<Vresource>& link) {
    const Vtemplate* owner = link ? link->Template() : nullptr;
    AppendValue(out, owner ? owner->TemplateName() : std::string());
    if (!owner || owner->TemplateName().empty()) return;
    out += ',';
    AppendNumber(out, link->ResourceID());
}

/// Writes a field a call: two blanks, the name, and one value, or one per journal where they differ.
class FieldWriter {
  public:
    explicit FieldWriter(std::string& out) : out_(out) {}

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
            AppendValue(out_, field.At(i));
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
    void Begin(const char* name) {
        out_ += "  ";
        out_ += name;
    }

    std::string& out_;
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
    for (Vshift* shift : saved.ShiftList()) {
        write.Tag("SHIFT");
        write("ShiftName", shift->ShiftName());
        shift->ForEachField(write);
    }
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

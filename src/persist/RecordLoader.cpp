// Reading of records.

#include <algorithm>
#include <optional>

#include "model/ErrTrap.h"
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

std::string ReadString(TokenReader& reader) {
    return std::string(reader.ReadToken());
}

bool ReadBool(TokenReader& reader) {
    const auto token = reader.ReadToken();
    const auto value = ParseBool(token);
    if (!value) reader.FailValue(token, "True or False");
    return *value;
}

DateTime ReadDate(TokenReader& reader) {
    const auto token = reader.ReadToken();
    const auto value = ParseFileDate(token);
    if (!value) reader.FailValue(token, "a date as mm/dd/yyyy hh:mmam");
    return *value;
}

std::int32_t ReadNumber(TokenReader& reader, std::int32_t least, std::int32_t most, const char* kind) {
    const auto token = reader.ReadToken();
    const std::int32_t value = ScanInt32(token);
    if (value < least || value > most) reader.FailValue(token, kind);
    return value;
}

std::uint8_t ReadPercent(TokenReader& reader) {
    const auto token = reader.ReadToken();
    const auto value = ParseNumber(token);
    if (!value || *value < 0 || *value > 100) reader.FailValue(token, "a percentage from 0 to 100");
    return static_cast<std::uint8_t>(RoundToInt32(*value));
}

/// Reads fields into an object: every call expects the field's name and takes the values of the line.
class FieldReader {
  public:
    /// `journals` is how many values a per-journal field has if it has more than one. `shifts` is the
    /// template in whose list shifts are looked up.
    FieldReader(Workspace& workspace, TokenReader& reader, std::int32_t journals,
                const Vtemplate* shifts = nullptr)
        : workspace_(workspace), reader_(reader), journals_(std::max(journals, 1)), shifts_(shifts) {}

    void operator()(const char* name, std::string& field) {
        One(name, [&] { field = ReadString(reader_); });
    }
    void operator()(const char* name, float& field) {
        One(name, [&] { field = ScanFloat(reader_.ReadToken()); });
    }
    void operator()(const char* name, std::int32_t& field) {
        One(name, [&] { field = ScanInt32(reader_.ReadToken()); });
    }
    void operator()(const char* name, Link<Vproject>& field) {
        One(name, [&] { field = workspace_.FindOrCreateProject(ReadString(reader_)); });
    }
    void operator()(const char* name, Journaled<std::string>& field) {
        Many(name, field, [&] { return ReadString(reader_); });
    }
    void operator()(const char* name, Journaled<bool>& field) {
        Many(name, field, [&] { return ReadBool(reader_); });
    }
    void operator()(const char* name, Journaled<std::int32_t>& field) {
        if (std::string_view(name) == "SolveRules") {
            Many(name, field, [&] { return ReadNumber(reader_, 0, 6, "a solve rule from 0 to 6"); });
        } else {
            Many(name, field, [&] { return ScanInt32(reader_.ReadToken()); });
        }
    }
    void operator()(const char* name, Journaled<std::uint8_t>& field) {
        Many(name, field, [&] { return ReadPercent(reader_); });
    }
    void operator()(const char* name, Journaled<double>& field) {
        Many(name, field, [&] { return ScanNumber(reader_.ReadToken()); });
    }
    void operator()(const char* name, Journaled<Money>& field) {
        Many(name, field, [&] { return ScanMoney(reader_.ReadToken()); });
    }
    void operator()(const char* name, Journaled<DateTime>& field) {
        Many(name, field, [&] { return ReadDate(reader_); });
    }
    void operator()(const char* name, JournaledInclude& field) {
        const auto values = ReadAll<bool>(name, [&] { return ReadBool(reader_); });
        if (values.size() == 1 && values[0]) {
            field.SetSingle(true);
        } else if (values.size() == 1) {
            // One False stands for False in every journal; a single value would read as true.
            field.SetArray(std::vector<bool>(static_cast<std::size_t>(journals_), false));
        } else {
            field.SetArray(values);
        }
    }
    void operator()(const char* name, Journaled<Link<Vproject>>& field) {
        Many(name, field,
             [&] { return Link<Vproject>(workspace_.FindOrCreateProject(ReadString(reader_))); });
    }
    void operator()(const char* name, Journaled<Link<Vtask>>& field) {
        Many(name, field, [&] {
            Vproject* project = workspace_.FindOrCreateProject(ReadString(reader_));
            if (!project) return Link<Vtask>();
            const std::int32_t id = ReadLinkNumber(name, kDeletedTask);
            return id == kDeletedTask ? DeletedTask() : Link<Vtask>(project->FindOrCreateTask(id));
        });
    }
    void operator()(const char* name, Journaled<Link<Vresource>>& field) {
        Many(name, field, [&] {
            Vtemplate* owner = workspace_.FindOrCreateTemplate(ReadString(reader_));
            return Link<Vresource>(owner ? owner->FindOrCreateResource(ReadLinkNumber(name, 1)) : nullptr);
        });
    }
    void operator()(const char* name, Journaled<Link<Vshift>>& field) {
        Many(name, field, [&] {
            const std::string shift = ReadString(reader_);
            Vshift* found = shifts_->ShiftList().Find(shift);
            if (!found && !shift.empty()) missingShift_ = shift;
            return Link<Vshift>(found);
        });
    }

    /// Name of the last shift that was not found; empty if all were.
    const std::string& MissingShift() const { return missingShift_; }

  private:
    void Begin(const char* name) {
        reader_.ExpectToken(name);
        if (reader_.EndOfLine()) reader_.Fail(std::string("there is no value for ") + name);
    }
    template <class Read>
    void One(const char* name, Read&& read) {
        Begin(name);
        read();
        if (!reader_.EndOfLine()) reader_.Fail(std::string("there is more than one value for ") + name);
    }
    template <class T, class Read>
    std::vector<T> ReadAll(const char* name, Read&& read) {
        Begin(name);
        std::vector<T> values = {read()};
        while (!reader_.EndOfLine() && values.size() <= static_cast<std::size_t>(journals_))
            values.push_back(read());
        if (values.size() != 1 && values.size() != static_cast<std::size_t>(journals_)) {
            reader_.Fail(std::string(name) +
                         " must have one value or one for each journal, of which there are " +
                         std::to_string(journals_));
        }
        return values;
    }
    template <class T, class Read>
    void Many(const char* name, Journaled<T>& field, Read&& read) {
        Begin(name);
        T first = read();
        if (reader_.EndOfLine()) {
            field.SetSingle(std::move(first));
            return;
        }
        std::vector<T> values = {std::move(first)};
        while (!reader_.EndOfLine() && values.size() <= static_cast<std::size_t>(journals_))
            values.push_back(read());
        if (values.size() != static_cast<std::size_t>(journals_)) {
            reader_.Fail(std::string(name) +
                         " must have one value or one for each journal, of which there are " +
                         std::to_string(journals_));
        }
        field.SetArray(values);
    }
    /// A link to a task that has been deleted.
    Link<Vtask> DeletedTask() {
        auto* task = workspace_.NewVObject<Vtask>();
        const Link<Vtask> link(task);
        workspace_.FreeVobject(task);
        return link;
    }
    std::int32_t ReadLinkNumber(const char* name, std::int32_t least) {
        if (reader_.EndOfLine()) reader_.Fail(std::string("the number is missing in the link ") + name);
        return ReadNumber(reader_, least, INT32_MAX, least > 0 ? "a number above 0" : "a number from 0 up");
    }

    Workspace& workspace_;
    TokenReader& reader_;
    std::int32_t journals_;
    const Vtemplate* shifts_;
    std::string missingShift_;
};

class RecordLoader {
  public:
    RecordLoader(Workspace& workspace, TokenReader& reader, LoadReport& report)
        : workspace_(workspace), reader_(reader), report_(report) {}

    void LoadAll() {
        for (;;) {
            const auto tag = reader_.ReadToken();
            if (tag.empty()) break;
            if (tag == "PROJECT") {
                LoadProject();
            } else if (tag == "TEMPLATE") {
                LoadTemplate();
            } else {
                reader_.FailValue(tag, "\"PROJECT\" or \"TEMPLATE\"");
            }
        }
        report_.lineBehindBlank = reader_.LineBehindBlank();
    }

  private:
    struct Journals {
        std::int32_t plan = 0, current = 0;
    };

    /// While the records below an owner are read its first journal is active, so that new objects exist in
    /// all of them. Afterwards, also when a fault ends the reading, the remembered one is again.
    class CurrentIndexGuard {
      public:
        CurrentIndexGuard(JournalOwner& owner, std::int32_t current) : owner_(owner), current_(current) {}
        ~CurrentIndexGuard() { owner_.SetCurrentIndex(current_); }
        CurrentIndexGuard(const CurrentIndexGuard&) = delete;
        CurrentIndexGuard& operator=(const CurrentIndexGuard&) = delete;

      private:
        JournalOwner& owner_;
        std::int32_t current_;
    };

    std::string ReadName(const char* field) {
        reader_.ExpectToken(field);
        const std::string name = reader_.EndOfLine() ? "" : ReadString(reader_);
        if (name.empty()) reader_.Fail(std::string(field) + " is empty");
        if (!reader_.EndOfLine()) reader_.Fail(std::string("there is more than one value for ") + field);
        return name;
    }
    std::int32_t ReadID(const char* field) {
        reader_.ExpectToken(field);
        if (reader_.EndOfLine()) reader_.Fail(std::string("there is no value for ") + field);
        return ReadNumber(reader_, 1, INT32_MAX, "a number above 0");
    }
    /// Whether the next line is the record `tag`. Another line is left to be read again.
    bool NextIs(std::string_view tag) {
        if (reader_.ReadToken() == tag && reader_.EndOfLine()) return true;
        reader_.UnReadLine();
        return false;
    }

    template <class Owner>
    void LoadHead(Owner& owner) {
        FieldReader field(workspace_, reader_, 1);
        std::string text;
        field("Description", text);
        owner.SetDescription(text);
        field("ViewPassword", text);
        owner.SetViewPassword(text);
        field("ModifyPassword", text);
        owner.SetModifyPassword(text);
    }

    Journals LoadJournals(JournalOwner& owner, bool withPlan) {
        FieldReader field(workspace_, reader_, 1);
        Journals journals;
        std::int32_t count = 0;
        if (withPlan) field("PlanIndex", journals.plan);
        field("CurrentIndex", journals.current);
        field("NumJournals", count);
        reader_.ExpectToken("JournalDates");
        if (reader_.EndOfLine()) reader_.Fail("there is no value for JournalDates");
        std::vector<DateTime> dates;
        while (!reader_.EndOfLine()) dates.push_back(ReadDate(reader_));
        const std::int32_t last = std::max(count, 1) - 1;
        if (journals.current < 0 || journals.current > last || journals.plan < 0 || journals.plan > last) {
            reader_.Fail("CurrentIndex or PlanIndex does not name one of the " + std::to_string(count) +
                         " journals");
        }
        try {
            owner.LoadJournals(count, std::move(dates));
        } catch (const std::exception& fault) {
            reader_.Fail(fault.what());
        }
        return journals;
    }

    void LoadTemplate() {
        Vtemplate& loaded = *workspace_.FindOrCreateTemplate(ReadName("TemplateName"));
        ++report_.templates;
        LoadHead(loaded);
        const Journals journals = LoadJournals(loaded, false);
        CurrentIndexGuard guard(loaded, journals.current);
        for (;;) {
            if (NextIs("SHIFT")) {
                LoadShift(loaded);
            } else if (NextIs("RESOURCE")) {
                LoadResource(loaded);
            } else {
                break;
            }
        }
        loaded.SetDirty(false);
    }

    void LoadShift(Vtemplate& owner) {
        Vshift& shift = *owner.FindOrCreateShift(ReadName("ShiftName"));
        ++report_.shifts;
        shift.ForEachField(FieldReader(workspace_, reader_, 1));
    }

    void LoadResource(Vtemplate& owner) {
        Vresource& resource = *owner.FindOrCreateResource(ReadID("ResourceID"));
        ++report_.resources;
        FieldReader fields(workspace_, reader_, owner.NumJournals(), &owner);
        resource.ForEachField(fields);
        if (!fields.MissingShift().empty()) {
            report_.missingShifts.push_back("Resource " + resource.Key() + " of template " +
                                            owner.TemplateName() + " has the shift \"" +
                                            fields.MissingShift() + "\", which the template does not have.");
        }
    }

    void LoadProject() {
        Vproject& project = *workspace_.FindOrCreateProject(ReadName("ProjectName"));
        ++report_.projects;
        LoadHead(project);
        const Journals journals = LoadJournals(project, true);
        project.SetPlanIndex(journals.plan);
        CurrentIndexGuard guard(project, journals.current);
        project.ForEachField(FieldReader(workspace_, reader_, project.NumJournals()));
        while (NextIs("TASK")) LoadTask(project);
        project.SetDirty(false);
    }

    void LoadTask(Vproject& owner) {
        Vtask& task = *owner.FindOrCreateTask(ReadID("TaskID"));
        ++report_.tasks;
        task.ForEachField(FieldReader(workspace_, reader_, owner.NumJournals()));
        for (;;) {
            if (NextIs("DEPENDENCY")) {
                auto* dependency = workspace_.NewVObject<Vdependency>();
                dependency->SetTask(&task);
                ++report_.dependencies;
                dependency->ForEachField(FieldReader(workspace_, reader_, owner.NumJournals()));
            } else if (NextIs("ASSIGNMENT")) {
                auto* assignment = workspace_.NewVObject<Vassignment>();
                assignment->SetTask(&task);
                ++report_.assignments;
                assignment->ForEachField(FieldReader(workspace_, reader_, owner.NumJournals()));
            } else {
                break;
            }
        }
    }

    Workspace& workspace_;
    TokenReader& reader_;
    LoadReport& report_;
};

}  // namespace

void LoadRecords(Workspace& workspace, TokenReader& reader, LoadReport& report) {
    const Section section("Records:LoadRecords");
    RecordLoader(workspace, reader, report).LoadAll();
}

}  // namespace vortan

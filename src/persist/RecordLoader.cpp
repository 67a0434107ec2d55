// Reading of records.

#include <algorithm>

#include "model/ErrTrap.h"
#include "model/History.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "persist/FieldReader.h"
#include "persist/Records.h"

namespace vortan {

namespace {

class RecordLoader {
  public:
    RecordLoader(Workspace& workspace, TokenReader& reader, LoadReport& report)
        : workspace_(workspace), reader_(reader), report_(report) {}

    void LoadAll() {
        for (bool first = true;; first = false) {
            const auto tag = reader_.ReadToken();
            if (tag.empty()) break;
            if (tag == "PROJECT") {
                LoadProject();
            } else if (tag == "TEMPLATE") {
                LoadTemplate();
            } else {
                if (!first && IsOfALaterVersion(tag)) {
                    report_.newer = true;
                    reader_.Fail("it was written by a newer version of VORTAN, with \"" + std::string(tag) +
                                 "\", which this version does not know");
                }
                reader_.FailValue(tag, "\"PROJECT\" or \"TEMPLATE\"");
            }
        }
        report_.lineBehindBlank = reader_.LineBehindBlank();
    }

  private:
    struct Journals {
        std::int32_t plan = 0, current = 0;
    };

    /// Whether `word`, which stands behind a whole record, is what a later version may have put there: the
    /// name of a field, with values, or the tag of a record, alone, that no record of this version has.
    bool IsOfALaterVersion(std::string_view word) {
        const auto among = [word](char first, char last) {
            return std::count_if(word.begin(), word.end(), [=](char c) { return c >= first && c <= last; });
        };
        const std::ptrdiff_t size = std::ssize(word), capitals = among('A', 'Z'), small = among('a', 'z');
        const bool tag = reader_.EndOfLine() && capitals == size;
        const bool field = !reader_.EndOfLine() && small > 0 && capitals + small + among('0', '9') == size &&
                           word.front() >= 'A' && word.front() <= 'Z';
        return (tag || field) && !IsKnown(word);
    }
    bool IsKnown(std::string_view word) {
        static constexpr std::string_view kHeads[] = {
            "TEMPLATE",     "SHIFT",          "RESOURCE",    "PROJECT",     "TASK",
            "DEPENDENCY",   "ASSIGNMENT",     "ShiftName",   "ResourceID",  "TaskID",
            "TemplateName", "ProjectName",    "Description", "PlanIndex",   "CurrentIndex",
            "ViewPassword", "ModifyPassword", "NumJournals", "JournalDates"};
        return std::find(std::begin(kHeads), std::end(kHeads), word) != std::end(kHeads) ||
               HasField<Vshift>(word) || HasField<Vresource>(word) || HasField<Vproject>(word) ||
               HasField<Vtask>(word) || HasField<Vdependency>(word) || HasField<Vassignment>(word);
    }
    template <class Object>
    bool HasField(std::string_view name) {
        bool found = false;
        auto* object = workspace_.NewVObject<Object>();
        object->ForEachField([&](const char* field, const auto&) { found = found || name == field; });
        workspace_.FreeVobject(object);
        return found;
    }

    /// While the records below an owner are read its first journal is active, so that new objects exist in
    /// all of them. Afterwards, also when a fault ends the reading, the remembered one is again. `current`
    /// must be one of its journals.
    class CurrentIndexGuard {
      public:
        CurrentIndexGuard(JournalOwner& owner, std::int32_t current) : owner_(owner), current_(current) {}
        ~CurrentIndexGuard() {
            try {
                owner_.SetCurrentIndex(current_);
            } catch (...) {  // not with such an index, and a fault on the way is worth more
            }
        }
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
    /// Takes the line `tag` if it is the next.
    bool TakeTag(std::string_view tag) {
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
        workspace_.TheHistory().KeepWhole(loaded);
        ++report_.templates;
        LoadHead(loaded);
        const Journals journals = LoadJournals(loaded, false);
        CurrentIndexGuard guard(loaded, journals.current);
        for (;;) {
            if (TakeTag("SHIFT")) {
                LoadShift(loaded);
            } else if (TakeTag("RESOURCE")) {
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
        workspace_.TheHistory().KeepWhole(project);
        ++report_.projects;
        LoadHead(project);
        const Journals journals = LoadJournals(project, true);
        project.SetPlanIndex(journals.plan);
        CurrentIndexGuard guard(project, journals.current);
        project.ForEachField(FieldReader(workspace_, reader_, project.NumJournals()));
        while (TakeTag("TASK")) LoadTask(project);
        project.SetDirty(false);
    }

    void LoadTask(Vproject& owner) {
        Vtask& task = *owner.FindOrCreateTask(ReadID("TaskID"));
        ++report_.tasks;
        task.ForEachField(FieldReader(workspace_, reader_, owner.NumJournals()));
        for (;;) {
            if (TakeTag("DEPENDENCY")) {
                auto* dependency = workspace_.NewVObject<Vdependency>();
                dependency->SetTask(&task);
                ++report_.dependencies;
                dependency->ForEachField(FieldReader(workspace_, reader_, owner.NumJournals()));
            } else if (TakeTag("ASSIGNMENT")) {
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
    const Workspace::Quiet quiet(workspace);
    RecordLoader(workspace, reader, report).LoadAll();
}

}  // namespace vortan

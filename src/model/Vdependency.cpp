#include "model/Vdependency.h"

#include <algorithm>
#include <cmath>

#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Workspace.h"

namespace vortan {

void Vdependency::Reset() {
    SetTask(nullptr);
    include_.SetSingle(true);
    depDate_.SetSingle({});
    taskRequired_.SetSingle({});
    fromPercent_.SetSingle(100);
    toPercent_.SetSingle(0);
    offset_.SetSingle(0);
}

void Vdependency::SetTask(Vtask* task) {
    if (myTask_) std::erase(myTask_->DependencyListOfOwner(), this);
    myTask_ = task;
    if (!task) return;
    task->DependencyListOfOwner().push_back(this);
    if (const Vproject* project = task->Project(); project && project->CurrentIndex() > 0) {
        include_.StartAt(project->CurrentIndex(), project->NumJournals());
    }
}

namespace {

/// The short date, and the time of day if there is one; the day that means "not set" is told like any other.
std::string DateAndTime(DateTime date) {
    const DateParts parts = ToParts(date);
    const int seconds = parts.hour * 3600 + parts.minute * 60 + parts.second;
    return FormatShortDate(date) + (seconds == 0 ? "" : " " + FormatDate(DateTime(seconds / 86400.0)));
}

}  // namespace

std::string Vdependency::BuildNodeText() const {
    const Vtask* required = TaskRequired();
    std::string text;
    if (!required) {
        text = TaskRequiredDeleted() ? "<deleted>" : DateAndTime(DepDate());
    } else if (required->Project() == Project()) {
        text = required->BuildNodeText();
    } else {
        text = "(" + (required->Project() ? required->Project()->ProjectName() : "") + ") " +
               required->BuildNodeText();
    }
    const auto letter = [](int percent) { return percent == 0 ? 'S' : percent == 100 ? 'F' : 'P'; };
    if (FromPercent() != 100 || ToPercent() != 0) {
        text += ": ";
        text += letter(ToPercent());
        text += required || TaskRequiredDeleted() ? letter(FromPercent()) : 'D';
    }
    if (Offset() > 0) text += " + " + FormatDuration(Offset(), true);
    if (Offset() < 0) text += " - " + FormatDuration(-Offset(), true);
    return text;
}

void Vdependency::ChangeNumJournals() {
    if (const Vproject* project = Project())
        ForEachField(ResizeField{project->NumJournals(), project->CurrentIndex()});
}

void Vdependency::FitJournals() {
    if (const Vproject* project = Project()) ForEachField(FitField{project->NumJournals()});
}

void Vdependency::Delete() {
    const std::int32_t count = Project() ? Project()->NumJournals() : 0;
    include_.EndAt(Index(), count, false);
    if (!include_.AnyTrue(std::max(count, 1))) Owner().FreeVobject(this);
}

}  // namespace vortan

#include "model/Vdependency.h"

#include <algorithm>
#include <cmath>

#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Workspace.h"

namespace vortan {

void Vdependency::Reset() {
    SetTask(nullptr);
    ResetFields();
}

void Vdependency::SetTask(Vtask* task) {
    if (myTask_) {
        Changing(*this, ChangeKind::Left);
        std::erase(myTask_->dependencyList_, this);
    }
    myTask_ = task;
    if (!task) return;
    task->dependencyList_.push_back(this);
    Begin();
    Changing(*this, ChangeKind::Joined);
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

void Vdependency::Delete() {
    if (!End(false)) Owner().FreeVobject(this);
}

}  // namespace vortan

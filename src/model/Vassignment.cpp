#include "model/Vassignment.h"

#include <algorithm>
#include <cmath>

#include "model/ValueText.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Workspace.h"

namespace vortan {

void Vassignment::Reset() {
    SetTask(nullptr);
    include_.SetSingle(true);
    resourceRequired_.SetSingle({});
    hours_.SetSingle(0);
    workDays_.Reset();
}

void Vassignment::SetTask(Vtask* task) {
    if (myTask_) std::erase(myTask_->AssignmentListOfOwner(), this);
    myTask_ = task;
    if (!task) return;
    task->AssignmentListOfOwner().push_back(this);
    if (const Vproject* project = task->Project(); project && project->CurrentIndex() > 0) {
        include_.StartAt(project->CurrentIndex(), project->NumJournals());
    }
}

Vresource* Vassignment::ResourceRequired() const {
    return resourceRequired_.At(Index()).Get();
}

void Vassignment::SetResourceRequired(Vresource* value) {
    Let(resourceRequired_, Link<Vresource>(value));
    if (!Project() || !value) return;
    // Normal hours are tenths; the nearest double to 8.3 reads and is saved as 8.3, that of the float does
    // not.
    SetHours(std::round(static_cast<double>(value->NormalHours()) * 10) / 10);
    for (int day = 0; day < kDayKinds; ++day) SetWorkDay(day, value->WorkDay(day));
}

float Vassignment::PercentOfWeek() const {
    const Vresource* resource = ResourceRequired();
    if (!resource) return 0;
    double mine = 0, normal = 0;
    for (int day = 1; day <= 7; ++day) {
        if (WorkDay(day)) mine += Hours();
        if (resource->WorkDay(day)) normal += static_cast<double>(resource->NormalHours());
    }
    return normal > 0 ? static_cast<float>(mine / normal) : 0;
}

std::string Vassignment::BuildNodeText() const {
    const Vresource* resource = ResourceRequired();
    std::string text = (resource ? resource->BuildNodeText() : "<none>") + " @" + PlainNumber(Hours()) + " ";
    for (int day = 0; day < kDayKinds; ++day) {
        if (WorkDay(day)) text += DayLetters(day);
    }
    return text;
}

void Vassignment::ChangeNumJournals() {
    if (const Vproject* project = Project())
        ForEachField(ResizeField{project->NumJournals(), project->CurrentIndex()});
}

void Vassignment::FitJournals() {
    if (const Vproject* project = Project()) ForEachField(FitField{project->NumJournals()});
}

void Vassignment::Delete() {
    const std::int32_t count = Project() ? Project()->NumJournals() : 0;
    include_.EndAt(Index(), count, false);
    if (!include_.AnyTrue(std::max(count, 1))) Owner().FreeVobject(this);
}

}  // namespace vortan

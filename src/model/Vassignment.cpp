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
    ResetFields();
}

void Vassignment::SetTask(Vtask* task) {
    if (myTask_) {
        Changing(*this, ChangeKind::Left);
        std::erase(myTask_->assignmentList_, this);
    }
    myTask_ = task;
    if (!task) return;
    task->assignmentList_.push_back(this);
    Begin();
    Changing(*this, ChangeKind::Joined);
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

void Vassignment::Delete() {
    if (!End(false)) Owner().FreeVobject(this);
}

}  // namespace vortan

#include "model/LinkText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

#include "model/Characters.h"
#include "model/Fault.h"
#include "model/NumberText.h"
#include "model/TypedValues.h"
#include "model/ValueText.h"
#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "model/Workspace.h"

namespace vortan {
namespace {

constexpr const char* kDeleted = "<deleted>";
constexpr const char* kNone = "<none>";
constexpr std::string_view kNoDays = "-";

/// The parts between semicolons, but for those within brackets; without blanks around them.
std::vector<std::string> Items(std::string_view line) {
    std::vector<std::string> items;
    std::string item;
    int depth = 0;
    const auto end = [&] {
        if (!Trim(item).empty()) items.emplace_back(Trim(item));
        item.clear();
    };
    for (const char c : line) {
        if (c == '(') ++depth;
        if (c == ')' && depth > 0) --depth;
        c == ';' && depth == 0 ? end() : item.push_back(c);
    }
    end();
    return items;
}

/// Takes the first word off.
std::string TakeWord(std::string_view& text) {
    text = Trim(text);
    const std::string word(text.substr(0, text.find(' ')));
    text = Trim(text.substr(word.size()));
    return word;
}

/// Takes the name in brackets off that `text` may begin with: "(House) 12".
std::optional<std::string> TakeBracketed(std::string_view& text) {
    if (text.empty() || text.front() != '(') return std::nullopt;
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        depth += text[i] == '(' ? 1 : text[i] == ')' ? -1 : 0;
        if (depth > 0) continue;
        const std::string name(text.substr(1, i - 1));
        text = Trim(text.substr(i + 1));
        return name;
    }
    return std::nullopt;
}

std::optional<std::int32_t> NumberOf(std::string_view text) {
    const std::int32_t number = TakeDigits(text, 9);
    return number >= 0 && text.empty() ? std::optional(number) : std::nullopt;
}

// ---- dependencies

struct TypedDependency {
    Vtask* required = nullptr;  // none: the date, or a task that is coming
    DateTime date;
    int fromPercent = 100, toPercent = 0;
    double offset = 0;
    std::string refusal;
};

std::string ItemOf(const Vdependency& dependency) {
    const Vtask* required = dependency.TaskRequired();
    std::string text;
    if (!required) {
        text = dependency.TaskRequiredDeleted() ? kDeleted : FormatDate(dependency.DepDate());
    } else {
        if (required->Project() != dependency.Project())
            text = "(" + (required->Project() ? required->Project()->ProjectName() : "") + ") ";
        text += std::to_string(required->TaskID());
    }
    if (dependency.FromPercent() != 100 || dependency.ToPercent() != 0) {
        text += " " + std::to_string(dependency.FromPercent()) + "%-" +
                std::to_string(dependency.ToPercent()) + "%";
    }
    const double offset = dependency.Offset();
    if (offset != 0) text += (offset > 0 ? " +" : " -") + FormatDuration(std::abs(offset), false);
    return text;
}

/// "50%-0%" or "50-0%", either sign of percent can be missing.
bool ReadPercents(std::string_view word, TypedDependency& into) {
    const auto take = [&word](int& percent) {
        percent = TakeDigits(word, 3);
        if (!word.empty() && word.front() == '%') word.remove_prefix(1);
        return percent >= 0 && percent <= 100;
    };
    if (!take(into.fromPercent) || word.empty() || word.front() != '-') return false;
    word.remove_prefix(1);
    return take(into.toPercent) && word.empty();
}

/// The time of day of a date, which may have several words.
bool BelongsToTime(const std::string& word) {
    return word.find(':') != std::string::npos || SameText(word, "am") || SameText(word, "pm");
}

TypedDependency Refused(std::string sentence) {
    TypedDependency refused;
    refused.refusal = std::move(sentence);
    return refused;
}

/// What waits for what: the task or the date at the front.
TypedDependency ReadRequired(std::string_view& rest, const Vtask* task, const Vproject& project,
                             const std::set<std::int32_t>& coming) {
    TypedDependency typed;
    const std::string item(rest);
    const Vproject* where = &project;
    if (const auto name = TakeBracketed(rest)) {
        where = project.Owner().ProjectList().Find(*name);
        if (!where) return Refused("There is no project \"" + *name + "\" in memory.");
    }
    std::string first = TakeWord(rest);
    if (const auto number = NumberOf(first)) {
        typed.required = where->FindTask(*number);
        if (typed.required && typed.required == task) return Refused("A task cannot depend on itself.");
        const bool known =
            typed.required ? typed.required->Include() : where == &project && coming.contains(*number);
        if (!known) return Refused("There is no task " + first + " in project " + where->ProjectName() + ".");
        return typed;
    }
    while (!rest.empty()) {
        std::string_view behind = rest;
        const std::string word = TakeWord(behind);
        if (!BelongsToTime(word)) break;
        first += " " + word;
        rest = behind;
    }
    const auto date = where == &project ? ParseDate(first) : std::nullopt;
    if (!date)
        return Refused(
            "\"" + item +
            "\" is no dependency. Type the number of a task or a date, such as \"4; 7 50%-0% +2d\".");
    typed.date = *date;
    return typed;
}

TypedDependency ReadDependency(const std::string& item, const Vtask* task, const Vproject& project,
                               const std::set<std::int32_t>& coming) {
    std::string_view rest = item;
    TypedDependency typed = ReadRequired(rest, task, project, coming);
    if (!typed.refusal.empty()) return typed;
    if (!rest.empty() && IsDigit(rest.front())) {
        const std::string percents = TakeWord(rest);
        if (!ReadPercents(percents, typed))
            return Refused("\"" + percents + "\" in \"" + item +
                           "\" must be percents from 0 to 100, such as \"50%-0%\".");
    }
    if (rest.empty()) return typed;
    const bool minus = rest.front() == '-';
    if (!minus && rest.front() != '+')
        return Refused("\"" + std::string(rest) + "\" in \"" + item +
                       "\" is neither percents nor an offset.");
    rest.remove_prefix(1);
    const auto offset = TypedOffset(std::string(Trim(rest)));
    if (!offset.value) return Refused(offset.refusal);
    typed.offset = minus ? 0 - *offset.value : *offset.value;
    return typed;
}

void Write(Vdependency& dependency, const TypedDependency& typed) {
    if (!typed.required) dependency.SetDepDate(typed.date);
    dependency.SetTaskRequired(typed.required);
    dependency.SetToPercent(static_cast<std::uint8_t>(typed.toPercent));
    dependency.SetFromPercent(static_cast<std::uint8_t>(typed.fromPercent));
    dependency.SetOffset(typed.offset);
}

// ---- assignments

struct TypedAssignment {
    Vresource* resource = nullptr;
    double hours = 0;
    std::array<bool, kDayKinds> days{};
    std::string refusal;
};

/// The hours that an assignment is offered at first.
double UsualHours(const Vresource& resource) {
    return std::round(static_cast<double>(resource.NormalHours()) * 10) / 10;
}

Vresource* ResourceNamed(const Vtemplate& owner, const std::string& name) {
    if (const auto number = NumberOf(name)) return owner.FindResource(*number);
    Vresource* found = nullptr;
    for (Vresource* resource : owner.ResourceList()) {
        if (!resource->Include() || !SameText(resource->Description(), name)) continue;
        if (found) return nullptr;
        found = resource;
    }
    return found;
}

/// "MoTuFr", "-" for none.
std::optional<std::array<bool, kDayKinds>> ReadDays(std::string_view word) {
    std::array<bool, kDayKinds> days{};
    if (word == kNoDays) return days;
    if (word.empty() || word.size() % 2 != 0) return std::nullopt;
    for (; !word.empty(); word.remove_prefix(2)) {
        bool known = false;
        for (int day = 0; day < kDayKinds; ++day) {
            if (!SameText(word.substr(0, 2), DayLetters(day))) continue;
            days[static_cast<std::size_t>(day)] = known = true;
        }
        if (!known) return std::nullopt;
    }
    return days;
}

/// Takes the last word off.
std::string TakeLastWord(std::string& text) {
    const std::size_t blank = text.rfind(' ');
    if (blank == std::string::npos) return {};
    std::string word = text.substr(blank + 1);
    text = Trim(text.substr(0, blank));
    return word;
}

/// Takes the hours off that `name` may end in: "@4", or "50%" of the day of the resource.
bool TakeHours(std::string& name, std::string& word, bool& percent) {
    std::string rest = name;
    word = TakeLastWord(rest);
    percent = word.size() > 1 && word.back() == '%' && IsDigit(word.front());
    if (!percent && (word.size() < 2 || word.front() != '@')) return false;
    word = percent ? word.substr(0, word.size() - 1) : word.substr(1);
    name = rest;
    return true;
}

TypedAssignment ReadAssignment(const std::string& item, const Workspace& workspace) {
    const auto refused = [](std::string sentence) {
        TypedAssignment typed;
        typed.refusal = std::move(sentence);
        return typed;
    };
    std::string_view rest = item;
    const Vtemplate* from = workspace.ThisTemplate();
    if (const auto name = TakeBracketed(rest)) {
        from = workspace.TemplateList().Find(*name);
        if (!from) return refused("There is no template \"" + *name + "\" in memory.");
    }
    if (!from) return refused("There is no template in memory.");
    std::string name(rest), hours;
    bool percent = false, hasHours = false;
    std::optional<std::array<bool, kDayKinds>> days;
    TypedAssignment typed;
    typed.resource = ResourceNamed(*from, name);
    if (!typed.resource) {
        std::string before = name;
        if ((days = ReadDays(TakeLastWord(before)))) name = before;
        hasHours = TakeHours(name, hours, percent);
        typed.resource = ResourceNamed(*from, name);
    }
    if (!typed.resource || !typed.resource->Include())
        return refused("There is no resource \"" + name + "\" in template " + from->TemplateName() + ".");
    typed.hours = UsualHours(*typed.resource);
    if (hasHours) {
        const auto number = TypedNumber(hours, "hours a day");
        if (!number.value) return refused(number.refusal);
        typed.hours = percent ? static_cast<double>(typed.resource->NormalHours()) * *number.value / 100
                              : *number.value;
    }
    for (int day = 0; day < kDayKinds; ++day) {
        const auto i = static_cast<std::size_t>(day);
        typed.days[i] = days ? (*days)[i] : typed.resource->WorkDay(day);
    }
    return typed;
}

/// The name of a resource where it is understood, or else its number.
std::string NameIn(const Workspace& workspace, Vresource& resource) {
    const Vtemplate* owner = resource.Template();
    const std::string bracket =
        owner && owner != workspace.ThisTemplate() ? "(" + owner->TemplateName() + ") " : "";
    const std::string name = bracket + std::string(Trim(resource.Description()));
    const auto items = Items(name);
    if (items.size() == 1 && ReadAssignment(name, workspace).resource == &resource) return name;
    return bracket + std::to_string(resource.ResourceID());
}

std::string ItemOf(const Vassignment& assignment) {
    Vresource* resource = assignment.ResourceRequired();
    if (!resource) return kNone;
    std::string text = NameIn(assignment.Owner(), *resource), days;
    if (assignment.Hours() != UsualHours(*resource)) text += " @" + PlainNumber(assignment.Hours());
    bool usual = true;
    for (int day = 0; day < kDayKinds; ++day) {
        if (assignment.WorkDay(day)) days += DayLetters(day);
        usual &= assignment.WorkDay(day) == resource->WorkDay(day);
    }
    return usual ? text : text + " " + (days.empty() ? std::string(kNoDays) : days);
}

void Write(Vassignment& assignment, const TypedAssignment& typed) {
    assignment.SetResourceRequired(typed.resource);
    // Behind the resource, which brings hours and days of its own.
    assignment.SetHours(typed.hours);
    for (int day = 0; day < kDayKinds; ++day)
        assignment.SetWorkDay(day, typed.days[static_cast<std::size_t>(day)]);
}

// ---- both

template <class List>
std::string LineOf(const List& list) {
    std::string line;
    for (const auto* each : list)
        if (each->Include()) line += (line.empty() ? "" : "; ") + ItemOf(*each);
    return line;
}

/// Takes out of `items` and of `there` what says the same in both.
template <class T>
void RemoveSame(std::vector<std::string>& items, std::vector<T*>& there) {
    std::erase_if(items, [&](const std::string& item) {
        for (auto each = there.begin(); each != there.end(); ++each) {
            if (ItemOf(**each) != item) continue;
            there.erase(each);
            return true;
        }
        return false;
    });
}

template <class T, class List>
std::vector<T*> Included(const List& list) {
    std::vector<T*> all;
    for (T* each : list)
        if (each->Include()) all.push_back(each);
    return all;
}

/// `read` gives what an item says, `same` whether an object has the same other end.
template <class T, class List, class Read, class Same>
void TakeLine(Vtask& task, const List& list, const std::string& line, const Read& read, const Same& same) {
    std::vector<std::string> items = Items(line);
    std::vector<T*> there = Included<T>(list);
    RemoveSame(items, there);
    for (const std::string& item : items) {
        const auto typed = read(item);
        if (!typed.refusal.empty()) Refuse(typed.refusal);
        const auto found =
            std::find_if(there.begin(), there.end(), [&](T* each) { return same(*each, typed); });
        T* object = nullptr;
        if (found == there.end()) {
            object = task.Owner().template NewVObject<T>();
            object->SetTask(&task);
        } else {
            object = *found;
            there.erase(found);
        }
        Write(*object, typed);
    }
    for (T* gone : there) gone->Delete();
}

}  // namespace

std::string DependencyLine(const Vtask& task) {
    return LineOf(task.DependencyList());
}
std::string AssignmentLine(const Vtask& task) {
    return LineOf(task.AssignmentList());
}

std::string DependencyRefusal(const Vtask* task, const Vproject& project, const std::string& line,
                              const std::set<std::int32_t>& coming) {
    std::vector<std::string> items = Items(line);
    if (task) {
        auto there = Included<Vdependency>(task->DependencyList());
        RemoveSame(items, there);
    }
    for (const std::string& item : items) {
        std::string refusal = ReadDependency(item, task, project, coming).refusal;
        if (!refusal.empty()) return refusal;
    }
    return {};
}

std::string AssignmentRefusal(const Vtask* task, const Workspace& workspace, const std::string& line) {
    std::vector<std::string> items = Items(line);
    if (task) {
        auto there = Included<Vassignment>(task->AssignmentList());
        RemoveSame(items, there);
    }
    for (const std::string& item : items) {
        std::string refusal = ReadAssignment(item, workspace).refusal;
        if (!refusal.empty()) return refusal;
    }
    return {};
}

void TakeDependencyLine(Vtask& task, const std::string& line) {
    TakeLine<Vdependency>(
        task, task.DependencyList(), line,
        [&](const std::string& item) { return ReadDependency(item, &task, *task.Project(), {}); },
        [](const Vdependency& there, const TypedDependency& typed) {
            return there.TaskRequired() == typed.required && !there.TaskRequiredDeleted();
        });
}

void TakeAssignmentLine(Vtask& task, const std::string& line) {
    TakeLine<Vassignment>(
        task, task.AssignmentList(), line,
        [&](const std::string& item) { return ReadAssignment(item, task.Owner()); },
        [](const Vassignment& there, const TypedAssignment& typed) {
            return there.ResourceRequired() == typed.resource;
        });
}

}  // namespace vortan

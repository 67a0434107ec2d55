#include "support/PlanGenerator.h"

#include <algorithm>
#include <array>
#include <vector>

#include "model/DateTime.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "model/WorkDays.h"

namespace vortan {

namespace {

struct Shift {
    const char* name;
    const char* hours;  ///< a letter an hour; lower-case letters stand for the mixtures of kMixtures
};

constexpr std::array<Shift, 8> kShifts = {{
    {"Standard", "XXXXXXXXNNNNBNNNNOOOOXXX"},
    {"Night", "NNNNNXXXXXXXXXXXXXXXOONN"},
    {"Short", "XXXXXXXXXNNaXXXXXXXXXXXX"},
    {"Broken", "XXXXXXXXbbbbBbbbbOOcXXXX"},
    {"Round the clock", "NNNNNNNNNNNNNNNNNNNNNNNN"},
    {"Mostly overtime", "OOOOOOXXNNOOOOOOXXXXOOOO"},
    {"Early", "XXXXNNNNNNBNNOOOOOOOOOOB"},
    {"Odd", "cXXXXXcNNNbbaBBNNNNcOOXX"},
}};

std::string HourLetters(char letter) {
    return letter == 'a'   ? "NNNNNNNXXXXX"
           : letter == 'b' ? "NNNNBNNNNBNN"
           : letter == 'c' ? "XOXXONNBXOXN"
                           : std::string(12, letter);
}

constexpr const char* kNoTexts = "\r\n  Description,\"\"\r\n  ViewPassword,\"\"\r\n  ModifyPassword,\"\"\r\n";
constexpr double kBase = 37137;  ///< 2001-09-03, a Monday

/// A task already written, as what later ones may depend on.
struct Written {
    std::size_t project;
    int id;
    bool link;
    bool ended = false;  ///< some task waits for its end
};

struct Project {
    std::string name;
    int parent = -1, depth = 0;
    std::vector<int> ids;   ///< numbers to give to the tasks, in no order
    std::vector<int> toDo;  ///< -1: a plain task; else the index of the subproject to link
    bool closed = false;
    std::string text;  ///< its record and tasks so far
};

class Generator {
  public:
    Generator(std::uint64_t seed, const PlanKnobs& knobs) : random_(seed), knobs_(knobs) {}

    std::string Run() {
        current_ = random_.Between(std::max(0, knobs_.journals - 2), knobs_.journals - 1);
        for (int i = 0; i < knobs_.templates; ++i) WriteTemplate(i);
        MakeProjects();
        for (;;) {
            std::vector<std::size_t> open;
            for (std::size_t i = 0; i < projects_.size(); ++i) {
                const Project& project = projects_[i];
                if (project.closed) continue;
                const int next = project.toDo.empty() ? -1 : project.toDo.back();
                if (next < 0 || projects_[static_cast<std::size_t>(next)].closed) open.push_back(i);
            }
            if (open.empty()) break;
            Advance(open[random_.Next() % open.size()]);
        }
        for (const Project& project : projects_) text_ += project.text;
        return text_;
    }

  private:
    static void Field(std::string& text, const std::string& name, const std::string& value) {
        text += "  " + name + "," + value + "\r\n";
    }
    static std::string Quoted(const std::string& value) { return "\"" + value + "\""; }
    /// A per-journal field: `value` in the active journal, from `any` in the others.
    template <class Any>
    void Journaled(std::string& text, const std::string& name, const std::string& value, Any&& any) {
        if (knobs_.journals == 1 || random_.Chance(60)) return Field(text, name, value);
        std::string row;
        for (int i = 0; i < knobs_.journals; ++i) row += (i ? "," : "") + (i == current_ ? value : any());
        Field(text, name, row);
    }
    void Flag(std::string& text, const std::string& name, bool value) {
        Journaled(text, name, value ? "True" : "False",
                  [&] { return std::string(random_.Chance(50) ? "True" : "False"); });
    }
    void Number(std::string& text, const std::string& name, int value) {
        Journaled(text, name, std::to_string(value), [&] { return std::to_string(value + 60); });
    }
    static std::string DateValue(double days) {
        std::string text;
        AppendFileDate(text, DateTime(days));
        return text;
    }
    template <class T, std::size_t N>
    T Pick(const std::array<T, N>& values) {
        return values[random_.Next() % N];
    }

    void JournalFields(std::string& text) {
        Field(text, "CurrentIndex", std::to_string(current_));
        Field(text, "NumJournals", std::to_string(knobs_.journals));
        std::string dates;
        for (int i = 0; i < knobs_.journals; ++i) dates += (i ? "," : "") + DateValue(kBase + 21 * i);
        Field(text, "JournalDates", dates);
    }
    void WorkDayFields(std::string& text, const std::array<bool, kDayKinds>& days) {
        for (std::size_t day = 0; day < days.size(); ++day) Flag(text, kWorkDayFields[day], days[day]);
    }
    /// Never without a day of the week.
    std::array<bool, kDayKinds> SomeDays() {
        std::array<bool, kDayKinds> days{false, false, true, true, true, true, true, false, false};
        if (random_.Chance(40)) {
            for (bool& day : days) day = random_.Chance(50);
            days[static_cast<std::size_t>(random_.Between(1, 7))] = true;
        }
        return days;
    }

    static std::string TemplateName(int index) { return index == 0 ? "Staff" : "Machines, heavy"; }
    static int ResourceNumber(int index) { return 3 + 4 * index; }

    void WriteTemplate(int index) {
        text_ += "TEMPLATE\r\n  TemplateName," + Quoted(TemplateName(index)) + kNoTexts;
        JournalFields(text_);
        for (const Shift& shift : kShifts) {
            text_ += std::string("SHIFT\r\n  ShiftName,") + shift.name +
                     "\r\n  BurdenedMultiplier,2\r\n  OvertimeMultiplier,2\r\n  OffDayMultiplier,2\r\n  "
                     "HolidayMultiplier,2\r\n";
            for (int hour = 0; hour < 24; ++hour)
                Field(text_, FormatHour(hour, true), HourLetters(shift.hours[hour]));
        }
        for (int i = 0; i < knobs_.resources; ++i) WriteResource(i);
    }

    void WriteResource(int index) {
        text_ += "RESOURCE\r\n  ResourceID," + std::to_string(ResourceNumber(index)) + "\r\n  Description,R" +
                 std::to_string(index) + "\r\n";
        Flag(text_, "Include", true);
        text_ += "  Department,None\r\n  Title,\"\"\r\n";
        for (const char* name : {"BurdenedRate", "OvertimeRate", "OffDayRate", "HolidayRate"}) {
            const auto rate = [&] {
                return std::to_string(random_.Between(0, 199)) + "." +
                       std::to_string(random_.Between(1, 9999));
            };
            Journaled(text_, name, rate(), rate);
        }
        const auto shift = [&] {
            return std::string(knobs_.oddShifts && random_.Chance(60) ? Pick(kShifts).name : kShifts[0].name);
        };
        Journaled(text_, "Shift", shift(), shift);
        WorkDayFields(text_, SomeDays());
    }

    void MakeProjects() {
        for (int i = 0; i < knobs_.masters + knobs_.subprojects; ++i) {
            Project project;
            project.name = std::string(1, static_cast<char>('A' + (i * 5 + 3) % 26)) + std::to_string(i);
            if (i >= knobs_.masters) {
                do {
                    project.parent = random_.Between(0, i - 1);
                    project.depth = projects_[static_cast<std::size_t>(project.parent)].depth + 1;
                } while (project.depth > 2);
                auto& toDo = projects_[static_cast<std::size_t>(project.parent)].toDo;
                toDo.insert(toDo.begin() + random_.Between(0, static_cast<int>(toDo.size())), i);
            }
            project.toDo.assign(static_cast<std::size_t>(random_.Between(1, knobs_.tasks)), -1);
            projects_.push_back(project);
        }
        for (Project& project : projects_) {
            // One number more than tasks and links: the closing task's.
            for (std::size_t i = 0; i <= project.toDo.size(); ++i) project.ids.push_back(3 * int(i) + 2);
            for (std::size_t i = project.ids.size() - 1; i > 0; --i)
                std::swap(project.ids[i], project.ids[random_.Next() % (i + 1)]);
            WriteProject(project);
        }
    }

    void WriteProject(Project& project) {
        std::string& text = project.text;
        text += "PROJECT\r\n  ProjectName," + project.name + kNoTexts;
        Field(text, "PlanIndex", std::to_string(random_.Between(0, current_)));
        JournalFields(text);
        const auto priority = [&] {
            return Quoted(Pick(std::array<const char*, 5>{"1", "1", "10", "9", ""}));
        };
        Journaled(text, "Priority", priority(), priority);
        const auto rule = [&] { return std::to_string(Pick(std::array<int, 4>{1, 3, 5, 6})); };
        Journaled(text, "SolveRules", knobs_.rule < 0 ? rule() : std::to_string(knobs_.rule), rule);
        Field(text, "Parent",
              project.parent < 0 ? "\"\"" : projects_[static_cast<std::size_t>(project.parent)].name);
        Field(text, "Manager", "\"\"");
    }

    void Advance(std::size_t index) {
        Project& project = projects_[index];
        const int id = project.ids.back();
        project.ids.pop_back();
        if (project.toDo.empty()) {
            WriteClosingTask(index, id);
            project.closed = true;
            return;
        }
        const int link = project.toDo.back();
        project.toDo.pop_back();
        if (link >= 0) {
            WriteTask(project, id, projects_[static_cast<std::size_t>(link)].name, -60, 600);
            if (random_.Chance(30)) WriteDateDependency(project, 0);
        } else {
            WritePlainTask(index, id);
        }
        written_.push_back({index, id, link >= 0});
    }

    void WriteTask(Project& project, int id, const std::string& subproject, int units, int minutes) {
        std::string& text = project.text;
        text += "TASK\r\n  TaskID," + std::to_string(id) + "\r\n  Subproject," +
                (subproject.empty() ? "\"\"" : subproject) + "\r\n  Description,T" + std::to_string(id) +
                "\r\n";
        Flag(text, "Include", true);
        Journaled(text, "EffortUnits", std::to_string(units), [&] {
            return std::to_string(Pick(std::array<int, 3>{-60, 60, 0}));
        });
        for (const char* name : {"Optimistic", "MostLikely", "Pessimistic"}) Number(text, name, minutes);
        text += "  Efficiency,.85\r\n  MaterialCost," + std::to_string(random_.Between(0, 99)) +
                ".25\r\n  LaborCost,0\r\n";
        for (const char* name : {"EarlyStart", "EarlyFinish", "LateStart", "LateFinish"})
            Field(text, name, DateValue(0));
    }

    void WritePlainTask(std::size_t index, int id) {
        Project& project = projects_[index];
        int units = Pick(std::array<int, 4>{-1, -60, -480, -2400});
        int minutes = random_.Between(0, 9) == 0 ? 0 : random_.Between(1, knobs_.longest);
        if (random_.Chance(40)) minutes = minutes / 60 * 60;
        const int kind = random_.Between(1, 100);
        if (kind <= knobs_.calendar) {
            units = Pick(std::array<int, 3>{1, 60, 1440});
        } else if (kind <= knobs_.calendar + knobs_.dated) {
            units = 0;
        }
        WriteTask(project, id, "", units, minutes);
        const int dependencies = random_.Between(1, 3);
        for (int i = 0; i < dependencies; ++i) WriteSomeDependency(project, i == 0, units == 0);
        if (units == 0 && random_.Chance(70)) WriteDateDependency(project, 100);
        if (units < 0 || random_.Chance(30)) WriteAssignments(project);
    }

    /// Waits for everything in the project whose end nothing waits for.
    void WriteClosingTask(std::size_t index, int id) {
        Project& project = projects_[index];
        WriteTask(project, id, "", random_.Chance(50) ? -60 : 60, 60 * random_.Between(0, 10));
        WriteDateDependency(project, 0);
        for (Written& task : written_) {
            if (task.project != index || task.ended) continue;
            WriteDependency(project, &task, 100, 0);
        }
        WriteAssignments(project);
        // Not among written_: nothing may wait for the end of a master project.
        if (project.parent >= 0) written_.push_back({index, id, false});
    }

    void WriteSomeDependency(Project& project, bool toStart, bool dated) {
        if (written_.empty() || random_.Chance(toStart ? 40 : 10))
            return WriteDateDependency(project, toStart ? 0 : random_.Between(0, 99));
        Written& required = written_[random_.Next() % written_.size()];
        const auto percent = [&] {
            return random_.Chance(knobs_.partials)
                       ? Pick(std::array<int, 10>{0, 5, 10, 25, 33, 50, 50, 67, 90, 99})
                       : 100;
        };
        const int from = required.link ? 100 * random_.Between(0, 1) : percent();
        // The start of what dates drive must not be moved behind its end by chance alone.
        WriteDependency(project, &required, from, toStart || dated ? 0 : 100 - percent());
    }

    void WriteDateDependency(Project& project, int to) {
        double date = kBase + random_.Between(0, knobs_.spread);
        if (random_.Chance(40)) date += random_.Between(0, kMinutesPerDay - 1) / double(kMinutesPerDay);
        if (to == 100) date += knobs_.spread;
        if (knobs_.unset > 0 && random_.Chance(knobs_.unset)) date = 0;
        WriteDependency(project, nullptr, 100, to, date);
    }

    void WriteDependency(Project& project, Written* required, int from, int to, double date = 0) {
        std::string& text = project.text;
        text += "DEPENDENCY\r\n";
        Flag(text, "Include", true);
        Journaled(text, "DepDate", DateValue(date), [&] { return DateValue(date + 1); });
        Field(text, "TaskRequired",
              required ? projects_[required->project].name + "," + std::to_string(required->id) : "\"\"");
        Journaled(text, "FromPercent", std::to_string(from), [&] { return std::to_string(100 - from); });
        Journaled(text, "ToPercent", std::to_string(to), [&] { return std::to_string(100 - to); });
        const auto offset = [&] {
            return random_.Chance(knobs_.offsets) ? std::string(Pick(std::array<const char*, 8>{
                                                        "-2", "-.5", "1", "2.5", ".3333", "-.2717",
                                                        "1.00034722222222222", "-.99930555"}))
                                                  : std::string("0");
        };
        Journaled(text, "Offset", offset(), offset);
        if (required && from == 100) required->ended = true;
    }

    /// The first can always give some time, so that the task comes to an end.
    void WriteAssignments(Project& project) {
        const int count = random_.Between(1, 4);
        for (int i = 0; i < count; ++i) {
            const bool sure = i == 0;
            std::string& text = project.text;
            text += "ASSIGNMENT\r\n";
            Flag(text, "Include", sure || random_.Chance(85));
            const auto resource = [&] {
                return Quoted(TemplateName(random_.Between(0, knobs_.templates - 1))) + "," +
                       std::to_string(ResourceNumber(random_.Between(0, knobs_.resources - 1)));
            };
            Journaled(text, "ResourceRequired", resource(), resource);
            const auto hours = [&] {
                return std::string(
                    knobs_.oddHours && random_.Chance(50)
                        ? Pick(std::array<const char*, 12>{"2", "3.333", ".5", "7.75", "10", "24", "6",
                                                           "1.0083", "4", "30", ".0249", ".1"})
                        : "8");
            };
            Journaled(text, "Hours", !sure && knobs_.oddHours && random_.Chance(10) ? "0" : hours(), hours);
            WorkDayFields(text, SomeDays());
        }
    }

    FixedRandom random_;
    PlanKnobs knobs_;
    int current_ = 0;
    std::string text_;
    std::vector<Project> projects_;
    std::vector<Written> written_;
};

}  // namespace

std::string GeneratePlan(std::uint64_t seed, const PlanKnobs& knobs) {
    return Generator(seed, knobs).Run();
}

PlanKnobs MixedKnobs(std::uint64_t seed) {
    FixedRandom random(~seed);
    return {.tasks = random.Between(2, 12),
            .masters = random.Between(1, 2),
            .subprojects = random.Between(0, 3),
            .templates = random.Between(1, 2),
            .resources = random.Between(1, 5),
            .journals = random.Between(1, 3),
            .longest = random.Between(100, 4000),
            .spread = random.Between(0, 60),
            .partials = random.Between(0, 80),
            .offsets = random.Between(0, 60),
            .oddShifts = random.Chance(70),
            .oddHours = random.Chance(70)};
}

PlanKnobs CrowdedKnobs(std::uint64_t seed, int rule) {
    FixedRandom random(~seed);
    return {.tasks = random.Between(6, 16),
            .masters = random.Between(1, 3),
            .resources = random.Between(1, 3),
            .longest = random.Between(2000, 20000),
            .spread = random.Between(0, 15),
            .partials = random.Between(0, 40),
            .offsets = random.Between(0, 40),
            .calendar = random.Between(0, 10),
            .dated = 0,
            .oddShifts = random.Chance(60),
            .oddHours = random.Chance(60),
            .rule = rule};
}

}  // namespace vortan

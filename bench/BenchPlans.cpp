#include "BenchPlans.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

/// splitmix64.
class Random {
  public:
    explicit Random(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15U + 0x1234567) {}

    /// Uniform in 0 to n - 1.
    int Below(int n) {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        z ^= z >> 31;
        __extension__ using Wide = unsigned __int128;
        return static_cast<int>((static_cast<Wide>(z) * static_cast<std::uint64_t>(n)) >> 64);
    }

  private:
    std::uint64_t state_;
};

constexpr const char* kStart = "01/04/2027 12:00am";
constexpr const char* kNotSet = "12/30/1899 12:00am";

class PlanWriter {
  public:
    void Tag(const char* tag) { text_ += std::string(tag) + "\r\n"; }
    void Field(const std::string& name, const std::string& value) {
        text_ += "  " + name + "," + value + "\r\n";
    }
    void Field(const std::string& name, int value) { Field(name, std::to_string(value)); }

    void WorkDays(bool weekend) {
        static const char* const kDays[] = {"Holiday",  "Sunday", "Monday",   "Tuesday", "Wednesday",
                                            "Thursday", "Friday", "Saturday", "Shutdown"};
        for (int i = 0; i < 9; ++i) {
            const bool works = weekend ? i == 1 || i >= 5 : i >= 2 && i <= 6;
            Field(std::string("WorkOn") + kDays[i], works && i < 8 ? "True" : "False");
        }
    }
    void Template(const char* name) {
        Tag("TEMPLATE");
        Head("TemplateName", name);
        Journals();
    }
    /// Normal time from `from` to `from` + 9 hours with a break in the middle, four hours of overtime behind.
    void Shift(const char* name, int from) {
        Tag("SHIFT");
        Field("ShiftName", name);
        Field("BurdenedMultiplier", "1.5");
        Field("OvertimeMultiplier", "1.5");
        Field("OffDayMultiplier", "2");
        Field("HolidayMultiplier", "3");
        for (int hour = 0; hour < 24; ++hour) {
            const int since = hour - from;
            const char letter = since == 4                  ? 'B'
                                : since >= 0 && since <= 8  ? 'N'
                                : since >= 9 && since <= 12 ? 'O'
                                                            : 'X';
            const int shown = hour % 12 == 0 ? 12 : hour % 12;
            Field((shown < 10 ? "0" : "") + std::to_string(shown) + (hour < 12 ? "am" : "pm"),
                  std::string(12, letter));
        }
    }
    void Resource(int id, int rate, const char* shift) {
        Tag("RESOURCE");
        Field("ResourceID", id);
        Field("Description", "Resource " + std::to_string(id));
        Field("Include", "True");
        Field("Department", "None");
        Field("Title", "\"\"");
        Field("BurdenedRate", rate);
        Field("OvertimeRate", rate * 2);
        Field("OffDayRate", rate * 2);
        Field("HolidayRate", rate * 3);
        Field("Shift", shift);
        WorkDays(false);
    }
    void Project(const std::string& name, const std::string& parent) {
        Tag("PROJECT");
        Head("ProjectName", name);
        Field("PlanIndex", 0);
        Journals();
        Field("Priority", 1);
        Field("SolveRules", 1);
        Field("Parent", parent.empty() ? "\"\"" : parent);
        Field("Manager", "\"\"");
    }
    void Task(int id, const std::string& description, int units, int minutes, const std::string& subproject) {
        Tag("TASK");
        Field("TaskID", id);
        Field("Subproject", subproject.empty() ? "\"\"" : subproject);
        Field("Description", description);
        Field("Include", "True");
        Field("EffortUnits", units);
        Field("Optimistic", minutes);
        Field("MostLikely", minutes);
        Field("Pessimistic", minutes);
        Field("Efficiency", ".85");
        Field("MaterialCost", 0);
        Field("LaborCost", 0);
        for (const char* field : {"EarlyStart", "EarlyFinish", "LateStart", "LateFinish"})
            Field(field, kNotSet);
    }
    /// On task `required`; on the start date if that is 0.
    void Dependency(const std::string& project, int required, int from, int to, const char* offset) {
        Tag("DEPENDENCY");
        Field("Include", "True");
        Field("DepDate", required == 0 ? kStart : kNotSet);
        Field("TaskRequired", required == 0 ? "\"\"" : project + "," + std::to_string(required));
        Field("FromPercent", from);
        Field("ToPercent", to);
        Field("Offset", offset);
    }
    void Assignment(int resource, const char* hours, bool weekend) {
        Tag("ASSIGNMENT");
        Field("Include", "True");
        Field("ResourceRequired", "Pool," + std::to_string(resource));
        Field("Hours", hours);
        WorkDays(weekend);
    }
    std::string Take() { return std::move(text_); }

  private:
    void Head(const char* nameField, const std::string& name) {
        Field(nameField, name);
        Field("Description", "\"\"");
        Field("ViewPassword", "\"\"");
        Field("ModifyPassword", "\"\"");
    }
    void Journals() {
        Field("CurrentIndex", 0);
        Field("NumJournals", 1);
        Field("JournalDates", kStart);
    }

    std::string text_;
};

struct Node {
    int hours, resource;
    std::vector<int> predecessors;
    bool followed = false;
};

std::vector<Node> MakeNodes(int tasks, int resources, unsigned seed) {
    Random random(seed);
    const int width = std::max(5, resources);
    std::vector<Node> nodes;
    for (int i = 0; i < tasks; ++i) {
        Node node{8 + random.Below(73), random.Below(resources), {}};
        const int layer = i / width;
        if (layer > 0) {
            const int low = (layer - 1) * width, high = layer * width;
            node.predecessors.push_back(low + random.Below(high - low));
            if (random.Below(2) != 0) {
                for (int tries = 0; tries < 8; ++tries) {
                    const int other =
                        random.Below(10) < 8 ? low + random.Below(high - low) : random.Below(high);
                    if (other == node.predecessors[0]) continue;
                    node.predecessors.push_back(other);
                    break;
                }
            }
        }
        std::sort(node.predecessors.begin(), node.predecessors.end());
        for (const int p : node.predecessors) nodes[static_cast<std::size_t>(p)].followed = true;
        nodes.push_back(node);
    }
    return nodes;
}

}  // namespace

std::string SimplePlan(int tasks, int resources, unsigned seed) {
    const auto nodes = MakeNodes(tasks, resources, seed);
    PlanWriter out;
    out.Template("Pool");
    out.Shift("Standard", 8);
    for (int r = 1; r <= resources; ++r) out.Resource(r, 0, "Standard");
    out.Project("Bench", "");
    int id = 0;
    for (const Node& node : nodes) {
        ++id;
        out.Task(id, "Task " + std::to_string(id), -60, node.hours * 60, "");
        for (const int p : node.predecessors) out.Dependency("Bench", p + 1, 100, 0, "0");
        if (node.predecessors.empty()) out.Dependency("Bench", 0, 100, 0, "0");
        out.Assignment(node.resource + 1, "8", false);
    }
    out.Task(tasks + 1, "Closing", -60, 0, "");
    for (int i = 0; i < tasks; ++i) {
        if (!nodes[static_cast<std::size_t>(i)].followed) out.Dependency("Bench", i + 1, 100, 0, "0");
    }
    return out.Take();
}

std::string RichPlan(int tasks, int resources, unsigned seed) {
    const auto nodes = MakeNodes(tasks, resources, seed);
    Random random(seed + 7);
    PlanWriter out;
    out.Template("Pool");
    out.Shift("Standard", 8);
    out.Shift("Early", 5);
    for (int r = 1; r <= resources; ++r)
        out.Resource(r, 20 + random.Below(81), r % 4 == 0 ? "Early" : "Standard");
    // The tasks are dealt out to three projects; dependencies cross them freely.
    static const char* const kProjects[] = {"Master", "Left", "Right"};
    for (int p = 0; p < 3; ++p) {
        out.Project(kProjects[p], p == 0 ? "" : "Master");
        for (int i = p; i < tasks; i += 3) {
            const Node& node = nodes[static_cast<std::size_t>(i)];
            const bool calendar = random.Below(10) == 0;
            out.Task(i + 1, "Task " + std::to_string(i + 1), calendar ? 60 : -60, node.hours * 60, "");
            // A partial dependency holds back a later part; the start then hangs on the date.
            bool toStart = false;
            for (const int required : node.predecessors) {
                const bool partial = random.Below(5) == 0;
                const int from = partial ? 25 * (1 + random.Below(3)) : 100;
                const int to = partial ? 25 * random.Below(4) : 0;
                const char* offset = random.Below(5) == 0 ? "1.5" : "0";
                out.Dependency(kProjects[required % 3], required + 1, from, to, offset);
                toStart = toStart || to == 0;
            }
            if (!toStart) out.Dependency("", 0, 100, 0, "0");
            if (calendar) continue;
            out.Assignment(node.resource + 1, "8", false);
            out.Assignment(random.Below(resources) + 1, "4", random.Below(4) == 0);
        }
        if (p > 0) continue;
        for (int sub = 1; sub < 3; ++sub) {
            out.Task(tasks + sub, std::string("Link ") + kProjects[sub], -60, 0, kProjects[sub]);
            out.Dependency("", 0, 100, 0, "0");
        }
        out.Task(tasks + 3, "Closing", -60, 0, "");
        out.Dependency("Master", tasks + 1, 100, 0, "0");
        out.Dependency("Master", tasks + 2, 100, 0, "0");
        // A partial dependency does not tie in a task's end, so the closing task waits for all of them.
        for (int i = 0; i < tasks; i += 3) out.Dependency("Master", i + 1, 100, 0, "0");
    }
    return out.Take();
}

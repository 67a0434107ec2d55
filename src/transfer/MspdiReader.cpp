// Reads Microsoft Project's XML data interchange format.

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

#include "model/Characters.h"
#include "model/ErrTrap.h"
#include "transfer/Mspdi.h"
#include "transfer/MspdiElements.h"
#include "transfer/XmlElement.h"

namespace vortan {
namespace {

constexpr std::size_t kMostBytes = std::size_t{512} << 20;  // the tree of a text takes several times its size
constexpr std::string_view kNamespace = "http://schemas.microsoft.com/project";
constexpr double kHundredths = 100;  // costs, but not rates, are told in these

/// What all parts of the reader share.
struct Reading {
    XmlSource source;
    std::unordered_map<std::string, std::string> fieldNames;  // of custom fields, by FieldID
    std::map<std::string, std::int32_t> unread;
    std::int64_t rows = 1, rowsDone = 0;
    const StepWatch& watch;
    bool stopped = false;

    void Row() {
        const std::int64_t before = rowsDone * 100 / rows;
        ++rowsDone;
        if (watch && rowsDone * 100 / rows != before)
            stopped = !watch(static_cast<double>(rowsDone) / static_cast<double>(rows));
    }
};

// ---- custom fields

struct Custom {
    std::string field;  // "Text30"
    XmlElement value;
};

/// The names of fields that a file need not declare.
const char* UsualFieldName(const std::string& id) {
    static const std::unordered_map<std::string, const char*> kNames = {
        {"188743767", "Number1"},   {"188743783", "Duration1"}, {"188743784", "Duration2"},
        {"188743785", "Duration3"}, {"188744016", "Text30"},    {"205521140", "Text30"},
        {"255852666", "Flag10"},    {"255852667", "Flag1"},     {"255852668", "Flag2"},
        {"255852669", "Flag3"},     {"255852670", "Flag4"},     {"255852671", "Flag5"},
        {"255852672", "Flag6"},     {"255852673", "Flag7"},     {"255852674", "Flag8"},
        {"255852675", "Flag9"}};
    const auto found = kNames.find(id);
    return found == kNames.end() ? nullptr : found->second;
}

/// The custom fields of a row that have a value.
std::vector<Custom> CustomFields(const XmlElement& row, Reading& reading) {
    std::vector<Custom> fields;
    ForEachIn(row, "ExtendedAttribute", [&](const XmlElement& each) {
        std::string id;
        pugi::xml_node value;
        ForEachElement(each, [&](const XmlElement& part) {
            if (part.Name() == "FieldID") id = part.Text();
            if (part.Name() == "Value") value = part.Node();
        });
        const XmlElement element(value, row.Source());
        if (!value || element.Empty()) return;
        const auto declared = reading.fieldNames.find(id);
        const char* usual = UsualFieldName(id);
        fields.push_back({usual                                  ? usual
                          : declared != reading.fieldNames.end() ? declared->second
                                                                 : id,
                          element});
    });
    return fields;
}

/// A text of ours that is too long for one field goes on in those before it.
std::string JoinedText30(const std::vector<Custom>& fields, std::set<std::string>& used) {
    const auto text = [&](int number) {
        const std::string name = "Text" + std::to_string(number);
        for (const Custom& each : fields) {
            if (each.field != name) continue;
            used.insert(name);
            return std::string(each.value.Node().child_value());
        }
        return std::string();
    };
    std::string whole = text(30);
    if (!whole.starts_with("VORTAN")) return whole;
    for (int number = 29; number > 20; --number) {
        const std::string piece = text(number);
        if (piece.empty()) break;
        whole += piece;
    }
    return whole;
}

void CountUnread(const std::vector<Custom>& fields, const std::set<std::string>& used, Reading& reading) {
    for (const Custom& each : fields) {
        // Flags and numbers are there without being set.
        if (!used.contains(each.field) && each.value.Value() != "0")
            ++reading.unread["Custom field " + CleanText(each.field)];
    }
}

// ---- resources

MRate ReadRate(const XmlElement& element) {
    static const Members<MRate> kMembers = {
        {"RatesFrom", [](MRate& r, const XmlElement& e) { r.From = e.Date(); }},
        {"RatesTo", [](MRate& r, const XmlElement& e) { r.To = e.Date(); }},
        {"RateTable", [](MRate& r, const XmlElement& e) { r.Table = e.Int(); }},
        {"StandardRate", [](MRate& r, const XmlElement& e) { r.StandardRate = e.Number(); }},
        {"StandardRateFormat", [](MRate& r, const XmlElement& e) { r.StandardRateFormat = e.Int(); }},
        {"OvertimeRate", [](MRate& r, const XmlElement& e) { r.OvertimeRate = e.Number(); }},
        {"OvertimeRateFormat", [](MRate& r, const XmlElement& e) { r.OvertimeRateFormat = e.Int(); }},
        {"CostPerUse", [](MRate& r, const XmlElement& e) { r.CostPerUse = e.Number() / kHundredths; }},
    };
    MRate rate;
    ForEachElement(element, [&](const XmlElement& part) { ReadMember(kMembers, rate, part); });
    return rate;
}

MResource ReadResource(const XmlElement& element, Reading& reading) {
    static const Members<MResource> kMembers = {
        {"UID", [](MResource& r, const XmlElement& e) { r.UID = e.Int(); }},
        {"ID", [](MResource& r, const XmlElement& e) { r.ID = e.Int(); }},
        {"Name", [](MResource& r, const XmlElement& e) { r.Name = e.Text(); }},
        {"Group", [](MResource& r, const XmlElement& e) { r.Group = e.Text(); }},
        {"Code", [](MResource& r, const XmlElement& e) { r.Code = e.Text(); }},
        {"Notes", [](MResource& r, const XmlElement& e) { r.Notes = e.Text(); }},
        {"MaterialLabel", [](MResource& r, const XmlElement& e) { r.MaterialLabel = e.Text(); }},
        {"Type", [](MResource& r, const XmlElement& e) { r.Type = e.Int(); }},
        {"IsNull", [](MResource& r, const XmlElement& e) { r.IsNull = e.Bool(); }},
        {"MaxUnits", [](MResource& r, const XmlElement& e) { r.MaxUnits = e.Number(); }},
        {"StandardRate", [](MResource& r, const XmlElement& e) { r.StandardRate = e.Number(); }},
        {"StandardRateFormat", [](MResource& r, const XmlElement& e) { r.StandardRateFormat = e.Int(); }},
        {"OvertimeRate", [](MResource& r, const XmlElement& e) { r.OvertimeRate = e.Number(); }},
        {"OvertimeRateFormat", [](MResource& r, const XmlElement& e) { r.OvertimeRateFormat = e.Int(); }},
        {"CostPerUse", [](MResource& r, const XmlElement& e) { r.CostPerUse = e.Number() / kHundredths; }},
        {"CalendarUID", [](MResource& r, const XmlElement& e) { r.CalendarUID = e.Int(); }},
    };
    MResource resource;
    resource.Line = element.Line();
    bool isCost = false;
    ForEachElement(element, [&](const XmlElement& part) {
        if (part.Name() == "Rates") {
            ForEachIn(part, "Rate",
                      [&](const XmlElement& each) { resource.Rates.push_back(ReadRate(each)); });
        } else if (part.Name() == "AvailabilityPeriods") {
            std::int32_t periods = 0;
            ForEachIn(part, "AvailabilityPeriod", [&](const XmlElement&) { ++periods; });
            resource.HasAvailability = periods > 1;
        } else if (part.Name() == "IsCostResource" && !part.Empty()) {
            isCost = part.Bool();
        } else {
            ReadMember(kMembers, resource, part);
        }
    });
    if (isCost) resource.Type = static_cast<std::int32_t>(MResourceType::Cost);
    const auto fields = CustomFields(element, reading);
    std::set<std::string> used;
    resource.Text30 = JoinedText30(fields, used);
    CountUnread(fields, used, reading);
    return resource;
}

// ---- tasks

MBaseline ReadBaseline(const XmlElement& element) {
    static const Members<MBaseline> kMembers = {
        {"Number", [](MBaseline& b, const XmlElement& e) { b.Number = e.Int(); }},
        {"Start", [](MBaseline& b, const XmlElement& e) { b.Start = e.Date(); }},
        {"Finish", [](MBaseline& b, const XmlElement& e) { b.Finish = e.Date(); }},
        {"Duration", [](MBaseline& b, const XmlElement& e) { b.Duration = e.Minutes(); }},
        {"DurationFormat", [](MBaseline& b, const XmlElement& e) { b.DurationFormat = e.Int(); }},
        {"Work", [](MBaseline& b, const XmlElement& e) { b.Work = e.Minutes(); }},
        {"Cost", [](MBaseline& b, const XmlElement& e) { b.Cost = e.Number() / kHundredths; }},
    };
    MBaseline baseline;
    ForEachElement(element, [&](const XmlElement& part) { ReadMember(kMembers, baseline, part); });
    return baseline;
}

MLink ReadLink(const XmlElement& element) {
    static const Members<MLink> kMembers = {
        {"PredecessorUID", [](MLink& l, const XmlElement& e) { l.PredecessorUID = e.Int(); }},
        {"Type",
         [](MLink& l, const XmlElement& e) {
             const std::int32_t type = e.Int();
             if (type < 0 || type > 3) e.Fail("a kind of link (0 to 3)");
             l.Type = static_cast<MLinkType>(type);
         }},
        {"CrossProject", [](MLink& l, const XmlElement& e) { l.CrossProject = e.Bool(); }},
        {"CrossProjectName", [](MLink& l, const XmlElement& e) { l.CrossProjectName = e.Text(); }},
        {"LinkLag", [](MLink& l, const XmlElement& e) { l.Lag = e.Number(); }},
        {"LagFormat", [](MLink& l, const XmlElement& e) { l.LagFormat = e.Int(); }},
    };
    MLink link;
    ForEachElement(element, [&](const XmlElement& part) { ReadMember(kMembers, link, part); });
    constexpr double tenths = 10;  // of a minute
    if (!IsPercent(PlainFormat(link.LagFormat))) link.Lag /= tenths;
    return link;
}

const Members<MTask>& TaskMembers() {
    static const Members<MTask> kMembers = {
        {"UID", [](MTask& t, const XmlElement& e) { t.UID = e.Int(); }},
        {"ID", [](MTask& t, const XmlElement& e) { t.ID = e.Int(); }},
        {"Name", [](MTask& t, const XmlElement& e) { t.Name = e.Text(); }},
        {"Notes", [](MTask& t, const XmlElement& e) { t.Notes = e.Text(); }},
        {"WBS", [](MTask& t, const XmlElement& e) { t.WBS = e.Text(); }},
        {"OutlineLevel", [](MTask& t, const XmlElement& e) { t.OutlineLevel = e.Int(); }},
        {"Summary", [](MTask& t, const XmlElement& e) { t.Summary = e.Bool(); }},
        {"Milestone", [](MTask& t, const XmlElement& e) { t.Milestone = e.Bool(); }},
        {"Active", [](MTask& t, const XmlElement& e) { t.Active = e.Bool(); }},
        {"Manual", [](MTask& t, const XmlElement& e) { t.Manual = e.Bool(); }},
        {"IsNull", [](MTask& t, const XmlElement& e) { t.IsNull = e.Bool(); }},
        {"Estimated", [](MTask& t, const XmlElement& e) { t.Estimated = e.Bool(); }},
        {"ExternalTask", [](MTask& t, const XmlElement& e) { t.ExternalTask = e.Bool(); }},
        {"Type", [](MTask& t, const XmlElement& e) { t.Type = e.Int(); }},
        {"EffortDriven", [](MTask& t, const XmlElement& e) { t.EffortDriven = e.Bool(); }},
        {"SubprojectName", [](MTask& t, const XmlElement& e) { t.Subproject = e.Text(); }},
        {"Start", [](MTask& t, const XmlElement& e) { t.Start = e.Date(); }},
        {"Finish", [](MTask& t, const XmlElement& e) { t.Finish = e.Date(); }},
        {"ManualStart", [](MTask& t, const XmlElement& e) { t.ManualStart = e.Date(); }},
        {"ManualFinish", [](MTask& t, const XmlElement& e) { t.ManualFinish = e.Date(); }},
        {"Duration", [](MTask& t, const XmlElement& e) { t.Duration = e.Minutes(); }},
        {"DurationFormat", [](MTask& t, const XmlElement& e) { t.DurationFormat = e.Int(); }},
        {"Work", [](MTask& t, const XmlElement& e) { t.Work = e.Minutes(); }},
        {"FixedCost", [](MTask& t, const XmlElement& e) { t.FixedCost = e.Number() / kHundredths; }},
        {"Cost", [](MTask& t, const XmlElement& e) { t.Cost = e.Number() / kHundredths; }},
        {"ConstraintType", [](MTask& t, const XmlElement& e) { t.ConstraintType = e.Int(); }},
        {"ConstraintDate", [](MTask& t, const XmlElement& e) { t.ConstraintDate = e.Date(); }},
        {"Deadline", [](MTask& t, const XmlElement& e) { t.Deadline = e.Date(); }},
        {"LevelingDelay", [](MTask& t, const XmlElement& e) { t.LevelingDelay = e.Number() / 10; }},
        {"PercentComplete", [](MTask& t, const XmlElement& e) { t.PercentComplete = e.Int(); }},
        {"PercentWorkComplete", [](MTask& t, const XmlElement& e) { t.PercentWorkComplete = e.Int(); }},
        {"ActualStart", [](MTask& t, const XmlElement& e) { t.ActualStart = e.Date(); }},
        {"ActualFinish", [](MTask& t, const XmlElement& e) { t.ActualFinish = e.Date(); }},
        {"ActualWork", [](MTask& t, const XmlElement& e) { t.ActualWork = e.Minutes(); }},
        {"ActualCost", [](MTask& t, const XmlElement& e) { t.ActualCost = e.Number() / kHundredths; }},
        {"Priority", [](MTask& t, const XmlElement& e) { t.Priority = e.Int(); }},
        {"CalendarUID", [](MTask& t, const XmlElement& e) { t.CalendarUID = e.Int(); }},
        {"IgnoreResourceCalendar",
         [](MTask& t, const XmlElement& e) { t.IgnoreResourceCalendar = e.Bool(); }},
        {"Recurring", [](MTask& t, const XmlElement& e) { t.Recurring = e.Bool(); }},
        {"PredecessorLink", [](MTask& t, const XmlElement& e) { t.Links.push_back(ReadLink(e)); }},
        {"Baseline", [](MTask& t, const XmlElement& e) { t.Baselines.push_back(ReadBaseline(e)); }},
    };
    return kMembers;
}

void ReadTaskFields(const XmlElement& element, MTask& task, Reading& reading) {
    const auto fields = CustomFields(element, reading);
    if (fields.empty()) return;
    std::set<std::string> used;
    task.Text30 = JoinedText30(fields, used);
    for (const Custom& each : fields) {
        double* const duration = each.field == "Duration1"   ? &task.Duration1
                                 : each.field == "Duration2" ? &task.Duration2
                                 : each.field == "Duration3" ? &task.Duration3
                                                             : nullptr;
        if (duration) *duration = each.value.Minutes();
        if (each.field == "Number1") task.Number1 = each.value.Number();
        if (duration || each.field == "Number1") used.insert(each.field);
    }
    CountUnread(fields, used, reading);
}

MTask ReadTask(const XmlElement& element, Reading& reading) {
    static const std::unordered_map<std::string_view, const char*> kUnread = {
        {"HyperlinkAddress", "Hyperlink"},
        {"Contact", "Contact"},
        {"OutlineCode", "Outline code"},
        {"TimephasedData", ""}};
    MTask task;
    task.Line = element.Line();
    ForEachElement(element, [&](const XmlElement& part) {
        const std::string_view name = part.Name();
        const auto unread = kUnread.find(name);
        if (unread != kUnread.end()) {
            if (*unread->second && (name == "OutlineCode" || !part.Empty())) ++reading.unread[unread->second];
        } else if (name == "Project") {
            ++reading.unread["Inserted project within the file"];
        } else {
            ReadMember(TaskMembers(), task, part);
        }
    });
    ReadTaskFields(element, task, reading);
    return task;
}

// ---- assignments

MAssignment ReadAssignment(const XmlElement& element, Reading& reading) {
    static const Members<MAssignment> kMembers = {
        {"UID", [](MAssignment& a, const XmlElement& e) { a.UID = e.Int(); }},
        {"TaskUID", [](MAssignment& a, const XmlElement& e) { a.TaskUID = e.Int(); }},
        {"ResourceUID", [](MAssignment& a, const XmlElement& e) { a.ResourceUID = e.Int(); }},
        {"Units", [](MAssignment& a, const XmlElement& e) { a.Units = e.Number(); }},
        {"Start", [](MAssignment& a, const XmlElement& e) { a.Start = e.Date(); }},
        {"Finish", [](MAssignment& a, const XmlElement& e) { a.Finish = e.Date(); }},
        {"Work", [](MAssignment& a, const XmlElement& e) { a.Work = e.Minutes(); }},
        {"Cost", [](MAssignment& a, const XmlElement& e) { a.Cost = e.Number() / kHundredths; }},
        {"PercentWorkComplete",
         [](MAssignment& a, const XmlElement& e) { a.PercentWorkComplete = e.Number(); }},
        {"ActualWork", [](MAssignment& a, const XmlElement& e) { a.ActualWork = e.Minutes(); }},
        {"OvertimeWork", [](MAssignment& a, const XmlElement& e) { a.OvertimeWork = e.Minutes(); }},
        {"Delay", [](MAssignment& a, const XmlElement& e) { a.Delay = e.Number() / 10; }},
        {"LevelingDelay", [](MAssignment& a, const XmlElement& e) { a.LevelingDelay = e.Number() / 10; }},
        {"WorkContour", [](MAssignment& a, const XmlElement& e) { a.WorkContour = e.Int(); }},
        {"CostRateTable", [](MAssignment& a, const XmlElement& e) { a.CostRateTable = e.Int(); }},
    };
    MAssignment assignment;
    assignment.Line = element.Line();
    ForEachElement(element, [&](const XmlElement& part) {
        if (part.Name() == "Notes" && !part.Empty()) ++reading.unread["Note of an assignment"];
        ReadMember(kMembers, assignment, part);
    });
    const auto fields = CustomFields(element, reading);
    if (fields.empty()) return assignment;
    std::set<std::string> used;
    assignment.Text30 = JoinedText30(fields, used);
    for (const Custom& each : fields) {
        if (!each.field.starts_with("Flag")) continue;
        const std::string number = each.field.substr(4);
        if (number.empty() || number.size() > 2 || !IsDigit(number.front()) || !IsDigit(number.back()))
            continue;
        const auto flag = static_cast<std::size_t>(std::stoi(number));
        if (flag < 1 || flag >= assignment.Flag.size()) continue;
        assignment.Flag[flag] = each.value.Bool();
        used.insert(each.field);
    }
    // Flags that are not ours say something that nobody reads.
    if (!assignment.HasDays()) used.clear();
    CountUnread(fields, used, reading);
    return assignment;
}

// ---- the whole

const Members<MProject>& ProjectMembers() {
    static const Members<MProject> kMembers = {
        {"Name", [](MProject& p, const XmlElement& e) { p.Name = e.Text(); }},
        {"Title", [](MProject& p, const XmlElement& e) { p.Title = e.Text(); }},
        {"StartDate", [](MProject& p, const XmlElement& e) { p.ProjectStart = e.Date(); }},
        {"FinishDate", [](MProject& p, const XmlElement& e) { p.ProjectFinish = e.Date(); }},
        {"ScheduleFromStart", [](MProject& p, const XmlElement& e) { p.ScheduleFromStart = e.Bool(); }},
        {"CurrencySymbol", [](MProject& p, const XmlElement& e) { p.CurrencySymbol = e.Text(); }},
        {"CalendarUID", [](MProject& p, const XmlElement& e) { p.CalendarUID = e.Int(); }},
        {"DefaultStartTime", [](MProject& p, const XmlElement& e) { p.DefaultStartTime = e.TimeOfDay(); }},
        {"DefaultFinishTime", [](MProject& p, const XmlElement& e) { p.DefaultFinishTime = e.TimeOfDay(); }},
        {"MinutesPerDay", [](MProject& p, const XmlElement& e) { p.MinutesPerDay = e.Int(); }},
        {"MinutesPerWeek", [](MProject& p, const XmlElement& e) { p.MinutesPerWeek = e.Int(); }},
        {"DaysPerMonth", [](MProject& p, const XmlElement& e) { p.DaysPerMonth = e.Int(); }},
    };
    return kMembers;
}

/// Names of custom fields, which newer versions declare under two numbers.
void ReadFieldNames(const XmlElement& list, Reading& reading) {
    ForEachIn(list, "ExtendedAttribute", [&](const XmlElement& each) {
        std::vector<std::string> ids;
        std::string name;
        ForEachElement(each, [&](const XmlElement& part) {
            if (part.Name() == "FieldID" || part.Name() == "SecondaryPID") ids.push_back(part.Text());
            if (part.Name() == "FieldName") name = part.Text();
        });
        for (const std::string& id : ids)
            if (!id.empty() && !name.empty()) reading.fieldNames[id] = name;
    });
}

/// The path of the element at which a text that is no XML breaks off, as far as it was understood.
std::string LastPath(const pugi::xml_document& document) {
    std::string path;
    for (pugi::xml_node node = document.last_child(); node; node = node.last_child()) {
        if (node.type() != pugi::node_element || path.size() > 200) break;
        path += (path.empty() ? "" : "/") + CleanText(XmlElement::LocalName(node.name()));
    }
    return path.empty() ? "the root element" : "element " + path;
}

void CheckRoot(const pugi::xml_document& document, const std::string& fileName, const LineStarts& lines) {
    for (const pugi::xml_node node : document.children()) {
        if (node.type() == pugi::node_doctype)
            XmlFault(fileName, lines.LineAt(node.offset_debug()),
                     "a document type (DOCTYPE) is not allowed in a plan.");
    }
    const pugi::xml_node root = document.document_element();
    const std::string_view name = XmlElement::LocalName(root.name());
    std::string_view space;
    for (const pugi::xml_attribute attribute : root.attributes()) {
        const std::string_view key = attribute.name();
        const auto prefix =
            std::string_view(root.name()).substr(0, std::string_view(root.name()).size() - name.size());
        if (key == "xmlns" ? prefix.empty()
                           : key.starts_with("xmlns:") && prefix == std::string(key.substr(6)) + ":")
            space = attribute.value();
    }
    const bool ours = space.starts_with(kNamespace) ||
                      (space.empty() && (root.child("Tasks") || root.child("SaveVersion")));
    if (name != "Project" || !ours)
        XmlFault(fileName, lines.LineAt(root.offset_debug()),
                 "this is not a plan of Microsoft Project: the root element is " + CleanText(name) + ".");
}

void ReadLists(const XmlElement& root, MProject& project, Reading& reading) {
    const auto each = [&](std::string_view list, std::string_view row, const auto& read) {
        ForEachIn(root, list, [&](const XmlElement& rows) {
            ForEachIn(rows, row, [&](const XmlElement& element) {
                if (reading.stopped) return;
                read(element);
                reading.Row();
            });
        });
    };
    ForEachIn(root, "ExtendedAttributes", [&](const XmlElement& list) { ReadFieldNames(list, reading); });
    each("Calendars", "Calendar",
         [&](const XmlElement& e) { project.Calendars.push_back(ReadMspdiCalendar(e)); });
    each("Tasks", "Task", [&](const XmlElement& e) { project.Tasks.push_back(ReadTask(e, reading)); });
    each("Resources", "Resource",
         [&](const XmlElement& e) { project.Resources.push_back(ReadResource(e, reading)); });
    each("Assignments", "Assignment",
         [&](const XmlElement& e) { project.Assignments.push_back(ReadAssignment(e, reading)); });
}

}  // namespace

bool IsXmlName(std::string_view name) {
    return EndsWithText(name, ".xml");
}

bool ReadMspdi(std::string bytes, const std::string& fileName, MProject& project, const StepWatch& watch) {
    const Section section("Transfer:ReadMspdi");
    if (bytes.size() > kMostBytes) XmlFault(fileName, 1, "the file is larger than 512 megabytes.");
    std::string text = XmlToUtf8(std::move(bytes));
    Reading reading{{fileName, LineStarts(text)}, {}, {}, 1, 0, watch, false};
    pugi::xml_document document;
    constexpr unsigned flags = (pugi::parse_default | pugi::parse_doctype | pugi::parse_embed_pcdata) &
                               ~static_cast<unsigned>(pugi::parse_wconv_attribute);
    const auto result = document.load_buffer_inplace(text.data(), text.size(), flags, pugi::encoding_utf8);
    const std::int32_t line = reading.source.lines.LineAt(result.offset);
    if (result.status == pugi::status_out_of_memory) XmlFault(fileName, line, "there is not enough memory.");
    if (result.status == pugi::status_no_document_element)
        XmlFault(fileName, line, "there is no plan in this file.");
    if (!result) {
        const bool open = result.status == pugi::status_end_element_mismatch ||
                          static_cast<std::size_t>(result.offset) + 1 >= text.size();
        XmlFault(fileName, line,
                 "the file is not XML, or its end is missing: in " + LastPath(document) +
                     (open ? ", which is not closed" : "") + ".");
    }
    CheckRoot(document, fileName, reading.source.lines);
    const XmlElement root(document.document_element(), reading.source);
    ForEachElement(root, [&](const XmlElement& part) {
        ReadMember(ProjectMembers(), project, part);
        for (const pugi::xml_node row : part.Node().children())
            reading.rows += row.type() == pugi::node_element;
    });
    ReadLists(root, project, reading);
    for (const auto& [what, count] : reading.unread) project.Unread.push_back({what, count});
    return !reading.stopped;
}

}  // namespace vortan

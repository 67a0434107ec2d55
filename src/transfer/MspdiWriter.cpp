#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "model/NumberText.h"
#include "persist/TextEncoding.h"
#include "persist/Vfile.h"
#include "transfer/CustomFields.h"
#include "transfer/Mspdi.h"

namespace vortan {

namespace {

/// Whether line breaks mean something in a text, as in notes.
enum class Breaks { Keep, Blank };

/// Appends a text as XML can hold it. Control characters cannot stand in it at all.
void AppendXmlText(std::string& out, const std::string& text, Breaks breaks) {
    const std::string whole = ToUtf8(text);
    for (std::size_t i = 0; i < whole.size(); ++i) {
        const auto c = static_cast<unsigned char>(whole[i]);
        if (c == '&') {
            out += "&amp;";
        } else if (c == '<') {
            out += "&lt;";
        } else if (c == '>') {
            out += "&gt;";
        } else if (c == '\n' && breaks == Breaks::Keep) {
            out += '\n';
        } else if (c < ' ' || c == 0x7F) {
            out += ' ';
        } else if (c == 0xEF && whole.compare(i + 1, 1, "\xBF") == 0 && i + 2 < whole.size() &&
                   static_cast<unsigned char>(whole[i + 2]) >= 0xBE) {
            out += "\xEF\xBF\xBD";  // U+FFFE and U+FFFF are no characters
            i += 2;
        } else {
            out += whole[i];
        }
    }
}

/// Writes elements, one a line.
class Xml {
  public:
    explicit Xml(std::string& out) : out_(out) {}

    void Open(const char* name) {
        Begin(name);
        out_ += '\n';
    }
    void Close(const char* name) { End(name); }
    void Text(const char* name, const std::string& value, Breaks breaks = Breaks::Blank) {
        Begin(name);
        AppendXmlText(out_, value, breaks);
        End(name);
    }
    void TextIf(const char* name, const std::string& value, Breaks breaks = Breaks::Blank) {
        if (!value.empty()) Text(name, value, breaks);
    }
    void Number(const char* name, std::int64_t value) {
        Begin(name);
        char text[24];
        out_.append(text, std::to_chars(text, text + sizeof text, value).ptr);
        End(name);
    }
    void Flag(const char* name, bool value) { Number(name, value ? 1 : 0); }
    /// At most six decimals.
    void Decimal(const char* name, double value) {
        Begin(name);
        Digits(value);
        End(name);
    }
    /// An amount of money, which the format has in hundredths.
    void Cost(const char* name, double value) { Decimal(name, value * 100); }
    void Date(const char* name, DateTime value) {
        const DateParts p = ToParts(value);
        char text[40];
        std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", p.year, p.month, p.day, p.hour,
                      p.minute, p.second);
        Plain(name, text);
    }
    void DateIf(const char* name, DateTime value) {
        if (value.IsSet()) Date(name, value);
    }
    void Minutes(const char* name, double minutes) { Plain(name, DurationText(minutes).c_str()); }
    /// A time of day in minutes; the end of the day is its beginning.
    void Time(const char* name, std::int32_t minutes) {
        char text[16];
        std::snprintf(text, sizeof text, "%02d:%02d:00", minutes / 60 % 24, minutes % 60);
        Plain(name, text);
    }
    void Custom(std::int32_t field, const std::string& value) {
        Open("ExtendedAttribute");
        Number("FieldID", field);
        Text("Value", value);
        Close("ExtendedAttribute");
    }
    void CustomDuration(std::int32_t field, double minutes, std::int32_t format) {
        Open("ExtendedAttribute");
        Number("FieldID", field);
        Minutes("Value", minutes);
        Number("DurationFormat", format);
        Close("ExtendedAttribute");
    }
    /// A text of ours, in as many fields as it needs.
    void CustomPieces(std::int32_t text30, const std::string& text) {
        std::int32_t field = text30;
        for (const std::string& piece : TextPieces(text)) Custom(field--, piece);
    }

    static std::string DurationText(double minutes) {
        const bool negative = minutes < 0;
        const auto seconds = static_cast<long long>(std::llround(std::fabs(minutes) * 60));
        char text[48];
        std::snprintf(text, sizeof text, "%sPT%lldH%lldM%lldS", negative ? "-" : "", seconds / 3600,
                      seconds / 60 % 60, seconds % 60);
        return text;
    }

  private:
    void Begin(const char* name) {
        out_ += '<';
        out_ += name;
        out_ += '>';
    }
    void End(const char* name) {
        out_ += "</";
        out_ += name;
        out_ += ">\n";
    }
    void Plain(const char* name, const char* text) {
        Begin(name);
        out_ += text;
        End(name);
    }
    void Digits(double value) {
        char text[400];
        int length = std::snprintf(text, sizeof text, "%.6f", std::isfinite(value) ? value : 0.0);
        while (text[length - 1] == '0') --length;
        if (text[length - 1] == '.') --length;
        out_.append(text, static_cast<std::size_t>(length));
    }

    std::string& out_;
};

void WriteWorkingTimes(Xml& xml, const MDay& day) {
    xml.Flag("DayWorking", day.Working);
    if (!day.Working || day.Times.empty()) return;
    xml.Open("WorkingTimes");
    for (const MWorkingTime& time : day.Times) {
        xml.Open("WorkingTime");
        xml.Time("FromTime", time.From);
        xml.Time("ToTime", time.To);
        xml.Close("WorkingTime");
    }
    xml.Close("WorkingTimes");
}

void WriteCalendar(Xml& xml, const MCalendar& calendar) {
    xml.Open("Calendar");
    xml.Number("UID", calendar.UID);
    xml.Text("Name", calendar.Name);
    xml.Flag("IsBaseCalendar", calendar.IsBaseCalendar);
    xml.Flag("IsBaselineCalendar", false);
    xml.Number("BaseCalendarUID", calendar.BaseCalendarUID);
    if (calendar.IsBaseCalendar) {
        xml.Open("WeekDays");
        for (std::size_t day = 1; day <= 7; ++day) {
            xml.Open("WeekDay");
            xml.Number("DayType", static_cast<int>(day));
            WriteWorkingTimes(xml, calendar.Weekday[day]);
            xml.Close("WeekDay");
        }
        xml.Close("WeekDays");
    }
    xml.Close("Calendar");
}

void WriteLink(Xml& xml, const MLink& link) {
    const bool percent = IsPercent(PlainFormat(link.LagFormat));
    xml.Open("PredecessorLink");
    xml.Number("PredecessorUID", link.PredecessorUID);
    xml.Number("Type", static_cast<int>(link.Type));
    xml.Flag("CrossProject", false);
    xml.Number("LinkLag", std::llround(percent ? link.Lag : link.Lag * 10));
    xml.Number("LagFormat", link.LagFormat);
    xml.Close("PredecessorLink");
}

void WriteBaseline(Xml& xml, const MBaseline& baseline) {
    xml.Open("Baseline");
    xml.Number("Number", baseline.Number);
    xml.DateIf("Start", baseline.Start);
    xml.DateIf("Finish", baseline.Finish);
    xml.Minutes("Duration", baseline.Duration);
    xml.Number("DurationFormat", baseline.DurationFormat);
    xml.Minutes("Work", baseline.Work);
    xml.Cost("Cost", baseline.Cost);
    xml.Close("Baseline");
}

void WriteTaskCustoms(Xml& xml, const MTask& task) {
    if (task.Number1 != 0) xml.Custom(kTaskNumber1, FormatNumber(task.Number1));
    if (task.Duration1 != 0 || task.Duration2 != 0 || task.Duration3 != 0) {
        const double three[] = {task.Duration1, task.Duration2, task.Duration3};
        for (int i = 0; i < 3; ++i)
            xml.CustomDuration(kTaskDuration1 + i, three[i], static_cast<int>(MFormat::Minutes));
    }
    xml.CustomPieces(kTaskText30, task.Text30);
}

void WriteTask(Xml& xml, const MTask& task) {
    xml.Open("Task");
    xml.Number("UID", task.UID);
    xml.Number("ID", task.ID);
    xml.Text("Name", task.Name);
    xml.Flag("Active", task.Active);
    xml.Flag("Manual", task.Manual);
    xml.Number("Type", task.Type);
    xml.Flag("IsNull", false);
    xml.TextIf("WBS", task.WBS);
    xml.TextIf("OutlineNumber", task.WBS);
    xml.Number("OutlineLevel", task.OutlineLevel);
    xml.Number("Priority", task.Priority);
    xml.DateIf("Start", task.Start);
    xml.DateIf("Finish", task.Finish);
    xml.Minutes("Duration", task.Duration);
    xml.Number("DurationFormat", task.DurationFormat);
    xml.Minutes("Work", task.Work);
    xml.Flag("EffortDriven", false);
    xml.Flag("Estimated", false);
    xml.Flag("Milestone", task.Milestone);
    xml.Flag("Summary", task.Summary);
    xml.Cost("FixedCost", task.FixedCost);
    xml.Number("FixedCostAccrual", 3);
    xml.Number("PercentComplete", 0);
    xml.Number("PercentWorkComplete", 0);
    if (task.Cost != 0) xml.Cost("Cost", task.Cost);
    xml.Number("ConstraintType", task.ConstraintType);
    xml.Number("CalendarUID", task.CalendarUID);
    xml.DateIf("ConstraintDate", task.ConstraintDate);
    xml.Number("LevelingDelay", std::llround(task.LevelingDelay * 10));
    xml.Number("LevelingDelayFormat", static_cast<int>(MFormat::ElapsedDays));
    xml.Flag("IgnoreResourceCalendar", false);
    xml.TextIf("Notes", task.Notes, Breaks::Keep);
    for (const MLink& link : task.Links) WriteLink(xml, link);
    WriteTaskCustoms(xml, task);
    for (const MBaseline& baseline : task.Baselines) WriteBaseline(xml, baseline);
    if (task.Manual) {
        xml.DateIf("ManualStart", task.Start);
        xml.DateIf("ManualFinish", task.Finish);
        xml.Minutes("ManualDuration", task.Duration);
    }
    xml.Close("Task");
}

void WriteRates(Xml& xml, const std::vector<MRate>& rates) {
    if (rates.empty()) return;
    xml.Open("Rates");
    for (const MRate& rate : rates) {
        xml.Open("Rate");
        xml.Date("RatesFrom", rate.From);
        xml.Date("RatesTo", rate.To);
        xml.Number("RateTable", rate.Table);
        xml.Decimal("StandardRate", rate.StandardRate);
        xml.Number("StandardRateFormat", rate.StandardRateFormat);
        xml.Decimal("OvertimeRate", rate.OvertimeRate);
        xml.Number("OvertimeRateFormat", rate.OvertimeRateFormat);
        xml.Cost("CostPerUse", rate.CostPerUse);
        xml.Close("Rate");
    }
    xml.Close("Rates");
}

void WriteResource(Xml& xml, const MResource& resource) {
    xml.Open("Resource");
    xml.Number("UID", resource.UID);
    xml.Number("ID", resource.ID);
    xml.Text("Name", resource.Name);
    xml.Number("Type", resource.Type);
    xml.Flag("IsNull", false);
    xml.TextIf("Code", resource.Code);
    xml.TextIf("Group", resource.Group);
    xml.Decimal("MaxUnits", resource.MaxUnits);
    xml.Number("AccrueAt", 3);
    xml.Decimal("StandardRate", resource.StandardRate);
    xml.Number("StandardRateFormat", resource.StandardRateFormat);
    xml.Decimal("OvertimeRate", resource.OvertimeRate);
    xml.Number("OvertimeRateFormat", resource.OvertimeRateFormat);
    xml.Cost("CostPerUse", resource.CostPerUse);
    xml.Number("CalendarUID", resource.CalendarUID);
    xml.CustomPieces(kResourceText30, resource.Text30);
    WriteRates(xml, resource.Rates);
    xml.Close("Resource");
}

void WriteAssignment(Xml& xml, const MAssignment& assignment) {
    xml.Open("Assignment");
    xml.Number("UID", assignment.UID);
    xml.Number("TaskUID", assignment.TaskUID);
    xml.Number("ResourceUID", assignment.ResourceUID);
    xml.DateIf("Finish", assignment.Finish);
    xml.Minutes("RegularWork", assignment.Work);
    xml.Minutes("RemainingWork", assignment.Work);
    xml.DateIf("Start", assignment.Start);
    xml.Decimal("Units", assignment.Units);
    xml.Minutes("Work", assignment.Work);
    xml.Number("WorkContour", assignment.WorkContour);
    for (std::size_t flag = 1; flag <= 10; ++flag) {
        if (assignment.Flag[flag]) xml.Custom(AssignmentFlag(static_cast<int>(flag)), "1");
    }
    xml.Close("Assignment");
}

void Declare(Xml& xml, std::int32_t field, const std::string& name, const char* alias,
             std::int32_t secondary) {
    xml.Open("ExtendedAttribute");
    xml.Number("FieldID", field);
    xml.Text("FieldName", name);
    if (*alias) xml.Text("Alias", alias);
    if (secondary != 0) xml.Number("SecondaryPID", secondary);
    xml.Close("ExtendedAttribute");
}

/// The custom fields that any export may use.
void WriteDeclarations(Xml& xml, const MProject& project) {
    xml.Open("ExtendedAttributes");
    Declare(xml, kTaskNumber1, "Number1", "", 0);
    for (int i = 0; i < 3; ++i) Declare(xml, kTaskDuration1 + i, "Duration" + std::to_string(i + 1), "", 0);
    std::size_t tasks = 1, resources = 1;
    for (const MTask& task : project.Tasks) tasks = std::max(tasks, TextPieces(task.Text30).size());
    for (const MResource& each : project.Resources)
        resources = std::max(resources, TextPieces(each.Text30).size());
    for (int i = static_cast<int>(tasks) - 1; i >= 0; --i)
        Declare(xml, kTaskText30 - i, "Text" + std::to_string(30 - i), i == 0 ? "VORTAN" : "", 0);
    for (int i = 1; i <= 10; ++i)
        Declare(xml, ResourceFlag(i), "Flag" + std::to_string(i), "", AssignmentFlag(i));
    for (int i = static_cast<int>(resources) - 1; i >= 0; --i)
        Declare(xml, kResourceText30 - i, "Text" + std::to_string(30 - i), i == 0 ? "VORTAN" : "", 0);
    xml.Close("ExtendedAttributes");
}

const char* CurrencyCode(const std::string& symbol) {
    return symbol == "\xE2\x82\xAC"             ? "EUR"
           : symbol == "\xC2\xA3"               ? "GBP"
           : symbol == "\xC2\xA5"               ? "JPY"
           : symbol == "Fr." || symbol == "CHF" ? "CHF"
                                                : "USD";
}

void WriteHead(Xml& xml, const MProject& project) {
    xml.Number("SaveVersion", 14);
    xml.Text("Name", project.Name);
    xml.TextIf("Title", project.Title);
    xml.Flag("ScheduleFromStart", true);
    xml.DateIf("StartDate", project.ProjectStart);
    xml.DateIf("FinishDate", project.ProjectFinish);
    xml.Number("CurrencyDigits", 2);
    xml.TextIf("CurrencySymbol", project.CurrencySymbol);
    xml.Text("CurrencyCode", CurrencyCode(project.CurrencySymbol));
    xml.Number("CalendarUID", project.CalendarUID);
    xml.Time("DefaultStartTime", project.DefaultStartTime);
    xml.Time("DefaultFinishTime", project.DefaultFinishTime);
    xml.Number("MinutesPerDay", project.MinutesPerDay);
    xml.Number("MinutesPerWeek", project.MinutesPerWeek);
    xml.Number("DaysPerMonth", project.DaysPerMonth);
    xml.Number("DefaultTaskType", 1);
    xml.Number("DefaultFixedCostAccrual", 3);
    xml.Number("DurationFormat", static_cast<int>(MFormat::Days));
    xml.Number("WorkFormat", 2);
    xml.Flag("HonorConstraints", false);
    xml.Flag("NewTasksEffortDriven", false);
    xml.Flag("NewTasksEstimated", false);
    xml.Number("WeekStartDay", 1);
    xml.Flag("NewTasksAreManual", false);
}

/// Tells the watch of rows written, a few hundred times in all.
class RowWatch {
  public:
    RowWatch(const MProject& project, const StepWatch& watch)
        : total_(project.Tasks.size() + project.Resources.size() + project.Assignments.size()),
          every_(std::max<std::size_t>(total_ / 200, 1)),
          watch_(watch) {}
    bool Next() {
        ++done_;
        return done_ % every_ != 0 || !watch_ ||
               watch_(static_cast<double>(done_) / static_cast<double>(total_));
    }

  private:
    std::size_t done_ = 0, total_, every_;
    const StepWatch& watch_;
};

template <class Row>
bool WriteRows(Xml& xml, const char* name, const std::vector<Row>& rows, RowWatch& steps,
               void (*write)(Xml&, const Row&)) {
    xml.Open(name);
    for (const Row& row : rows) {
        write(xml, row);
        if (!steps.Next()) return false;
    }
    xml.Close(name);
    return true;
}

}  // namespace

std::vector<std::string> TextPieces(const std::string& text) {
    std::vector<std::string> pieces;
    std::size_t begin = 0, units = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) == 0x80) continue;  // goes with the character before it
        const std::size_t wide = byte >= 0xF0 ? 2 : 1;
        if (units + wide > kTextLength && pieces.size() + 1 < kTextFields) {
            pieces.push_back(text.substr(begin, i - begin));
            begin = i;
            units = 0;
        }
        units += wide;
    }
    if (begin < text.size()) pieces.push_back(text.substr(begin));
    return pieces;
}

bool WriteMspdi(Platform& platform, const MProject& project, const std::string& fileName,
                const StepWatch& watch) {
    std::string text;
    text.reserve(10000 + project.Tasks.size() * 1500 + project.Assignments.size() * 1100);
    text += "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
    text += "<Project xmlns=\"http://schemas.microsoft.com/project\">\n";
    Xml xml(text);
    RowWatch steps(project, watch);
    WriteHead(xml, project);
    WriteDeclarations(xml, project);
    xml.Open("Calendars");
    for (const MCalendar& calendar : project.Calendars) WriteCalendar(xml, calendar);
    xml.Close("Calendars");
    if (!WriteRows(xml, "Tasks", project.Tasks, steps, WriteTask) ||
        !WriteRows(xml, "Resources", project.Resources, steps, WriteResource) ||
        !WriteRows(xml, "Assignments", project.Assignments, steps, WriteAssignment)) {
        return false;
    }
    xml.Close("Project");
    const std::string failure = ReplaceFileBytes(platform, fileName, text);
    if (failure.empty()) return true;
    platform.MessageBox(
        "Attempting the write to the file " + fileName + " cause the following error:\n" + failure,
        "File Open Error", BoxIcon::Stop, BoxButtons::Ok);
    return false;
}

}  // namespace vortan

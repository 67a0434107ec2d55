// Reads the calendars of Microsoft Project's XML.

#include <algorithm>

#include "transfer/MspdiElements.h"

namespace vortan {
namespace {

MDay ReadDay(const XmlElement& element) {
    MDay day;
    day.Given = true;
    ForEachElement(element, [&](const XmlElement& part) {
        if (part.Name() == "DayWorking" && !part.Empty()) day.Working = part.Bool();
        if (part.Name() != "WorkingTimes") return;
        ForEachIn(part, "WorkingTime", [&](const XmlElement& each) {
            MWorkingTime time{-1, -1};
            ForEachElement(each, [&](const XmlElement& end) {
                if (end.Empty()) return;
                if (end.Name() == "FromTime") time.From = end.TimeOfDay();
                if (end.Name() == "ToTime") time.To = end.TimeOfDay();
            });
            if (time.From < 0 || time.To < 0) return;
            if (time.To == 0) time.To = kMinutesPerDay;
            if (time.To > time.From) day.Times.push_back(time);
        });
    });
    std::sort(day.Times.begin(), day.Times.end(),
              [](const MWorkingTime& a, const MWorkingTime& b) { return a.From < b.From; });
    return day;
}

void ReadPeriod(const XmlElement& element, MException& exception) {
    ForEachElement(element, [&](const XmlElement& part) {
        if (part.Empty()) return;
        if (part.Name() == "FromDate") exception.From = DateTime(part.Date().WholeDay());
        if (part.Name() == "ToDate") exception.To = DateTime(part.Date().WholeDay());
    });
}

MException ReadException(const XmlElement& element) {
    MException exception;
    exception.Line = element.Line();
    exception.Day = ReadDay(element);
    ForEachElement(element, [&](const XmlElement& part) {
        if (part.Name() == "TimePeriod") ReadPeriod(part, exception);
        if (part.Empty()) return;
        if (part.Name() == "Name") exception.Name = part.Text();
        if (part.Name() == "Type") exception.Type = part.Int();
        if (part.Name() == "Occurrences") exception.Occurrences = part.Int();
    });
    return exception;
}

}  // namespace

MCalendar ReadMspdiCalendar(const XmlElement& element) {
    static const Members<MCalendar> kMembers = {
        {"UID", [](MCalendar& c, const XmlElement& e) { c.UID = e.Int(); }},
        {"Name", [](MCalendar& c, const XmlElement& e) { c.Name = e.Text(); }},
        {"IsBaseCalendar", [](MCalendar& c, const XmlElement& e) { c.IsBaseCalendar = e.Bool(); }},
        {"BaseCalendarUID", [](MCalendar& c, const XmlElement& e) { c.BaseCalendarUID = e.Int(); }},
    };
    MCalendar calendar;
    calendar.Line = element.Line();
    std::vector<MException> olderExceptions;
    bool hasExceptions = false;
    ForEachElement(element, [&](const XmlElement& part) {
        if (part.Name() == "WeekDays") {
            ForEachIn(part, "WeekDay", [&](const XmlElement& each) {
                std::int32_t type = -1;
                ForEachIn(each, "DayType", [&](const XmlElement& e) { type = e.Int(); });
                if (type >= 1 && type <= 7) calendar.Weekday[static_cast<std::size_t>(type)] = ReadDay(each);
                if (type == 0) olderExceptions.push_back(ReadException(each));
            });
        } else if (part.Name() == "Exceptions") {
            hasExceptions = true;
            ForEachIn(part, "Exception",
                      [&](const XmlElement& each) { calendar.Exceptions.push_back(ReadException(each)); });
        } else if (part.Name() == "WorkWeeks") {
            ForEachIn(part, "WorkWeek", [&](const XmlElement&) { calendar.HasWorkWeeks = true; });
        } else {
            ReadMember(kMembers, calendar, part);
        }
    });
    // Newer versions write their exceptions in the older way too.
    if (!hasExceptions) calendar.Exceptions = std::move(olderExceptions);
    return calendar;
}

}  // namespace vortan

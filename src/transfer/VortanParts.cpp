#include "transfer/VortanParts.h"

#include <algorithm>
#include <cmath>

#include "persist/TextEncoding.h"
#include "transfer/VortanText.h"

namespace vortan {

namespace {

/// Puts whole numbers and texts in a row to be summed.
class Sum {
  public:
    Sum& Add(std::int64_t value) {
        text_ += std::to_string(value) + ",";
        return *this;
    }
    Sum& Add(const std::string& value) {
        AppendEscaped(text_, value);
        text_ += ',';
        return *this;
    }
    /// To so many parts of one.
    Sum& Add(double value, double parts) {
        const double scaled = value * parts;
        return Add(static_cast<std::int64_t>(std::fabs(scaled) < 1e17 ? std::llround(scaled) : 0));
    }
    std::uint32_t Hash() const { return TextHash(text_); }

  private:
    std::string text_;
};

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\n\r");
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(" \t\n\r") - first + 1);
}

std::string Printable(const std::string& text, bool breaks) {
    std::string out = ToUtf8(text);
    for (char& c : out) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < ' ' && !(breaks && c == '\n')) || byte == 0x7F) c = ' ';
    }
    return Trimmed(out);
}

}  // namespace

std::string SealVortan(const std::string& body) {
    return std::string(kVortanMark) + HashText(TextHash(body)) + ":" + body;
}

std::optional<std::string_view> OpenVortan(std::string_view text) {
    const std::size_t begin = kVortanMark.size() + 9;
    if (!IsVortan(text) || text.size() < begin || text[begin - 1] != ':') return std::nullopt;
    const std::string_view body = text.substr(begin);
    if (text.substr(kVortanMark.size(), 8) != HashText(TextHash(body))) return std::nullopt;
    return body;
}

bool IsVortan(std::string_view text) {
    return text.starts_with(kVortanMark);
}

std::int32_t VortanNumber(std::string_view text) {
    const auto body = OpenVortan(text);
    std::int32_t number = 0;
    if (!body || body->empty() || body->front() != 'n') return 0;
    return ReadCode(body->substr(1, body->find(kSectionEnd) - 1), number) && number > 0 ? number : 0;
}

bool VortanTellsLinks(const MTask& row) {
    const auto body = OpenVortan(row.Text30);
    if (!body) return false;
    for (const std::string_view section : SplitText(*body, kSectionEnd)) {
        if (section.starts_with('d')) return section.substr(1, 8) == HashText(LinkSum(row));
    }
    return false;
}

FieldSet NotOfTask(bool showsSubproject, bool ownsSubproject) {
    FieldSet set;
    if (ownsSubproject) set.Add(kTaskSubproject, kTaskSubproject);
    if (!showsSubproject) set.Add(kTaskDescription, kTaskDescription);
    return set;
}
FieldSet NotOfResource() {
    return FieldSet().Add(kResourceDescription, kResourceDescription).Add(kResourceShift, kResourceLastDay);
}
FieldSet NotOfResourceDays() {
    return FieldSet().Add(kResourceDescription, kResourceShift - 1);
}

std::uint32_t NameSum(std::string_view shown) {
    return TextHash(shown);
}

std::uint32_t EstimateSum(const MTask& row, const std::vector<const MAssignment*>& assignments) {
    Sum sum;
    sum.Add(row.Duration1, 60).Add(row.Duration2, 60).Add(row.Duration3, 60);
    sum.Add(row.Number1, 1).Add(row.FixedCost, 10000).Add(row.Duration, 60);
    if (row.Duration2 == 0) {
        for (const MAssignment* each : assignments) sum.Add(each->Units, 100);
    }
    return sum.Hash();
}

std::uint32_t LinkSum(const MTask& row) {
    Sum sum;
    const bool dated = row.ConstraintType > static_cast<int>(MConstraint::AsLateAsPossible);
    sum.Add(std::int64_t{row.ConstraintType}).Add(dated ? row.ConstraintDate.Days() : 0, 86400);
    for (const MLink& link : row.Links) {
        sum.Add(std::int64_t{link.PredecessorUID}).Add(static_cast<std::int64_t>(link.Type));
        sum.Add(link.Lag, 10).Add(static_cast<std::int64_t>(PlainFormat(link.LagFormat)));
    }
    return sum.Hash();
}

std::uint32_t AssignmentSum(const std::vector<const MAssignment*>& assignments) {
    Sum sum;
    for (const MAssignment* each : assignments) {
        sum.Add(std::int64_t{each->ResourceUID}).Add(each->Units, 100);
        for (const bool flag : each->Flag) sum.Add(std::int64_t{flag});
    }
    return sum.Hash();
}

std::uint32_t ResourceSum(const MResource& row) {
    Sum sum;
    sum.Add(Trimmed(row.Group)).Add(Trimmed(row.Code));
    sum.Add(row.StandardRate, 10000).Add(std::int64_t{row.StandardRateFormat});
    sum.Add(row.OvertimeRate, 10000).Add(std::int64_t{row.OvertimeRateFormat});
    for (const MRate& rate : row.Rates) {
        if (rate.Table == 1 || rate.Table == 2)
            sum.Add(std::int64_t{rate.Table}).Add(rate.StandardRate, 10000);
    }
    return sum.Hash();
}

std::uint32_t CalendarSum(const MCalendar* calendar) {
    Sum sum;
    if (!calendar) return sum.Hash();
    for (const MDay& day : calendar->Weekday) {
        sum.Add(std::int64_t{day.Working});
        for (const MWorkingTime& time : day.Times)
            sum.Add(std::int64_t{time.From}).Add(std::int64_t{time.To % kMinutesPerDay});
    }
    return sum.Hash();
}

const MCalendar* BaseCalendar(const MProject& file, const MResource& row) {
    const auto find = [&](std::int32_t uid) -> const MCalendar* {
        for (const MCalendar& calendar : file.Calendars) {
            if (calendar.UID == uid) return &calendar;
        }
        return nullptr;
    };
    const MCalendar* own = find(row.CalendarUID);
    if (!own || own->IsBaseCalendar) return own;
    for (const MDay& day : own->Weekday) {
        if (day.Given) return own;
    }
    return find(own->BaseCalendarUID);
}

std::string ShownName(const std::string& text) {
    return Printable(text, false);
}
std::string ShownNotes(const std::string& text) {
    return Printable(text, true);
}

}  // namespace vortan

#include "transfer/MsProject.h"

namespace vortan {

MFormat PlainFormat(std::int32_t format) {
    if (format > kMEstimatedFormat) format -= kMEstimatedFormat;
    const bool known = (format >= 3 && format <= 12) || (format >= 19 && format <= 21);
    return known ? static_cast<MFormat>(format) : MFormat::None;
}

bool IsElapsed(MFormat format) {
    return format == MFormat::ElapsedMinutes || format == MFormat::ElapsedHours ||
           format == MFormat::ElapsedDays || format == MFormat::ElapsedWeeks ||
           format == MFormat::ElapsedMonths || format == MFormat::ElapsedPercent;
}

bool IsPercent(MFormat format) {
    return format == MFormat::Percent || format == MFormat::ElapsedPercent;
}

const char* LinkTypeText(MLinkType type) {
    switch (type) {
        case MLinkType::FF:
            return "FF";
        case MLinkType::SF:
            return "SF";
        case MLinkType::SS:
            return "SS";
        default:
            return "FS";
    }
}

}  // namespace vortan

#pragma once

#include <cstdint>
#include <vector>

#include "charts/Vwindow.h"
#include "model/DateTime.h"

/// What is booked on a day: the kind of a whole day for the calendar, and the table of one day.
namespace vortan {

class Solver;
class Vresource;

/// The kinds of days, from 1 on. Of all that a day holds the highest one counts; those from kNormalKey on are
/// the slot types.
constexpr int kDayKeys = 9;
enum DayKey : int { kWeekdayKey = 1, kWeekendKey = 2, kNormalKey = 3, kOverloadKey = 9 };
struct DayKeyLook {
    const char* label;
    Color color;
};
/// Of a key from 1 to kDayKeys.
const DayKeyLook& LookOf(int key);

/// The keys of all days of a year, the first of January first, over all templates in memory. Prepares
/// nothing: it shows the bookings as they stand, and resources without any cost nothing.
std::vector<int> DayKeysOfYear(const Solver& solver, int year);

/// Begins a table of slots; with `showResource` its first columns name template and resource.
void StartZoomVwindow(Vwindow& window, bool showResource);
/// Appends the slots that tasks hold of a resource on a day. EndLayout is left to the caller.
void FillInZoomVwindow(Vwindow& window, bool showResource, const Solver& solver, const Vresource& resource,
                       DateTime day);

}  // namespace vortan

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "model/DateTime.h"
#include "model/Vresource.h"
#include "reports/WebPage.h"

/// The pieces of WebPage.
namespace vortan {

extern const char* const kPageStyle;
/// Where the page is dark.
extern const char* const kDarkPageStyle;
extern const char* const kPageScript;

/// A column of a table that sorts.
struct WebColumn {
    /// What its texts are: words, moments, numbers, or stretches of time.
    enum class Kind : char { Text = 's', Date = 'd', Number = 'n', Duration = 'u' };
    const char* title;
    Kind kind;
    int width;  ///< in letters
};

/// Writes a table in groups of rows, so that a browser need not look at all of a large one: rows of as many
/// cells as there are columns. The first names its row.
class WebTable {
  public:
    /// `id` is the anchor, `what` names the rows. `out` must outlive this.
    WebTable(std::string& out, const char* id, const char* what, std::span<const WebColumn> columns);
    WebTable& Row();
    WebTable& Cell(const std::string& text);
    /// Sorted by `value` and not by its text.
    WebTable& Cell(const std::string& text, std::int64_t value);
    WebTable& Cell(DateTime moment);
    void End();

  private:
    void Open(const std::string& attributes = {});

    std::string& out_;
    std::size_t classAt_ = 0;  ///< where the classes of the table end
    int rows_ = 0;
    bool first_ = false;  ///< the next cell is the first of its row
};

/// A moment without seconds where there are none; empty if it is not set.
std::string ShortMoment(DateTime moment);

/// Not set too where nothing says when the task has to end: a plan that was never solved ends nowhere.
DateTime LatestFinish(const Vtask& task, std::int32_t journal);

/// What a person is booked for by a task of the page.
struct Booking {
    const Vresource* resource;
    const Vtask* task;
    DateTime from, until;                                             ///< of the first and the last slot
    std::int64_t normal = 0, offDay = 0, overtime = 0, overload = 0;  ///< milliseconds
    Money cost{};

    std::int64_t Total() const { return normal + offDay + overtime + overload; }
};

/// All that the page tells of, looked up once.
struct WebFacts {
    explicit WebFacts(const WebPageSource& thePage);

    const WebPageSource& page;
    const Vproject& active;
    std::vector<const Vproject*> projects;  ///< the active one, then those below it
    bool halted;
    bool besidePlan = false;        ///< in one of the projects the journal is not the plan
    std::vector<Booking> bookings;  ///< by resource, then in the order of their first slots
    std::string symbol;             ///< of the currency
};

void AddTaskSection(std::string& out, const WebFacts& facts);
void AddPeopleSection(std::string& out, const WebFacts& facts);
void AddLoadingSection(std::string& out, const WebFacts& facts);

}  // namespace vortan

#pragma once

#include <string>
#include <vector>

#include "charts/TextMetrics.h"
#include "model/DateTime.h"

namespace vortan {

/// Columns of equal width, one a day, week, month or quarter, that cover a range of dates, and the two lines
/// of labels over them: the period, and above it the month or year that it lies in. Columns are counted from
/// 0.
class TimeScale {
  public:
    enum class Period { Day, Week, Month, Quarter };
    struct UpperLabel {
        std::string text;
        int firstCol, lastCol;  ///< `lastCol` is the column after the last
    };

    /// No columns.
    TimeScale() = default;
    /// The day that a week begins on, as Weekday counts.
    enum class WeekStart { Sunday = 1, Monday = 2 };
    /// Covers the moments from `start` to `finish`, and at least one period.
    TimeScale(Period period, DateTime start, DateTime finish, const TextMetrics& metrics,
              WeekStart weekStart = WeekStart::Monday);
    /// Of the finest period that takes no more than `width` twips, or of quarters.
    static TimeScale Fitting(DateTime start, DateTime finish, double width, const TextMetrics& metrics,
                             WeekStart weekStart = WeekStart::Monday);

    /// Makes the columns wider, so that together they come near `width`, but at most kMostWidening times.
    void Widen(double width, const TextMetrics& metrics);
    static constexpr int kMostWidening = 10;

    /// Of month 1 to 12, in English.
    static const char* MonthName(int month);

    Period ThePeriod() const { return period_; }
    int Count() const { return static_cast<int>(labels_.size()); }
    int ColumnWidth() const { return columnWidth_; }
    DateTime First() const { return DateTime(bounds_.front()); }
    DateTime Last() const { return DateTime(bounds_.back()); }
    /// Where columns begin, and the end of the last, in days. All are whole.
    const std::vector<double>& Bounds() const { return bounds_; }
    const std::string& Label(int col) const { return labels_[static_cast<std::size_t>(col)]; }
    /// Shortened where the columns are too narrow for them, at worst to nothing.
    const std::vector<UpperLabel>& UpperLabels() const { return upperLabels_; }

    /// The distance of a moment from the left edge of column 0, in columns. Outside the range the first or
    /// last column is continued.
    double ToColumns(DateTime when) const;
    DateTime FromColumns(double columns) const;

  private:
    void MakeLabels(const TextMetrics& metrics);
    void MakeUpperLabels(const TextMetrics& metrics);

    Period period_ = Period::Day;
    int columnWidth_ = 0;
    std::vector<double> bounds_{0};
    std::vector<std::string> labels_;
    std::vector<UpperLabel> upperLabels_;
};

}  // namespace vortan

#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "charts/ChartForm.h"
#include "model/Vproject.h"
#include "reports/RtfText.h"

namespace vortan {

/// Pictures of a report are PNGs of this many pixels, which fill this much of a page, in twips: 16 by 10 cm.
inline constexpr int kReportPixelsWide = 1512, kReportPixelsHigh = 945;
inline constexpr int kReportTwipsWide = 9071, kReportTwipsHigh = 5669;

/// The data of a PNG each, as hexadecimal digits.
struct ReportPictures {
    std::string budget, gantt;
};

/// What the head of a report tells.
struct ReportTexts {
    explicit ReportTexts(const Vproject& project);
    std::string project, description, journal, manager;
};

/// A row of the status table. A mark is 'G', 'Y', 'R' or 0 for none.
struct StatusRow {
    bool inTable = false;  ///< false: a row of another shape stands here, which has no marks
    std::string text;
    char previous = 0, present = 0;
};

/// The status report of a project: a document that its writers edit freely, and in which marks, pictures and
/// the texts of its head are brought up to date with nothing else changed.
///
/// The table has rows of four cells: the mark of the previous month, the row's text, the mark of the present
/// month, and one for the writers. The first such row is its heading, unless it is the first row of the
/// document. Colours of the marks are found by a key: each letter, followed by a word in its colour. The
/// first picture is the budget plot, the second the Gantt chart. The texts of the head stand between
/// bookmarks (VortanProject, VortanDescription, VortanJournal, VortanManager).
class StatusReport {
  public:
    explicit StatusReport(std::string bytes);

    /// Why the document cannot be worked on, as RtfText; empty if it can.
    const std::string& Problem() const { return text_.Problem(); }
    const std::string& Bytes() const { return text_.Bytes(); }
    bool HasTable() const { return !table_.empty(); }
    const std::string& Heading() const { return heading_; }

    /// From the one below the heading to the last one with marks; their marks are the caller's to set.
    std::vector<StatusRow> Rows;
    /// The present month's marks become those of the previous one.
    void CopyToPrevious();

    /// The whole document with the marks, the texts and the pictures.
    std::string Write(const ReportTexts& texts, const ReportPictures& pictures) const;
    /// With the texts alone.
    std::string Write(const ReportTexts& texts) const;

  private:
    /// Tokens from `first` to before `end`, which is the word that ends the cell.
    struct Cell {
        std::size_t first, end;
        std::string text;
    };
    struct TableRow {
        std::size_t number;  ///< among all rows of the document
        std::array<Cell, 4> cells;
    };
    struct Picture {
        std::size_t word, end;  ///< of its group
        bool marked;            ///< has a group with an identity
        bool isFallback;        ///< of the picture before it, for readers that cannot show that
    };
    using Changes = RtfText::Changes;

    void ReadTable();
    void BuildRows();
    std::vector<Picture> FindPictures() const;
    int ColorOf(char mark) const;
    void PutMark(Changes& changes, const Cell& cell, char mark, int color) const;
    void PutTexts(Changes& changes, const ReportTexts& texts) const;
    void PutText(Changes& changes, std::size_t first, std::size_t end, const std::string& text) const;
    void PutPicture(Changes& changes, const Picture& picture, const std::string& data) const;

    RtfText text_;
    std::vector<TableRow> table_;  ///< without the heading
    std::string heading_;
};

/// Starts a new chart with its usual options, a budget plot with those of earned value if that is wanted.
void StartReportChart(ChartForm& chart, bool earnedValue);

}  // namespace vortan

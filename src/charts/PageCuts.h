#pragma once

#include <utility>
#include <vector>

#include "charts/Vwindow.h"

namespace vortan {

/// What is known of a surface and its page when it is to be printed; all in twips.
struct PageStats {
    int pageWidth = 0, pageHeight = 0;  ///< printable
    int contentWidth = 0, contentHeight = 0;
    int fixedRows = 0, fixedCols = 0;  ///< headings
    bool hasHeadings = true;           ///< a free drawing has none
    std::vector<int> colPos, rowPos;   ///< the edges of all columns and rows, from 0 to the far edge
    int pageFoot = 0;                  ///< of its height, left empty where a surface is cut
};
/// `page` is that of the printer now, which need not be the one that the surface was laid out for.
PageStats PageStatsOf(const Vwindow& surface, const Vwindow::Page& page);

/// The part x1, y1 to x2, y2 of a surface, to be printed with its top left corner at destX, destY of the
/// printable part of a page. It may be empty and still start a page.
struct Piece {
    bool newPage;
    double scale;
    int x1, y1, x2, y2, destX, destY;

    bool operator==(const Piece&) const = default;
};

/// How a surface comes onto paper.
class PageCuts {
  public:
    /// By the index of the button.
    enum class Choice {
        ChangeFont,
        ChangePage,
        ReduceToFit,
        ExpandToFit,
        SingleHeading,
        MultipleHeadings,
        CenterOnPage,
        Cancel
    };

    explicit PageCuts(PageStats stats) : stats_(std::move(stats)) {}

    /// The scale at which the surface just fits one page. Of single precision, so that what fits exactly
    /// gives 1.
    float Fit() const;
    bool IsEnabled(Choice choice) const;
    /// What a choice prints: nothing for those that do not print.
    std::vector<Piece> Pieces(Choice choice) const;

  private:
    Piece OnePage(double scale) const;
    Piece Centered() const;
    std::vector<Piece> CutAndPaste(bool repeatHeadings) const;

    PageStats stats_;
};

}  // namespace vortan

#include "charts/PageCuts.h"

#include <algorithm>

#include "model/Rounding.h"

namespace vortan {
namespace {

constexpr double kRoundingMargin = 0.99;

/// The columns or the rows of a surface, as they fall on pages.
struct Direction {
    const std::vector<int>& positions;
    int page;
    int fixed;

    Direction(const std::vector<int>& edges, int pageSize, int headings)
        : positions(edges), page(pageSize), fixed(std::clamp(headings, 0, Count())) {
        // Headings that leave no room for anything else cannot be repeated.
        if (At(fixed) >= page) fixed = 0;
    }

    int Count() const { return static_cast<int>(positions.size()) - 1; }
    int At(int line) const { return positions[static_cast<std::size_t>(line)]; }
    int FixedSize() const { return At(fixed); }
    /// The end of the page that begins with `first`; one that is too large for a page has it to itself.
    int Last(int first) const {
        int last = first;
        while (last < Count() && std::int64_t{At(last + 1)} + FixedSize() - At(first) <= page) ++last;
        return last == first && first < Count() ? first + 1 : last;
    }
    /// Where the page's part of the surface ends: at the edge of `last`, or where the page does.
    int End(int first, int last) const {
        return static_cast<int>(
            std::min<std::int64_t>(At(last), std::int64_t{At(first)} + page - FixedSize()));
    }
};

}  // namespace

PageStats PageStatsOf(const Vwindow& surface, const Vwindow::Page& page) {
    PageStats stats;
    stats.pageWidth = page.width;
    stats.pageHeight = page.height;
    stats.pageFoot = std::clamp(surface.PageFoot, 0, page.height / 2);
    stats.contentWidth = surface.ContentWidth();
    stats.contentHeight = surface.ContentHeight();
    stats.fixedRows = surface.FixedRows();
    stats.fixedCols = surface.FixedCols();
    stats.hasHeadings = surface.TheStyle() != Vwindow::Style::Free;
    for (int col = 0; col <= surface.Cols(); ++col) stats.colPos.push_back(surface.ColPos(col));
    // A key that reaches beyond the columns belongs to the last of them.
    stats.colPos.back() = stats.contentWidth;
    for (int row = 0; row <= surface.Rows(); ++row) stats.rowPos.push_back(surface.RowPos(row));
    return stats;
}

float PageCuts::Fit() const {
    const double across = static_cast<double>(stats_.pageWidth) / std::max(stats_.contentWidth, 1);
    const double down = static_cast<double>(stats_.pageHeight) / std::max(stats_.contentHeight, 1);
    return static_cast<float>(std::min(across, down));
}

bool PageCuts::IsEnabled(Choice choice) const {
    switch (choice) {
        case Choice::ReduceToFit:
        case Choice::SingleHeading:
            return Fit() < 1;
        case Choice::ExpandToFit:
            return Fit() > 1;
        case Choice::MultipleHeadings:
            return Fit() < 1 && stats_.hasHeadings;
        default:
            return true;
    }
}

std::vector<Piece> PageCuts::Pieces(Choice choice) const {
    switch (choice) {
        case Choice::ReduceToFit:
        case Choice::ExpandToFit:
            return {OnePage(Fit() * kRoundingMargin)};
        case Choice::CenterOnPage:
            return {Centered()};
        case Choice::SingleHeading:
        case Choice::MultipleHeadings:
            return CutAndPaste(choice == Choice::MultipleHeadings);
        default:
            return {};
    }
}

Piece PageCuts::OnePage(double scale) const {
    return {
        true, scale, 0, 0, RoundToInt32(stats_.pageWidth / scale), RoundToInt32(stats_.pageHeight / scale),
        0,    0};
}

Piece PageCuts::Centered() const {
    const int width = std::min(stats_.contentWidth, stats_.pageWidth);
    const int height = std::min(stats_.contentHeight, stats_.pageHeight);
    return {true, 1, 0, 0, width, height, (stats_.pageWidth - width) / 2, (stats_.pageHeight - height) / 2};
}

std::vector<Piece> PageCuts::CutAndPaste(bool repeatHeadings) const {
    const Direction across(stats_.colPos, stats_.pageWidth, repeatHeadings ? stats_.fixedCols : 0);
    const Direction down(stats_.rowPos, stats_.pageHeight - stats_.pageFoot,
                         repeatHeadings ? stats_.fixedRows : 0);
    const int fixedWidth = across.FixedSize(), fixedHeight = down.FixedSize();
    const bool headings = across.fixed > 0 || down.fixed > 0;
    std::vector<Piece> pieces;
    // The whole width of a band of rows, then the next band.
    int firstRow = down.fixed, lastRow = 0;
    do {
        lastRow = down.Last(firstRow);
        const int top = down.At(firstRow), bottom = down.End(firstRow, lastRow);
        int firstCol = across.fixed, lastCol = 0;
        do {
            lastCol = across.Last(firstCol);
            const int left = across.At(firstCol), right = across.End(firstCol, lastCol);
            if (headings) {
                pieces.push_back({true, 1, 0, 0, fixedWidth, fixedHeight, 0, 0});
                pieces.push_back({false, 1, left, 0, right, fixedHeight, fixedWidth, 0});
                pieces.push_back({false, 1, 0, top, fixedWidth, bottom, 0, fixedHeight});
            }
            pieces.push_back({!headings, 1, left, top, right, bottom, fixedWidth, fixedHeight});
            firstCol = lastCol;
        } while (lastCol < across.Count());
        firstRow = lastRow;
    } while (lastRow < down.Count());
    return pieces;
}

}  // namespace vortan

#pragma once

#include <string>

#include "charts/Vwindow.h"

/// A surface of the table style as text for other programs.
namespace vortan {

/// A part of the cells, both ends inclusive; row 0 is that of the titles.
struct TablePart {
    int top, left, bottom, right;
    bool titles = false;  ///< above it
};
/// With the titles.
TablePart WholeTable(const Vwindow& surface);

/// Tabs between cells, a line per row, titles first. Line breaks and tabs within a cell become blanks.
std::string TableAsTabs(const Vwindow& surface, const TablePart& part);
/// An HTML table with the titles as its heading, alignments, bold cells and background colours.
std::string TableAsHtml(const Vwindow& surface, const TablePart& part);

}  // namespace vortan

#pragma once

#include <string>

#include "charts/Vwindow.h"

/// A surface of the table style as text for other programs.
namespace vortan {

/// Tabs between cells, a line per row, titles first. Line breaks and tabs within a cell become blanks.
std::string TableAsTabs(const Vwindow& surface);
/// An HTML table with the titles as its heading, alignments, bold cells and background colours.
std::string TableAsHtml(const Vwindow& surface);

}  // namespace vortan

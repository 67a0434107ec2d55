#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "charts/TextMetrics.h"
#include "model/Link.h"
#include "model/Vproject.h"
#include "model/Vtask.h"

namespace vortan {

/// A project as a tree on pages: its box at the top, its tasks as lines below, its subprojects in rows of
/// boxes with lines of their own, what those hold indented. Twips on a surface that is cut into pages.
struct WorkBreakdown {
    struct Text {
        int level = 0;  ///< 0 is the project itself, 1 its subprojects
        std::string text;
        int x = 0, y = 0;           ///< of a box: its corner, of a line: that of its text
        int width = 0, height = 0;  ///< of a box
        Link<Vproject> project;     ///< of the box at the top
        Link<Vtask> task;           ///< of all others
    };
    struct Stroke {
        int x1, y1, x2, y2;
    };

    // As drawn.
    std::vector<Text> boxes, lines;
    std::vector<Stroke> strokes;
    int across = 0, down = 0;  ///< pages
};

/// What a work breakdown is fitted to; twips.
struct WorkBreakdownSheet {
    int pageWidth, pageHeight;  ///< whole cells of the surface
    const TextMetrics& metrics;
};

/// How many levels are expanded: 0 while nobody has asked, below 0 when the user gave up. A subproject on
/// level n is expanded if n is below it; level 1 always is.
using LevelLimit = std::int32_t;

/// Of the project in its journal in force. The first time that a subproject holds another one while `limit`
/// is 0, `ask` gives the number of levels and sets `limit`; when that is below 0 afterwards, what was made is
/// not all.
WorkBreakdown BuildWorkBreakdown(Vproject& project, const WorkBreakdownSheet& sheet, LevelLimit& limit,
                                 const std::function<std::int32_t()>& ask);

}  // namespace vortan

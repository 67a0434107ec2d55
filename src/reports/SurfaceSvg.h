#pragma once

#include <functional>
#include <map>
#include <string>
#include <tuple>

#include "charts/Vwindow.h"

namespace vortan {

/// The colours of drawings on a page, each a class of its style sheet. On a dark page black and white change
/// places, and dark colours are lighter.
class PageColors {
  public:
    /// The class of what is filled and drawn so, with lines of `width` pixels.
    std::string ClassOf(Color fill, Color border, int width);
    /// The class of what is not filled.
    std::string OutlineClassOf(Color border);
    /// What the style sheet of the page must say. `dark`: where the page is dark.
    std::string Rules(bool dark) const;

  private:
    struct Look {
        Color fill, border;
        int width;  ///< 0: not filled, lines of one pixel
        auto operator<=>(const Look&) const = default;
    };
    std::string ClassOf(const Look& look);

    std::map<Look, std::size_t> classes_;
};

/// A laid out surface with a time scale as part of a page: a table of bands of some rows each, so that a
/// browser need not look at those that are not in view. The cells are texts, the time columns drawings. Its
/// letters are those of PageMetrics. Hatches are left out.
///
/// `tip` says what is told of a filled rectangle or milestone, by its middle; empty for nothing.
std::string SurfaceSvg(const Vwindow& surface, PageColors& colors,
                       const std::function<std::string(int x, int y)>& tip = {});
/// How wide it is, in pixels.
int SurfacePixels(const Vwindow& surface);

/// What the style sheet must say of all such drawings.
extern const char* const kSurfaceStyle;

}  // namespace vortan

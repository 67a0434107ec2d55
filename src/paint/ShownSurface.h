#pragma once

#include <string>

#include "charts/Vwindow.h"
#include "paint/QtTextMetrics.h"

namespace vortan {

/// A complete surface, as printing and pictures take it. Good as long as its form neither changes nor goes.
struct ShownSurface {
    const Vwindow& surface;
    const QtTextMetrics& metrics;  ///< that the surface was laid out with
    std::string title;             ///< of pictures, and at the head of printed pages
};

}  // namespace vortan

#pragma once

#include <QColor>

#include "charts/DrawList.h"

namespace vortan {

inline QColor ScreenColor(Color color) {
    return {static_cast<int>(color & 0xFF), static_cast<int>(color >> 8 & 0xFF),
            static_cast<int>(color >> 16 & 0xFF)};
}

}  // namespace vortan

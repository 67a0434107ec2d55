#pragma once

#include <QPalette>
#include <QString>

namespace vortan {

/// Whether the colours are those of a user who needs them as far apart as they can be: text and ground are
/// black and white.
bool IsHighContrast(const QPalette& palette);

/// What the toolkit's style leaves out in such colours, as it derives frames and marks from the ground: a
/// style sheet with frames in the colour of text. Empty for other palettes.
QString ContrastSheet(const QPalette& palette);

}  // namespace vortan

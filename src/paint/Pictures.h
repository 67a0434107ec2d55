#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <string>

#include "charts/Vwindow.h"
#include "paint/QtTextMetrics.h"

/// A whole surface as a picture.
namespace vortan {

enum class PictureType { Svg, Png, Pdf };

/// By the extension of a file name; none for others.
std::optional<PictureType> PictureTypeOf(const std::string& fileName);

/// The data of a picture file. A PNG has `pixelsPerInch`; one too large for memory is a fault. A PDF has one
/// page, as large as the surface and a margin.
QByteArray MakePicture(const Vwindow& surface, const QtTextMetrics& metrics, PictureType type,
                       const QString& title, double pixelsPerInch = 144);

}  // namespace vortan

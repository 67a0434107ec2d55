#pragma once

#include <QByteArray>
#include <QMimeData>
#include <memory>
#include <string>

#include "paint/ShownSurface.h"

/// A whole surface as a picture, in black and white if the surface says so.
namespace vortan {

enum class PictureType { Svg, Png };

/// The data of a picture file. A PNG has `pixelsPerInch`; one too large for memory is a fault.
QByteArray MakePicture(const ShownSurface& shown, PictureType type, double pixelsPerInch = 144);

/// For the clipboard: the picture as SVG and as pixels, which programs ask for as PNG, and a table also as
/// text and as HTML. What is too large for pixels is there as SVG alone.
std::unique_ptr<QMimeData> ClipboardData(const ShownSurface& shown);

/// The data of a PNG as hexadecimal digits, as the picture group of an RTF document holds them. It has the
/// size of pictures in reports; what is larger is reduced to it, what is smaller has white around it.
std::string GetPictureText(const ShownSurface& shown);

}  // namespace vortan

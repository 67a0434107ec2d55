#pragma once

#include <QByteArray>
#include <string>

namespace vortan {

/// Writes a file that other programs read. Returns a sentence about what went wrong, empty if nothing did; a
/// file that was there before keeps its content then.
std::string SaveFile(const std::string& name, const QByteArray& data);

}  // namespace vortan

#pragma once

#include <QString>
#include <string>
#include <string_view>

/// Texts between the model (UTF-8) and the toolkit.
namespace vortan {

inline QString Q(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string S(const QString& text) {
    return text.toStdString();
}

}  // namespace vortan

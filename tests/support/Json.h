#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <stdexcept>
#include <string>

namespace vortan {

/// The value of a JSON text. A damaged text throws.
inline QJsonValue ParseJson(const std::string& text) {
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    if (document.isNull()) throw std::runtime_error("JSON: " + error.errorString().toStdString());
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}

/// Where two values differ, numbers by more than `tolerance(name of the member)`; empty: nowhere.
template <class Tolerance>
std::string JsonDifference(const QJsonValue& is, const QJsonValue& should, const Tolerance& tolerance,
                           const QString& name = {}) {
    const QStringList members = is.toObject().keys();
    const qsizetype items = is.toArray().size();
    const bool same = is.type() == should.type() &&
                      (is.isDouble()   ? std::abs(is.toDouble() - should.toDouble()) <= tolerance(name)
                       : is.isObject() ? members == should.toObject().keys()
                       : is.isArray()  ? items == should.toArray().size()
                                       : is == should);
    std::string found =
        same ? ""
             : (is.toVariant().toString() + ", but should be " + should.toVariant().toString()).toStdString();
    for (qsizetype i = 0; i < items && found.empty(); ++i) {
        found = JsonDifference(is[i], should[i], tolerance, name);
        if (!found.empty()) found = std::to_string(i) + " " + found;
    }
    for (qsizetype i = 0; i < members.size() && found.empty(); ++i)
        found = JsonDifference(is[members[i]], should[members[i]], tolerance, members[i]);
    return found.empty() ? found : name.toStdString() + " " + found;
}

}  // namespace vortan

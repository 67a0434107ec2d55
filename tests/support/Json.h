#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vortan {

/// A value of a JSON text. A damaged text throws, and so does a value asked for as what it is not.
class Json {
  public:
    static Json Parse(std::string_view text) {
        QJsonParseError error;
        const auto document =
            QJsonDocument::fromJson(QByteArray(text.data(), static_cast<qsizetype>(text.size())), &error);
        if (document.isNull()) throw std::runtime_error("JSON: " + error.errorString().toStdString());
        return document.isArray() ? Json(document.array()) : Json(document.object());
    }

    bool IsNull() const { return value_.isNull(); }
    bool Flag() const { return Expect(QJsonValue::Bool).value_.toBool(); }
    double Number() const { return Expect(QJsonValue::Double).value_.toDouble(); }
    int Int() const { return static_cast<int>(Number()); }
    std::string Text() const { return Expect(QJsonValue::String).value_.toString().toStdString(); }
    const std::vector<Json>& Items() const { return Expect(QJsonValue::Array).items_; }
    const Json& operator[](const std::string& name) const {
        return Expect(QJsonValue::Object).members_.at(name);
    }

    /// Where this differs from `other`, numbers by more than `tolerance(name of the member)`; empty: nowhere.
    template <class Tolerance>
    std::string Difference(const Json& other, const Tolerance& tolerance,
                           const std::string& name = "") const {
        if (value_.type() != other.value_.type() || value_.toString() != other.value_.toString() ||
            value_.toBool() != other.value_.toBool())
            return name + " " + Shown() + " and " + other.Shown();
        if (std::abs(value_.toDouble() - other.value_.toDouble()) > tolerance(name))
            return name + " " + Shown() + " and " + other.Shown();
        if (items_.size() != other.items_.size() || members_.size() != other.members_.size())
            return name + " has other parts";
        std::string found;
        for (std::size_t i = 0; i < items_.size() && found.empty(); ++i) {
            found = items_[i].Difference(other.items_[i], tolerance, name);
            if (!found.empty()) found = std::to_string(i) + " " + found;
        }
        for (auto a = members_.begin(), b = other.members_.begin(); a != members_.end() && found.empty();
             ++a, ++b) {
            found = a->first != b->first ? a->first + " and " + b->first
                                         : a->second.Difference(b->second, tolerance, a->first);
        }
        return found.empty() || name.empty() ? found : name + " " + found;
    }

    Json() = default;

  private:
    std::string Shown() const { return value_.toVariant().toString().toStdString(); }
    explicit Json(const QJsonValue& value) : value_(value) {
        for (const QJsonValue& item : value.toArray()) items_.push_back(Json(item));
        const QJsonObject object = value.toObject();
        for (const QString& name : object.keys()) members_.emplace(name.toStdString(), Json(object[name]));
    }
    const Json& Expect(QJsonValue::Type type) const {
        if (value_.type() != type) throw std::runtime_error("JSON: a value of another kind");
        return *this;
    }

    QJsonValue value_;
    std::vector<Json> items_;
    std::map<std::string, Json> members_;
};

}  // namespace vortan

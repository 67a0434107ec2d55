#pragma once

#include <cmath>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vortan {

/// A value of a JSON text, just enough for tests: escapes beyond \" \\ \/ \n \t and \uXXXX below the
/// surrogates are not known. A damaged text throws.
class Json {
  public:
    static Json Parse(std::string_view text) {
        Reader reader{text};
        Json value = reader.Value();
        reader.SkipBlanks();
        if (reader.at != text.size()) throw std::runtime_error("JSON: text behind the value");
        return value;
    }

    bool IsNull() const { return kind_ == Kind::Null; }
    bool Flag() const { return Expect(Kind::Flag).number_ != 0; }
    double Number() const { return Expect(Kind::Number).number_; }
    int Int() const { return static_cast<int>(Number()); }
    const std::string& Text() const { return Expect(Kind::Text).text_; }
    const std::vector<Json>& Items() const { return Expect(Kind::Array).items_; }
    /// A member of an object. Throws if there is none.
    const Json& operator[](const std::string& name) const { return Expect(Kind::Object).members_.at(name); }

    /// Where this differs from `other`, numbers by more than `tolerance(name of the member)`; empty: nowhere.
    template <class Tolerance>
    std::string Difference(const Json& other, const Tolerance& tolerance,
                           const std::string& name = "") const {
        if (kind_ != other.kind_ || text_ != other.text_) return name + " " + text_ + " and " + other.text_;
        if (std::abs(number_ - other.number_) > tolerance(name))
            return name + " " + std::to_string(number_) + " and " + std::to_string(other.number_);
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

  private:
    enum class Kind { Null, Flag, Number, Text, Array, Object };

    struct Reader {
        std::string_view text;
        std::size_t at = 0;

        void SkipBlanks() {
            while (at < text.size() && std::string_view(" \t\r\n").find(text[at]) != text.npos) ++at;
        }
        char Peek() {
            SkipBlanks();
            if (at == text.size()) throw std::runtime_error("JSON: unexpected end");
            return text[at];
        }
        bool Take(char c) {
            if (Peek() != c) return false;
            ++at;
            return true;
        }
        void Require(std::string_view word) {
            if (text.substr(at, word.size()) != word) {
                throw std::runtime_error("JSON: expected " + std::string(word));
            }
            at += word.size();
        }
        Json Value() {
            Json value;
            switch (Peek()) {
                case '{':
                    ReadObject(value);
                    break;
                case '[':
                    ReadArray(value);
                    break;
                case '"':
                    value.kind_ = Kind::Text;
                    value.text_ = String();
                    break;
                case 'n':
                    Require("null");
                    break;
                case 't':
                    Require("true");
                    value.kind_ = Kind::Flag;
                    value.number_ = 1;
                    break;
                case 'f':
                    Require("false");
                    value.kind_ = Kind::Flag;
                    break;
                default:
                    ReadNumber(value);
            }
            return value;
        }
        void ReadNumber(Json& value) {
            value.kind_ = Kind::Number;
            const std::string digits(text.substr(at, 40));
            char* end = nullptr;
            value.number_ = std::strtod(digits.c_str(), &end);
            if (end == digits.c_str()) throw std::runtime_error("JSON: no value at " + digits);
            at += static_cast<std::size_t>(end - digits.c_str());
        }
        void ReadObject(Json& value) {
            value.kind_ = Kind::Object;
            ++at;
            if (Take('}')) return;
            do {
                Peek();
                const std::string name = String();
                if (!Take(':')) throw std::runtime_error("JSON: no colon behind " + name);
                value.members_[name] = Value();
            } while (Take(','));
            if (!Take('}')) throw std::runtime_error("JSON: object without end");
        }
        void ReadArray(Json& value) {
            value.kind_ = Kind::Array;
            ++at;
            if (Take(']')) return;
            do {
                value.items_.push_back(Value());
            } while (Take(','));
            if (!Take(']')) throw std::runtime_error("JSON: array without end");
        }
        std::string String() {
            Require("\"");
            std::string result;
            while (at < text.size() && text[at] != '"') {
                if (text[at] != '\\') {
                    result += text[at++];
                    continue;
                }
                ++at;
                if (at == text.size()) break;
                const char c = text[at++];
                if (c == 'u') {
                    AppendCode(result, std::stoi(std::string(text.substr(at, 4)), nullptr, 16));
                    at += 4;
                } else {
                    result += c == 'n' ? '\n' : c == 't' ? '\t' : c;
                }
            }
            Require("\"");
            return result;
        }
        static void AppendCode(std::string& result, int code) {
            if (code < 0x80) {
                result += static_cast<char>(code);
            } else if (code < 0x800) {
                result += static_cast<char>(0xC0 | code >> 6);
                result += static_cast<char>(0x80 | (code & 0x3F));
            } else {
                result += static_cast<char>(0xE0 | code >> 12);
                result += static_cast<char>(0x80 | (code >> 6 & 0x3F));
                result += static_cast<char>(0x80 | (code & 0x3F));
            }
        }
    };

    const Json& Expect(Kind kind) const {
        if (kind_ != kind) throw std::runtime_error("JSON: value of another kind");
        return *this;
    }

    Kind kind_ = Kind::Null;
    double number_ = 0;
    std::string text_;
    std::vector<Json> items_;
    std::map<std::string, Json> members_;
};

}  // namespace vortan

#include "transfer/VortanCode.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "persist/TextEncoding.h"

namespace vortan {

namespace {

bool IsHex(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
}
int HexValue(char c) {
    return c <= '9' ? c - '0' : c - 'A' + 10;
}

template <class T>
void AppendChars(std::string& out, T value) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    out.append(text, end);
}

template <class T>
bool ReadChars(std::string_view code, T& value) {
    const auto [end, error] = std::from_chars(code.data(), code.data() + code.size(), value);
    return error == std::errc() && end == code.data() + code.size();
}

template <class T>
bool ReadFinite(std::string_view code, T& value) {
    return ReadChars(code, value) && std::isfinite(value);
}

}  // namespace

std::uint32_t TextHash(std::string_view text) {
    std::uint32_t hash = 2166136261U;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return hash;
}

std::string HashText(std::uint32_t hash) {
    char text[9];
    std::snprintf(text, sizeof text, "%08x", static_cast<unsigned>(hash));
    return text;
}

void AppendEscaped(std::string& out, std::string_view text) {
    const bool plain = IsUtf8(text);
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool escape = byte <= ' ' || byte == 0x7F || (byte >= 0x80 && !plain) ||
                            std::string_view("%;|,/:").find(c) != std::string_view::npos;
        if (!escape) {
            out += c;
            continue;
        }
        constexpr std::string_view kDigits = "0123456789ABCDEF";
        out += '%';
        out += kDigits[byte >> 4];
        out += kDigits[byte & 15];
    }
}

std::string Unescaped(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && IsHex(text[i + 1]) && IsHex(text[i + 2])) {
            out += static_cast<char>(HexValue(text[i + 1]) * 16 + HexValue(text[i + 2]));
            i += 2;
        } else {
            out += text[i];
        }
    }
    return out;
}

std::vector<std::string_view> SplitText(std::string_view text, char end) {
    std::vector<std::string_view> pieces;
    while (!text.empty()) {
        const std::size_t at = text.find(end);
        pieces.push_back(text.substr(0, at));
        if (at == std::string_view::npos) break;
        text.remove_prefix(at + 1);
        if (text.empty()) pieces.emplace_back();
    }
    return pieces;
}

void AppendCode(std::string& out, const std::string& value) {
    AppendEscaped(out, value);
}
void AppendCode(std::string& out, bool value) {
    out += value ? '1' : '0';
}
void AppendCode(std::string& out, std::int32_t value) {
    AppendChars(out, value);
}
void AppendCode(std::string& out, std::uint8_t value) {
    AppendChars(out, static_cast<unsigned>(value));
}
void AppendCode(std::string& out, double value) {
    AppendChars(out, std::isfinite(value) ? value : 0.0);
}
void AppendCode(std::string& out, float value) {
    AppendChars(out, std::isfinite(value) ? value : 0.0F);
}
void AppendCode(std::string& out, Money value) {
    AppendChars(out, value.Units());
}
void AppendCode(std::string& out, DateTime value) {
    const double day = value.WholeDay();
    const auto minutes = std::llrint((value.Days() - day) * kMinutesPerDay);
    if (!(std::fabs(day) < 1e9) || day + static_cast<double>(minutes) / kMinutesPerDay != value.Days()) {
        out += 'e';
        return AppendCode(out, value.Days());
    }
    AppendChars(out, static_cast<std::int64_t>(day));
    if (minutes == 0) return;
    out += ':';
    AppendChars(out, static_cast<std::int64_t>(minutes));
}
void AppendCode(std::string& out, SolveRule value) {
    AppendChars(out, static_cast<std::int32_t>(value));
}

bool ReadCode(std::string_view code, std::string& value) {
    value = Unescaped(code);
    return true;
}
bool ReadCode(std::string_view code, bool& value) {
    value = code == "1";
    return code == "0" || code == "1";
}
bool ReadCode(std::string_view code, std::int32_t& value) {
    return ReadChars(code, value);
}
bool ReadCode(std::string_view code, std::uint8_t& value) {
    return ReadChars(code, value) && value <= 100;
}
bool ReadCode(std::string_view code, double& value) {
    return ReadFinite(code, value);
}
bool ReadCode(std::string_view code, float& value) {
    return ReadFinite(code, value);
}
bool ReadCode(std::string_view code, Money& value) {
    std::int64_t units = 0;
    if (!ReadChars(code, units)) return false;
    value = Money::FromUnits(units);
    return true;
}
bool ReadCode(std::string_view code, DateTime& value) {
    double days = 0;
    if (!code.empty() && code.front() == 'e') {
        if (!ReadFinite(code.substr(1), days)) return false;
    } else {
        const std::size_t colon = code.find(':');
        std::int64_t day = 0, minutes = 0;
        if (!ReadChars(code.substr(0, colon), day)) return false;
        if (colon != std::string_view::npos && !ReadChars(code.substr(colon + 1), minutes)) return false;
        if (minutes < 0 || minutes > kMinutesPerDay) return false;
        days = static_cast<double>(day) + static_cast<double>(minutes) / kMinutesPerDay;
    }
    value = DateTime(days);
    return days >= -657434 && days < kLastDay + 1;
}
bool ReadCode(std::string_view code, SolveRule& value) {
    std::int32_t number = 0;
    if (!ReadChars(code, number) || number < 0 || number >= kSolveRules) return false;
    value = static_cast<SolveRule>(number);
    return true;
}

}  // namespace vortan

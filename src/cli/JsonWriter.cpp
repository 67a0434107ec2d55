#include "cli/JsonWriter.h"

#include <charconv>
#include <cstdio>

namespace vortan {

std::string JsonNumber(double value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

void JsonWriter::Raw(std::string_view value) {
    if (comma_) out_ += ',';
    out_ += value;
    comma_ = true;
}

void JsonWriter::Begin(char bracket) {
    Raw(std::string_view(&bracket, 1));
    comma_ = false;
}

void JsonWriter::End(char bracket) {
    out_ += bracket;
    comma_ = true;
}

void JsonWriter::Name(const char* name) {
    Value(name);
    out_ += ':';
    comma_ = false;
}

void JsonWriter::Value(double value) {
    Raw(JsonNumber(value));
}

void JsonWriter::Value(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (static_cast<unsigned char>(c) < 32) {
            char code[8];
            std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
            quoted += code;
        } else {
            quoted += c;
        }
    }
    Raw(quoted + '"');
}

}  // namespace vortan

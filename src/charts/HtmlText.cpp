#include "charts/HtmlText.h"

namespace vortan {

std::string EscapedHtml(std::string_view text, std::string_view lineBreak) {
    std::string all;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '&') {
            all += "&amp;";
        } else if (c == '<') {
            all += "&lt;";
        } else if (c == '>') {
            all += "&gt;";
        } else if (c == '"') {
            all += "&quot;";
        } else if (c == '\n') {
            all += lineBreak;
        } else if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            continue;
        } else {
            all += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
    }
    return all;
}

std::string HtmlColor(Color color) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text = "#";
    for (const Color channel : {color & 255, color >> 8 & 255, color >> 16 & 255}) {
        text += digits[channel >> 4];
        text += digits[channel & 15];
    }
    return text;
}

}  // namespace vortan

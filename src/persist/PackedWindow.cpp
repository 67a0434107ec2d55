#include "persist/PackedWindow.h"

#include <cstring>

namespace vortan {

PackedWindow::PackedWindow() {
    for (std::size_t i = 0; i < kSize; ++i) bytes_[i] = static_cast<char>(i % kFixed);
}

std::size_t PackedWindow::Append(std::size_t position, std::string_view text) {
    // The source, and the rest of a longer run behind it, shall outlive the copy. Only the jump back to the
    // front, decided afterwards, can still hit them.
    const std::size_t protectedEnd = position + 2 * text.size();
    if (next_ >= position && next_ < protectedEnd) next_ = protectedEnd;
    if (next_ + text.size() > kSize) next_ = kFixed;
    const std::size_t start = next_;
    std::memcpy(bytes_.data() + start, text.data(), text.size());
    next_ += text.size();
    return start;
}

}  // namespace vortan

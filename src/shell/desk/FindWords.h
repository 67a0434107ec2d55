#pragma once

#include <QString>
#include <QStringList>
#include <algorithm>

namespace vortan {

/// What a user looks for: words that a text must have all of, in any order, whole or in part, in whatever
/// case.
class FindWords {
  public:
    explicit FindWords(const QString& typed)
        : words_(typed.toCaseFolded().simplified().split(' ', Qt::SkipEmptyParts)) {}

    bool Empty() const { return words_.isEmpty(); }
    bool AllIn(const QString& text) const {
        const QString folded = text.toCaseFolded();
        return std::all_of(words_.begin(), words_.end(),
                           [&](const QString& word) { return folded.contains(word); });
    }

  private:
    QStringList words_;
};

/// From where a search goes: from what is marked on, itself included or not, or backwards.
enum class FindFrom { Here, Next, Before };

}  // namespace vortan

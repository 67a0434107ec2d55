#pragma once

#include <set>
#include <string>
#include <vector>

#include "help/Manual.h"

namespace vortan {

/// What texts a program has, from the string literals of its sources.
class ProgramTexts {
  public:
    /// The literals of one source file; neighbours are one text.
    void AddSource(const std::string& source);
    /// Any other text, such as that of a control.
    void Add(std::string text);
    /// Whether there is this text, but for the mark of its letter ("&New") and a colon behind it.
    bool Has(const std::string& text) const;
    /// Whether a command has an option of this name, as "--json" or "-o".
    bool HasOption(const std::string& option) const { return options_.contains(option); }

  private:
    std::set<std::string> texts_;
    std::set<std::string> options_;
};

/// Texts of the program and options of the batch tool that pages name and the program does not have, and
/// pictures that nothing draws (`pictures` are names of files).
void CheckTexts(const Manual& manual, const ProgramTexts& program, const std::set<std::string>& pictures,
                std::vector<HelpFault>& faults);

}  // namespace vortan

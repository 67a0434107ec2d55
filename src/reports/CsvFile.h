#pragma once

#include <string>
#include <string_view>

#include "reports/Table.h"

namespace vortan {

/// Writes a CSV text (RFC 4180): lines end in CR LF, cells are quoted where they must be, numbers have a
/// decimal point.
class CsvWriter {
  public:
    void Cell(std::string_view text);
    void Cell(double number);
    void EndLine();
    const std::string& Text() const { return out_; }

  private:
    std::string out_;
    bool comma_ = false;
};

/// The titles, in a line each, and the texts of all rows. It begins with a byte order mark, without which
/// spreadsheet programs take UTF-8 for something else. A text that such a program could take for a formula
/// has an apostrophe in front: whoever reads the file takes off one that stands before = + - @ or a control
/// character.
std::string CsvOf(const Table& table);
/// For programs of one's own: a line of titles, then values as plain numbers, all else as its text.
std::string DataCsvOf(const Table& table);

}  // namespace vortan

#pragma once

#include <cstddef>

namespace vortan {

class MainForm;

/// Shows the report of that place in ReportKinds, or says why it cannot.
void ShowReport(MainForm& main, std::size_t place);
/// As a row of the command table needs it; kinds count from 1.
template <int kKind>
void StartReport(MainForm& main) {
    ShowReport(main, kKind - 1);
}

/// Writes the table in front, or the one behind the chart in front, into a file of the user's choice.
void OutputExport(MainForm& main);

}  // namespace vortan

#pragma once

#include <QByteArray>
#include <QPageLayout>
#include <string>

#include "paint/ShownSurface.h"
#include "reports/Table.h"

namespace vortan {

/// The endings that MakeTableFile knows, as a file dialog shows them.
inline constexpr const char* kTableFileFilters =
    "Workbook (*.xlsx);;Comma-separated values (*.csv);;Web page (*.html);;PDF (*.pdf);;Picture (*.svg);;"
    "Picture (*.png)";

/// A table, and the surface on which it or its chart stands.
struct TableFile {
    const Table& table;
    ShownSurface shown;
    QPageLayout page;
    std::string currencySymbol;
};

/// The bytes of a file of that name: .csv, .html and .xlsx hold the table, .pdf, .svg and .png what is shown.
/// Fault if the name ends otherwise or the content does not fit.
QByteArray MakeTableFile(const TableFile& file, const std::string& name);

}  // namespace vortan

#pragma once

#include <QTableWidget>
#include <string>
#include <vector>

#include "reports/StatusReport.h"

namespace vortan {

/// The status table: green, yellow and red marks for the previous month, the text of the row, and marks for
/// the present month. A click or the space bar sets the mark of its column; so do the keys G, Y and R in the
/// half in which the focus is.
class MarkGrid : public QTableWidget {
  public:
    /// Shows `rows`, which must outlive the grid or its next call, and changes their marks.
    void ShowRows(const std::string& heading, std::vector<StatusRow>& rows);
    /// The marks have been changed from outside.
    void RedoColors();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void Click(int row, int column);
    void RedoRow(int row);
    void PlaceColumns();

    std::vector<StatusRow>* rows_ = nullptr;
};

}  // namespace vortan

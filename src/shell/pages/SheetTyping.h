#pragma once

#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "reports/CellEntry.h"
#include "shell/desk/Desktop.h"
#include "shell/widgets/GridView.h"

namespace vortan {

/// Typing in the cells of an entry table on screen: a box or a list over the cell, what is refused beside it,
/// a row more at the end, blocks from the clipboard, filling down and deleting. The page that owns it builds
/// the table, and again after each change.
class SheetTyping : public QObject {
  public:
    /// What the page is asked for.
    struct Page {
        std::function<RowSubject(int row)>
            subjectOf;  ///< of a row of the surface; none for the one at the end
        /// The plan has changed: shows it, with or without an empty row at the end.
        std::function<void(bool emptyRow)> rebuild;
        /// One object has changed, and is in the table still.
        std::function<void(const RowSubject& subject)> refresh;
    };
    /// All must outlive the object. `form` takes the keys of the program while a cell is typed in.
    SheetTyping(Desktop& desktop, CellEntry::Sheet sheet, Vwindow& surface, GridView& view, Page page);

    /// A key in the table, with no cell open. Whether it was one for typing.
    bool Key(const QKeyEvent& event);
    bool IsOpen() const { return open_ != nullptr; }
    /// Takes what is typed; false if it is refused: the cell stays open with the reason beside it.
    bool Commit();
    /// The page is about to go: what can be taken is taken.
    void Leave();
    /// The surface is laid out anew or scrolled.
    void SetEntryPos();
    bool HasEmptyRow() const { return emptyRow_; }
    void SetFont(const QFont& font);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool StartEntry(int row, int col, const QString& typed = {});
    bool EntryKey(const QKeyEvent& event);
    /// To another cell after what is typed was taken; a row behind the last one is made, one behind the last
    /// column begins the next row.
    void MoveTo(int rows, int cols);
    void Close();
    void Paste();
    void FillDown();
    void DeleteRows();
    /// Takes all of them in one step, or tells what is refused.
    bool TakeAll(const std::vector<CellEntry::Cell>& cells, const std::string& title);
    std::string Value() const;
    void Tell(const std::string& refusal);
    int RowOf(const RowSubject& subject) const;
    /// The first rows of the objects from `row` on: an object may have several.
    std::vector<int> ObjectRows(int row) const;
    int LastRow() const { return surface_.Rows() - 1; }
    CellEntry Entry() const;

    Desktop& desktop_;
    CellEntry::Sheet sheet_;
    Vwindow& surface_;
    GridView& view_;
    Page page_;
    QLineEdit* text_;  // each hidden but while it is open
    QComboBox *combo_, *list_;
    QLabel* refusal_;
    QWidget* open_ = nullptr;
    int row_ = -1, col_ = -1;
    std::string before_;
    bool emptyRow_ = false, committing_ = false;
};

}  // namespace vortan

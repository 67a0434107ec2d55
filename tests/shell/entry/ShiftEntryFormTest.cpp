#include "shell/entry/ShiftEntryForm.h"

#include "shell/entry/FormBench.h"

namespace vortan {
namespace {

constexpr int At(int hour, int minute) {
    return hour * 12 + minute / 5;
}

class ShiftEntryFormTest : public FormBench {
  protected:
    void Open() { Modify<ShiftEntryForm>(standard); }
    ShiftGrid& Grid() { return *Dialog().findChild<ShiftGrid*>("Grid"); }
    // The mouse comes from the window system; so a move has the buttons that are held.
    QPoint InWindow(QPoint inGrid) { return Grid().mapTo(&Dialog(), inGrid); }
    QPoint InWindow(int cell) { return InWindow(Grid().CellRect(cell).center()); }
    void Sweep(std::vector<int> cells) {
        QWindow* window = Dialog().windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, InWindow(cells[0]));
        for (const int cell : cells) QTest::mouseMove(window, InWindow(cell));
        QTest::mouseRelease(window, Qt::LeftButton, {}, InWindow(cells.back()));
    }
    /// First and last cell, as they are painted.
    std::pair<int, int> White() {
        const QImage picture = Grid().grab().toImage();
        int first = -1, last = -2, count = 0;
        for (int cell = 0; cell < ShiftGrid::kCells; ++cell) {
            if (picture.pixelColor(Grid().CellRect(cell).topLeft() + QPoint(3, 3)) != Qt::white) continue;
            if (first < 0) first = cell;
            last = cell;
            ++count;
        }
        EXPECT_EQ(count, last - first + 1) << "The selection is no run of cells";
        return {first, last};
    }

    Vshift* standard = plant->ShiftList()[0];
};

TEST_F(ShiftEntryFormTest, AMouseDragSelectsARunInReadingOrder) {
    const std::tuple<std::vector<int>, int, int> drags[] = {
        {{At(8, 0)}, At(8, 0), At(8, 0)},
        {{At(8, 0), At(9, 10)}, At(8, 0), At(9, 10)},
        {{At(9, 10), At(8, 0)}, At(8, 0), At(9, 10)},
        {{At(5, 30), At(7, 0), At(5, 40)}, At(5, 30), At(5, 40)},
        {{At(5, 30), At(7, 0), At(4, 55)}, At(4, 55), At(5, 30)},
        {{At(0, 0), At(23, 55)}, At(0, 0), At(23, 55)}};
    Open();
    for (const auto& [cells, first, last] : drags) {
        Sweep(cells);
        EXPECT_EQ(White(), std::pair(first, last));
        EXPECT_TRUE(Grid().AnchorCell() == cells.front() && Grid().CurrentCell() == cells.back());
    }
    Sweep({At(8, 0), At(13, 40)});
    EXPECT_EQ(Find<QLabel>("SelectionLabel").text(), "Selected:\n8:00am to 1:45pm");
    // Without a button held, the mouse selects nothing.
    QTest::mouseMove(Dialog().windowHandle(), InWindow(At(20, 0)));
    EXPECT_EQ(Grid().CurrentCell(), At(13, 40));
    EXPECT_EQ(Grid().CellAt({9999, 9999}), At(23, 55));
    EXPECT_EQ(Grid().CellAt({-9, 1}), At(0, 0));
}

TEST_F(ShiftEntryFormTest, AnOpenSelectionIsEndedByAGroupButtonOrByCancel) {
    Open();
    Sweep({At(8, 0), At(8, 5)});
    EXPECT_FALSE(Enabled("OkCommand"));
    EXPECT_TRUE(Enabled("GroupCommand(1)"));
    const auto cancelColour = [&] { return Find<QPushButton>("CancelCommand").palette().button(); };
    const QBrush open = cancelColour();
    Click("GroupCommand(1)");
    EXPECT_TRUE(Enabled("OkCommand"));
    EXPECT_FALSE(Enabled("GroupCommand(1)"));
    EXPECT_NE(cancelColour(), open);
    EXPECT_EQ(Grid().Row(8), "OONNNNNNNNNN");

    for (const bool byKey : {true, false}) {
        Sweep({At(9, 0), At(12, 0)});
        if (byKey) {
            Cancel();
        } else {
            Click("CancelCommand");
        }
        EXPECT_EQ(White(), std::pair(-1, -2));
        EXPECT_TRUE(IsOpen("ShiftEntryForm"));
        EXPECT_TRUE(Enabled("OkCommand"));
    }
    Cancel();
    EXPECT_FALSE(IsOpen("ShiftEntryForm"));
    EXPECT_EQ(standard->Matrix(8), "NNNNNNNNNNNN");
    EXPECT_FALSE(plant->Dirty());
}

TEST_F(ShiftEntryFormTest, TheDayIsPaintedByKeyboard) {
    constexpr auto kShift = Qt::ShiftModifier, kControl = Qt::ControlModifier;
    Open();
    Find<QWidget>("HolidayMultiplierText").setFocus();
    Press(Qt::Key_Tab);
    ASSERT_EQ(Focus(), "Grid");
    const std::tuple<Qt::Key, Qt::KeyboardModifiers, int, std::pair<int, int>> presses[] = {
        {Qt::Key_Up, {}, 0, {-1, -2}},
        {Qt::Key_O, {}, 0, {-1, -2}},  // paints the one cell
        {Qt::Key_Down, {}, 12, {-1, -2}},
        {Qt::Key_Down, kShift, 24, {12, 24}},
        {Qt::Key_Left, kShift, 23, {12, 23}},
        {Qt::Key_B, {}, 23, {-1, -2}},
        {Qt::Key_End, kControl | kShift, 287, {23, 287}},
        {Qt::Key_Up, {}, At(22, 55), {-1, -2}},  // moves on and drops the selection
        {Qt::Key_Space, {}, At(22, 55), {At(22, 55), At(22, 55)}}};
    for (const auto& [key, with, current, white] : presses) {
        QTest::keyClick(&Grid(), key, with);
        EXPECT_EQ(Grid().CurrentCell(), current);
        EXPECT_EQ(White(), white);
    }
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "GroupCommand(0)");
    Press(Qt::Key_Space);
    EXPECT_EQ(Focus(), "Grid");
    Ok();
    EXPECT_FALSE(IsOpen("ShiftEntryForm"));
    EXPECT_EQ(standard->Matrix(0) + standard->Matrix(1), "OXXXXXXXXXXXBBBBBBBBBBBB");
    EXPECT_EQ(standard->Matrix(22), "XXXXXXXXXXXN");
    EXPECT_TRUE(plant->Dirty());
}

}  // namespace
}  // namespace vortan

#include "shell/ShiftEntryForm.h"

#include "shell/Shell.h"

namespace vortan {
namespace {

constexpr int At(int hour, int minute) {
    return hour * 12 + minute / 5;
}

class ShiftEntryFormTest : public ::testing::Test {
  protected:
    ShiftEntryFormTest() {
        owner->SetTemplateName("Plant");
        owner->AddJournal(shell.platform.now);
        owner->FindOrCreateShift("Standard");
        shell.desktop.workspace.SetThisTemplate(owner);
        shell.desktop.workspace.BroadcastNewThisTemplate();
        owner->SetDirty(false);
    }
    Vshift& Standard() { return *owner->ShiftList()[0]; }
    void Modify() {
        Trees& trees = shell.main.TheTrees();
        trees.SetDragNode(&trees.FindNodeFromObject(&Standard()));
        ShiftEntryForm::StartModify(shell.desktop);
    }
    ShiftGrid& Grid() { return *shell.Dialog().findChild<ShiftGrid*>("Grid"); }
    // The mouse comes from the window system; so a move has the buttons that are held.
    QPoint InWindow(QPoint inGrid) { return Grid().mapTo(&shell.Dialog(), inGrid); }
    QPoint InWindow(int cell) { return InWindow(Grid().CellRect(cell).center()); }
    void Drag(std::vector<int> cells) {
        QWindow* window = shell.Dialog().windowHandle();
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
    bool Enabled(const char* button) { return shell.Find<QPushButton>(button).isEnabled(); }

    Shell shell;
    Vtemplate* owner = shell.desktop.workspace.NewVObject<Vtemplate>();
};

TEST_F(ShiftEntryFormTest, AMouseDragSelectsARunInReadingOrder) {
    const struct {
        std::vector<int> cells;
        int first, last;
    } drags[] = {{{At(8, 0)}, At(8, 0), At(8, 0)},
                 {{At(8, 0), At(9, 10)}, At(8, 0), At(9, 10)},
                 {{At(9, 10), At(8, 0)}, At(8, 0), At(9, 10)},
                 {{At(5, 30), At(7, 0), At(5, 40)}, At(5, 30), At(5, 40)},
                 {{At(5, 30), At(7, 0), At(4, 55)}, At(4, 55), At(5, 30)},
                 {{At(0, 0), At(23, 55)}, At(0, 0), At(23, 55)}};
    Modify();
    for (const auto& drag : drags) {
        Drag(drag.cells);
        EXPECT_EQ(White(), std::pair(drag.first, drag.last));
        EXPECT_EQ(Grid().AnchorCell(), drag.cells.front());
        EXPECT_EQ(Grid().CurrentCell(), drag.cells.back());
    }
    Drag({At(8, 0), At(13, 40)});
    EXPECT_EQ(shell.Find<QLabel>("SelectionLabel").text(), "Selected:\n8:00am to 1:45pm");
    // Without a button held, the mouse selects nothing.
    QTest::mouseMove(shell.Dialog().windowHandle(), InWindow(At(20, 0)));
    EXPECT_EQ(Grid().CurrentCell(), At(13, 40));
    EXPECT_EQ(Grid().CellAt({9999, 9999}), At(23, 55));
    EXPECT_EQ(Grid().CellAt({-9, 1}), At(0, 0));
    EXPECT_EQ(Grid().CellAt({9999, Grid().CellRect(At(7, 0)).center().y()}), At(7, 55));
}

TEST_F(ShiftEntryFormTest, AnOpenSelectionIsEndedByAGroupButtonOrByCancel) {
    Modify();
    Drag({At(8, 0), At(8, 5)});
    EXPECT_FALSE(Enabled("OkCommand"));
    EXPECT_TRUE(Enabled("GroupCommand(1)"));
    const auto cancelColour = [&] { return shell.Find<QPushButton>("CancelCommand").palette().button(); };
    const QBrush open = cancelColour();
    shell.Click("GroupCommand(1)");
    EXPECT_TRUE(Enabled("OkCommand"));
    EXPECT_FALSE(Enabled("GroupCommand(1)"));
    EXPECT_NE(cancelColour(), open);
    EXPECT_EQ(Grid().Row(8), "OONNNNNNNNNN");

    for (const bool byKey : {true, false}) {
        Drag({At(9, 0), At(12, 0)});
        if (byKey) {
            shell.Press(Qt::Key_Escape);
        } else {
            shell.Click("CancelCommand");
        }
        EXPECT_EQ(White(), std::pair(-1, -2));
        EXPECT_TRUE(shell.IsOpen("ShiftEntryForm"));
        EXPECT_TRUE(Enabled("OkCommand"));
    }
    shell.Press(Qt::Key_Escape);
    EXPECT_FALSE(shell.IsOpen("ShiftEntryForm"));
    EXPECT_EQ(Standard().Matrix(8), "NNNNNNNNNNNN");
    EXPECT_FALSE(owner->Dirty());
}

TEST_F(ShiftEntryFormTest, TheDayIsPaintedByKeyboard) {
    Modify();
    auto& holiday = shell.Find<QWidget>("HolidayMultiplierText");
    holiday.setFocus();
    shell.Press(Qt::Key_Tab);
    ASSERT_EQ(shell.Focus(), "Grid");
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers with = {}) {
        QTest::keyClick(&Grid(), key, with);
    };
    press(Qt::Key_Home, Qt::ControlModifier);
    press(Qt::Key_Up);
    press(Qt::Key_Left);
    EXPECT_EQ(Grid().CurrentCell(), 0);
    press(Qt::Key_O);
    EXPECT_EQ(Grid().Row(0), "OXXXXXXXXXXX");
    press(Qt::Key_Down);
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Left, Qt::ShiftModifier);
    press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(White(), std::pair(12, 23));
    press(Qt::Key_B);
    EXPECT_EQ(Grid().Row(1) + Grid().Row(2), "BBBBBBBBBBBBXXXXXXXXXXXX");
    press(Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(White(), std::pair(23, 287));
    press(Qt::Key_Up);  // moves on and drops the selection
    EXPECT_TRUE(Enabled("OkCommand"));
    EXPECT_EQ(Grid().CurrentCell(), At(22, 55));
    press(Qt::Key_Space);
    press(Qt::Key_Tab);
    EXPECT_EQ(shell.Focus(), "GroupCommand(0)");
    shell.Press(Qt::Key_Space);
    EXPECT_EQ(shell.Focus(), "Grid");
    EXPECT_EQ(Grid().Row(22), "XXXXXXXXXXXN");
    press(Qt::Key_Return);
    EXPECT_FALSE(shell.IsOpen("ShiftEntryForm"));
    EXPECT_EQ(Standard().Matrix(0), "OXXXXXXXXXXX");
    EXPECT_EQ(Standard().Matrix(22), "XXXXXXXXXXXN");
    EXPECT_TRUE(owner->Dirty());
}

TEST_F(ShiftEntryFormTest, ANewShiftIsSavedWhenAllFieldsFit) {
    ShiftEntryForm::StartAdd(shell.desktop);
    EXPECT_EQ(shell.Focus(), "ShiftNameText");
    const struct {
        const char *field, *text, *title;
    } refused[] = {{"ShiftNameText", "", "Missing Name"},
                   {"ShiftNameText", "  ", "Missing Name"},
                   {"ShiftNameText", " Standard ", "Shift Name In Use"},
                   {"BurdenedMultiplierText", "", "Invalid Number"},
                   {"OvertimeMultiplierText", "1,5", "Invalid Number"},
                   {"OffDayMultiplierText", "twice", "Invalid Number"}};
    for (const auto& one : refused) {
        SCOPED_TRACE(std::string(one.field) + one.text);
        if (std::string(one.field) != "ShiftNameText") shell.Type("ShiftNameText", " Night ");
        const QString before = shell.Find<QLineEdit>(one.field).text();
        shell.Type(one.field, one.text);
        shell.platform.ExpectBox(one.title, BoxAnswer::Ok);
        shell.Press(Qt::Key_Return);
        EXPECT_EQ(shell.Focus(), one.field);
        EXPECT_EQ(owner->ShiftList().size(), 1U);
        shell.Type(one.field, before.toUtf8());
    }
    EXPECT_FALSE(owner->Dirty());
    shell.Type("ShiftNameText", " Night ");
    shell.Type("BurdenedMultiplierText", "1.1");
    shell.Type("HolidayMultiplierText", "none");
    shell.Press(Qt::Key_Return);
    const Vshift* night = owner->ShiftList().Find("Night");
    ASSERT_TRUE(night);
    EXPECT_EQ(night->BurdenedMultiplier(), 1.1F);
    EXPECT_EQ(night->OvertimeMultiplier(), 1.5F);
    EXPECT_EQ(night->HolidayMultiplier(), "none");
    EXPECT_EQ(night->NormalHours(), 8);
    EXPECT_TRUE(owner->Dirty());
    EXPECT_NO_THROW(shell.main.TheTrees().FindNodeFromObject(const_cast<Vshift*>(night)));
}

}  // namespace
}  // namespace vortan
